// Tracked files: opening, trying extensions, seeking and closing.
#include "utilkit/fopen.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/status.hpp"

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

std::string contentOf(std::FILE* stream) {
    std::string content;
    for (int character = std::getc(stream); character != EOF; character = std::getc(stream)) {
        content += static_cast<char>(character);
    }
    return content;
}

// Which of the files in the directory opens for a name with the extensions "ply" and "PLY".
struct Match {
    std::vector<InputFile> files;
    const char* name;
    const char* opened;      // by fileMatchOpen; null: none
    const char* openedFirst; // by fileMatchOpen0, which tries the first extension only
    int failures;            // of fileMatchOpen's trials
};

const Match matches[] = {
    {{{"cube", ""}, {"cube.ply", ""}, {"cube.PLY", ""}}, "cube", "cube", "cube", 0},
    {{{"cube.ply", ""}, {"cube.PLY", ""}}, "cube", "cube.ply", "cube.ply", 1},
    {{{"cube.PLY", ""}}, "cube", "cube.PLY", nullptr, 2},
    {{}, "cube", nullptr, nullptr, 3},
    {{{"cube.Ply", ""}}, "cube", nullptr, nullptr, 3},
    {{{"cube.ply", ""}}, "cube.ply", "cube.ply", "cube.ply", 0},
    // A name that ends like an entry of the list never gets the other entry.
    {{{"cube.PLY", ""}}, "cube.ply", nullptr, nullptr, 3},
    {{{"cube.ply", ""}}, "cube.PLY", nullptr, nullptr, 3},
    {{{"cube.ply", ""}}, "cube.txt", nullptr, nullptr, 3},
    {{{"cube.txt.ply", ""}}, "cube.txt", nullptr, nullptr, 3},
    // An extension that ends an entry is replaced by it.
    {{{"cube.ply", ""}}, "cube.y", "cube.ply", "cube.ply", 1},
    {{{"cube.PLY", ""}}, "cube.LY", "cube.PLY", "cube.PLY", 1},
    {{{"cube.ply", ""}}, "cube.", "cube.ply", "cube.ply", 1},
    {{{"dir.old/cube.ply", ""}}, "dir.old/cube", "dir.old/cube.ply", "dir.old/cube.ply", 1},
    {{{"cube/", ""}, {"cube.ply", ""}}, "cube", "cube", "cube", 0}, // a directory opens like a file
};

} // namespace

TEST(FileOpen, FillsTheRecord) {
    const TestDirectory here({{"sub/a.txt", "text"}});
    FileRecord* file = fileOpen("sub/../sub/./a.txt", "r");
    ASSERT_NE(file, nullptr);
    EXPECT_STREQ(file->name, "sub/../sub/./a.txt");
    EXPECT_STREQ(file->fullPath, (here.path() + "/sub/a.txt").c_str());
    EXPECT_EQ(file->line, 0);
    EXPECT_EQ(file->position, 0);
    EXPECT_EQ(contentOf(file->stream), "text");
    fileClose(file);
}

TEST(FileOpen, CopiesItsName) {
    const TestDirectory here({{"a.txt", ""}});
    std::string name = "a.txt";
    FileRecord* file = fileOpen(name.c_str(), "r");
    name[0] = 'b';
    EXPECT_STREQ(file->name, "a.txt");
    fileClose(file);
}

TEST(FileOpen, MakesAndEmptiesFilesForWriting) {
    const TestDirectory here({{"old", "bytes"}});
    for (const char* name : {"old", "new"}) {
        FileRecord* file = fileOpen(name, "wb");
        ASSERT_NE(file, nullptr);
        fileClose(file);
        EXPECT_EQ(bytesOf(name), "");
    }
}

TEST(FileOpen, CountsRecordNameAndFullPath) {
    const TestDirectory here({{"a.txt", ""}});
    FileRecord* file = fileOpen("a.txt", "r");
    EXPECT_EQ(counters(), (Counters{281, 3, 0})); // 20 + 6 + 255
    fileClose(file);
    EXPECT_EQ(counters(), (Counters{281, 3, 3})); // the total is not lowered
}

TEST(FileOpen, IgnoredMissingMemoryGivesNull) {
    const TestDirectory here({{"a.txt", ""}});
    pushIgnore(ALC_ERR);
    failAllocation(1);
    EXPECT_EQ(fileOpen("a.txt", "r"), nullptr);
    EXPECT_TRUE(hasFailedAllocation());
    EXPECT_EQ(counters(), (Counters{20, 1, 0}));
}

TEST(FileOpen, FailureEndsWithStatus30AndTheNameAsGiven) {
    const TestDirectory here({{"file", ""}});
    for (const char* name : {"missing.ply", "no/such/dir", "file/below", "", "/nowhere/%s"}) {
        SCOPED_TRACE(name);
        EXPECT_EXIT(fileOpen(name, "r"), ExitedWithCode(30),
                    Eq("\nCannot open: \"" + std::string(name) + "\"\n"));
    }
    EXPECT_EXIT(fileOpen("missing/out", "wb"), ExitedWithCode(30), Eq("\nCannot open: \"missing/out\"\n"));
    EXPECT_EXIT(fileOpen(".", "wb"), ExitedWithCode(30), Eq("\nCannot open: \".\"\n"));
}

TEST(FileOpen, IgnoredFailureGivesNullAndKeepsTheRecordInTheTotal) {
    const TestDirectory here;
    pushIgnore(OPEN_ERR);
    EXPECT_EQ(fileOpen("missing", "r"), nullptr);
    EXPECT_EQ(counters(), (Counters{20, 1, 1}));
    EXPECT_EQ(fileOpen("missing", "r"), nullptr);
    EXPECT_EQ(counters(), (Counters{40, 2, 2}));
}

TEST(FileOpen, FailedAllocationsEndWithTheStatusOfTheirSite) {
    struct Failure {
        int number;
        int status;
        const char* text;
    };
    const Failure failures[] = {
        {1, 11, "\nAlloc Error: \"fileOpen\" 1 x 20(+1-0:sum=20)\n"},
        {2, 13, "\nAlloc Error: \"a.txt\" 6 x 1(+2-0:sum=26)\n"},
        {3, 12, "\nAlloc Error: \"a.txt\" 255 x 1(+3-0:sum=281)\n"},
    };
    const TestDirectory here({{"a.txt", ""}});
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.text);
        EXPECT_EXIT(
            {
                failAllocation(failure.number);
                fileOpen("a.txt", "r");
            },
            ExitedWithCode(failure.status), Eq(failure.text));
    }
}

TEST(FileOpen, FailedAllocationOfTheRecordComesBeforeTheOpening) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            failAllocation(1);
            fileOpen("missing", "r");
        },
        ExitedWithCode(11), Eq("\nAlloc Error: \"fileOpen\" 1 x 20(+1-0:sum=20)\n"));
}

TEST(FileOpen, HandlesLongPathsWhole) {
    const std::string directory(200, 'd');
    const std::string name = directory + "/" + directory + "/" + std::string(200, 'f');
    const TestDirectory here({{name, "text"}});
    FileRecord* file = fileOpen(name.c_str(), "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->name, name);
    EXPECT_EQ(file->fullPath, here.path() + "/" + name);
    fileClose(file);
}

TEST(FileOpen, WorkingDirectoryWithoutNameEndsWithStatus51OnceTheFileIsOpen) {
    const TestDirectory here;
    enterDirectoryOfLength(255);
    writeFile("a.txt", "");
    EXPECT_EXIT(fileOpen("a.txt", "r"), ExitedWithCode(51), Eq("\nCannot getcwd: \"a.txt\"\n"));
    EXPECT_EXIT(fileOpen("missing", "r"), ExitedWithCode(30), Eq("\nCannot open: \"missing\"\n"));
    // A record without names needs no directory.
    FileRecord file{};
    EXPECT_EQ(fileOpen0("a.txt", "r", &file), &file);
    fileClose0(&file);
}

TEST(FileOpen0, FillsTheCallersRecordAndCountsNothing) {
    const TestDirectory here({{"a.txt", "text"}});
    FileRecord file{};
    file.line = 5;
    file.position = 6;
    char stale[] = "stale";
    file.name = stale;
    file.fullPath = stale;
    EXPECT_EQ(fileOpen0("a.txt", "r", &file), &file);
    EXPECT_EQ(file.name, nullptr);
    EXPECT_EQ(file.fullPath, nullptr);
    EXPECT_EQ(file.line, 0);
    EXPECT_EQ(file.position, 0);
    EXPECT_EQ(contentOf(file.stream), "text");
    fileClose0(&file);
    EXPECT_EQ(file.stream, nullptr);
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}

TEST(FileOpen0, FailureEndsWithStatus30) {
    const TestDirectory here;
    FileRecord file{};
    EXPECT_EXIT(fileOpen0("missing.ply", "r", &file), ExitedWithCode(30),
                Eq("\nCannot open: \"missing.ply\"\n"));
    pushIgnore(OPEN_ERR);
    EXPECT_EQ(fileOpen0("missing.ply", "r", &file), nullptr);
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}

TEST(FileClose, AcceptsNull) {
    const FreshGlobals globals;
    fileClose(nullptr);
    fileClose0(nullptr);
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}

TEST(FileClose, FailureEndsWithStatus31AndTheName) {
    const TestDirectory here;
    const std::uint32_t word = 1;
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen(fullDevice, "wb");
            put4ByteArray(&word, 1, file);
            fileClose(file);
        },
        ExitedWithCode(31), Eq("\nFail to Close File : /dev/full\n"));
}

TEST(FileClose0, FailureAlwaysNamesTheFileUnknown) {
    const TestDirectory here;
    const std::uint32_t word = 1;
    EXPECT_EXIT(
        {
            FileRecord file{};
            fileOpen0(fullDevice, "wb", &file);
            put4ByteArray(&word, 1, &file);
            fileClose0(&file);
        },
        ExitedWithCode(31), Eq("\nFail to Close File : unknown\n"));
}

TEST(FileClose0, ClosedRecordIsLeftAlone) {
    const TestDirectory here({{"a.txt", ""}});
    FileRecord file{};
    fileOpen0("a.txt", "r", &file);
    fileClose0(&file);
    fileClose0(&file);
    EXPECT_EQ(file.stream, nullptr);
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}

TEST(FileMatchOpen, TriesTheNameAndEveryExtension) {
    for (const Match& match : matches) {
        const TestDirectory here;
        makeFiles(match.files);
        SCOPED_TRACE(match.name);
        SCOPED_TRACE(match.opened == nullptr ? "none opens" : match.opened);
        std::array<const char*, 2> extensions = {"ply", "PLY"};
        FileRecord* file = fileMatchOpen(match.name, extensions, "r");
        EXPECT_STREQ(file == nullptr ? nullptr : file->name, match.opened);
        EXPECT_EQ(freeCount, match.failures);
        EXPECT_EQ(allocCount, match.failures + (match.opened == nullptr ? 0 : 3));
        EXPECT_EQ(_igno_, 0);
        fileClose(file);
    }
}

TEST(FileMatchOpen0, TriesTheNameAndTheFirstExtension) {
    for (const Match& match : matches) {
        const TestDirectory here;
        makeFiles(match.files);
        SCOPED_TRACE(match.name);
        SCOPED_TRACE(match.openedFirst == nullptr ? "none opens" : match.openedFirst);
        std::array<const char*, 2> extensions = {"ply", "PLY"};
        FileRecord file{};
        FileRecord* opened = fileMatchOpen0(match.name, extensions, "r", &file);
        EXPECT_EQ(opened, match.openedFirst == nullptr ? nullptr : &file);
        EXPECT_EQ(counters(), (Counters{0, 0, 0}));
        EXPECT_EQ(_igno_, 0);
        fileClose0(opened);
    }
}

TEST(FileMatchOpen, PrintsNothingWhenAllFail) {
    const TestDirectory here;
    std::array<const char*, 2> extensions = {"ply", "PLY"};
    EXPECT_EXIT(
        {
            FileRecord record{};
            const bool opened = fileMatchOpen("cube", extensions, "r") != nullptr ||
                                fileMatchOpen0("cube", extensions, "r", &record) != nullptr;
            std::exit(opened ? 8 : 7);
        },
        ExitedWithCode(7), Eq(""));
}

TEST(FileMatchOpen, OpensWhatItFoundFromTheStart) {
    const TestDirectory here({{"cube.PLY", "second"}});
    std::array<const char*, 2> extensions = {"ply", "PLY"};
    FileRecord* file = fileMatchOpen("cube", extensions, "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(contentOf(file->stream), "second");
    EXPECT_STREQ(file->fullPath, (here.path() + "/cube.PLY").c_str());
    fileClose(file);
}

TEST(FileMatchOpen, EmptyListTriesTheNameOnly) {
    const TestDirectory here({{"cube.ply", ""}});
    EXPECT_EQ(fileMatchOpen("cube", {}, "r"), nullptr);
    EXPECT_EQ(counters(), (Counters{20, 1, 1}));
    FileRecord* file = fileMatchOpen("cube.ply", {}, "r");
    EXPECT_NE(file, nullptr);
    fileClose(file);
}

TEST(FileMatchOpen, ExtensionsMayCarryTheirDots) {
    const TestDirectory here({{"cube.PLY", ""}, {"cube.ply", ""}});
    std::array<const char*, 2> extensions = {".ply", ".PLY"};
    FileRecord* file = fileMatchOpen("cube.y", extensions, "r");
    ASSERT_NE(file, nullptr);
    EXPECT_STREQ(file->name, "cube.ply");
    // The entry that was used has lost its dot for good.
    EXPECT_STREQ(extensions[0], "ply");
    EXPECT_STREQ(extensions[1], ".PLY");
    fileClose(file);
}

TEST(FileMatchOpen, OtherFailuresAreStillRaised) {
    const TestDirectory here({{"a.txt", ""}});
    EXPECT_EXIT(
        {
            failAllocation(1);
            fileMatchOpen("a.txt", {}, "r");
        },
        ExitedWithCode(11), Eq("\nAlloc Error: \"fileOpen\" 1 x 20(+1-0:sum=20)\n"));
}

TEST(FileMatchOpen, KeepsTheIgnoreListOfItsCaller) {
    const TestDirectory here;
    pushIgnore(EOT_ERR);
    EXPECT_EQ(fileMatchOpen("cube", {}, "r"), nullptr);
    EXPECT_EQ(_igno_, 1);
    EXPECT_EQ(_ignoreErr_[0], EOT_ERR);
}

TEST(FileMatchOpenOrFail, EndsWithTheNameAsGiven) {
    const TestDirectory here({{"cube.PLY", ""}});
    std::array<const char*, 2> extensions = {"ply", "PLY"};
    FileRecord* file = fileMatchOpenOrFail("cube", extensions, plyNotFound);
    EXPECT_STREQ(file->name, "cube.PLY");
    fileClose(file);
    EXPECT_EXIT(fileMatchOpenOrFail("ball", extensions, plyNotFound), ExitedWithCode(100),
                Eq("\nCannot open: \"ball\"\n"));
}

TEST(FileSeek, SetsStreamAndPosition) {
    const TestDirectory here({{"in", "abcdef"}});
    FileRecord* file = fileOpen("in", "rb");
    EXPECT_EQ(fileSeek(file, 4), 1);
    EXPECT_EQ(file->position, 4);
    EXPECT_EQ(std::getc(file->stream), 'e');
    EXPECT_EQ(fileSeek(file, 0), 1);
    EXPECT_EQ(file->position, 0);
    EXPECT_EQ(std::getc(file->stream), 'a');
    EXPECT_EQ(fileSeek(file, 1000), 1); // behind the end is a place too
    EXPECT_EQ(file->position, 1000);
    fileClose(file);
}

TEST(FileSeek, FailureEndsWithStatus32AndNoLineEnd) {
    const TestDirectory here({{"in", "abcdef"}});
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen("in", "rb");
            fileSeek(file, 3);
            fileSeek(file, -1);
        },
        ExitedWithCode(32), Eq("\nSeek error \"in\" at -1 bytes"));
}

TEST(FileSeek, IgnoredFailureReturnsZeroAndKeepsThePosition) {
    const TestDirectory here({{"in", "abcdef"}});
    FileRecord* file = fileOpen("in", "rb");
    fileSeek(file, 3);
    pushIgnore(SEEK_ERR);
    EXPECT_EQ(fileSeek(file, -1), 0);
    EXPECT_EQ(file->position, 3);
    fileClose(file);
}
