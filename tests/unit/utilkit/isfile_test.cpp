// What a path names.
#include "utilkit/isfile.hpp"

#include "unit/library_calls.hpp"
#include "unit/support.hpp"
#include "utilkit/chdir.hpp"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

TEST(IsFile, IsWhatOpensForReading) {
    const TestDirectory here({{"file", ""}, {"sub/", ""}});
    EXPECT_TRUE(isFile("file"));
    EXPECT_TRUE(isFile((here.path() + "/file").c_str()));
    EXPECT_TRUE(isFile("sub/../file"));
    EXPECT_TRUE(isFile("sub")); // a directory opens like a file
    EXPECT_FALSE(isFile("missing"));
    EXPECT_FALSE(isFile("file/below"));
    EXPECT_FALSE(isFile(""));
}

TEST(IsFile, ClosesTheStreamAgain) {
    const TestDirectory here({{"file", ""}});
    const auto openFiles = [] {
        const std::filesystem::directory_iterator descriptors("/proc/self/fd");
        return std::distance(begin(descriptors), end(descriptors));
    };
    const auto before = openFiles();
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(isFile("file"));
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(IsFile, MissingMemoryIsNoMissingFile) {
    const TestDirectory here({{"file", ""}});
    const auto isFileWithoutMemory = [] {
        const BeforeOpening hook([](const char*) {
            errno = ENOMEM;
            return false;
        });
        return isFile("file");
    };
    const std::string size = std::to_string(sizeof(std::FILE));
    EXPECT_EXIT(isFileWithoutMemory(), testing::ExitedWithCode(10),
                testing::Eq("\nAlloc Error: \"file\" 1 x " + size + "(+0-0:sum=0)\n"));
    pushIgnore(ALC_ERR);
    EXPECT_FALSE(isFileWithoutMemory());
}

TEST(IsDir, IsWhatCanBeEntered) {
    const TestDirectory here({{"file", ""}, {"sub/deeper/", ""}});
    for (const std::string path : {"sub", "sub/", "sub/deeper", ".", "..", "/"}) {
        EXPECT_TRUE(isDir(path.c_str())) << path;
        EXPECT_EQ(workingDirectory(), here.path());
    }
    EXPECT_TRUE(isDir((here.path() + "/sub").c_str()));
    for (const std::string path : {"file", "missing", "file/below", ""}) {
        EXPECT_FALSE(isDir(path.c_str())) << path;
        EXPECT_EQ(workingDirectory(), here.path());
    }
}

TEST(IsDir, ComesBackThroughChDir) {
    const TestDirectory here({{"sub/", ""}});
    _cwd = {};
    EXPECT_FALSE(isDir("missing"));
    EXPECT_STREQ(_cwd.data(), "");
    EXPECT_TRUE(isDir("sub"));
    EXPECT_EQ(_cwd.data(), here.path());
}

TEST(IsDir, ComesBackToALongDirectory) {
    const TestDirectory here;
    const std::string name = std::string(250, 'd') + "/" + std::string(250, 'd');
    std::filesystem::create_directories(name + "/sub");
    enter(name);
    EXPECT_TRUE(isDir("sub"));
    EXPECT_EQ(workingDirectory(), here.path() + "/" + name);
}

TEST(IsDir, EntersNothingFromWhereItCannotComeBack) {
    const TestDirectory here({{"gone/", ""}});
    enter("gone");
    std::filesystem::remove(here.path() + "/gone");
    EXPECT_FALSE(isDir("/"));
    EXPECT_EQ(_cwd.data(), here.path()); // as at the start: nothing was entered
}
