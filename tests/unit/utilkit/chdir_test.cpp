// The working directory.
#include "utilkit/chdir.hpp"

#include "unit/support.hpp"

#include <array>
#include <filesystem>
#include <span>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

TEST(ChDir, EntersADirectoryAndRemembersItAsGiven) {
    const TestDirectory here({{"sub/deeper/", ""}});
    EXPECT_EQ(chDir("sub"), 0);
    EXPECT_EQ(workingDirectory(), here.path() + "/sub");
    EXPECT_STREQ(_cwd.data(), "sub");
    EXPECT_EQ(chDir("./deeper/"), 0);
    EXPECT_EQ(workingDirectory(), here.path() + "/sub/deeper");
    EXPECT_STREQ(_cwd.data(), "./deeper/");
    EXPECT_EQ(chDir(here.path().c_str()), 0);
    EXPECT_EQ(workingDirectory(), here.path());
    EXPECT_EQ(_cwd.data(), here.path());
}

TEST(ChDir, NullDoesNothingAndSucceeds) {
    const TestDirectory here({{"sub/", ""}});
    chDir("sub");
    EXPECT_EQ(chDir(nullptr), 0);
    EXPECT_EQ(workingDirectory(), here.path() + "/sub");
    EXPECT_STREQ(_cwd.data(), "sub");
}

TEST(ChDir, FailureIs255AndChangesNothing) {
    const TestDirectory here({{"file", ""}, {"sub/", ""}});
    chDir("sub");
    for (const char* path : {"missing", "../file", "", "../file/below"}) {
        EXPECT_EQ(chDir(path), 255) << path;
        EXPECT_EQ(workingDirectory(), here.path() + "/sub");
        EXPECT_STREQ(_cwd.data(), "sub");
    }
}

TEST(ChDir, LeavesTheStartDirectoryAlone) {
    const TestDirectory here({{"sub/", ""}});
    chDir("sub");
    EXPECT_EQ(cwd.data(), here.path());
}

TEST(ChDir, TakesItsOwnBuffer) {
    const TestDirectory here({{"sub/sub/", ""}});
    EXPECT_EQ(chDir("sub"), 0);
    EXPECT_EQ(chDir(_cwd.data()), 0);
    EXPECT_EQ(workingDirectory(), here.path() + "/sub/sub");
    EXPECT_STREQ(_cwd.data(), "sub");
}

TEST(ChDir, RemembersLongDirectoriesWhole) {
    const TestDirectory here;
    std::string name = std::string(200, 'd');
    for (int i = 0; i < 4; ++i) {
        name += "/" + std::string(200, 'd');
    }
    std::filesystem::create_directories(name);
    EXPECT_EQ(chDir(name.c_str()), 0);
    EXPECT_EQ(_cwd.data(), name);
    EXPECT_EQ(workingDirectory(), here.path() + "/" + name);
}

TEST(GetCwd0, NamesTheWorkingDirectoryWhenItFits) {
    const TestDirectory here;
    std::array<char, 4096> buffer{};
    EXPECT_TRUE(getCwd0(buffer));
    EXPECT_EQ(buffer.data(), here.path());
    const std::size_t size = here.path().size();
    EXPECT_FALSE(getCwd0(std::span(buffer).first(size)));
    EXPECT_TRUE(getCwd0(std::span(buffer).first(size + 1)));
}
