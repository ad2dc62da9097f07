// Adding or replacing the extension of a name.
#include "utilkit/mkfname.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Naming {
    const char* path;
    const char* extension;
    std::vector<const char*> list;
    const char* result;
    std::vector<const char*> listAfter;
};

const Naming namings[] = {
    // Without extension: the extension is added, the list does not matter.
    {"cube", "ply", {}, "cube.ply", {}},
    {"cube", ".ply", {}, "cube.ply", {}},
    {"cube", "..ply", {}, "cube..ply", {}}, // one dot is dropped
    {"cube", "", {}, "cube.", {}},
    {"cube", ".", {}, "cube.", {}},
    {"", "ply", {}, ".ply", {}},
    {"cube", "ply", {".ply", "PLY"}, "cube.ply", {".ply", "PLY"}},
    {"dir.old/cube", "ply", {"old"}, "dir.old/cube.ply", {"old"}},
    {"a/b/", "ply", {}, "a/b/.ply", {}},
    // The extension itself: unchanged.
    {"cube.ply", "ply", {"ply", "PLY"}, "cube.ply", {"ply", "PLY"}},
    {"cube.ply", ".ply", {}, "cube.ply", {}},
    {"cube.ply", "ply", {".ply"}, "cube.ply", {".ply"}}, // the list is not looked at
    {"cube.", "", {"ply"}, "cube.", {"ply"}},
    {"a.b.ply", "ply", {}, "a.b.ply", {}},
    // The tail of an entry: that entry.
    {"cube.ply", "PLY", {"ply", "PLY"}, "cube.ply", {"ply", "PLY"}},
    {"cube.PLY", "ply", {"ply", "PLY"}, "cube.PLY", {"ply", "PLY"}},
    {"cube.y", "ply", {"ply", "PLY"}, "cube.ply", {"ply", "PLY"}},
    {"cube.LY", "ply", {"ply", "PLY"}, "cube.PLY", {"ply", "PLY"}},
    {"cube.y", "ply", {"abcy", "ply"}, "cube.abcy", {"abcy", "ply"}}, // the first one
    {"cube.", "ply", {"abc", "ply"}, "cube.abc", {"abc", "ply"}},     // every text ends in no text
    {"a.b.y", "ply", {"ply"}, "a.b.ply", {"ply"}},
    {"dir.old/cube.y", "ply", {"ply"}, "dir.old/cube.ply", {"ply"}},
    // The dot of that entry goes for good, those of others stay.
    {"cube.ply", "PLY", {".ply", ".PLY"}, "cube.ply", {"ply", ".PLY"}},
    {"cube.PLY", "ply", {".ply", ".PLY"}, "cube.PLY", {".ply", "PLY"}},
    {"cube.y", "x", {"..ply"}, "cube..ply", {".ply"}},
    {"cube.", "x", {"."}, "cube.", {""}},
    // Anything else: unchanged.
    {"cube.txt", "ply", {"ply", "PLY"}, "cube.txt", {"ply", "PLY"}},
    {"cube.txt", ".ply", {".ply"}, "cube.txt", {".ply"}},
    {"cube.Ply", "ply", {"ply", "PLY"}, "cube.Ply", {"ply", "PLY"}}, // case counts
    {"cube.xply", "ply", {"ply"}, "cube.xply", {"ply"}},             // the entry is too short
    {"cube.p", "ply", {"ply"}, "cube.p", {"ply"}},                   // a head is no tail
    {"cube.y", "ply", {}, "cube.y", {}},
    {"cube.", "ply", {}, "cube.", {}},
};

void expectList(const std::vector<const char*>& list, const std::vector<const char*>& expected) {
    ASSERT_EQ(list.size(), expected.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_STREQ(list[i], expected[i]);
    }
}

std::string described(const Naming& naming) {
    return std::string(naming.path) + " with " + naming.extension + " gives " + naming.result;
}

} // namespace

TEST(MkFileName0, AddsOrReplacesTheExtension) {
    for (const Naming& naming : namings) {
        SCOPED_TRACE(described(naming));
        std::vector<const char*> list = naming.list;
        std::string buffer = "stale";
        const char* result = mkFileName0(naming.path, naming.extension, list, buffer);
        EXPECT_STREQ(result, naming.result);
        EXPECT_EQ(result, buffer.c_str());
        expectList(list, naming.listAfter);
    }
}

TEST(MkFileName, GivesTheSameAsANewText) {
    const FreshGlobals globals;
    for (const Naming& naming : namings) {
        SCOPED_TRACE(described(naming));
        std::vector<const char*> list = naming.list;
        const Text result = mkFileName(naming.path, naming.extension, list);
        EXPECT_STREQ(result.get(), naming.result);
        EXPECT_NE(result.get(), naming.path);
        expectList(list, naming.listAfter);
    }
}

TEST(MkFileName0, EntryWithoutItsDotServesTheNextCall) {
    std::array<const char*, 1> list = {".ply"};
    std::string buffer;
    EXPECT_STREQ(mkFileName0("cube.ly", "PLY", list, buffer), "cube.ply");
    EXPECT_STREQ(mkFileName0("ball.ply", "PLY", list, buffer), "ball.ply");
    EXPECT_STREQ(list[0], "ply");
}

TEST(MkFileName0, HandlesLongPathsWhole) {
    const std::string path(5000, 'p');
    std::string buffer;
    EXPECT_EQ(mkFileName0(path.c_str(), "ply", {}, buffer), path + ".ply");
}

TEST(MkFileName, CountsOneText) {
    std::array<const char*, 1> list = {"ply"};
    const FreshGlobals globals;
    mkFileName("cube", ".ply", {}); // added: 4 + 3 + 2
    EXPECT_EQ(counters(), (Counters{9, 1, 1}));
    mkFileName("cube.y", "PLY", list); // replaced: 5 + 3 + 1
    EXPECT_EQ(counters(), (Counters{18, 2, 2}));
    mkFileName("cube.txt", "PLY", list); // copied: 8 + 1
    EXPECT_EQ(counters(), (Counters{27, 3, 3}));
}

TEST(MkFileName, FailuresEndWithTheNameOfTheirSite) {
    static std::array<const char*, 1> list = {"ply"};
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            failAllocation(1);
            mkFileName("cube", "ply", list);
        },
        ExitedWithCode(12), Eq("\nAlloc Error: \"cube\" 9 x 1(+1-0:sum=9)\n"));
    EXPECT_EXIT(
        {
            failAllocation(1);
            mkFileName("cube.y", "PLY", list);
        },
        ExitedWithCode(12), Eq("\nAlloc Error: \"mkFileName\" 9 x 1(+1-0:sum=9)\n"));
    EXPECT_EXIT(
        {
            failAllocation(1);
            mkFileName("cube.txt", "PLY", list);
        },
        ExitedWithCode(13), Eq("\nAlloc Error: \"cube.txt\" 9 x 1(+1-0:sum=9)\n"));
}
