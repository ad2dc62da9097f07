// Reading text ahead.
#include "utilkit/textblock.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"

#include <cstdio>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

// The text of `length` characters in which every place can be told from its neighbours.
std::string textOfLength(std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += static_cast<char>('!' + i % 89);
    }
    return text;
}

} // namespace

TEST(FillTextBlock, KeepsWhatIsNotHandedOut) {
    const std::string content = textOfLength(700'000);
    const TestDirectory here({{"in", content}});
    std::FILE* stream = std::fopen("in", "r");
    ASSERT_NE(stream, nullptr);
    TextBlock block{};
    EXPECT_TRUE(fillTextBlock(block, stream));
    ASSERT_GT(pendingText(block).size(), 100U);
    EXPECT_TRUE(content.starts_with(pendingText(block)));
    block.next += 100;
    while (fillTextBlock(block, stream)) {
        EXPECT_TRUE(std::string_view(content).substr(100).starts_with(pendingText(block)));
        EXPECT_EQ(block.bytes[block.end], '\0');
    }
    EXPECT_TRUE(pendingText(block) == content.substr(100));
    freeTextBlock(block);
    EXPECT_EQ(block.bytes, nullptr);
    EXPECT_EQ(block.capacity, 0U);
    std::fclose(stream);
}

TEST(FillTextBlock, ReusesTheRoomOfWhatIsHandedOut) {
    const std::string content = textOfLength(2'000'000);
    const TestDirectory here({{"in", content}});
    std::FILE* stream = std::fopen("in", "r");
    ASSERT_NE(stream, nullptr);
    TextBlock block{};
    std::string read;
    // The first fill of a file is a small one.
    fillTextBlock(block, stream);
    EXPECT_LT(block.capacity, 10'000U);
    fillTextBlock(block, stream);
    const std::size_t capacity = block.capacity;
    do {
        read += pendingText(block);
        block.next = block.end;
    } while (fillTextBlock(block, stream));
    EXPECT_TRUE(read == content);
    EXPECT_EQ(block.capacity, capacity);
    freeTextBlock(block);
    std::fclose(stream);
}

TEST(FillTextBlock, FailsAtTheEndAndOnReadErrors) {
    const TestDirectory here({{"empty", ""}});
    for (const char* name : {"empty", "."}) {
        SCOPED_TRACE(name);
        std::FILE* stream = std::fopen(name, "r");
        ASSERT_NE(stream, nullptr);
        TextBlock block{};
        EXPECT_FALSE(fillTextBlock(block, stream));
        EXPECT_EQ(pendingText(block), "");
        freeTextBlock(block);
        std::fclose(stream);
    }
}

TEST(FillTextBlock, PutsNullBytesBehindTheText) {
    const TestDirectory here({{"in", "ab\ncd"}});
    std::FILE* stream = std::fopen("in", "r");
    ASSERT_NE(stream, nullptr);
    TextBlock block{};
    EXPECT_TRUE(fillTextBlock(block, stream));
    EXPECT_EQ(std::string(block.bytes, 8), std::string("ab\ncd\0\0\0", 8));
    // ... also where something else stood before it was handed out.
    std::memcpy(block.bytes, "xxxxxxxx", 8);
    block.next = block.end;
    EXPECT_FALSE(fillTextBlock(block, stream));
    EXPECT_EQ(std::string(block.bytes + block.end, 4), std::string("\0\0\0x", 4));
    freeTextBlock(block);
    std::fclose(stream);
}

TEST(FillTextBlock, IgnoredMissingMemoryReadsNothing) {
    const TestDirectory here({{"in", "text"}});
    std::FILE* stream = std::fopen("in", "r");
    ASSERT_NE(stream, nullptr);
    pushIgnore(ALC_ERR);
    TextBlock block{};
    failAllocation(1);
    EXPECT_FALSE(fillTextBlock(block, stream));
    EXPECT_TRUE(hasFailedAllocation());
    EXPECT_EQ(pendingText(block), "");
    EXPECT_TRUE(fillTextBlock(block, stream));
    EXPECT_EQ(pendingText(block), "text");
    freeTextBlock(block);
    std::fclose(stream);
}
