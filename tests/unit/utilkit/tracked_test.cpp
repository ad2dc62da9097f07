// The accounting of memory, and tracked memory.
#include "utilkit/tracked.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/wrap.hpp"

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

// Taken before any test runs.
static const Counters countersAtStart = counters();

TEST(Counters, StartAtZero) {
    EXPECT_EQ(countersAtStart, (Counters{0, 0, 0}));
}

TEST(WrapAdd, WrapsInsteadOfOverflowing) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(wrapAdd(1, 2), 3);
    EXPECT_EQ(wrapAdd(most, 1), least);
    EXPECT_EQ(wrapAdd(least, 0xFFFFFFFFU), most);
    EXPECT_EQ(wrapAdd(28, 0U - 28U), 0);
}

TEST(CountAllocation, AddsBytesAndOneAllocation) {
    const FreshGlobals globals;
    countAllocation(20);
    countAllocation(0);
    EXPECT_EQ(counters(), (Counters{20, 2, 0}));
    countAllocation(0x7FFFFFFFU);
    EXPECT_EQ(counters(), (Counters{-2147483629, 3, 0})); // 2^31 + 19 - 2^32
}

TEST(RaiseAllocError, PrintsFactorsAndCounters) {
    const FreshGlobals globals;
    allocTotal = 4;
    allocCount = 5;
    freeCount = 6;
    EXPECT_EXIT(raiseAllocError(10, "tables", 2, 3), ExitedWithCode(10),
                Eq("\nAlloc Error: \"tables\" 2 x 3(+5-6:sum=4)\n"));
}

TEST(TrackedCalloc, GivesZeroedMemoryCountedInReferenceUnits) {
    const FreshGlobals globals;
    auto* bytes = static_cast<unsigned char*>(trackedCalloc(1000, 8, 4, "tables"));
    ASSERT_NE(bytes, nullptr);
    EXPECT_TRUE(std::all_of(bytes, bytes + 8000, [](unsigned char byte) { return byte == 0; }));
    EXPECT_EQ(counters(), (Counters{4000, 1, 0}));
    trackedFree(bytes);
    EXPECT_EQ(counters(), (Counters{4000, 1, 1})); // a release does not lower the total
}

TEST(TrackedTable, CountsTheEntriesAskedFor) {
    const FreshGlobals globals;
    double* table = trackedTable<double>(3, 60, "tables");
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table[2], 0.0);
    EXPECT_EQ(counters(), (Counters{180, 1, 0}));
    trackedFree(table);
}

TEST(TrackedCalloc, FailureIsNotCountedAndEndsWithStatus10) {
    const FreshGlobals globals;
    allocTotal = 100;
    allocCount = 2;
    freeCount = 1;
    EXPECT_EXIT(
        {
            failAllocation(1);
            trackedCalloc(7, 8, 4, "tables");
        },
        ExitedWithCode(10), Eq("\nAlloc Error: \"tables\" 7 x 4(+2-1:sum=100)\n"));
}

TEST(TrackedCalloc, IgnoredFailureGivesNull) {
    const FreshGlobals globals;
    pushIgnore(ALC_ERR);
    const FailingAllocation failing(1);
    EXPECT_EQ(trackedCalloc(7, 8, 4, "tables"), nullptr);
    EXPECT_TRUE(hasFailedAllocation());
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}

TEST(TrackedFree, NullIsNotCounted) {
    const FreshGlobals globals;
    trackedFree(nullptr);
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}
