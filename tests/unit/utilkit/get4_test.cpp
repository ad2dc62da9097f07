// Little-endian input.
#include "utilkit/get4.hpp"

#include "unit/support.hpp"

#include <cstdio>
#include <limits>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Value {
    const char* bytes;
    std::int32_t value;
};

const Value words[] = {
    {"78 56 34 12", 0x12345678},
    {"00 00 00 00", 0},
    {"01 00 00 00", 1},
    {"FF FF FF FF", -1},
    {"FE FF FF FF", -2},
    {"FF FF FF 7F", 2147483647},
    {"00 00 00 80", std::numeric_limits<std::int32_t>::min()},
    {"1A 0D 0A 00", 0x000A0D1A},
    {"80 00 00 00", 128},
};

const Value halves[] = {
    {"FE FF", -2},     {"34 12", 0x1234}, {"00 00", 0},      {"FF 7F", 32767},
    {"00 80", -32768}, {"80 00", 128},    {"0D 0A", 0x0A0D},
};

} // namespace

TEST(Get4Bytes, ReadsLeastSignificantByteFirst) {
    for (const Value& word : words) {
        SCOPED_TRACE(word.bytes);
        const TestDirectory here({{"in", fromHex(word.bytes)}});
        FileRecord* file = fileOpen("in", "rb");
        EXPECT_EQ(get4Bytes(file), word.value);
        EXPECT_EQ(file->position, 4);
        fileClose(file);
    }
}

TEST(Get2Bytes, ReadsLeastSignificantByteFirstAndExtendsTheSign) {
    for (const Value& half : halves) {
        SCOPED_TRACE(half.bytes);
        const TestDirectory here({{"in", fromHex(half.bytes)}});
        FileRecord* file = fileOpen("in", "rb");
        EXPECT_EQ(get2Bytes(file), half.value);
        EXPECT_EQ(file->position, 2);
        fileClose(file);
    }
}

TEST(Get4Bytes, GoesOnWhereTheLastReadEnded) {
    const TestDirectory here({{"in", fromHex("01 00 02 00 00 00 FF FF 03 00 00 00")}});
    FileRecord* file = fileOpen("in", "rb");
    EXPECT_EQ(get2Bytes(file), 1);
    EXPECT_EQ(get4Bytes(file), 2);
    EXPECT_EQ(get2Bytes(file), -1);
    EXPECT_EQ(get4Bytes(file), 3);
    EXPECT_EQ(file->position, 12);
    EXPECT_EQ(fileSeek(file, 2), 1);
    EXPECT_EQ(get4Bytes(file), 2);
    EXPECT_EQ(file->position, 6);
    fileClose(file);
}

TEST(Get4Bytes, EndOfFileEndsWithStatus41BehindTheWord) {
    for (const char* bytes : {"", "01", "01 02 03"}) {
        SCOPED_TRACE(bytes);
        const TestDirectory here({{"in", fromHex(bytes)}});
        EXPECT_EXIT(get4Bytes(fileOpen("in", "rb")), ExitedWithCode(41),
                    Eq("\nUnexpected EOF: \"in\" at 4 bytes\n"));
    }
    const TestDirectory here({{"in", fromHex("01 02 03 04 05")}});
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen("./in", "rb");
            get4Bytes(file);
            get4Bytes(file);
        },
        ExitedWithCode(41), Eq("\nUnexpected EOF: \"./in\" at 8 bytes\n"));
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen("in", "rb");
            fileSeek(file, 100);
            get4Bytes(file);
        },
        ExitedWithCode(41), Eq("\nUnexpected EOF: \"in\" at 104 bytes\n"));
}

TEST(Get2Bytes, EndOfFileEndsWithStatus39BehindTheHalfWord) {
    for (const char* bytes : {"", "01"}) {
        SCOPED_TRACE(bytes);
        const TestDirectory here({{"in", fromHex(bytes)}});
        EXPECT_EXIT(get2Bytes(fileOpen("in", "rb")), ExitedWithCode(39),
                    Eq("\nUnexpected EOF: \"in\" at 2 bytes\n"));
    }
    const TestDirectory here({{"in", fromHex("01 02 03")}});
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen("in", "rb");
            get2Bytes(file);
            get2Bytes(file);
        },
        ExitedWithCode(39), Eq("\nUnexpected EOF: \"in\" at 4 bytes\n"));
}

TEST(Get4Bytes, ReadFailureEndsWithStatus40) {
    const TestDirectory here;
    EXPECT_EXIT(get4Bytes(fileOpen(".", "rb")), ExitedWithCode(40), Eq("\nFail to read: \".\" at 4 bytes\n"));
}

TEST(Get2Bytes, ReadFailureEndsWithStatus38) {
    const TestDirectory here;
    EXPECT_EXIT(get2Bytes(fileOpen(".", "rb")), ExitedWithCode(38), Eq("\nFail to read: \".\" at 2 bytes\n"));
}

TEST(Get4Bytes, IgnoredFailuresReturnAndMoveThePosition) {
    const TestDirectory here({{"in", "a"}});
    pushIgnore(EOF_ERR);
    pushIgnore(READ_ERR);
    for (const char* name : {"in", "."}) {
        FileRecord* file = fileOpen(name, "rb");
        get4Bytes(file);
        EXPECT_EQ(file->position, 4);
        get2Bytes(file);
        EXPECT_EQ(file->position, 6);
        fileClose(file);
    }
}

TEST(SkipBytes, ReadsOverBlocksOfAnySize) {
    const std::uint32_t block = 64 * 1024;
    for (const std::uint32_t count :
         {0U, 1U, 2U, block - 1, block, block + 1, 2 * block - 1, 2 * block, 2 * block + 1, 5 * block + 77}) {
        SCOPED_TRACE(count);
        const TestDirectory here(
            {{"in", fromHex("01 00 00 00") + std::string(count, 'x') + fromHex("02 00 00 00 03 00")}});
        FileRecord* file = fileOpen("in", "rb");
        EXPECT_EQ(get4Bytes(file), 1);
        EXPECT_TRUE(skipBytes(file, count));
        EXPECT_EQ(file->position, static_cast<std::int32_t>(count) + 4);
        EXPECT_EQ(get4Bytes(file), 2);
        EXPECT_TRUE(skipBytes(file, 2));
        EXPECT_EQ(file->position, static_cast<std::int32_t>(count) + 10);
        // No bytes are always there.
        EXPECT_TRUE(skipBytes(file, 0));
        EXPECT_FALSE(skipBytes(file, 1));
        EXPECT_EQ(file->position, static_cast<std::int32_t>(count) + 10);
        fileClose(file);
    }
}

TEST(SkipBytes, EndsAtTheLastByteThatIsThere) {
    const std::uint32_t block = 64 * 1024;
    for (const std::uint32_t there : {0U, 1U, block - 1, block, block + 1, 2 * block, 3 * block + 5}) {
        for (const std::uint32_t missing : {1U, 2U, block, 0x7FFFFFFFU, 0xFFFFFFFFU - 3 * block - 5}) {
            SCOPED_TRACE(testing::Message() << there << " + " << missing);
            const TestDirectory here({{"in", "head" + std::string(there, 'x')}});
            FileRecord* file = fileOpen("in", "rb");
            get4Bytes(file);
            EXPECT_FALSE(skipBytes(file, there + missing));
            EXPECT_EQ(file->position, static_cast<std::int32_t>(there) + 4);
            EXPECT_NE(std::feof(file->stream), 0);
            EXPECT_EQ(std::ferror(file->stream), 0);
            fileClose(file);
        }
    }
}

TEST(SkipBytes, StopsAtAReadFailure) {
    const TestDirectory here;
    FileRecord* file = fileOpen(".", "rb");
    EXPECT_FALSE(skipBytes(file, 10));
    EXPECT_EQ(file->position, 0);
    EXPECT_NE(std::ferror(file->stream), 0);
    fileClose(file);
}

TEST(SkipBytes, PositionWraps) {
    const TestDirectory here({{"in", "abcd"}});
    FileRecord* file = fileOpen("in", "rb");
    file->position = std::numeric_limits<std::int32_t>::max();
    EXPECT_TRUE(skipBytes(file, 2));
    EXPECT_EQ(file->position, std::numeric_limits<std::int32_t>::min() + 1);
    fileClose(file);
}
