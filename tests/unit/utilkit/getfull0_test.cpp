// Absolute path names.
#include "utilkit/getfull0.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"
#include "utilkit/chdir.hpp"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Resolved {
    const char* path;
    const char* full; // for the relative ones: behind the working directory
};

const Resolved absolutePaths[] = {
    {"/a/./b//c/../d", "/a/b/d"},
    {"/a", "/a"},
    {"/a/", "/a"},
    {"//a", "/a"},
    {"/a//b///c", "/a/b/c"},
    {"/a/./././b", "/a/b"},
    {"/./a", "/a"},
    {"/a/.", "/a"},
    {"/a/b/..", "/a"},
    {"/a/b/../..//c", "/c"},
    {"/a/../b/../c", "/c"},
    {"/.../a", "/.../a"}, // names that only begin with dots
    {"/..a/.b/c..", "/..a/.b/c.."},
    {"/a b/\"c\"", "/a b/\"c\""},
    // Nothing is left: as it stands.
    {"/", "/"},
    {"//", "//"},
    {"/.", "/."},
    {"/a/..", "/a/.."},
    {"/a/.././", "/a/.././"},
    {"/a//../b/..", "/a//../b/.."},
};

const Resolved relativePaths[] = {
    {"x", "/x"}, {"./x", "/x"}, {"x/y.ply", "/x/y.ply"}, {"x//y/", "/x/y"}, {"x/../y", "/y"}, {"", ""},
    {".", ""},   {"x/..", ""},  {"sub/../../", nullptr}, // the directory above
};

std::string fullPathOf(const std::string& path) {
    std::string buffer = "stale";
    const char* result = getFullPath0(path.c_str(), buffer);
    EXPECT_EQ(result, buffer.c_str());
    return buffer;
}

} // namespace

TEST(GetFullPath0, NormalisesAbsolutePaths) {
    const FreshGlobals globals;
    for (const Resolved& one : absolutePaths) {
        EXPECT_EQ(fullPathOf(one.path), one.full) << one.path;
    }
}

TEST(GetFullPath0, PutsTheWorkingDirectoryBeforeRelativePaths) {
    const TestDirectory here;
    for (const Resolved& one : relativePaths) {
        const std::string above = here.path().substr(0, here.path().rfind('/'));
        EXPECT_EQ(fullPathOf(one.path), one.full == nullptr ? above : here.path() + one.full) << one.path;
    }
}

TEST(GetFullPath0, InTheRootDirectory) {
    const TestDirectory here;
    enter("/");
    EXPECT_EQ(fullPathOf("x"), "/x");
    EXPECT_EQ(fullPathOf("x/../y"), "/y");
    EXPECT_EQ(fullPathOf(""), "//"); // "/" + "/" + nothing, as it stands
    EXPECT_EQ(fullPathOf("."), "//.");
    EXPECT_EQ(fullPathOf("x/.."), "//x/..");
}

TEST(GetFullPath0, LeavingTheRootEndsWithStatus52) {
    const FreshGlobals globals;
    for (const char* path : {"/..", "/../a", "/a/../..", "/a/b/../../../c", "//./.."}) {
        SCOPED_TRACE(path);
        EXPECT_EXIT(fullPathOf(path), ExitedWithCode(52),
                    Eq("\nBad path name: \"" + std::string(path) + "\"\n"));
    }
}

TEST(GetFullPath0, LeavingTheRootFromTheWorkingDirectoryNamesThePathAsGiven) {
    const TestDirectory here;
    std::string path = "..";
    for (int i = 0; i < 60; ++i) {
        path += "/..";
    }
    EXPECT_EXIT(fullPathOf(path), ExitedWithCode(52), Eq("\nBad path name: \"" + path + "\"\n"));
}

TEST(GetFullPath0, HasNoLimitOnTheNumberOfComponents) {
    const FreshGlobals globals;
    for (const int count : {31, 32, 33, 100, 40'000}) { // the last one is beyond 16 bits
        SCOPED_TRACE(count);
        std::string path;
        std::string up;
        for (int i = 0; i < count; ++i) {
            path += "/c";
            up += "/..";
        }
        EXPECT_TRUE(fullPathOf(path) == path);
        EXPECT_EQ(fullPathOf("/a" + path + up), "/a");
    }
}

TEST(GetFullPath0, HasNoLimitOnTheLengthOfComponents) {
    const FreshGlobals globals;
    for (const std::size_t length : {31U, 32U, 99U, 100U, 254U, 255U, 256U, 5000U}) {
        SCOPED_TRACE(length);
        std::string component(length + 1, 'c');
        component[0] = '/';
        EXPECT_EQ(fullPathOf(component), component);
        EXPECT_EQ(fullPathOf("/a" + component + "/./b" + component), "/a" + component + "/b" + component);
    }
}

TEST(GetFullPath0, TakesAWorkingDirectoryOf254Characters) {
    const TestDirectory here;
    enterDirectoryOfLength(254);
    EXPECT_EQ(fullPathOf("x"), workingDirectory() + "/x");
    const std::string longName(300, 'x');
    EXPECT_EQ(fullPathOf(longName), workingDirectory() + "/" + longName);
}

TEST(GetFullPath0, LongerWorkingDirectoryEndsWithStatus51) {
    const TestDirectory here;
    enterDirectoryOfLength(255);
    EXPECT_EXIT(fullPathOf("x/y"), ExitedWithCode(51), Eq("\nCannot getcwd: \"x/y\"\n"));
    EXPECT_EQ(fullPathOf("/a/../b"), "/b"); // not needed here
}

TEST(GetFullPath0, MissingWorkingDirectoryEndsWithStatus51) {
    const TestDirectory here({{"gone/", ""}});
    EXPECT_EXIT(
        {
            enter("gone");
            std::filesystem::remove(here.path() + "/gone");
            fullPathOf("x");
        },
        ExitedWithCode(51), Eq("\nCannot getcwd: \"x\"\n"));
}

TEST(GetFullPath, GivesTheSameAsANewText) {
    const TestDirectory here;
    EXPECT_EQ(getFullPath("x/../y").get(), here.path() + "/y");
    EXPECT_STREQ(getFullPath("/a/.").get(), "/a");
    std::string longPath(1001, 'a');
    longPath[0] = '/';
    EXPECT_EQ(getFullPath(longPath.c_str()).get(), longPath);
}

TEST(GetFullPath, CountsATextOf255Bytes) {
    const TestDirectory here;
    getFullPath("x");
    EXPECT_EQ(counters(), (Counters{255, 1, 1}));
    getFullPath(("/" + std::string(253, 'a')).c_str()); // 254 characters and the terminator
    EXPECT_EQ(counters(), (Counters{510, 2, 2}));
    EXPECT_EXIT(
        {
            failAllocation(1);
            getFullPath("x/../y");
        },
        ExitedWithCode(12), Eq("\nAlloc Error: \"x/../y\" 255 x 1(+3-2:sum=765)\n"));
}
