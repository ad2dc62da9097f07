// Outputs that cannot be written: for want of space, at every byte, or of a place. The run says so, names
// the file and leaves what it could write.
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"
#include "faults/unfinished.hpp"

#include <filesystem>
#include <iostream>
#include <ostream>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

const std::string notice = "vexbind: RSD to TMD model converter\n";

// Two objects with packets of more than one kind.
std::vector<NamedFile> twoObjects() {
    std::vector<NamedFile> files = plainFiles();
    files.push_back({"n.rsd", "@RSD940102\nPLY=n.ply\nMAT=n.mat\nNTEX=0\n"});
    files.push_back({"n.ply", "@PLY940102\n2 2 2\n9 8 7\n6 5 4\n0 0 1\n0 1 0\n"
                              "2 0 1 0 0 0 0 0 0\n0 0 1 1 0 1 0 0 0\n"});
    files.push_back({"n.mat", "@MAT940102\n1\n0-1 0 F C 1 2 3\n"});
    return files;
}

class CutOutput : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(runs.directory(), ""); }

    void write(const std::vector<NamedFile>& more) {
        writeFiles(runs.directory(), more);
        files.insert(files.end(), more.begin(), more.end());
    }

    // A run that nothing keeps from writing its output, and that output.
    std::string wholeOutput(const Words& words) {
        ending = runs.run(words);
        ++runCount;
        EXPECT_EQ(describeEnding(ending), "exit status 0") << ending.errors;
        const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
        EXPECT_EQ(outputs.size(), 1U);
        return outputs.empty() ? std::string() : outputs[0].content;
    }

    // A run in which no file can have more than `limit` bytes, and what it leaves of its output `name`.
    std::string outputWithin(std::size_t limit, const Words& words, const std::string& name) {
        ending = runs.run(words, {.fileLimit = static_cast<std::int64_t>(limit)});
        ++runCount;
        const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
        EXPECT_EQ(findFaultInEnding(ending), "") << ending.errors;
        EXPECT_EQ(outputs.size(), 1U);
        if (outputs.empty())
            return {};
        EXPECT_EQ(outputs[0].name, name);
        return outputs[0].content;
    }

    // The run that just was ended so, with this message.
    void expectEnding(int status, const std::string& message) {
        EXPECT_EQ(describeEnding(ending), "exit status " + std::to_string(status));
        EXPECT_EQ(ending.errors, notice + message);
    }

    void TearDown() override {
        RecordProperty("runs", runCount);
        std::cout << "[     RUNS ] " << runCount << std::endl;
    }

    ForkedRuns& runs = freshRuns();
    std::vector<NamedFile> files;
    Ending ending;
    int runCount = 0;
};

// The three words of the header are written one by one, and each has to succeed. The rest is missed when
// the file is moved in to the object table, before that is written anew.
TEST_F(CutOutput, TmdAtEveryByte) {
    write(twoObjects());
    const Words words = {"-o", "x.tmd", "m.rsd", "n.rsd"};
    const std::string whole = wholeOutput(words);
    // Header 12, table 2 x 28; a flat textured triangle 24, a flat line 12 and a flat triangle 16; vertices
    // 5 x 8 and normals 3 x 8.
    ASSERT_EQ(whole.size(), 12U + 56 + 24 + 12 + 16 + 40 + 24);
    for (std::size_t limit = 0; limit < whole.size(); ++limit) {
        SCOPED_TRACE("at byte " + std::to_string(limit));
        const std::string left = outputWithin(limit, words, "x.tmd");
        EXPECT_EQ(left.size(), limit);
        EXPECT_EQ(findFaultInUnfinished(left, whole), "");
        if (limit < 12) {
            const std::string position = std::to_string(limit / 4 * 4);
            expectEnding(36, "\nFail to write: \"x.tmd\" at " + position + " bytes\n");
        } else {
            expectEnding(32, "\nSeek error \"x.tmd\" at 12 bytes");
        }
    }
    EXPECT_EQ(outputWithin(whole.size(), words, "x.tmd"), whole);
    expectEnding(0, "");
}

// What does not fit into the stream's buffer is written, and fails, before the file is moved in: then even
// the table may be the final one.
TEST_F(CutOutput, LargeTmd) {
    std::string ply = "@PLY940102\n70000 0 0\n";
    for (int i = 0; i < 70'000; ++i)
        ply += "1 2 3\n";
    write({{"m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=0\n"},
           {"m.ply", ply},
           {"m.mat", "@MAT940102\n0\n"}});
    const std::string whole = wholeOutput({"m"});
    ASSERT_EQ(whole.size(), 12U + 28 + 8 * 70'000);
    for (const std::size_t limit :
         {40UL, 41UL, 262'143UL, 262'144UL, 262'145UL, 524'288UL, whole.size() - 1}) {
        SCOPED_TRACE("at byte " + std::to_string(limit));
        const std::string left = outputWithin(limit, {"m"}, "a.tmd");
        EXPECT_EQ(left.size(), limit);
        EXPECT_EQ(findFaultInUnfinished(left, whole), "");
        EXPECT_TRUE(ending.status == 31 || ending.status == 32) << describeEnding(ending);
        EXPECT_NE(ending.errors.find("a.tmd"), std::string::npos) << ending.errors;
    }
}

// The TMD goes where there is no end of space, so that the list is cut from its first byte on.
TEST_F(CutOutput, IdListAtEveryByte) {
    write(plainFiles());
    const Words words = {"-o", "/dev/null", "-id", "p.prj", "m.rsd"};
    const std::string whole = wholeOutput(words);
    ASSERT_TRUE(whole.ends_with("int null_list[] = {\n\t7,\t/* m */\n};\n")) << whole;
    const std::size_t date = whole.find(") at ") + 5;
    for (std::size_t limit = 0; limit < whole.size(); ++limit) {
        SCOPED_TRACE("at byte " + std::to_string(limit));
        std::string left = outputWithin(limit, words, "null.h");
        EXPECT_EQ(left.size(), limit);
        // The time of another minute has as many bytes.
        constexpr std::size_t dateBytes = 15;
        if (left.size() > date)
            left.replace(date, std::min(left.size() - date, dateBytes),
                         whole.substr(date, std::min(left.size() - date, dateBytes)));
        EXPECT_TRUE(whole.starts_with(left)) << left;
        expectEnding(31, "\nFail to Close File : null.h\n");
    }
    outputWithin(whole.size(), words, "null.h");
    expectEnding(0, "");
}

// A device without any space, under the name of the output.
TEST_F(CutOutput, FullDevice) {
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "there is no /dev/full here";
    write(plainFiles());
    fs::create_symlink("/dev/full", runs.directory() + "/full.tmd");
    ending = runs.run({"-o", "full.tmd", "m"});
    expectEnding(36, "\nFail to write: \"full.tmd\" at 0 bytes\n");

    // The TMD is whole when its list fails.
    const std::string whole = wholeOutput({"m"});
    fs::create_symlink("/dev/full", runs.directory() + "/a.h");
    ending = runs.run({"-id", "p.prj", "m"});
    expectEnding(31, "\nFail to Close File : a.h\n");
    EXPECT_EQ(readFiles(runs.directory(), {{"a.tmd", ""}})[0].content, whole);
    runCount += 2;
}

// An output that has no place; the user who runs the program is not root.
struct NoPlace {
    const char* name;
    const char* line;    // run in the directory "here"
    const char* refused; // the file that cannot be opened
    bool hasTmd;         // the TMD itself is written
};

void PrintTo(const NoPlace& place, std::ostream* out) {
    *out << place.name;
}

const std::vector<NoPlace> noPlaces = {
    {"MissingDirectory", "-o missing/a.tmd ../m", "missing/a.tmd", false},
    {"MissingAbsoluteDirectory", "-o /missing/a.tmd ../m", "/missing/a.tmd", false},
    {"FileAsDirectory", "-o ../m.rsd/a.tmd ../m", "../m.rsd/a.tmd", false},
    {"ReadOnlyDirectory", "-o ../closed/b.tmd ../m", "../closed/b.tmd", false},
    {"ReadOnlyStartDirectory", "../../m", "a.tmd", false},
    {"ReadOnlyFile", "-o ../closed.tmd ../m", "../closed.tmd", false},
    {"EmptyName", "-o  ../m", "", false},
    {"IdListInReadOnlyDirectory", "-o ../../here/a.tmd -id ../../p.prj ../../m", "a.h", true},
    {"IdListOverReadOnlyFile", "-o closed.tmd -id ../p.prj ../m", "closed.h", true},
};

class NoPlaceForOutput : public testing::TestWithParam<NoPlace> {
  protected:
    // Nothing of the owner's is closed to root, so the files belong to others then.
    void SetUp() override {
        ASSERT_NE(runs.directory(), "");
        writeFiles(runs.directory(), plainFiles());
        writeFiles(runs.directory(),
                   {{"closed.tmd", "kept"}, {"here/closed.h", "kept"}, {"closed/inner/x", ""}});
        setMode("closed.tmd", 0444);
        setMode("here/closed.h", 0444);
        setMode("closed", 0555);
        setMode("closed/inner", 0555);
        setMode("here", 0777);
    }

    void TearDown() override {
        setMode("closed", 0755);
        setMode("closed/inner", 0755);
    }

    void setMode(const std::string& name, unsigned mode) {
        fs::permissions(runs.directory() + "/" + name, static_cast<fs::perms>(mode));
    }

    std::string contentOf(const std::string& name) {
        return readFiles(runs.directory(), {{name, ""}})[0].content;
    }

    ForkedRuns& runs = freshRuns();
};

TEST_P(NoPlaceForOutput, EndsTheRun) {
    const NoPlace& place = GetParam();
    const bool startsInClosed = std::string(place.line).find("../../") != std::string::npos;
    const Ending ending =
        runs.run(splitWords(place.line),
                 {.unprivileged = true, .startDirectory = startsInClosed ? "closed/inner" : "here"});
    EXPECT_EQ(describeEnding(ending), "exit status 30");
    EXPECT_EQ(ending.errors, notice + "\nCannot open: \"" + place.refused + "\"\n");
    EXPECT_EQ(contentOf("closed.tmd"), "kept");
    EXPECT_EQ(contentOf("here/closed.h"), "kept");
    const bool isThere = contentOf("here/a.tmd").size() + contentOf("here/closed.tmd").size() > 0;
    EXPECT_EQ(isThere, place.hasTmd);
}

std::string nameOf(const testing::TestParamInfo<NoPlace>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, NoPlaceForOutput, testing::ValuesIn(noPlaces), nameOf);

} // namespace
