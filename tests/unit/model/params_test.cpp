#include "model/params.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"

#include "utilkit/tracked.hpp"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::ExitedWithCode;

namespace {

using Bytes = std::vector<std::uint8_t>;

ParamList listOf(const Bytes& bytes) {
    ParamList list{};
    std::copy(bytes.begin(), bytes.end(), list.begin());
    return list;
}

// The `count` bytes of list `number`, told apart from those of its neighbours.
Bytes numbered(std::size_t number, std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(number * 37 + number / 256 + i * 11 + 1);
    }
    return bytes;
}

} // namespace

TEST(SetParams, KeepsTheBytesInOrder) {
    const FreshGlobals globals;
    reuse_pool();
    MaterialRecord record{};
    set_params(record, Bytes{7, 0, 255});
    EXPECT_EQ(record.paramCount, 3);
    EXPECT_EQ(get_params(record), listOf({7, 0, 255}));
}

TEST(SetParams, HoldsTheLongestList) {
    const FreshGlobals globals;
    reuse_pool();
    MaterialRecord record{};
    const Bytes bytes = numbered(1, 21);
    set_params(record, bytes);
    EXPECT_EQ(get_params(record), listOf(bytes));
}

TEST(SetParams, OfNothingLeavesNoListAndCountsNothing) {
    const FreshGlobals globals;
    reuse_pool();
    MaterialRecord record{};
    set_params(record, Bytes{1, 2, 3});
    set_params(record, {});
    EXPECT_EQ(record.param, 0U);
    EXPECT_EQ(record.paramCount, 0);
    EXPECT_EQ(get_params(record), ParamList{});
    EXPECT_EQ(allocCount, 1);
    EXPECT_EQ(allocTotal, 3);
}

TEST(SetParams, LeavesTheOtherFieldsAlone) {
    const FreshGlobals globals;
    reuse_pool();
    MaterialRecord record{.attr = 0x1F, .shading = 'G', .kind = 'H', .paramCount = 0, .param = 0};
    set_params(record, Bytes{1});
    EXPECT_EQ(record.attr, 0x1F);
    EXPECT_EQ(record.shading, 'G');
    EXPECT_EQ(record.kind, 'H');
}

TEST(SetParams, CountsEveryListLikeABlockOfItsOwn) {
    const FreshGlobals globals;
    reuse_pool();
    std::array<MaterialRecord, 3> records{};
    set_params(records[0], numbered(0, 3));
    set_params(records[1], numbered(1, 12));
    set_params(records[2], numbered(2, 21));
    EXPECT_EQ(allocCount, 3);
    EXPECT_EQ(allocTotal, 36);
    EXPECT_EQ(freeCount, 0);
}

TEST(SetParams, FailsAtTheStatusOfTablesWhenTheBlockCannotBeHad) {
    const FreshGlobals globals;
    reuse_pool();
    // However many blocks the pool has by now, the list that needs another one fails.
    for (const int allocation : {1, 2}) {
        EXPECT_EXIT(
            {
                failAllocation(allocation);
                for (;;) {
                    MaterialRecord record{};
                    set_params(record, Bytes(21));
                }
            },
            ExitedWithCode(10), "^\nAlloc Error: \"UCHAR\" 21 x 1\\(\\+[0-9]+-0:sum=[0-9]+\\)\n$")
            << allocation;
    }
}

TEST(SetParams, IgnoredFailureCountsNothingAndLeavesNoList) {
    const FreshGlobals globals;
    reuse_pool();
    pushIgnore(ALC_ERR);
    MaterialRecord record{};
    set_params(record, Bytes(21, 1)); // there is a block, which fills up
    std::int32_t stored = 1;
    {
        const FailingAllocation failing(1);
        for (set_params(record, Bytes(21, 1)); record.paramCount != 0; set_params(record, Bytes(21, 1))) {
            ++stored;
        }
    }
    EXPECT_GE(stored, 49'932); // 1 MiB / 21
    EXPECT_EQ(allocCount, stored);
    EXPECT_EQ(allocTotal, stored * 21);
    EXPECT_EQ(record.paramCount, 0);
    EXPECT_EQ(get_params(record), ParamList{});
    set_params(record, Bytes{1, 2, 3});
    EXPECT_EQ(get_params(record), listOf({1, 2, 3}));
    reuse_pool();
}

TEST(GetParams, BytesBeyondTheListAreZero) {
    const FreshGlobals globals;
    reuse_pool();
    // The bytes behind the shorter lists are in use: lists of 255s lay there, and others follow.
    for (const std::size_t length : {1U, 2U, 3U, 4U, 5U, 12U}) {
        std::array<MaterialRecord, 2> records{};
        for (MaterialRecord& record : records) {
            set_params(record, Bytes(21, 255));
            set_params(record, Bytes(4, 255));
        }
        reuse_pool();
        set_params(records[0], numbered(1, length));
        set_params(records[1], Bytes(21, 255));
        EXPECT_EQ(get_params(records[0]), listOf(numbered(1, length))) << length;
        EXPECT_EQ(get_params(records[1]), listOf(Bytes(21, 255))) << length;
    }
}

TEST(GetParams, OfARecordWithoutListAreZero) {
    EXPECT_EQ(get_params(MaterialRecord{}), ParamList{});
}

TEST(GetParams, ListsOfManyBlocksAreAllThere) {
    const FreshGlobals globals;
    reuse_pool();
    // 1 MiB is no multiple of 21 or 12: lists stand right before and right behind its end. Those of 3 are not
    // there.
    static constexpr std::array<std::size_t, 4> lengths = {21, 12, 3, 21};
    std::vector<MaterialRecord> records(200'000);
    std::int32_t bytes = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::size_t length = lengths[i % lengths.size()];
        set_params(records[i], numbered(i, length));
        bytes += static_cast<std::int32_t>(length);
    }
    ASSERT_GT(bytes, 2 * 1024 * 1024);
    EXPECT_EQ(allocCount, 200'000);
    EXPECT_EQ(allocTotal, bytes);
    for (std::size_t i = 0; i < records.size(); ++i) {
        ASSERT_EQ(get_params(records[i]), listOf(numbered(i, lengths[i % lengths.size()]))) << i;
    }
    reuse_pool();
}

TEST(GetParams, EveryLengthOfListSurvivesTheEndOfABlock) {
    const FreshGlobals globals;
    static constexpr std::size_t block = 1U << 20;
    // Shorter lists lie in their records.
    static constexpr std::size_t shortest = sizeof(MaterialRecord::param) + 1;
    for (std::size_t length = shortest; length <= maxParams; ++length) {
        reuse_pool();
        // Fill up so that a list ends right at the end of the block, just behind it, or just begins there.
        for (const std::size_t beyond : {std::size_t{0}, std::size_t{1}, length - 1}) {
            reuse_pool();
            std::size_t used = 0;
            while (block - used > length - beyond) {
                const std::size_t rest = block - used - (length - beyond);
                const bool leavesTooLittle = rest > maxParams && rest < maxParams + shortest;
                const std::size_t size = leavesTooLittle ? rest - shortest : std::min(rest, maxParams);
                MaterialRecord filler{};
                set_params(filler, Bytes(size, 0xAA));
                used += size;
            }
            MaterialRecord last{};
            MaterialRecord next{};
            set_params(last, numbered(1, length));
            set_params(next, numbered(2, 21));
            EXPECT_EQ(get_params(last), listOf(numbered(1, length))) << length << " " << beyond;
            EXPECT_EQ(get_params(next), listOf(numbered(2, 21))) << length << " " << beyond;
        }
    }
    reuse_pool();
}

TEST(FreeParams, CountsTheReleaseAndForgetsTheList) {
    const FreshGlobals globals;
    reuse_pool();
    MaterialRecord record{};
    set_params(record, Bytes{1, 2, 3});
    free_params(record);
    EXPECT_EQ(freeCount, 1);
    EXPECT_EQ(allocTotal, 3); // only chunked arrays lower the total
    EXPECT_EQ(record.param, 0U);
    EXPECT_EQ(get_params(record), ParamList{});
}

TEST(FreeParams, OfNoListIsNotCounted) {
    const FreshGlobals globals;
    MaterialRecord record{};
    free_params(record);
    EXPECT_EQ(freeCount, 0);
}

TEST(ReusePool, GivesTheNextListsTheSamePlaces) {
    const FreshGlobals globals;
    reuse_pool();
    MaterialRecord white{};
    set_params(white, Bytes{255, 255, 255});
    std::array<MaterialRecord, 2> first{};
    set_params(first[0], numbered(1, 12));
    set_params(first[1], numbered(2, 21));
    reuse_pool();
    std::array<MaterialRecord, 2> second{};
    set_params(second[0], numbered(3, 12));
    set_params(second[1], numbered(4, 21));
    EXPECT_EQ(second[0].param, first[0].param);
    EXPECT_EQ(second[1].param, first[1].param);
    EXPECT_EQ(get_params(second[0]), listOf(numbered(3, 12)));
    EXPECT_EQ(get_params(second[1]), listOf(numbered(4, 21)));
    EXPECT_EQ(get_params(white), listOf({255, 255, 255}));
}

TEST(ReusePool, ServesObjectAfterObjectFromTheSameBlocks) {
    const FreshGlobals globals;
    reuse_pool();
    MaterialRecord white{};
    set_params(white, Bytes{255, 255, 255});
    std::uint32_t last = 0;
    for (int object = 0; object < 5; ++object) {
        // More than one block for each object.
        MaterialRecord record{};
        for (std::size_t i = 0; i < 60'000; ++i) {
            set_params(record, numbered(i, 21));
        }
        EXPECT_EQ(get_params(record), listOf(numbered(59'999, 21)));
        EXPECT_EQ(get_params(white), listOf({255, 255, 255}));
        if (object != 0) {
            EXPECT_EQ(record.param, last);
        }
        last = record.param;
        reuse_pool();
    }
    EXPECT_EQ(allocCount, 300'001);
    reuse_pool();
}
