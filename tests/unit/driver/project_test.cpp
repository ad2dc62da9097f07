// PRJ files: their head, their entries, and the IDs that objects get from them.
#include "driver/project.hpp"

#include "unit/broken_stream.hpp"
#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "model/rsd.hpp"

#include <array>
#include <cstdio>
#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Entry {
    std::int32_t id;
    std::string name;

    bool operator==(const Entry&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Entry& entry) {
    return stream << entry.id << " " << entry.name;
}

using Entries = std::vector<Entry>;

// All entries of a file without head.
Entries entriesOf(const std::string& text) {
    const TestDirectory directory({{"in", text}});
    FileRecord* file = fileOpen("in", "r");
    Entries entries;
    for (ProjectEntry entry{}; next_entry(file, entry);) {
        entries.push_back({entry.id, entry.name});
    }
    ProjectEntry behind{};
    EXPECT_FALSE(next_entry(file, behind));
    fileClose(file);
    return entries;
}

// The same by the C library.
Entries entriesByLibrary(const std::string& text) {
    const TestDirectory directory({{"in", text}});
    std::FILE* stream = std::fopen("in", "r");
    Entries entries;
    std::array<char, 256> buffer{};
    std::array<char, 256> name{};
    int id = 0;
    while (std::fgets(buffer.data(), buffer.size(), stream) != nullptr) {
        // NOLINTNEXTLINE(cert-err34-c): the reference
        if (std::sscanf(buffer.data(), "%d %255s", &id, name.data()) == 2) {
            entries.push_back({id, name.data()});
        }
    }
    std::fclose(stream);
    return entries;
}

// What get_mpj_id makes of a first line.
struct HeadResult {
    std::int32_t result;
    std::string messages;
};

HeadResult headOf(const std::string& text) {
    writeFile("p.prj", text);
    FileRecord* file = fileOpen("p.prj", "r");
    testing::internal::CaptureStderr();
    const std::int32_t result = get_mpj_id(file);
    const std::string messages = testing::internal::GetCapturedStderr();
    fileClose(file);
    return {result, messages};
}

// An object list of these names, until the end of a scope.
struct ListedObjects {
    ListedObjects(std::initializer_list<const char*> list) : names(list.begin(), list.end()) {
        objects.resize(names.size(), plainObject());
        for (std::size_t i = 0; i < names.size(); ++i) {
            nameTable.push_back(names[i].data());
            objectTable.push_back(&objects[i]);
        }
        ObjList.nObj = static_cast<std::uint32_t>(names.size());
        ObjList.name = nameTable.data();
        ObjList.rsd = objectTable.data();
    }
    ~ListedObjects() { ObjList = {}; }
    ListedObjects(const ListedObjects&) = delete;
    ListedObjects& operator=(const ListedObjects&) = delete;

    std::vector<int> ids() const {
        std::vector<int> values;
        for (const RSD& object : objects) {
            values.push_back(object.id);
        }
        return values;
    }

    std::vector<std::string> names;
    std::vector<RSD> objects;
    std::vector<char*> nameTable;
    std::vector<RSD*> objectTable;
};

constexpr char head[] = "@PRJ940401\nsecond line\n";

// How many objects a project of these entries finds.
std::uint32_t matched(const std::string& entries) {
    writeFile("p.prj", head + entries);
    return read_prj("p.prj");
}

using Ids = std::vector<int>;

} // namespace

TEST(GetMpjId, AcceptsVersionsFrom940401On) {
    const TestDirectory directory;
    for (const char* line : {"@PRJ940401", "@PRJ940402", "@PRJ2000000", "@PRJ 940401", "@PRJ\t940401",
                             "@PRJ+940401", "@PRJ0940401", "@PRJ940401x", "@PRJ940401 old", "@PRJ9404010",
                             "@PRJ99999999999", "# comment\n\n@PRJ940401", "\r\n@PRJ940401\r"}) {
        SCOPED_TRACE(line);
        const HeadResult result = headOf(std::string(line) + "\n1 a\n");
        EXPECT_EQ(result.result, 1);
        EXPECT_EQ(result.messages, "");
    }
}

TEST(GetMpjId, WarnsOfOtherVersionsWithTheWholeLine) {
    const TestDirectory directory;
    for (const std::string line :
         {"@PRJ940331", "@PRJ940400", "@PRJ0", "@PRJ-940401", "@PRJ", "@PRJ ", "@PRJversion", "@PRJ94040.1",
          "@PRJ94 0401", "@PRJ 940331 and more", "@PRJ- 940401", "@PRJ@940401", "@PRJ-99999999999"}) {
        SCOPED_TRACE(line);
        const HeadResult result = headOf(line + "\n1 a\n");
        EXPECT_EQ(result.result, 0);
        EXPECT_EQ(result.messages, "WARNING: \"p.prj\" has a bad version: " + line + "\n");
    }
}

TEST(GetMpjId, KeepsAnIgnoredVersionQuiet) {
    const TestDirectory directory;
    pushIgnore(VER_ERR);
    const HeadResult result = headOf("@PRJ940331\n");
    EXPECT_EQ(result.result, 0);
    EXPECT_EQ(result.messages, "");
}

TEST(GetMpjId, EndsWithStatus3WithoutTheMagic) {
    const TestDirectory directory;
    for (const std::string line : {"@prj940401", "@PR", "@PRj940401", " @PRJ940401", "PRJ940401",
                                   "@RSD940401", "1 a.rsd", "x@PRJ940401"}) {
        SCOPED_TRACE(line);
        writeFile("p.prj", line + "\n");
        EXPECT_EXIT(get_mpj_id(fileOpen("./p.prj", "r")), ExitedWithCode(3),
                    Eq("\n\"./p.prj\" is not a PRJ file\n"));
    }
}

TEST(GetMpjId, KeepsAnIgnoredFormatQuiet) {
    const TestDirectory directory;
    pushIgnore(FORM_ERR);
    EXPECT_EQ(headOf("@RSD940401\n").messages, "");
}

TEST(GetMpjId, EndsWithStatus34WithoutALine) {
    const TestDirectory directory({{"p.prj", ""}, {"q.prj", "#x\n\n"}});
    EXPECT_EXIT(get_mpj_id(fileOpen("p.prj", "r")), ExitedWithCode(34),
                Eq("\nUnexpected EOF: \"p.prj\" line=0\n"));
    EXPECT_EXIT(get_mpj_id(fileOpen("q.prj", "r")), ExitedWithCode(34),
                Eq("\nUnexpected EOF: \"q.prj\" line=2\n"));
}

TEST(NextEntry, IsANumberAndAName) {
    EXPECT_EQ(entriesOf("1 a.rsd\n2 b.rsd\n"), (Entries{{1, "a.rsd"}, {2, "b.rsd"}}));
    EXPECT_EQ(entriesOf("1 a.rsd"), (Entries{{1, "a.rsd"}}));
    EXPECT_EQ(entriesOf(" \t3\v\f models/Cube.rsd  rest\n"), (Entries{{3, "models/Cube.rsd"}}));
    EXPECT_EQ(entriesOf("4 a.rsd\r\n\r\n5 b.rsd\r\n"), (Entries{{4, "a.rsd"}, {5, "b.rsd"}}));
    EXPECT_EQ(entriesOf("-7 a\n+8 b\n007 c\n"), (Entries{{-7, "a"}, {8, "b"}, {7, "c"}}));
    // The name may stand at once behind the number.
    EXPECT_EQ(entriesOf("1a\n1.5 x\n0x10 n\n2,b c\n3-4\n"),
              (Entries{{1, "a"}, {1, ".5"}, {0, "x10"}, {2, ",b"}, {3, "-4"}}));
    // Lines that are no entries.
    EXPECT_EQ(entriesOf("\n1\nname\n1 \n \n# 1 a\n-\n- 1 a\n+ 2 b\nx 1 a\n9 z\n"), (Entries{{9, "z"}}));
    EXPECT_EQ(entriesOf(""), Entries{});
}

// Lines read in pieces are not counted: the line is that of the head, of which there is none here.
TEST(NextEntry, EndsWithStatus33WhenReadingFails) {
    const TestDirectory directory({{"p.prj", ""}});
    BrokenSource source{"1 a.rsd\n2 b.rsd\n"};
    FileRecord* file = fileOpen("p.prj", "r");
    std::fclose(file->stream);
    file->stream = openBroken(source);
    ProjectEntry entry{};
    EXPECT_TRUE(next_entry(file, entry));
    EXPECT_TRUE(next_entry(file, entry));
    EXPECT_EQ(entry.id, 2);
    EXPECT_EXIT(static_cast<void>(next_entry(file, entry)), ExitedWithCode(33),
                Eq("\nFail to read: \"p.prj\" line=0\n"));
    fileClose(file);
}

TEST(NextEntry, AgreesWithTheLibrary) {
    std::vector<std::string> texts = {
        "1 a\n2\tb\nx\n\n3 c d e\n+4 f\n-5 g\n6h\n7.8 i\n0x9 j\n  \n10 \n11",
        std::string("1 a\0b\n2 b\n\0 3 c\n4\0 d\n5 e\n", 25),
        "\x1A"
        "1 a\n2 \x1A\n",
        "2147483647 a\n2147483648 b\n4294967295 c\n4294967297 d\n-2147483648 e\n-2147483649 f\n"
        "9223372036854775807 g\n9223372036854775808 h\n99999999999999999999999 i\n"
        "-99999999999999999999999 j\n",
        "1 \xFF\xA0\n2 \xA0 x\n",
    };
    // Lines of more than a buffer go on as lines of their own, whatever they are cut to.
    for (std::size_t length = 240; length < 270; ++length) {
        const std::string letters(length, 'a');
        const std::string blanks(length, ' ');
        const std::string digits(length, '1');
        texts.push_back("1 " + letters + "2 b\n3 c\n");
        texts.push_back("1 a" + blanks + "2 b\n3 c\n");
        texts.push_back("1" + blanks + "2 b\n3 c\n");
        texts.push_back(blanks + "1 a 2 b 3 c");
        texts.push_back(digits + " a 2 b 3 c");
        texts.push_back("x" + blanks + blanks + "12 a\n");
    }
    for (const std::string& text : texts) {
        EXPECT_EQ(entriesOf(text), entriesByLibrary(text)) << testing::PrintToString(text);
    }
}

TEST(OpenProject, TriesTheExtensionsAndStepsOverTheHead) {
    const TestDirectory directory({
        {"a.prj", "@PRJ940401\n1 second\n2 a\n"},
        {"b.PRJ", "@PRJ940401\n#x\n\n1 second\r\n3 b\r\n"},
        {"c", "@PRJ940401\n1 second\n4 c"},
    });
    struct Row {
        const char* name;
        Entry entry;
    };
    const std::vector<Row> rows = {{"a.prj", {2, "a"}}, {"a", {2, "a"}}, {"b", {3, "b"}}, {"c", {4, "c"}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FileRecord* file = open_project(row.name);
        ProjectEntry entry{};
        EXPECT_TRUE(next_entry(file, entry));
        EXPECT_EQ((Entry{entry.id, entry.name}), row.entry);
        EXPECT_FALSE(next_entry(file, entry));
        fileClose(file);
    }
}

TEST(OpenProject, EndsTheRunAtABadFile) {
    const TestDirectory directory({{"a.prj", "no"}, {"b.prj", "@PRJ940401\n"}});
    EXPECT_EXIT(open_project("none.prj"), ExitedWithCode(30), Eq("\nCannot open: \"none.prj\"\n"));
    // An extension of the list takes the place of itself only.
    EXPECT_EXIT(open_project("a.PRJ"), ExitedWithCode(30), Eq("\nCannot open: \"a.PRJ\"\n"));
    EXPECT_EXIT(open_project("a"), ExitedWithCode(3), Eq("\n\"a.prj\" is not a PRJ file\n"));
    // The second line is needed.
    EXPECT_EXIT(open_project("b"), ExitedWithCode(34), Eq("\nUnexpected EOF: \"b.prj\" line=1\n"));
}

TEST(ReadPrj, FindsObjectsByTheirBaseNames) {
    const TestDirectory directory;
    const ListedObjects objects({"cube", "Ball.2", "x"});
    EXPECT_EQ(matched("3 MODELS/Cube.rsd\n4 BALL.2.rsd\n5 cubes\n6 cub\n7 a/x/\n8 ../../X\n"), 3U);
    EXPECT_EQ(objects.ids(), (Ids{3, 4, 8}));
}

TEST(ReadPrj, CutsAnExtensionFromEveryName) {
    const TestDirectory directory;
    const ListedObjects objects({"ball.2", "ball"});
    EXPECT_EQ(matched("4 ball.2\n5 ball.2.x\n"), 2U);
    EXPECT_EQ(objects.ids(), (Ids{5, 4}));
}

TEST(ReadPrj, GivesEachEntryToTheFirstObjectWithoutId) {
    const TestDirectory directory;
    const ListedObjects objects({"a", "b", "A", "a"});
    EXPECT_EQ(matched("1 a\n2 A.rsd\n3 b\n4 b\n5 b\n"), 3U);
    EXPECT_EQ(objects.ids(), (Ids{1, 3, 2, -1}));
    EXPECT_EQ(matched("6 a\n7 a\n"), 1U);
    EXPECT_EQ(objects.ids(), (Ids{1, 3, 2, 6}));
}

TEST(ReadPrj, StoresSixteenBits) {
    const TestDirectory directory;
    const ListedObjects objects({"a", "b", "c", "d", "e"});
    EXPECT_EQ(matched("32767 a\n65536 b\n65539 c\n32768 d\n-2 e\n"), 5U);
    EXPECT_EQ(objects.ids(), (Ids{32767, 0, 3, -32768, -2}));
    // A negative ID is none: the next entry takes its place, and counts.
    EXPECT_EQ(matched("1 a\n-3 d\n5 d\n6 d\n-1 e\n-1 e\n"), 4U);
    EXPECT_EQ(objects.ids(), (Ids{32767, 0, 3, 5, -1}));
}

TEST(ReadPrj, LeavesOutTheHead) {
    const TestDirectory directory({{"p.prj", "@PRJ940401\n1 a\n2 b\n"}});
    const ListedObjects objects({"a", "b"});
    EXPECT_EQ(read_prj("p.prj"), 1U);
    EXPECT_EQ(objects.ids(), (Ids{-1, 2}));
}

TEST(ReadPrj, ReadsAnOldProjectAfterTheWarning) {
    const TestDirectory directory({{"p.prj", "@PRJ940331\n\n#x\nsecond\n2 a\n"}});
    const ListedObjects objects({"a"});
    testing::internal::CaptureStderr();
    EXPECT_EQ(read_prj("p.prj"), 1U);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "WARNING: \"p.prj\" has a bad version: @PRJ940331\n");
    EXPECT_EQ(objects.ids(), Ids{2});
}

TEST(ReadPrj, OfNoObjectsMatchesNothing) {
    const TestDirectory directory;
    const ListedObjects objects({});
    EXPECT_EQ(matched("1 a\n2 b\n"), 0U);
}

TEST(ReadPrj, OpensTheNameAsItStands) {
    const TestDirectory directory({{"p.prj", head}});
    EXPECT_EXIT(read_prj("p"), ExitedWithCode(30), Eq("\nCannot open: \"p\"\n"));
    pushIgnore(OPEN_ERR);
    EXPECT_EQ(read_prj("p"), 0U);
}

TEST(ReadPrj, GivesBackWhatItTakes) {
    const TestDirectory directory;
    const ListedObjects objects({"a"});
    writeFile("p.prj", head + std::string("1 models/abc.rsd\n2 a\n"));
    read_prj("p.prj");
    // The file's record and names; "abc.rsd" and "a" with their ends.
    EXPECT_EQ(counters(), (Counters{20 + 6 + 255 + 8 + 2, 5, 5}));
}
