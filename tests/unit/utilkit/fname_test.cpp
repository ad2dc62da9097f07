// Taking path names apart.
#include "utilkit/fname.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Parts {
    const char* path;
    const char* tail;
    const char* extension; // null: none
    const char* name;      // the tail without it
    const char* directory; // null: none
};

const Parts paths[] = {
    {"x/y/model.ply", "model.ply", "ply", "model", "x/y"},
    {"model", "model", nullptr, "model", nullptr},
    {"model.ply", "model.ply", "ply", "model", nullptr},
    {"a.b.c", "a.b.c", "c", "a.b", nullptr},
    {"dir.old/model", "model", nullptr, "model", "dir.old"}, // the dot is the directory's
    {"dir.old/model.ply", "model.ply", "ply", "model", "dir.old"},
    {"/model.ply", "model.ply", "ply", "model", ""},
    {"/", "", nullptr, "", ""},
    {"//", "", nullptr, "", "/"},
    {"a//b", "b", nullptr, "b", "a/"},
    {"dir/", "", nullptr, "", "dir"},
    {"dir.old/", "", nullptr, "", "dir.old"},
    {"", "", nullptr, "", nullptr},
    {"model.", "model.", "", "model", nullptr},
    {".ply", ".ply", "ply", "", nullptr},
    {".", ".", "", "", nullptr},
    {"..", "..", "", ".", nullptr},
    {"../model", "model", nullptr, "model", ".."},
    {"./a.b/c.d/e", "e", nullptr, "e", "./a.b/c.d"},
    {"a\\b.c", "a\\b.c", "c", "a\\b", nullptr}, // "/" alone separates
};

} // namespace

TEST(GetFileName0, PointsAtTheTail) {
    for (const Parts& parts : paths) {
        SCOPED_TRACE(parts.path);
        EXPECT_STREQ(getFileName0(parts.path), parts.tail);
        EXPECT_EQ(getFileName0(parts.path), parts.path + std::strlen(parts.path) - std::strlen(parts.tail));
    }
}

TEST(GetFileName, CopiesTheTail) {
    const FreshGlobals globals;
    for (const Parts& parts : paths) {
        SCOPED_TRACE(parts.path);
        const Text name = getFileName(parts.path);
        EXPECT_STREQ(name.get(), parts.tail);
        EXPECT_NE(name.get(), getFileName0(parts.path));
    }
}

TEST(GetExt0, PointsBehindTheLastDotOfTheTail) {
    for (const Parts& parts : paths) {
        SCOPED_TRACE(parts.path);
        const char* extension = getExt0(parts.path);
        EXPECT_STREQ(extension, parts.extension);
        if (parts.extension != nullptr) {
            EXPECT_EQ(extension, parts.path + std::strlen(parts.path) - std::strlen(parts.extension));
        }
    }
}

TEST(GetName, CutsTheTailAtItsLastDot) {
    const FreshGlobals globals;
    for (const Parts& parts : paths) {
        SCOPED_TRACE(parts.path);
        EXPECT_STREQ(getName(parts.path).get(), parts.name);
    }
}

TEST(GetDir, IsWhatStandsBeforeTheLastSlash) {
    const FreshGlobals globals;
    for (const Parts& parts : paths) {
        SCOPED_TRACE(parts.path);
        EXPECT_STREQ(getDir(parts.path).get(), parts.directory);
    }
}

TEST(GetFileName, CountsTheCopy) {
    const FreshGlobals globals;
    getFileName("x/y/model.ply");
    EXPECT_EQ(counters(), (Counters{10, 1, 1}));
    EXPECT_EXIT(
        {
            failAllocation(1);
            getFileName("x/y/model.ply");
        },
        ExitedWithCode(13), Eq("\nAlloc Error: \"model.ply\" 10 x 1(+2-1:sum=20)\n"));
}

TEST(GetName, CountsOneCopy) {
    const FreshGlobals globals;
    getName("x/y/model");
    EXPECT_EQ(counters(), (Counters{6, 1, 1}));
    EXPECT_EXIT(
        {
            failAllocation(1);
            getName("x/y/model");
        },
        ExitedWithCode(13), Eq("\nAlloc Error: \"model\" 6 x 1(+2-1:sum=12)\n"));
}

TEST(GetDir, CountsTheTextAndNamesThePath) {
    const FreshGlobals globals;
    getDir("x/y/model.ply");
    EXPECT_EQ(counters(), (Counters{4, 1, 1}));
    getDir("/model.ply");
    EXPECT_EQ(counters(), (Counters{5, 2, 2}));
    getDir("model.ply");
    EXPECT_EQ(counters(), (Counters{5, 2, 2})); // no directory, no text
    EXPECT_EXIT(
        {
            failAllocation(1);
            getDir("x/y/model.ply");
        },
        ExitedWithCode(12), Eq("\nAlloc Error: \"x/y/model.ply\" 4 x 1(+3-2:sum=9)\n"));
}
