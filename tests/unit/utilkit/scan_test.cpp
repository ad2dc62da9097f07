// Numbers in text. The reference is the C library's own scanner: every spelling of the tables has to
// give the same result, value and place behind it.
#include "utilkit/scan.hpp"

#include <array>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

Cursor cursorOver(const std::string& text) {
    return {.next = text.c_str(), .last = text.c_str() + text.size()};
}

const std::vector<std::string> fronts = {"", " ", "\t\v\f\r\n ", "-", "+", " -", "- ", "--", "+-", "x"};

const std::vector<std::string> tails = {"",  " ",  "\t7", "\r", " 8 9", ",",  ",1", "-",    "-1",
                                        "x", "e5", ".",   ".5", "#",    "\"", "_",  "\xA0", "%"};

const std::vector<std::string> wholeNumbers = {
    "0",
    "1",
    "7",
    "9",
    "00",
    "007",
    "10",
    "42",
    "128",
    "255",
    "256",
    "32767",
    "32768",
    "65535",
    "65536",
    "99999",
    "1000000",
    "2147483646",
    "2147483647",
    "2147483648",
    "2147483649",
    "4294967294",
    "4294967295",
    "4294967296",
    "4294967297",
    "9223372036854775807",
    "9223372036854775808",
    "18446744073709551615",
    "18446744073709551616",
    "99999999999999999999999",
    "00000000000000000000000001",
    "0000000000000000000002147483648",
};

const std::vector<std::string> hexNumbers = {
    "0",
    "1",
    "a",
    "F",
    "1f",
    "FF",
    "00ff",
    "7fffffff",
    "80000000",
    "ffffffff",
    "FFFFFFFF",
    "100000000",
    "123456789abcdef0",
    "ffffffffffffffff",
    "10000000000000000",
    "0x",
    "0X",
    "0x0",
    "0X1f",
    "0xG",
    "0xffffffff",
    "0x100000000",
    "x1",
    "0x0x1",
    "g",
    "deadbeef",
    "0xdeadBEEF",
    "1e5",
    "00x1",
    "h",
    "0b1",
    "c0ffee",
};

const std::vector<std::string> realNumbers = {
    // Plain ones.
    "0",
    "1",
    "12",
    "0.0",
    "0.5",
    "1.5",
    "3.14159265",
    "100.25",
    ".5",
    "5.",
    "00.50",
    "000",
    "123456789",
    "0.1",
    "0.2",
    "0.3",
    "1.1",
    "2.675",
    "999.999",
    "65535.5",
    "32767.5",
    "16777216",
    "16777217",
    "16777219",
    "33554431",
    "33554433",
    "0.333333333333333333333333",
    "1.00000005960464477539",
    "1.000000059604644775390626",
    "2147483647",
    "2147483648",
    "4294967296",
    "12345678901234567890",
    "179769313486231570814527423731704356798070567525844996598917476803157260780028538760589558632766878",
    // With exponents.
    "1e0",
    "1e1",
    "1E5",
    "1e+5",
    "1e-5",
    "1.5e3",
    ".5e1",
    "5.e1",
    "1e05",
    "1e-05",
    "6.02e23",
    "1e10",
    "1e-10",
    "0e99",
    "0e99999",
    "1e20",
    "1e-20",
    "12e00000000000000001",
    // At the ends of the range.
    "3.4028234e38",
    "3.40282346638528859811704183484516925440e+38",
    "3.4028235677973366e38",
    "3.4028236e38",
    "3.5e38",
    "1e39",
    "1e100",
    "1e400",
    "1e99999",
    "1.17549435e-38",
    "1.17549421e-38",
    "1e-38",
    "1e-40",
    "1e-45",
    "1.4e-45",
    "7e-46",
    "7.1e-46",
    "1e-46",
    "1e-100",
    "1e-400",
    "1e-99999",
    // Unfinished ones, and none.
    "1e",
    "1e+",
    "1e-",
    "1E",
    "1.e",
    ".e5",
    ".",
    "..5",
    "e5",
    "1ex",
    "1e+x",
    "1.5.5",
    "1..5",
    "",
    "E",
    "1 e5",
    "1d5",
    "1f",
    "1.0f",
    "1L",
    "1,5",
    "'1",
    "1'000",
    // Hexadecimal ones.
    "0x",
    "0x1",
    "0X1F",
    "0x1p3",
    "0x1.8p1",
    "0x.8",
    "0x1p",
    "0x1p+",
    "0xg",
    "0x1.fffffep127",
    "0x1p128",
    "0x1p-149",
    "0x1p-150",
    "0x.p1",
    "0x1.8",
    "0xffffffffff",
    "0x1e5",
    // Not finite.
    "inf",
    "INF",
    "Inf",
    "infinity",
    "INFINITY",
    "infinit",
    "infin",
    "in",
    "i",
    "nan",
    "NAN",
    "NaN",
    "na",
    "n",
    "nan(",
    "nan()",
    "nan(1)",
    "nan(0x7f)",
    "nan(abc_1)",
    "nan(-)",
    "infx",
    "nanx",
    "inf5",
};

std::vector<std::string> combined(const std::vector<std::string>& numbers) {
    std::vector<std::string> spellings;
    for (const std::string& number : numbers) {
        for (const std::string& front : fronts) {
            for (const std::string& tail : tails) {
                spellings.push_back(front + number + tail);
            }
        }
    }
    return spellings;
}

struct Scanned {
    bool converted;
    std::uint32_t bits; // of the value; as it was when nothing converted
    std::ptrdiff_t behind;

    bool operator==(const Scanned&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Scanned& scanned) {
    return stream << (scanned.converted ? "converted " : "not converted ") << std::hex << scanned.bits
                  << std::dec << ", behind it " << scanned.behind;
}

constexpr std::uint32_t untouched = 0x5A5A5A5A;

template <class Number> Scanned scannedByLibrary(const std::string& text, const char* format) {
    auto value = std::bit_cast<Number>(untouched);
    int consumed = 0;
    const bool converted = std::sscanf(text.c_str(), format, &value, &consumed) == 1;
    return {converted, std::bit_cast<std::uint32_t>(value), converted ? consumed : 0};
}

template <class Number> Scanned scannedBy(bool scan(Cursor&, Number&), const std::string& text) {
    auto value = std::bit_cast<Number>(untouched);
    Cursor cursor = cursorOver(text);
    const bool converted = scan(cursor, value);
    return {converted, std::bit_cast<std::uint32_t>(value), converted ? cursor.next - text.c_str() : 0};
}

template <class Number>
void expectAsLibrary(bool scan(Cursor&, Number&), const char* format,
                     const std::vector<std::string>& spellings) {
    for (const std::string& spelling : spellings) {
        EXPECT_EQ(scannedBy(scan, spelling), scannedByLibrary<Number>(spelling, format))
            << testing::PrintToString(spelling);
    }
}

const std::vector<std::string> lines = {
    "1 2 3",
    "  1\t2\r3  ",
    "1 2",
    "1",
    "",
    "   ",
    "1 2 x",
    "1 x 3",
    "x 2 3",
    "1,2,3",
    "1 2 3 4",
    "-1 +2 -3",
    "1-2-3",
    "1+2+3",
    "- 1 2 3",
    "1.5 2.5 3.5",
    "1.5.5.5",
    ".5.5.5",
    "1e2 3e 4",
    "0x10 0x20 0x30",
    "1 2 3x",
    "inf nan -inf",
    "infnan1",
    "1e5e5e5",
    "1e99 2 3",
    "2147483648 2147483649 4294967296",
    "1\n2\n3",
    "1\v2\f3",
    "99999999999999999999 1 2",
    "1 2 #3",
    "1 2\"3\"",
    "0 0 0",
    "00 01 02",
    "1 2 3\x1A",
};

} // namespace

TEST(IsBlank, IsWhiteSpaceOfTheLibrary) {
    for (int code = -128; code < 128; ++code) {
        const auto character = static_cast<char>(code);
        const bool blank = std::isspace(static_cast<unsigned char>(character)) != 0;
        EXPECT_EQ(isBlank(character), blank) << code;
    }
}

TEST(ScanReal, AgreesWithTheLibrary) {
    expectAsLibrary(scanReal, "%f%n", combined(realNumbers));
    expectAsLibrary(scanReal, "%f%n", combined(wholeNumbers));
}

TEST(ScanDecimal, AgreesWithTheLibrary) {
    expectAsLibrary(scanDecimal, "%d%n", combined(wholeNumbers));
    expectAsLibrary(scanDecimal, "%d%n", combined(hexNumbers));
    expectAsLibrary(scanDecimal, "%d%n", combined(realNumbers));
}

TEST(ScanHexadecimal, AgreesWithTheLibrary) {
    expectAsLibrary(scanHexadecimal, "%x%n", combined(hexNumbers));
    expectAsLibrary(scanHexadecimal, "%x%n", combined(wholeNumbers));
    expectAsLibrary(scanHexadecimal, "%x%n", combined(realNumbers));
}

TEST(ScanReal, AgreesOnNumbersOfManyDigits) {
    std::vector<std::string> spellings;
    for (std::size_t length = 1; length <= 400; length += 7) {
        const std::string digits(length, '7');
        for (const char* form : {"", "0.", "1.", ".", "-", "0000000."}) {
            for (const char* exponent : {"", "e-400", "e-40", "e30", "e-390"}) {
                spellings.push_back(form + digits + exponent);
            }
        }
    }
    expectAsLibrary(scanReal, "%f%n", spellings);
}

// Numbers that lie at or near the middle between two neighbours, where rounding is decided.
TEST(ScanReal, RoundsAsTheLibrary) {
    std::vector<std::string> spellings;
    std::uint32_t bits = 0x00000001;
    for (int i = 0; i < 2000; ++i) {
        const auto lower = static_cast<double>(std::bit_cast<float>(bits & 0x7F7FFFFFU));
        const auto upper = static_cast<double>(std::nextafter(static_cast<float>(lower), INFINITY));
        const double middle = std::isfinite(upper) ? (lower + upper) / 2 : lower;
        std::array<char, 400> digits{};
        for (const char* format : {"%.9g", "%.17g", "%.60g", "%.40f"}) {
            std::snprintf(digits.data(), digits.size(), format, middle);
            spellings.emplace_back(digits.data());
            spellings.push_back(spellings.back() + "1");
        }
        bits = bits * 1664525U + 1013904223U;
    }
    expectAsLibrary(scanReal, "%f%n", spellings);
}

TEST(ScanLetter, AgreesWithTheLibrary) {
    for (const std::string& front : fronts) {
        for (const std::string& tail : tails) {
            const std::string text = front + tail;
            char expected = '?';
            int consumed = 0;
            const bool converted = std::sscanf(text.c_str(), " %c%n", &expected, &consumed) == 1;
            char letter = '?';
            Cursor cursor = cursorOver(text);
            EXPECT_EQ(scanLetter(cursor, letter), converted) << testing::PrintToString(text);
            EXPECT_EQ(letter, expected) << testing::PrintToString(text);
            if (converted) {
                EXPECT_EQ(cursor.next - text.c_str(), consumed) << testing::PrintToString(text);
            }
        }
    }
}

TEST(TakeWord, TerminatesTheFirstWordInPlace) {
    struct Row {
        std::string text;
        const char* word;
        std::size_t place;
    };
    const std::vector<Row> rows = {
        {"a", "a", 0},
        {"word", "word", 0},
        {"word ", "word", 0},
        {" word rest", "word", 1},
        {" \t\v\f\r\nword\nrest", "word", 6},
        {"one\ttwo", "one", 0},
        {"one\rtwo", "one", 0},
        {"one\vtwo", "one", 0},
        {"one\ftwo", "one", 0},
        {"\x1A#\"x\xA0\xFF y", "\x1A#\"x\xA0\xFF", 0},
        {std::string("ab\0cd", 5), "ab", 0},
    };
    for (const Row& row : rows) {
        std::string text = row.text;
        const char* word = takeWord(text.data());
        ASSERT_NE(word, nullptr) << row.text;
        EXPECT_STREQ(word, row.word);
        EXPECT_EQ(word, text.data() + row.place) << row.text;
        std::array<char, 32> byLibrary{};
        EXPECT_EQ(std::sscanf(row.text.c_str(), "%31s", byLibrary.data()), 1);
        EXPECT_STREQ(word, byLibrary.data());
        // Nothing else has changed.
        std::string expected = row.text;
        const std::size_t end = row.place + std::string_view(row.word).size();
        if (end < expected.size()) {
            expected[end] = '\0';
        }
        EXPECT_EQ(text, expected);
    }
}

TEST(TakeWord, OfNoWordLeavesTheTextAlone) {
    for (const std::string& blank : {std::string(), std::string(" "), std::string(" \t\v\f\r\n"),
                                     std::string("\0word", 5), std::string("  \0 word", 8)}) {
        std::string text = blank;
        EXPECT_EQ(takeWord(text.data()), nullptr);
        EXPECT_EQ(text, blank);
    }
}

TEST(ScanReals, AgreesWithTheLibrary) {
    for (const std::string& line : lines) {
        std::array<float, 3> expected = {-7, -8, -9};
        const int count = std::sscanf(line.c_str(), "%f %f %f", &expected[0], &expected[1], &expected[2]);
        std::array<float, 3> values = {-7, -8, -9};
        EXPECT_EQ(scanReals(cursorOver(line), values), count == 3) << testing::PrintToString(line);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(std::bit_cast<std::uint32_t>(values[i]), std::bit_cast<std::uint32_t>(expected[i]))
                << i << " of " << testing::PrintToString(line);
        }
    }
}

TEST(ScanDecimals, AgreesWithTheLibrary) {
    for (const std::string& line : lines) {
        std::array<std::int32_t, 3> expected = {-7, -8, -9};
        const int count = std::sscanf(line.c_str(), "%d %d %d", &expected[0], &expected[1], &expected[2]);
        std::array<std::int32_t, 3> values = {-7, -8, -9};
        EXPECT_EQ(scanDecimals(cursorOver(line), values), count == 3) << testing::PrintToString(line);
        EXPECT_EQ(values, expected) << testing::PrintToString(line);
    }
}

TEST(ScanReals, ANulByteEndsTheText) {
    using namespace std::string_literals;
    const std::string text = "1 2\0 3"s;
    std::array<float, 3> reals = {-7, -8, -9};
    EXPECT_FALSE(scanReals(cursorOver(text), reals));
    EXPECT_EQ(reals, (std::array<float, 3>{1, 2, -9}));
    std::array<std::int32_t, 3> decimals = {-7, -8, -9};
    EXPECT_FALSE(scanDecimals(cursorOver(text), decimals));
    EXPECT_EQ(decimals, (std::array<std::int32_t, 3>{1, 2, -9}));
    const std::string inside = "1\0002 3"s;
    EXPECT_TRUE(scanReals(cursorOver(inside), std::span(reals).first(1)));
    EXPECT_EQ(reals[0], 1.0F);
    EXPECT_FALSE(scanReals(cursorOver(inside), reals));
    char letter = '?';
    const std::string blank = " \0a"s;
    Cursor cursor = cursorOver(blank);
    EXPECT_FALSE(scanLetter(cursor, letter));
    EXPECT_EQ(letter, '?');
}

TEST(ScanNumbers, MoveTheCursorAlongALine) {
    const std::string line = "24 2 -3 +4.5 GZ 1f";
    Cursor cursor = cursorOver(line);
    std::uint32_t type = 0;
    std::int32_t index = 0;
    float real = 0;
    char letter = '?';
    EXPECT_TRUE(scanHexadecimal(cursor, type));
    EXPECT_EQ(type, 0x24U);
    EXPECT_TRUE(scanDecimal(cursor, index));
    EXPECT_EQ(index, 2);
    EXPECT_TRUE(scanDecimal(cursor, index));
    EXPECT_EQ(index, -3);
    EXPECT_TRUE(scanReal(cursor, real));
    EXPECT_EQ(real, 4.5F);
    EXPECT_TRUE(scanLetter(cursor, letter));
    EXPECT_EQ(letter, 'G');
    EXPECT_TRUE(scanLetter(cursor, letter));
    EXPECT_EQ(letter, 'Z');
    EXPECT_TRUE(scanHexadecimal(cursor, type));
    EXPECT_EQ(type, 0x1FU);
    EXPECT_EQ(cursor.next, cursor.last);
    EXPECT_FALSE(scanLetter(cursor, letter));
    EXPECT_FALSE(scanDecimal(cursor, index));
}

TEST(TruncateToInt, TruncatesTowardZeroWithinTheRange) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr double infinite = std::numeric_limits<double>::infinity();
    struct Truncation {
        double value;
        std::int32_t result;
    };
    const Truncation truncations[] = {
        {0.0, 0},
        {-0.0, 0},
        {0.999999999, 0},
        {-0.999999999, 0},
        {1.0, 1},
        {-1.0, -1},
        {1.9, 1},
        {-1.9, -1},
        {32767.5, 32767},
        {-32768.5, -32768},
        {2147483646.5, 2147483646},
        {2147483647.0, 2147483647},
        {2147483647.9999998, 2147483647}, // the last number below 2^31
        {-2147483647.5, -2147483647},
        {-2147483648.0, least},
        {-2147483648.9999995, least}, // the last number above -2^31 - 1
        // Outside of it.
        {2147483648.0, least},
        {2147483649.0, least},
        {4294967296.0, least},
        {4294967297.0, least},
        {-2147483649.0, least},
        {-4294967295.0, least},
        {1e300, least},
        {-1e300, least},
        {infinite, least},
        {-infinite, least},
        {std::numeric_limits<double>::quiet_NaN(), least},
        {-std::numeric_limits<double>::quiet_NaN(), least},
        {std::numeric_limits<double>::denorm_min(), 0},
    };
    for (const Truncation& one : truncations) {
        EXPECT_EQ(truncateToInt(one.value), one.result) << one.value;
    }
}
