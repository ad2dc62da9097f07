// What one operating system does otherwise than another: the rules for names, those of either system.
#include "utilkit/platform.hpp"

#include "unit/support.hpp"

#include <array>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Name {
    const char* path;
    std::size_t drive; // lengths
    std::size_t volume;
    bool isAbsolute;
    const char* tail;
};

const Name windowsNames[] = {
    {"model.ply", 0, 0, false, "model.ply"},
    {"x\\y/model.ply", 0, 0, false, "model.ply"},
    {"x/y\\model.ply", 0, 0, false, "model.ply"},
    {"x\\", 0, 0, false, ""},
    {"", 0, 0, false, ""},
    {"C:\\model.ply", 2, 2, true, "model.ply"},
    {"z:/x/model.ply", 2, 2, true, "model.ply"},
    {"a:/", 2, 2, true, ""},
    {"Z:\\", 2, 2, true, ""},
    {"C:model.ply", 2, 2, false, "model.ply"}, // in the working directory of that drive
    {"C:x\\model.ply", 2, 2, false, "model.ply"},
    {"C:", 2, 2, false, ""},
    {"\\model.ply", 0, 0, false, "model.ply"}, // on the drive of the working directory
    {"/x/model.ply", 0, 0, false, "model.ply"},
    {"\\", 0, 0, false, ""},
    {"CC:x", 0, 0, false, "CC:x"}, // no drives: one letter is
    {"1:x", 0, 0, false, "1:x"},
    {"@:x", 0, 0, false, "@:x"},
    {"[:x", 0, 0, false, "[:x"},
    {"`:x", 0, 0, false, "`:x"},
    {"{:x", 0, 0, false, "{:x"},
    {":", 0, 0, false, ":"},
    {"C", 0, 0, false, "C"},
    {"\\\\server\\share\\x\\model.ply", 0, 14, true, "model.ply"},
    {"//server/share/model.ply", 0, 14, true, "model.ply"},
    {"/\\server\\/share\\", 0, 15, true, ""},
    {"//server/share", 0, 14, true, ""},
    {"//server/", 0, 0, false, ""}, // no share
    {"//server", 0, 0, false, "server"},
    {"//", 0, 0, false, ""},
    {"///server/share", 0, 0, false, "share"},
};

const Name posixNames[] = {
    {"x\\y.ply", 0, 0, false, "x\\y.ply"},      {"x/y\\z.ply", 0, 0, false, "y\\z.ply"},
    {"C:/model.ply", 0, 0, false, "model.ply"}, {"C:model.ply", 0, 0, false, "C:model.ply"},
    {"/model.ply", 0, 0, true, "model.ply"},    {"\\model.ply", 0, 0, false, "\\model.ply"},
    {"//server/share", 0, 0, true, "share"},    {"", 0, 0, false, ""},
};

void expectTaken(const Name& name, PathRules rules) {
    SCOPED_TRACE(name.path);
    EXPECT_EQ(driveLength(name.path, rules), name.drive);
    EXPECT_EQ(volumeLength(name.path, rules), name.volume);
    EXPECT_EQ(isAbsolute(name.path, rules), name.isAbsolute);
    EXPECT_STREQ(findTail(name.path, rules), name.tail);
}

std::string completed(std::string directory, const char* path, PathRules rules) {
    completePath(directory, path, rules);
    return directory;
}

} // namespace

TEST(PathRules, TakeNamesApartOnWindows) {
    for (const Name& name : windowsNames) {
        expectTaken(name, PathRules::windows);
    }
}

TEST(PathRules, TakeNamesApartElsewhere) {
    EXPECT_EQ(hostPaths, PathRules::posix);
    for (const Name& name : posixNames) {
        expectTaken(name, PathRules::posix);
    }
}

TEST(IsSeparator, BackslashOnWindowsOnly) {
    EXPECT_TRUE(isSeparator('/', PathRules::windows));
    EXPECT_TRUE(isSeparator('\\', PathRules::windows));
    EXPECT_TRUE(isSeparator('/', PathRules::posix));
    EXPECT_FALSE(isSeparator('\\', PathRules::posix));
    EXPECT_FALSE(isSeparator(':', PathRules::windows));
}

TEST(CompletePath, PutsTheDirectoryInFront) {
    EXPECT_EQ(completed("/w", "x/y", PathRules::posix), "/w/x/y");
    EXPECT_EQ(completed("/w", "C:y", PathRules::posix), "/w/C:y");
    EXPECT_EQ(completed("C:/w", "x\\y", PathRules::windows), "C:/w/x\\y");
    EXPECT_EQ(completed("C:/w", "c:y", PathRules::windows), "C:/w/y");
    EXPECT_EQ(completed("C:/w", "c:", PathRules::windows), "C:/w/");
    // From the root of where the directory is.
    EXPECT_EQ(completed("C:/w", "\\x", PathRules::windows), "C:\\x");
    EXPECT_EQ(completed("C:/w", "/x", PathRules::windows), "C:/x");
    EXPECT_EQ(completed("//server/share/w", "/x", PathRules::windows), "//server/share/x");
}

TEST(IsBareRoot, HoldsForAVolumeAlone) {
    EXPECT_TRUE(isBareRoot("", PathRules::posix));
    EXPECT_FALSE(isBareRoot("/w", PathRules::posix));
    EXPECT_FALSE(isBareRoot("C:", PathRules::posix));
    EXPECT_TRUE(isBareRoot("C:", PathRules::windows));
    EXPECT_TRUE(isBareRoot("//server/share", PathRules::windows));
    EXPECT_FALSE(isBareRoot("C:/w", PathRules::windows));
}

TEST(QueryDirectory, KnowsNoDrivesHere) {
    const TestDirectory here;
    PathBuffer buffer{};
    ASSERT_TRUE(queryDirectory(buffer, "C:x"));
    EXPECT_EQ(buffer.data(), here.path());
}

TEST(PrepareStreams, TakesThePlacesOfClosedStreams) {
    EXPECT_EXIT(
        {
            ::close(0);
            ::close(1);
            prepareStreams();
            const int next = ::open("/", O_RDONLY);
            std::fprintf(stderr, "%d\n", next > 2 ? ::fcntl(1, F_GETFL) & O_ACCMODE : -1);
            ::_exit(0);
        },
        ExitedWithCode(0), Eq("0\n"));
}
