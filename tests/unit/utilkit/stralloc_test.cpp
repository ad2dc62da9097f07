// New tracked texts.
#include "utilkit/stralloc.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"
#include "utilkit/errors.hpp"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

TEST(StrAlloc, CountsTheBytesAndOneAllocation) {
    const FreshGlobals globals;
    {
        const Text text = strAlloc(100, "name");
        ASSERT_NE(text, nullptr);
        std::memset(text.get(), 'x', 100);
        EXPECT_EQ(counters(), (Counters{100, 1, 0}));
        const Text other = strAlloc(5, nullptr);
        EXPECT_EQ(counters(), (Counters{105, 2, 0}));
    }
    EXPECT_EQ(counters(), (Counters{105, 2, 2}));
}

TEST(StrAlloc, FailureEndsWithStatus12AndTheName) {
    const FreshGlobals globals;
    freeCount = 3;
    EXPECT_EXIT(
        {
            failAllocation(1);
            strAlloc(100, "some/path");
        },
        ExitedWithCode(12), Eq("\nAlloc Error: \"some/path\" 100 x 1(+1-3:sum=100)\n"));
}

TEST(StrAlloc, FailureWithoutNameNamesTheRoutine) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            strAlloc(7, nullptr);
            failAllocation(1);
            strAlloc(100, nullptr);
        },
        ExitedWithCode(12), Eq("\nAlloc Error: \"strAlloc\" 100 x 1(+2-1:sum=107)\n"));
}

TEST(StrAlloc, IgnoredFailureGivesNullAndStaysCounted) {
    const FreshGlobals globals;
    pushIgnore(ALC_ERR);
    const FailingAllocation failing(1);
    EXPECT_EQ(strAlloc(100, "name"), nullptr);
    EXPECT_EQ(counters(), (Counters{100, 1, 0}));
}

TEST(StrCopy, CopiesTheTextAndCountsItsTerminator) {
    const FreshGlobals globals;
    const char text[] = "cube.rsd";
    const Text copy = strCopy(text);
    EXPECT_STREQ(copy.get(), "cube.rsd");
    EXPECT_NE(copy.get(), text);
    EXPECT_EQ(counters(), (Counters{9, 1, 0}));
    EXPECT_STREQ(strCopy("").get(), "");
    EXPECT_EQ(counters(), (Counters{10, 2, 1}));
}

TEST(StrCopy, CopiesLongTextsWhole) {
    const FreshGlobals globals;
    const std::string text(100'000, 'x');
    EXPECT_EQ(strCopy(text.c_str()).get(), text);
    EXPECT_EQ(allocTotal, 100'001);
}

TEST(StrCopy, LeavesTheIgnoreListAsItWas) {
    const FreshGlobals globals;
    pushIgnore(EOT_ERR);
    strCopy("a");
    EXPECT_EQ(_igno_, 1);
    EXPECT_EQ(_ignoreErr_[0], EOT_ERR);
}

TEST(StrCopy, FailureEndsWithStatus13AndTheText) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            failAllocation(1);
            strCopy("cube.rsd");
        },
        ExitedWithCode(13), Eq("\nAlloc Error: \"cube.rsd\" 9 x 1(+1-0:sum=9)\n"));
}

TEST(StrCopy, FailureIgnoredByTheCallerGivesNull) {
    const FreshGlobals globals;
    pushIgnore(ALC_ERR);
    const FailingAllocation failing(1);
    EXPECT_EQ(strCopy("cube.rsd"), nullptr);
    EXPECT_EQ(_igno_, 1);
    EXPECT_EQ(counters(), (Counters{9, 1, 0}));
}

TEST(StrCopy, ForgivesOnlyItsOwnFailure) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            strCopy("a");
            failAllocation(1);
            strAlloc(3, "b");
        },
        ExitedWithCode(12), Eq("\nAlloc Error: \"b\" 3 x 1(+2-1:sum=5)\n"));
}
