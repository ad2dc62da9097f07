// Lines of a report.
#include "utilkit/reportline.hpp"

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

template <class... Parts> std::string lineOf(const Parts&... parts) {
    return printed([&](std::FILE* stream) {
        ReportLine line{.stream = stream};
        append(line, parts...);
        putReportLine(line);
    });
}

} // namespace

TEST(ReportLine, PadsNumbersInFront) {
    struct Case {
        std::int64_t number;
        std::size_t width;
        std::string text;
    };
    const std::array<Case, 14> cases = {{
        {0, 0, "0\n"},
        {0, 3, "  0\n"},
        {7, 1, "7\n"},
        {9, 2, " 9\n"},
        {10, 2, "10\n"},
        {255, 3, "255\n"},
        {1000, 3, "1000\n"},
        {-1, 2, "-1\n"},
        {-1, 6, "    -1\n"},
        {-32768, 6, "-32768\n"},
        {-32768, 5, "-32768\n"},
        {32767, 16, "           32767\n"},
        {4294967295, 3, "4294967295\n"},
        {-2147483648LL, 0, "-2147483648\n"},
    }};
    for (const Case& each : cases) {
        EXPECT_EQ(lineOf(Padded{each.number, each.width}), each.text);
    }
}

TEST(ReportLine, TakesNumbersOfAnyType) {
    EXPECT_EQ(lineOf(std::uint8_t{200}, " ", std::uint16_t{65535}, " ", std::int32_t{-5}, " ",
                     std::uint32_t{4294967295}),
              "200 65535 -5 4294967295\n");
}

TEST(ReportLine, WritesSmallHexadecimalDigits) {
    EXPECT_EQ(lineOf(Hexadecimal{0}), "0x0\n");
    EXPECT_EQ(lineOf(Hexadecimal{0x9ABCDEF0}), "0x9abcdef0\n");
    EXPECT_EQ(lineOf("(", Hexadecimal{0x20000304}, ")"), "(0x20000304)\n");
}

TEST(ReportLine, StartsAnewBehindALine) {
    EXPECT_EQ(printed([](std::FILE* stream) {
                  ReportLine line{.stream = stream};
                  append(line, "first");
                  putReportLine(line);
                  putReportLine(line);
                  append(line, "third");
                  putReportLine(line);
              }),
              "first\n\nthird\n");
}

// Such lines do not occur in reports.
TEST(ReportLine, GoesOutInPartsWhenItIsLong) {
    for (const std::size_t length : {255U, 256U, 257U, 511U, 512U, 513U, 10'000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(lineOf(text), text + "\n");
        EXPECT_EQ(lineOf("ab", text, 123456), "ab" + text + "123456\n");
    }
}

// The words of a packet wait when its lines are printed: when a reader can have the lines, the words are in
// the file.
TEST(ReportLine, WordsAreInTheFileBeforeLinesAreOnTheirWay) {
    const TestDirectory here;
    FileRecord* tmd = fileOpen("tmd", "wb");
    std::FILE* report = std::fopen("report", "wb");
    ASSERT_NE(report, nullptr);
    const std::array<std::uint32_t, 2> packet = {1, 2};
    std::string lines;
    for (std::size_t packets = 1; packets <= 1000; ++packets) {
        ReportLine line{.stream = report};
        append(line, "line of packet ", packets);
        lines += "line of packet " + std::to_string(packets) + "\n";
        putReportLine(line);
        put4ByteArray(packet.data(), 2, tmd);
        // The last line out may be that of a packet which was about to be put.
        const std::string out = bytesOf("report");
        const auto shown = static_cast<std::size_t>(std::count(out.begin(), out.end(), '\n'));
        ASSERT_GE(bytesOf("tmd").size() + 8, shown * 8);
    }
    EXPECT_LT(bytesOf("tmd").size(), std::size_t{1000} * 8); // some wait
    std::fclose(report);
    fileClose(tmd);
    EXPECT_EQ(bytesOf("report"), lines);
    EXPECT_EQ(bytesOf("tmd").size(), std::size_t{1000} * 8);
}
