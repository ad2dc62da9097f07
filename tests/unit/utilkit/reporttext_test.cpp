// The text of the detail dump.
#include "utilkit/reporttext.hpp"

#include "unit/printed.hpp"
#include "unit/support.hpp"

#include "utilkit/fopen.hpp"
#include "utilkit/put4.hpp"

#include <algorithm>
#include <array>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

template <class... Parts> std::string textOf(const Parts&... parts) {
    return printed([&](std::FILE* stream) { putReport(stream, parts...); });
}

// A stream to a file, that is closed in the end.
struct OpenStream {
    explicit OpenStream(const char* name) : stream(std::fopen(name, "wb")) {}
    ~OpenStream() { std::fclose(stream); }
    OpenStream(const OpenStream&) = delete;
    OpenStream& operator=(const OpenStream&) = delete;

    std::FILE* stream;
};

} // namespace

TEST(PutReport, AlignsNumbersOnTheRight) {
    struct Case {
        std::int64_t number;
        std::size_t width;
        std::string text;
    };
    const std::array<Case, 14> cases = {{
        {0, 0, "0"},
        {0, 3, "  0"},
        {7, 1, "7"},
        {9, 2, " 9"},
        {10, 2, "10"},
        {255, 3, "255"},
        {1000, 3, "1000"},
        {-1, 2, "-1"},
        {-1, 6, "    -1"},
        {-32768, 6, "-32768"},
        {-32768, 5, "-32768"},
        {32767, 16, "           32767"},
        {4294967295, 3, "4294967295"},
        {-2147483648LL, 0, "-2147483648"},
    }};
    for (const Case& each : cases) {
        EXPECT_EQ(textOf(Padded{each.number, each.width}), each.text);
    }
}

TEST(PutReport, TakesNumbersOfUpTo32Bits) {
    EXPECT_EQ(textOf(std::uint8_t{200}, " ", std::uint16_t{65535}, " ", std::int32_t{-5}, " ",
                     std::uint32_t{4294967295}),
              "200 65535 -5 4294967295");
}

TEST(PutReport, WritesLowerCaseHexadecimalDigits) {
    EXPECT_EQ(textOf(Hexadecimal{0}), "0");
    EXPECT_EQ(textOf(Hexadecimal{0x9ABCDEF0}), "9abcdef0");
    EXPECT_EQ(textOf("(0x", Hexadecimal{0x20000304}, ")"), "(0x20000304)");
}

TEST(PutReport, LosesNothingWhereItsBlockIsFull) {
    for (const std::size_t length : {4095U, 4096U, 4097U, 8191U, 8192U, 8193U, 20'000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(textOf(text), text);
        EXPECT_EQ(textOf("ab", text, 123456, "\n"), "ab" + text + "123456\n");
        EXPECT_EQ(textOf(text, text), text + text);
    }
}

TEST(PutReport, KeepsStreamsApart) {
    const TestDirectory here;
    {
        const OpenStream first("first");
        const OpenStream second("second");
        putReport(first.stream, "a");
        putReport(second.stream, "b");
        putReport(first.stream, "c");
        sendReport();
        sendReport(); // there is none
    }
    EXPECT_EQ(bytesOf("first"), "ac");
    EXPECT_EQ(bytesOf("second"), "b");
}

// A packet is put when its text has been: whatever has been read of the report, the packets whose text ended
// before are in the file. No buffer of the stream's own stands between.
TEST(PutReport, PacketsAreInTheFileBeforeTheirTextIsOnItsWay) {
    const TestDirectory here;
    FileRecord* tmd = fileOpen("tmd", "wb");
    const OpenStream report("report");
    std::setvbuf(report.stream, nullptr, _IONBF, 0);
    const std::array<std::uint32_t, 2> packet = {1, 2};
    std::string text;
    std::size_t mostWaiting = 0;
    for (std::uint32_t packets = 0; packets < 1000; ++packets) {
        putReport(report.stream, "packet ", packets, "\n");
        text += "packet " + std::to_string(packets) + "\n";
        const std::string out = bytesOf("report");
        const auto shown = static_cast<std::size_t>(std::count(out.begin(), out.end(), '\n'));
        ASSERT_GE(bytesOf("tmd").size(), shown * 8) << packets;
        put4ByteArray(packet.data(), 2, tmd);
        mostWaiting = std::max(mostWaiting, (packets + 1) * 8 - bytesOf("tmd").size());
    }
    EXPECT_GT(mostWaiting, 1000U); // the file is not written for each packet
    sendReport();
    EXPECT_EQ(bytesOf("report"), text);
    EXPECT_EQ(bytesOf("tmd").size(), 8000U);
    fileClose(tmd);
}
