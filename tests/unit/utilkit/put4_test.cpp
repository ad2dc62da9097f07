// Little-endian output.
#include "utilkit/put4.hpp"

#include "tmd/packetarea.hpp"
#include "tmd/packetrows.hpp"
#include "unit/support.hpp"
#include "utilkit/exit.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <limits>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

using TwoWords = std::array<std::uint32_t, 2>;

// Opens a new pipe "pipe" for writing; `reader` is its other end.
FileRecord* openPipe(int& reader) {
    std::signal(SIGPIPE, SIG_IGN);
    ::mkfifo("pipe", 0600);
    reader = ::open("pipe", O_RDWR);
    return fileOpen("pipe", "wb");
}

} // namespace

TEST(Put4Bytes, WritesLeastSignificantByteFirst) {
    const TestDirectory here;
    FileRecord* file = fileOpen("out", "wb");
    EXPECT_EQ(put4Bytes(0x12345678, file), 1);
    EXPECT_EQ(file->position, 4);
    EXPECT_EQ(put4Bytes(0, file), 1);
    EXPECT_EQ(put4Bytes(0xFFFFFFFE, file), 1);
    EXPECT_EQ(put4Bytes(0x0A0D1A00, file), 1);
    EXPECT_EQ(file->position, 16);
    fileClose(file);
    EXPECT_EQ(bytesOf("out"), fromHex("78 56 34 12  00 00 00 00  FE FF FF FF  00 1A 0D 0A"));
}

TEST(Put4Bytes, FlushesAfterEveryWord) {
    const TestDirectory here;
    FileRecord* file = fileOpen("out", "wb");
    put4Bytes(1, file);
    EXPECT_EQ(bytesOf("out"), fromHex("01 00 00 00"));
    put4Bytes(2, file);
    EXPECT_EQ(bytesOf("out"), fromHex("01 00 00 00 02 00 00 00"));
    fileClose(file);
}

TEST(Put4Bytes, PositionWraps) {
    const TestDirectory here;
    FileRecord* file = fileOpen("out", "wb");
    file->position = std::numeric_limits<std::int32_t>::max() - 3;
    EXPECT_EQ(put4Bytes(1, file), 1);
    EXPECT_EQ(file->position, std::numeric_limits<std::int32_t>::min());
    fileClose(file);
}

TEST(Put4Bytes, FailedFlushEndsWithStatus36) {
    const TestDirectory here;
    EXPECT_EXIT(put4Bytes(1, fileOpen(fullDevice, "wb")), ExitedWithCode(36),
                Eq("\nFail to write: \"/dev/full\" at 0 bytes\n"));
}

TEST(Put4Bytes, FailedWriteEndsWithStatus36) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen(fullDevice, "wb");
            std::setvbuf(file->stream, nullptr, _IONBF, 0); // nothing is left for the flush
            put4Bytes(1, file);
        },
        ExitedWithCode(36), Eq("\nFail to write: \"/dev/full\" at 0 bytes\n"));
}

TEST(Put4Bytes, FailureNamesThePositionReached) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            int reader = -1;
            FileRecord* file = openPipe(reader);
            put4Bytes(1, file);
            put4Bytes(2, file);
            ::close(reader);
            put4Bytes(3, file);
        },
        ExitedWithCode(36), Eq("\nFail to write: \"pipe\" at 8 bytes\n"));
}

TEST(Put4Bytes, IgnoredFailureReturnsZeroAndKeepsThePosition) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen(fullDevice, "wb");
            pushIgnore(WRIT_ERR);
            const bool asWanted = put4Bytes(1, file) == 0 && file->position == 0;
            std::_Exit(asWanted ? 7 : 8);
        },
        ExitedWithCode(7), Eq(""));
}

TEST(Put4Bytes, IgnoredFailureComesOutAtTheClose) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen(fullDevice, "wb");
            pushIgnore(WRIT_ERR);
            put4Bytes(1, file);
            popIgnore();
            fileClose(file);
        },
        ExitedWithCode(31), Eq("\nFail to Close File : /dev/full\n"));
}

TEST(Put4ByteArray, WritesEveryWordLowByteFirst) {
    const TestDirectory here;
    const std::uint32_t words[] = {0x12345678, 0x80000000, 1};
    FileRecord* file = fileOpen("out", "wb");
    EXPECT_EQ(put4ByteArray(words, 1, file), 4);
    EXPECT_EQ(file->position, 4);
    EXPECT_EQ(put4ByteArray(words, 3, file), 12);
    EXPECT_EQ(file->position, 16);
    fileClose(file);
    EXPECT_EQ(bytesOf("out"), fromHex("78 56 34 12  78 56 34 12  00 00 00 80  01 00 00 00"));
}

TEST(Put4ByteArray, WritesMoreThanTheStreamHolds) {
    const TestDirectory here;
    std::vector<std::uint32_t> words;
    std::string bytes;
    for (std::uint32_t i = 0; i < 100'000; ++i) {
        words.push_back(i << 8 | 0x55);
        bytes += {'\x55', static_cast<char>(i), static_cast<char>(i >> 8), static_cast<char>(i >> 16)};
    }
    FileRecord* file = fileOpen("out", "wb");
    EXPECT_EQ(put4ByteArray(words.data(), 100'000, file), 400'000);
    EXPECT_EQ(file->position, 400'000);
    fileClose(file);
    EXPECT_TRUE(bytesOf("out") == bytes);
}

TEST(Put4ByteArray, CountBelowOneFlushesAndLeavesThePosition) {
    const TestDirectory here;
    const std::uint32_t words[] = {1, 2};
    for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        FileRecord* file = fileOpen("out", "wb");
        put4ByteArray(words, 2, file);
        EXPECT_EQ(put4ByteArray(words, count, file), 0);
        EXPECT_EQ(file->position, 8);
        EXPECT_EQ(bytesOf("out"), fromHex("01 00 00 00 02 00 00 00"));
        fileClose(file);
    }
}

TEST(Put4ByteArray, KeepsTheOrderWithSingleWords) {
    const TestDirectory here;
    const std::uint32_t words[] = {2, 3};
    FileRecord* file = fileOpen("out", "wb");
    put4Bytes(1, file);
    put4ByteArray(words, 2, file);
    put4Bytes(4, file);
    fileSeek(file, 4);
    put4ByteArray(words + 1, 1, file);
    EXPECT_EQ(file->position, 8);
    fileClose(file);
    EXPECT_EQ(bytesOf("out"), fromHex("01 00 00 00 03 00 00 00 03 00 00 00 04 00 00 00"));
}

TEST(Put4ByteArray, FailureIsNotDetectedUntilTheClose) {
    const TestDirectory here;
    for (const std::size_t count : {1U, 200'000U}) { // within the stream's buffer, and beyond it
        SCOPED_TRACE(count);
        EXPECT_EXIT(
            {
                const std::vector<std::uint32_t> words(count, 1);
                const auto size = static_cast<std::int32_t>(count);
                FileRecord* file = fileOpen(fullDevice, "wb");
                if (put4ByteArray(words.data(), size, file) == 4 * size && file->position == 4 * size) {
                    fileClose(file);
                }
            },
            ExitedWithCode(31), Eq("\nFail to Close File : /dev/full\n"));
    }
}

TEST(PendingWords, GoOutBeforeThoseOfAnotherFile) {
    const TestDirectory here;
    const std::array<std::uint32_t, 3> words = {1, 2, 3};
    FileRecord* first = fileOpen("first", "wb");
    FileRecord* second = fileOpen("second", "wb");
    put4Words<3>(words, 2, first);
    EXPECT_EQ(bytesOf("first"), "");
    put4Words<3>(words, 1, second);
    EXPECT_EQ(bytesOf("first"), fromHex("01 00 00 00 02 00 00 00"));
    put4Words<3>(words, 3, first);
    EXPECT_EQ(bytesOf("second"), fromHex("01 00 00 00"));
    EXPECT_EQ(first->position, 20);
    EXPECT_EQ(second->position, 4);
    fileClose(second);
    fileClose(first);
    EXPECT_EQ(bytesOf("first"), fromHex("01 00 00 00 02 00 00 00  01 00 00 00 02 00 00 00 03 00 00 00"));
    EXPECT_EQ(bytesOf("second"), fromHex("01 00 00 00"));
}

TEST(PendingWords, GoOutBeforeASeekAndBeforeASingleWord) {
    const TestDirectory here;
    const std::array<std::uint32_t, 3> words = {1, 2, 3};
    FileRecord* file = fileOpen("out", "wb");
    put4Words<3>(words, 3, file);
    put4Bytes(4, file);
    EXPECT_EQ(bytesOf("out"), fromHex("01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00"));
    put4Words<3>(words, 1, file);
    EXPECT_EQ(fileSeek(file, 4), 1);
    put4Words<3>(words, 1, file);
    fileClose(file);
    EXPECT_EQ(bytesOf("out"), fromHex("01 00 00 00 01 00 00 00 03 00 00 00 04 00 00 00 01 00 00 00"));
}

TEST(PendingWords, GoOutAtTheExit) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            const TwoWords words{};
            static FileRecord* file = fileOpen("out", "wb");
            put4Words<2>(words, 2, file);
            Exit(3);
        },
        ExitedWithCode(3), Eq(""));
    EXPECT_EQ(bytesOf("out"), fromHex("00 00 00 00 00 00 00 00"));
}

// Whatever the words before them leave of the block that they wait in; as packets are put.
TEST(PendingWords, KeepTheirOrderAcrossBlocks) {
    static constexpr std::size_t most = largestPacket / 4;
    const TestDirectory here;
    PacketArea words{};
    std::string bytes;
    std::uint32_t next = 0;
    FileRecord* file = fileOpen("out", "wb");
    for (std::uint32_t i = 0; i < 20'000; ++i) {
        const auto count = static_cast<std::uint32_t>(i % most + 1);
        for (std::uint32_t k = 0; k < count; ++k, ++next) {
            words[k] = next << 8 | 0xAA;
            bytes += {'\xAA', static_cast<char>(next), static_cast<char>(next >> 8),
                      static_cast<char>(next >> 16)};
        }
        put4Words<most>(words, count, file);
        ASSERT_LE(pendingWords.end, pendingWords.bytes.size());
    }
    EXPECT_EQ(file->position, static_cast<std::int32_t>(bytes.size()));
    fileClose(file);
    EXPECT_TRUE(bytesOf("out") == bytes);
}

// Few enough for the stream to take them: the loss shows when it is flushed.
TEST(PendingWords, LossIsKnownToTheStream) {
    const TestDirectory here;
    const TwoWords words{};
    FileRecord* file = fileOpen("out", "wb");
    put4Words<2>(words, 2, file);
    writePendingWords();
    writePendingWords(); // there are none
    EXPECT_EQ(std::ferror(file->stream), 0);
    EXPECT_EQ(bytesOf("out").size(), 8U);
    fileClose(file);
    file = fileOpen(fullDevice, "wb");
    put4Words<2>(words, 2, file);
    writePendingWords();
    EXPECT_NE(std::ferror(file->stream), 0);
    pushIgnore(CLOSE_ERR);
    fileClose(file);
    popIgnore();
}

TEST(PendingWords, LossEndsTheSeek) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            const std::vector<std::uint32_t> words(100'000, 7);
            static FileRecord* file = fileOpen(fullDevice, "wb");
            put4ByteArray(words.data(), 100'000, file);
            writePendingWords();
            fileSeek(file, 12);
        },
        ExitedWithCode(32), Eq("\nSeek error \"/dev/full\" at 12 bytes"));
}
