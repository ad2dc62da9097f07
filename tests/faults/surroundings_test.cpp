// What the system grants a run: open files, permissions, and the lengths and names of directories.
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"
#include "faults/unfinished.hpp"

#include <filesystem>
#include <ostream>

#include <gtest/gtest.h>

#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

const std::string notice = "vexbind: RSD to TMD model converter\n";

class Surrounded : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(runs.directory(), ""); }

    // The files of the smallest model in a directory that is open to everyone.
    void writeModel(const std::string& directory) {
        std::vector<NamedFile> files = plainFiles();
        for (NamedFile& file : files)
            file.name = directory + "/" + file.name;
        writeFiles(runs.directory(), files);
        setMode(directory, 0777);
    }

    void setMode(const std::string& name, unsigned mode) const {
        fs::permissions(runs.directory() + "/" + name, static_cast<fs::perms>(mode));
    }

    [[nodiscard]] std::string contentOf(const std::string& name) const {
        return readFiles(runs.directory(), {{name, ""}})[0].content;
    }

    // The TMD of the smallest model.
    std::string wholeTmd() {
        writeModel("whole");
        EXPECT_EQ(runs.run({"m.rsd"}, {.startDirectory = "whole"}).status, 0);
        return contentOf("whole/a.tmd");
    }

    ForkedRuns& runs = freshRuns();
};

// With few files a run finds nothing, or cannot open something; from some number on all goes well.
TEST_F(Surrounded, ByALimitOfOpenFiles) {
    const std::vector<NamedFile> files = plainFiles();
    writeFiles(runs.directory(), files);
    for (const Words& words : {Words{"m.rsd"}, Words{"-id", "p.prj", "m.rsd"}}) {
        ASSERT_EQ(runs.run(words).status, 0);
        const std::size_t wanted = takeNewFiles(runs.directory(), files).size();
        bool works = false;
        for (int limit = 0; limit <= 16; ++limit) {
            SCOPED_TRACE(limit);
            const Ending ending = runs.run(words, {.openLimit = limit});
            const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
            EXPECT_EQ(findFault(ending, outputs, {.noTmd = !works}), "") << ending.errors;
            if (ending.status == 0 && outputs.size() == wanted) {
                works = true;
                continue;
            }
            EXPECT_FALSE(works);
            EXPECT_TRUE(ending.status == 30 || (ending.status == 0 && outputs.empty()))
                << describeEnding(ending);
            EXPECT_NE(ending.errors.find("\nCannot open: \""), std::string::npos) << ending.errors;
        }
        EXPECT_TRUE(works);
    }
}

// The outputs belong to the start directory: they may not go to the model's for want of a way back.
TEST_F(Surrounded, ByAStartDirectoryThatCannotBeEnteredAgain) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can start where the run may not go";
    writeModel("m");
    writeModel("s");
    setMode("s", 0666);
    const std::string here = fs::canonical(runs.directory()).string();
    const Ending ending = runs.run({here + "/m/m.rsd"}, {.unprivileged = true, .startDirectory = "s"});
    setMode("s", 0777);
    EXPECT_EQ(describeEnding(ending), "exit status 51");
    EXPECT_EQ(ending.errors, notice + "\nCannot getcwd: \"" + here + "/s\"\n");
    EXPECT_FALSE(fs::exists(here + "/m/a.tmd"));
    EXPECT_FALSE(fs::exists(here + "/s/a.tmd"));
}

// A directory of this length below the directory of the runs.
std::string directoryOfLength(const std::string& above, std::size_t length) {
    std::string path;
    constexpr std::size_t longestName = 100;
    for (std::size_t rest = length - above.size() - 1; rest > 0;) {
        // A name of one byte needs two with its slash, so that none may be left over.
        const std::size_t name = rest <= longestName ? rest : std::min(longestName, rest - 2);
        if (!path.empty())
            path += '/';
        path.append(name, 'd');
        rest -= std::min(rest, name + 1);
    }
    return path;
}

// A working directory can have 254 bytes, that of the start as well as that of an object.
TEST_F(Surrounded, ByADirectoryOf250To300Bytes) {
    const std::string whole = wholeTmd();
    ASSERT_LT(runs.directory().size(), 200U);
    for (std::size_t length = 250; length <= 300; ++length) {
        SCOPED_TRACE(length);
        const std::string name = directoryOfLength(runs.directory(), length);
        ASSERT_EQ((runs.directory() + "/" + name).size(), length);
        writeModel(name);
        const bool fits = length <= 254;

        const Ending there = runs.run({"m.rsd"}, {.startDirectory = name});
        EXPECT_EQ(describeEnding(there), fits ? "exit status 0" : "exit status 51");
        EXPECT_EQ(there.errors, notice + (fits ? "" : "\nCannot getcwd: \"m.rsd\"\n"));
        EXPECT_EQ(contentOf(name + "/a.tmd"), fits ? whole : "");

        const Ending fromHere = runs.run({"-o", "b.tmd", name + "/m.rsd"});
        EXPECT_EQ(describeEnding(fromHere), fits ? "exit status 0" : "exit status 51");
        EXPECT_EQ(fromHere.errors, notice + (fits ? "" : "\nCannot getcwd: \"m.ply\"\n"));
        EXPECT_EQ(contentOf("b.tmd"), fits ? whole : "");
        fs::remove(runs.directory() + "/b.tmd");
    }
}

// Words of the command line can name any file; those in a file cannot have blanks.
TEST_F(Surrounded, ByNamesWithBlanksAndAnyBytes) {
    const std::string whole = wholeTmd();
    const std::string start = "s \x01\xE2\x82t";
    writeFiles(runs.directory(), {{start + "/d \xC3\xA4/m\xFF.rsd",
                                   "@RSD940102\nPLY=\xFC.ply\nMAT=m\xFF.mat\nNTEX=1\nTEX[0]=\xE9\n"},
                                  {start + "/d \xC3\xA4/\xFC.ply", contentOf("whole/m.ply")},
                                  {start + "/d \xC3\xA4/m\xFF.mat", contentOf("whole/m.mat")},
                                  {start + "/d \xC3\xA4/\xE9.tim", contentOf("whole/a.tim")},
                                  {start + "/p \xC3\xB6.prj", "@PRJ940401\n1\n7 m\xFF.rsd\n"},
                                  {start + "/w\t\x7F.arg", "-t 0 0 0"}});
    const Ending ending =
        runs.run({"-o", "o \xC3\xB6.tmd", "-id", "p \xC3\xB6.prj", "w\t\x7F.arg", "d \xC3\xA4/m\xFF"},
                 {.startDirectory = start});
    EXPECT_EQ(describeEnding(ending), "exit status 0");
    EXPECT_EQ(ending.errors, notice);
    EXPECT_EQ(contentOf(start + "/o \xC3\xB6.tmd"), whole);
    EXPECT_EQ(withoutDate(contentOf(start + "/o \xC3\xB6.h")),
              "/*\n *\tTMD ID List for \"o \xC3\xB6.tmd\"\n *\n"
              " *\t\t Created by vexbind(v3.72) at \n *\n"
              " *\t" +
                  notice +
                  " */\n\n"
                  "int o \xC3\xB6_list[] = {\n\t7,\t/* m\xFF */\n};\n");
}

// A file or directory that is closed to the user of the program, who is not root.
struct Closed {
    const char* name;
    const char* target; // below the start directory
    unsigned mode;
    const char* line;
    int status;
    const char* message; // behind the notice
    bool hasTmd = false;
};

void PrintTo(const Closed& closed, std::ostream* out) {
    *out << closed.name;
}

const std::vector<Closed> closedFiles = {
    {"Rsd", "m.rsd", 0, "m", 0, "Cannot open: \"m.rsd\"\n"},
    {"Ply", "m.ply", 0, "m", 100, "\nCannot open: \"m.ply\"\n"},
    {"Mat", "m.mat", 0, "m", 200, "\nCannot open: \"m.mat\"\n"},
    {"Tim", "a.tim", 0, "m", 1, "\nCannot Open: \"a.tim\" for m.mat\n"},
    {"Arg", "w.arg", 0, "w.arg", 30, "\nCannot open: \"w.arg\"\n"},
    {"Prj", "p.prj", 0, "p.prj", 30, "\nCannot open: \"p.prj\"\n"},
    // Seen as a project only when the IDs are read.
    {"PrjOfIds", "ids", 0, "-id ids m", 30, "\nCannot open: \"ids\"\n", true},
    {"RsdDirectory", "d", 0, "d/n", 0, "Cannot open: \"d/n.rsd\"\n"},
    {"RsdDirectoryWithoutSearch", "d", 0666, "d/n", 0, "Cannot open: \"d/n.rsd\"\n"},
    {"RsdDirectoryWithoutReading", "d", 0111, "d/n", 0, "", true},
    {"UsualDirectory", "rsd", 0, "k", 0, "Cannot open: \"k.rsd\"\n"},
    {"TextureDirectory", "TIM", 0, "d/t", 1, "\nCannot Open: \"b.tim\" for ../m.mat\n"},
    {"StartDirectoryWithoutReading", ".", 0333, "m", 0, "", true},
};

class ClosedToTheUser : public Surrounded, public testing::WithParamInterface<Closed> {
  protected:
    // "t" names a texture that is in the directory of textures only.
    void SetUp() override {
        Surrounded::SetUp();
        whole = wholeTmd();
        writeModel("s");
        writeFiles(runs.directory(),
                   {{"s/w.arg", "m"},
                    {"s/ids", "@PRJ940401\n1\n"},
                    {"s/d/n.rsd", "@RSD940102\nPLY=../m.ply\nMAT=../m.mat\nNTEX=1\nTEX[0]=../a.tim\n"},
                    {"s/d/t.rsd", "@RSD940102\nPLY=../m.ply\nMAT=../m.mat\nNTEX=1\nTEX[0]=b.tim\n"},
                    {"s/TIM/b.tim", contentOf("s/a.tim")},
                    {"s/rsd/k.rsd", "@RSD940102\nPLY=../m.ply\nMAT=../m.mat\nNTEX=1\nTEX[0]=../a.tim\n"}});
    }

    void TearDown() override { setMode(std::string("s/") + GetParam().target, 0777); }

    std::string whole;
};

TEST_P(ClosedToTheUser, EndsAsDocumented) {
    const Closed& closed = GetParam();
    const Words words = splitWords(closed.line);
    const Ending open = runs.run(words, {.unprivileged = true, .startDirectory = "s"});
    ASSERT_EQ(describeEnding(open), "exit status 0") << open.errors;
    ASSERT_EQ(contentOf("s/a.tmd"), whole);
    fs::remove(runs.directory() + "/s/a.tmd");

    setMode(std::string("s/") + closed.target, closed.mode);
    const Ending ending = runs.run(words, {.unprivileged = true, .startDirectory = "s"});
    EXPECT_EQ(describeEnding(ending), "exit status " + std::to_string(closed.status));
    EXPECT_EQ(ending.errors, notice + closed.message);
    const std::string left = contentOf("s/a.tmd");
    EXPECT_EQ(left == whole, closed.hasTmd);
    EXPECT_EQ(findFaultInUnfinished(left, whole), "");
}

std::string nameOf(const testing::TestParamInfo<Closed>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, ClosedToTheUser, testing::ValuesIn(closedFiles), nameOf);

} // namespace
