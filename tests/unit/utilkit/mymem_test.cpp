// Chunked arrays: blocks, accounting, addresses, failures, and their way into a file.
#include "utilkit/mymem.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"
#include "utilkit/tracked.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

// What an array of `count` elements of `size` bytes comes to. In `total`: the header's 28 bytes, 4 for
// every block, and the elements.
struct Shape {
    std::uint32_t count;
    std::uint32_t size;
    std::uint32_t perBlock;
    std::uint32_t blockCount;
    std::uint32_t lastBlockElements;
    std::int32_t total;
    std::int32_t allocations; // header, block table if there are blocks, blocks
    std::int32_t releases;    // block count + 2
};

const Shape shapes[] = {
    {0, 8, 125'000, 0, 0, 28, 1, 2},
    {1, 8, 125'000, 1, 1, 40, 3, 3},
    {124'999, 8, 125'000, 1, 124'999, 1'000'024, 3, 3},
    {125'000, 8, 125'000, 1, 0, 1'000'032, 3, 3},
    {125'001, 8, 125'000, 2, 1, 1'000'044, 4, 4},
    {249'999, 8, 125'000, 2, 124'999, 2'000'028, 4, 4},
    {250'000, 8, 125'000, 2, 0, 2'000'036, 4, 4},
    {250'001, 8, 125'000, 3, 1, 2'000'048, 5, 5},
    {0, 1'000'000, 1, 0, 0, 28, 1, 2},
    {3, 1'000'000, 1, 3, 0, 3'000'040, 5, 5},
    {2, 600'000, 1, 2, 0, 1'200'036, 4, 4},
    {3, 500'000, 2, 2, 1, 1'500'036, 4, 4},
    {1'000'000, 1, 1'000'000, 1, 0, 1'000'032, 3, 3},
    {1'000'001, 1, 1'000'000, 2, 1, 1'000'037, 4, 4},
    {333'333, 3, 333'333, 1, 0, 1'000'031, 3, 3},
    {333'334, 3, 333'333, 2, 1, 1'000'038, 4, 4},
    {35'715, 28, 35'714, 2, 1, 1'000'056, 4, 4},
};

void expectAllZero(const void* bytes, std::size_t size) {
    const auto* first = static_cast<const unsigned char*>(bytes);
    EXPECT_TRUE(std::all_of(first, first + size, [](unsigned char byte) { return byte == 0; }));
}

struct Pair {
    std::uint32_t low;
    std::uint32_t high;
};

Pair* pairAt(std::uint32_t index, const ChunkedArray* array) {
    return static_cast<Pair*>(myIndex(index, array));
}

// An array of `count` pairs, element i holding i and its complement.
ChunkedArray* numberedPairs(std::uint32_t count) {
    ChunkedArray* array = myCalloc(count, sizeof(Pair), "pairs");
    for (std::uint32_t i = 0; i < count; ++i) {
        *pairAt(i, array) = {.low = i, .high = ~i};
    }
    return array;
}

// What putMyMem makes of an array whose words, in the order of the file, have the bytes 0, 1, 2 and so
// on modulo 251.
struct Put {
    std::int32_t result;
    std::int32_t position;
    std::string bytes;
};

Put putNumbered(std::uint32_t count, std::uint32_t size) {
    const TestDirectory here;
    ChunkedArray* array = myCalloc(count, size, "numbered");
    std::uint32_t next = 0;
    for (std::uint32_t block = 0; block < array->blockCount; ++block) {
        const std::uint32_t elements =
            std::min(count - block * array->elementsPerBlock, array->elementsPerBlock);
        for (std::uint32_t word = 0; word < elements * size / 4; ++word) {
            std::uint32_t value = 0;
            for (std::uint32_t shift = 0; shift < 32; shift += 8) {
                value |= next++ % 251 << shift;
            }
            std::memcpy(array->blocks[block] + 4 * std::size_t{word}, &value, 4);
        }
    }
    FileRecord* file = fileOpen("out", "wb");
    Put put{};
    put.result = putMyMem(array, file);
    put.position = file->position;
    fileClose(file);
    myFree(array);
    put.bytes = bytesOf("out");
    return put;
}

std::string numbered(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes += static_cast<char>(i % 251);
    }
    return bytes;
}

struct Written {
    std::uint32_t count;
    std::uint32_t size;
    std::size_t bytes;   // in the file, from the start of the table
    std::int32_t result; // of putMyMem
};

const Written written[] = {
    {1, 4, 4, 4},
    {3, 8, 24, 24},
    {5, 28, 140, 140},
    {124'999, 8, 999'992, 999'992},
    {125'000, 8, 0, 0},         // one block, full: not written
    {125'001, 8, 1'000'008, 8}, // a full block, then the partial one
    {250'000, 8, 1'000'000, 0}, // the second of two full blocks is not written
    {250'001, 8, 2'000'008, 8},
    {2, 1'000'000, 1'000'000, 0}, // one element per block
    {3, 6, 16, 18},               // 18 bytes hold 4 words
    {1, 2, 0, 2},                 // 2 bytes hold none
    {3, 1, 0, 3},
    {333'334, 3, 999'996, 3}, // 999,999 bytes hold 249,999 words, 3 bytes none
};

} // namespace

TEST(MyCalloc, SplitsTablesIntoBlocks) {
    const FreshGlobals globals;
    for (const Shape& shape : shapes) {
        SCOPED_TRACE(testing::Message() << shape.count << " of " << shape.size << " bytes");
        ChunkedArray* array = myCalloc(shape.count, shape.size, "table");
        ASSERT_NE(array, nullptr);
        EXPECT_EQ(array->blockCount, shape.blockCount);
        EXPECT_EQ(array->elementSize, shape.size);
        EXPECT_EQ(array->elementsPerBlock, shape.perBlock);
        EXPECT_EQ(array->lastBlockElements, shape.lastBlockElements);
        EXPECT_EQ(array->elementCount, shape.count);
        EXPECT_EQ(array->blocks == nullptr, shape.blockCount == 0);
        myFree(array);
    }
}

TEST(MyCalloc, CountsHeaderTableAndBlocks) {
    const FreshGlobals globals;
    for (const Shape& shape : shapes) {
        SCOPED_TRACE(testing::Message() << shape.count << " of " << shape.size << " bytes");
        allocTotal = allocCount = freeCount = 0;
        ChunkedArray* array = myCalloc(shape.count, shape.size, "table");
        EXPECT_EQ(counters(), (Counters{shape.total, shape.allocations, 0}));
        myFree(array);
    }
}

TEST(MyFree, GivesBackTheTotalAndCountsBlockCountPlusTwo) {
    const FreshGlobals globals;
    for (const Shape& shape : shapes) {
        SCOPED_TRACE(testing::Message() << shape.count << " of " << shape.size << " bytes");
        allocTotal = 1000;
        allocCount = freeCount = 0;
        myFree(myCalloc(shape.count, shape.size, "table"));
        EXPECT_EQ(counters(), (Counters{1000, shape.allocations, shape.releases}));
    }
}

TEST(MyFree, AcceptsNull) {
    const FreshGlobals globals;
    myFree(nullptr);
    EXPECT_EQ(counters(), (Counters{0, 0, 0}));
}

TEST(MyCalloc, ClearsNewBlocks) {
    const FreshGlobals globals;
    // Dirty memory first, which the allocator may hand out again.
    ChunkedArray* dirty = myCalloc(125'001, 8, "dirty");
    std::memset(dirty->blocks[0], 0xAA, 1'000'000);
    std::memset(dirty->blocks[1], 0xAA, 8);
    myFree(dirty);
    ChunkedArray* array = myCalloc(125'001, 8, "clear");
    expectAllZero(array->blocks[0], 1'000'000);
    expectAllZero(array->blocks[1], 8);
    myFree(array);
}

TEST(MyCalloc, FailureEndsWithTheStatusOfItsSite) {
    struct Failure {
        int number; // of the allocation that fails
        int status;
        const char* text;
    };
    // 250,001 elements of 8 bytes: header 28, table 3 x 4, two full blocks, one element.
    const Failure failures[] = {
        {1, 14, "\nAlloc Error: \"big\" 1 x 28(+1-0:sum=28)\n"},
        {2, 10, "\nAlloc Error: \"void*\" 3 x 4(+1-0:sum=28)\n"}, // the table is counted once it is there
        {3, 15, "\nAlloc Error: \"big\" 8 x 125000(+3-0:sum=1000040)\n"},
        {4, 15, "\nAlloc Error: \"big\" 8 x 125000(+4-0:sum=2000040)\n"},
        {5, 16, "\nAlloc Error: \"big\" 8 x 1(+5-0:sum=2000048)\n"},
    };
    const FreshGlobals globals;
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.text);
        EXPECT_EXIT(
            {
                failAllocation(failure.number);
                myCalloc(250'001, 8, "big");
            },
            ExitedWithCode(failure.status), Eq(failure.text));
    }
}

TEST(MyCalloc, FailureMessageGoesOnFromTheCountersAsTheyAre) {
    const FreshGlobals globals;
    allocTotal = 100;
    allocCount = 7;
    freeCount = 5;
    EXPECT_EXIT(
        {
            failAllocation(3);
            myCalloc(3, 28, "TmdData.objtbl");
        },
        ExitedWithCode(16), Eq("\nAlloc Error: \"TmdData.objtbl\" 28 x 3(+10-5:sum=216)\n"));
}

TEST(MyCalloc, IgnoredFailureGivesNullAndLeavesWhatIsThere) {
    struct Failure {
        int number;
        std::size_t leftBlocks; // allocated and never released
        Counters counters;
    };
    const Failure failures[] = {
        {1, 0, {28, 1, 0}},
        {3, 2, {1'000'040, 3, 0}},
        {4, 3, {2'000'040, 4, 0}},
        {5, 4, {2'000'048, 5, 0}},
    };
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.number);
        const FreshGlobals globals;
        pushIgnore(ALC_ERR);
        const FailingAllocation failing(failure.number);
        EXPECT_EQ(myCalloc(250'001, 8, "big"), nullptr);
        EXPECT_TRUE(hasFailedAllocation());
        EXPECT_EQ(counters(), failure.counters);
        const std::span<void* const> left = blocksBeforeFailure();
        EXPECT_EQ(left.size(), failure.leftBlocks);
        for (void* const block : left) {
            std::free(block);
        }
    }
}

TEST(MyCalloc, IgnoredFailureOfTheBlockTableGoesOn) {
    const FreshGlobals globals;
    pushIgnore(ALC_ERR);
    const FailingAllocation failing(2);
    ChunkedArray* array = myCalloc(250'001, 8, "big");
    EXPECT_TRUE(hasFailedAllocation());
    ASSERT_NE(array, nullptr);
    expectAllZero(myIndex(0, array), 8);
    expectAllZero(myIndex(250'000, array), 8);
    myFree(array);
}

TEST(MyIndex, FindsTheBlockAndThePlaceInIt) {
    const FreshGlobals globals;
    ChunkedArray* array = myCalloc(250'001, 8, "table");
    for (const std::int32_t verbose : {0, 1}) {
        Verbose = verbose;
        EXPECT_EQ(myIndex(0, array), array->blocks[0]);
        EXPECT_EQ(myIndex(1, array), array->blocks[0] + 8);
        EXPECT_EQ(myIndex(124'999, array), array->blocks[0] + 999'992);
        EXPECT_EQ(myIndex(125'000, array), array->blocks[1]);
        EXPECT_EQ(myIndex(125'001, array), array->blocks[1] + 8);
        EXPECT_EQ(myIndex(249'999, array), array->blocks[1] + 999'992);
        EXPECT_EQ(myIndex(250'000, array), array->blocks[2]);
    }
    myFree(array);
}

TEST(MyIndex, BlocksOfOddSizesHoldWholeElements) {
    const FreshGlobals globals;
    ChunkedArray* array = myCalloc(333'335, 3, "table");
    EXPECT_EQ(myIndex(333'332, array), array->blocks[0] + 999'996);
    EXPECT_EQ(myIndex(333'333, array), array->blocks[1]);
    EXPECT_EQ(myIndex(333'334, array), array->blocks[1] + 3);
    myFree(array);
}

TEST(MyIndex, EveryElementIsAPlaceOfItsOwn) {
    const FreshGlobals globals;
    for (const std::uint32_t count : {124'999U, 125'000U, 125'001U, 250'000U, 250'001U}) {
        SCOPED_TRACE(count);
        ChunkedArray* array = numberedPairs(count);
        std::uint32_t wrong = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            const Pair pair = *pairAt(i, array);
            wrong += pair.low == i && pair.high == ~i ? 0 : 1;
        }
        EXPECT_EQ(wrong, 0U);
        myFree(array);
    }
}

TEST(MyIndex, VerboseAcceptsTheElementCount) {
    const FreshGlobals globals;
    Verbose = 1;
    for (const std::uint32_t count : {0U, 1U, 124'999U, 125'000U, 125'001U}) {
        SCOPED_TRACE(count);
        ChunkedArray* array = myCalloc(count, 8, "table");
        void* behind = myIndex(count, array);
        expectAllZero(behind, 8);
        std::memset(behind, 0xAA, 8); // lost
        expectAllZero(myIndex(count, array), 8);
        if (count > 0) {
            expectAllZero(myIndex(count - 1, array), 8);
        }
        myFree(array);
    }
}

TEST(MyIndex, VerboseEndsAboveTheElementCount) {
    struct Bad {
        std::uint32_t count;
        std::uint32_t index;
        const char* text;
    };
    const Bad bad[] = {
        {0, 1, "\nBad index: 1 [0-0]\n"},
        {3, 4, "\nBad index: 4 [0-3]\n"},
        {3, 4'294'967'295U, "\nBad index: 4294967295 [0-3]\n"},
        {125'000, 125'001, "\nBad index: 125001 [0-125000]\n"},
    };
    const FreshGlobals globals;
    for (const std::int32_t verbose : {1, -1}) {
        Verbose = verbose;
        for (const Bad& one : bad) {
            SCOPED_TRACE(one.text);
            ChunkedArray* array = myCalloc(one.count, 8, "table");
            EXPECT_EXIT(myIndex(one.index, array), ExitedWithCode(17), Eq(one.text));
            myFree(array);
        }
    }
}

TEST(MyIndex, QuietReadsOutsideAreZero) {
    const FreshGlobals globals;
    for (const std::uint32_t size : {1U, 8U, 28U, 1'000'000U}) {
        for (const std::uint32_t count : {0U, 3U}) {
            ChunkedArray* array = myCalloc(count, size, "table");
            for (const std::uint32_t index : {count, count + 1, 125'000U, 4'294'967'295U}) {
                SCOPED_TRACE(testing::Message() << index << " of " << count << ", " << size << " bytes");
                expectAllZero(myIndex(index, array), size);
            }
            myFree(array);
        }
    }
}

TEST(MyIndex, QuietWritesOutsideAreDropped) {
    const FreshGlobals globals;
    ChunkedArray* array = numberedPairs(125'001);
    for (const std::uint32_t index : {125'001U, 125'002U, 250'000U, 4'294'967'295U}) {
        SCOPED_TRACE(index);
        *pairAt(index, array) = {.low = 0xAAAAAAAA, .high = 0xAAAAAAAA};
        expectAllZero(myIndex(index, array), sizeof(Pair));
        expectAllZero(myIndex(125'001, array), sizeof(Pair));
    }
    std::uint32_t wrong = 0;
    for (std::uint32_t i = 0; i < 125'001; ++i) {
        wrong += pairAt(i, array)->low == i ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0U);
    myFree(array);
}

TEST(MyIndex, NullTableReadsZeros) {
    const FreshGlobals globals;
    expectAllZero(myIndex(0, nullptr), 28);
    expectAllZero(myIndex(5, nullptr), 28);
}

TEST(ElementAt, TakesTheSignedIndexAsItsBits) {
    const FreshGlobals globals;
    ChunkedArray* array = numberedPairs(3);
    EXPECT_EQ(elementAt<Pair>(2, array).low, 2U);
    elementAt<Pair>(2, array).low = 7;
    EXPECT_EQ(pairAt(2, array)->low, 7U);
    EXPECT_EQ(elementAt<Pair>(-1, array).low, 0U);
    Verbose = 1;
    EXPECT_EXIT(elementAt<Pair>(-1, array), ExitedWithCode(17), Eq("\nBad index: 4294967295 [0-3]\n"));
    myFree(array);
}

TEST(NextElement, GivesWhatElementAtGives) {
    const FreshGlobals globals;
    // Less than a block, two full blocks, and a part of a third one with them.
    for (const std::int32_t count : {3, 250'000, 250'003}) {
        ChunkedArray* array = numberedPairs(static_cast<std::uint32_t>(count));
        for (const std::int32_t first : {0, 1, 124'999, 125'000, count - 1, count, count + 1}) {
            TableWalk<Pair> walk{.array = array, .index = first};
            for (std::int32_t i = first; i < count; ++i) {
                ASSERT_EQ(&nextElement(walk), &elementAt<Pair>(i, array)) << i << " of " << count;
            }
            for (int outside = 0; outside < 3; ++outside) {
                Pair& spare = nextElement(walk);
                EXPECT_EQ(&spare, &elementAt<Pair>(-1, array));
                expectAllZero(&spare, sizeof(Pair));
                spare.low = 7; // lost
            }
        }
        myFree(array);
    }
}

TEST(NextElement, GoesOnFromTheLargestIndexWithTheFirst) {
    const FreshGlobals globals;
    ChunkedArray* array = numberedPairs(2);
    TableWalk<Pair> walk{.array = array, .index = -1};
    expectAllZero(&nextElement(walk), sizeof(Pair));
    EXPECT_EQ(&nextElement(walk), pairAt(0, array));
    EXPECT_EQ(&nextElement(walk), pairAt(1, array));
    myFree(array);
}

TEST(NextElement, OfANullTableIsZero) {
    const FreshGlobals globals;
    TableWalk<Pair> walk{.array = nullptr};
    nextElement(walk) = {.low = 1, .high = 2};
    Pair& spare = nextElement(walk);
    EXPECT_EQ(&spare, &elementAt<Pair>(0, nullptr));
    expectAllZero(&spare, sizeof(Pair));
}

TEST(NextElement, VerboseEndsAboveTheElementCount) {
    const FreshGlobals globals;
    ChunkedArray* array = numberedPairs(2);
    Verbose = 1;
    TableWalk<Pair> walk{.array = array};
    nextElement(walk);
    nextElement(walk);
    nextElement(walk); // the index 2 passes
    EXPECT_EXIT(nextElement(walk), ExitedWithCode(17), Eq("\nBad index: 3 [0-2]\n"));
    myFree(array);
}

TEST(PutMyMem, LeavesOutALastBlockThatIsFull) {
    for (const Written& one : written) {
        SCOPED_TRACE(testing::Message() << one.count << " of " << one.size << " bytes");
        const Put put = putNumbered(one.count, one.size);
        EXPECT_EQ(put.result, one.result);
        EXPECT_EQ(put.position, static_cast<std::int32_t>(one.bytes));
        EXPECT_TRUE(put.bytes == numbered(one.bytes)) << put.bytes.size() << " bytes";
    }
}

TEST(PutMyMem, EmptyTableWritesNothingAndReturnsTheBytesOfAFullBlock) {
    const Put small = putNumbered(0, 8);
    EXPECT_EQ(small.result, 1'000'000);
    EXPECT_EQ(small.bytes, "");
    EXPECT_EQ(putNumbered(0, 3).result, 999'999);
}

TEST(PutMyMem, WritesWordsLowByteFirst) {
    const TestDirectory here;
    ChunkedArray* array = myCalloc(2, sizeof(Pair), "pairs");
    *pairAt(0, array) = {.low = 0x12345678, .high = 0x9ABCDEF0};
    *pairAt(1, array) = {.low = 1, .high = 0xFFFFFFFE};
    FileRecord* file = fileOpen("out", "wb");
    EXPECT_EQ(putMyMem(array, file), 16);
    fileClose(file);
    myFree(array);
    EXPECT_EQ(bytesOf("out"), fromHex("78 56 34 12  F0 DE BC 9A  01 00 00 00  FE FF FF FF"));
}

TEST(PutMyMem, AddsToThePositionAndToWhatIsThere) {
    const TestDirectory here;
    ChunkedArray* array = myCalloc(1, 4, "word");
    *static_cast<std::uint32_t*>(myIndex(0, array)) = 0x04030201;
    FileRecord* file = fileOpen("out", "wb");
    EXPECT_EQ(putMyMem(array, file), 4);
    EXPECT_EQ(putMyMem(array, file), 4);
    EXPECT_EQ(file->position, 8);
    fileClose(file);
    myFree(array);
    EXPECT_EQ(bytesOf("out"), fromHex("01 02 03 04 01 02 03 04"));
}
