// The end of the process.
#include "utilkit/exit.hpp"

#include "unit/support.hpp"

#include <cstdio>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

TEST(Exit, EndsWithTheStatus) {
    const FreshGlobals globals;
    for (const int status : {0, 1, 2, 17, 104, 200}) {
        EXPECT_EXIT(Exit(status), ExitedWithCode(status), Eq(""));
    }
}

TEST(Exit, ReturnsToTheStartDirectory) {
    const TestDirectory here({{"sub/deeper/", ""}});
    EXPECT_EXIT(
        {
            showDirectoryAtEnd();
            enter("sub/deeper");
            Exit(0);
        },
        ExitedWithCode(0), Eq(here.path()));
}

TEST(Exit, WritesWhatWaitsInStreams) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            std::FILE* stream = std::fopen("out", "w");
            std::fputs("waiting", stream);
            Exit(3);
        },
        ExitedWithCode(3), Eq(""));
    EXPECT_EQ(bytesOf("out"), "waiting");
}
