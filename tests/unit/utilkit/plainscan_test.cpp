// The short road for plain numbers. The general scan is the definition: what the short road takes has to
// have the same value, to the bit, and to end at the same place. It may refuse anything but plain numbers.
#include "utilkit/plainscan.hpp"

#include "unit/utilkit/spellings.hpp"
#include "unit/volume.hpp"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

using namespace spellings;
using namespace vexbind;

namespace {

// Spellings of each test: ten million and some in all, or half a million.
constexpr int realSpellings = atVolume(5'000'000, 200'000);
constexpr int middleSpellings = atVolume(4'000'000, 200'000);
constexpr int wholeSpellings = atVolume(600'000, 50'000); // decimal, hexadecimal, and ranges each

enum class Verdict { refused, taken, wrong };

constexpr std::uint32_t untouched = 0x5A5A5A5A;

// Whether what was taken from the front of `text` ends where the scan does, behind the blank if there is
// one, and does not reach into the next line.
bool endsLike(const char* end, const char* scanned, std::string_view text) {
    const std::string_view taken = text.substr(0, static_cast<std::size_t>(end - text.data()));
    return isBlank(*scanned) && end == scanned + (*scanned == ' ' ? 1 : 0) &&
           taken.find_first_of("\n\r") == std::string_view::npos;
}

template <class Number>
Verdict compare(const char* take(const char*, Number&), bool scan(Cursor&, Number&), std::string_view text) {
    auto value = std::bit_cast<Number>(untouched);
    const char* end = take(text.data(), value);
    if (end == nullptr) {
        return std::bit_cast<std::uint32_t>(value) == untouched ? Verdict::refused : Verdict::wrong;
    }
    auto expected = std::bit_cast<Number>(untouched);
    Cursor cursor{.next = text.data(), .last = text.data() + text.size()};
    const bool agrees = scan(cursor, expected) && endsLike(end, cursor.next, text) &&
                        std::bit_cast<std::uint32_t>(value) == std::bit_cast<std::uint32_t>(expected);
    return agrees ? Verdict::taken : Verdict::wrong;
}

// Counts verdicts, and reports the first wrong ones.
class Tally {
  public:
    // `plain` tells that the text has to be taken.
    void add(Verdict verdict, bool plain, std::string_view text) {
        const bool missed = plain && verdict == Verdict::refused;
        if ((verdict == Verdict::wrong || missed) && ++reported <= 20) {
            ADD_FAILURE() << (missed ? "refused: " : "not as the scan: ")
                          << testing::PrintToString(std::string(text));
        }
        ++(verdict == Verdict::taken ? taken : refused);
    }

    int taken = 0;
    int refused = 0;

  private:
    int reported = 0;
};

// Takes digits off the front of `text`; how many.
std::size_t countDigits(std::string_view& text) {
    const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(count);
    return count;
}

bool takeAny(std::string_view& text, std::string_view characters) {
    const bool found = !text.empty() && characters.find(text[0]) != std::string_view::npos;
    text.remove_prefix(found ? 1 : 0);
    return found;
}

std::string_view skipFront(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text;
}

bool blankFollows(std::string_view text) {
    return !text.empty() && isBlank(text[0]);
}

// Whether the number in front of `text` is right in the middle between two singles in double precision, so
// that how to round it has to be found out from the text.
bool isMiddle(std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return (std::bit_cast<std::uint64_t>(value) & 0x1FFFFFFF) == 0x10000000;
}

// Whether `text` begins with a real number that has to be taken: at most 15 digits, times at most ten to
// the 22nd either way.
bool isPlainReal(std::string_view text) {
    const std::string_view number = skipFront(text);
    text = number;
    takeAny(text, "-");
    std::size_t digits = countDigits(text);
    int power = 0;
    if (takeAny(text, ".")) {
        const std::size_t fraction = countDigits(text);
        digits += fraction;
        power -= static_cast<int>(fraction);
    }
    if (takeAny(text, "eE")) {
        const bool negative = takeAny(text, "-");
        if (!negative) {
            takeAny(text, "+");
        }
        int exponent = 0;
        const std::string_view first = text;
        const std::size_t length = countDigits(text);
        if (length < 1 || length > 2) {
            return false;
        }
        std::from_chars(first.data(), first.data() + length, exponent);
        power += negative ? -exponent : exponent;
    }
    return digits >= 1 && digits <= 15 && std::abs(power) <= 22 && blankFollows(text) && !isMiddle(number);
}

// Whether `text` begins with a decimal number that has to be taken.
bool isPlainDecimal(std::string_view text) {
    text = skipFront(text);
    const std::size_t digits = countDigits(text);
    return digits >= 1 && digits <= 9 && blankFollows(text);
}

bool isPlainHexadecimal(std::string_view text) {
    text = skipFront(text);
    const std::size_t digits = std::min(text.find_first_not_of("0123456789abcdefABCDEF"), text.size());
    text.remove_prefix(digits);
    return digits >= 1 && digits <= 8 && blankFollows(text);
}

bool isPlainRange(std::string_view text) {
    text = skipFront(text);
    const std::size_t first = countDigits(text);
    const std::size_t last = takeAny(text, "-") ? countDigits(text) : first;
    return first >= 1 && first <= 9 && last >= 1 && last <= 9 && blankFollows(text);
}

void compareReal(Tally& tally, std::string_view text) {
    const Verdict verdict = compare(takePlainReal, scanReal, text);
    tally.add(verdict, verdict == Verdict::refused && isPlainReal(text), text);
}

void compareDecimal(Tally& tally, std::string_view text) {
    for (const auto take : {takePlainDecimal, takePlainShort}) {
        const Verdict verdict = compare(take, scanDecimal, text);
        tally.add(verdict, verdict == Verdict::refused && isPlainDecimal(text), text);
    }
}

void compareHexadecimal(Tally& tally, std::string_view text) {
    const Verdict verdict = compare(takePlainHexadecimal, scanHexadecimal, text);
    tally.add(verdict, verdict == Verdict::refused && isPlainHexadecimal(text), text);
}

// As "%d-%d", or else "%d" twice.
Verdict compareRange(std::string_view text) {
    auto first = static_cast<std::int32_t>(untouched);
    auto last = first;
    const char* end = takePlainRange(text.data(), first, last);
    if (end == nullptr) {
        return first == untouched && last == untouched ? Verdict::refused : Verdict::wrong;
    }
    std::int32_t low = 0;
    Cursor cursor{.next = text.data(), .last = text.data() + text.size()};
    bool agrees = scanDecimal(cursor, low);
    std::int32_t high = low;
    if (*cursor.next == '-') {
        ++cursor.next;
        agrees = agrees && scanDecimal(cursor, high);
    }
    agrees = agrees && endsLike(end, cursor.next, text) && first == low && last == high;
    return agrees ? Verdict::taken : Verdict::wrong;
}

void compareRange(Tally& tally, std::string_view text) {
    const Verdict verdict = compareRange(text);
    tally.add(verdict, verdict == Verdict::refused && isPlainRange(text), text);
}

// Calls `test` with every number between every front and every tail; some fronts are no blanks of a line.
template <class Test> void combine(std::vector<std::string_view> numbers, const Test& test) {
    std::vector<std::string_view> before(fronts.begin(), fronts.end());
    before.insert(before.end(),
                  {"\n"sv, "\r"sv, "\r\n "sv, " \n"sv, "\v"sv, "\f"sv, "\x1A"sv, "\0"sv, "x"sv});
    std::vector<std::string_view> behind(plainTails.begin(), plainTails.end());
    behind.insert(behind.end(), oddTails.begin(), oddTails.end());
    behind.insert(behind.end(), {"\v"sv, "\f2"sv, "\v\n"sv});
    numbers.push_back("");
    Spelling spelling;
    for (const std::string_view number : numbers) {
        for (const std::string_view front : before) {
            for (const std::string_view tail : behind) {
                spelling.clear();
                spelling.put(front);
                spelling.put(number);
                spelling.put(tail);
                test(spelling.text());
            }
        }
    }
}

} // namespace

TEST(TakePlainReal, AgreesWithTheScanOnRandomNumbers) {
    Random random(1);
    Tally tally;
    Spelling spelling;
    for (int i = 0; i < realSpellings; ++i) {
        spelling.clear();
        putRandomReal(random, spelling);
        compareReal(tally, spelling.text());
    }
    EXPECT_GT(tally.taken, realSpellings / 2);
    EXPECT_GT(tally.refused, realSpellings / 8);
}

TEST(TakePlainReal, AgreesWithTheScanNearTheMiddleOfTwoSingles) {
    Random random(2);
    Tally tally;
    Spelling spelling;
    for (int i = 0; i < middleSpellings; ++i) {
        spelling.clear();
        spelling.put(random.oneIn(4) ? "-" : "");
        if (random.oneIn(3)) {
            putRoundedMiddle(random, spelling);
        } else {
            putMiddle(random, spelling);
        }
        spelling.put(random.pick(plainTails));
        compareReal(tally, spelling.text());
    }
    EXPECT_GT(tally.taken, middleSpellings / 4);
    EXPECT_GT(tally.refused, middleSpellings / 8);
}

TEST(TakePlainReal, AgreesWithTheScanOnOddSpellings) {
    Tally tally;
    combine(oddReals, [&](std::string_view text) { compareReal(tally, text); });
    combine(oddWholes, [&](std::string_view text) { compareReal(tally, text); });
}

TEST(TakePlainDecimal, AgreesWithTheScan) {
    Random random(3);
    Tally tally;
    Spelling spelling;
    for (int i = 0; i < wholeSpellings; ++i) {
        spelling.clear();
        spelling.put(random.pick(fronts));
        putSign(random, spelling);
        spelling.put("000"sv.substr(random.below(4)));
        spelling.putNumber(random.bits() >> (random.oneIn(4) ? random.below(64) : 36 + random.below(28)));
        spelling.put(randomTail(random));
        compareDecimal(tally, spelling.text());
    }
    EXPECT_GT(tally.taken, wholeSpellings);
    EXPECT_GT(tally.refused, wholeSpellings / 4);
    combine(oddWholes, [&](std::string_view text) { compareDecimal(tally, text); });
    combine(oddReals, [&](std::string_view text) { compareDecimal(tally, text); });
}

TEST(TakePlainShort, AgreesWithTheScanOnEveryShortNumber) {
    Tally tally;
    Spelling spelling;
    for (int number = 0; number <= 99'999; ++number) {
        for (const std::string_view zeros : {""sv, "0"sv, "00"sv}) {
            for (const std::string_view tail : {" "sv, "\t"sv, "\n"sv, "\r\n"sv, "x"sv, ""sv}) {
                spelling.clear();
                spelling.put(zeros);
                spelling.putNumber(number);
                spelling.put(tail);
                compareDecimal(tally, spelling.text());
            }
        }
    }
    EXPECT_EQ(tally.taken, 2 * 3 * 4 * 100'000);
    EXPECT_EQ(tally.refused, 2 * 3 * 2 * 100'000);
}

TEST(TakePlainHexadecimal, AgreesWithTheScan) {
    Random random(4);
    Tally tally;
    Spelling spelling;
    for (int i = 0; i < wholeSpellings; ++i) {
        spelling.clear();
        spelling.put(random.pick(fronts));
        spelling.put(random.oneIn(16) ? random.pick(std::array{"-"sv, "+"sv, "0x"sv, "0X"sv}) : ""sv);
        spelling.put("000"sv.substr(random.below(4)));
        const std::size_t first = spelling.text().size();
        spelling.putNumber(random.bits() >> (random.oneIn(4) ? random.below(64) : 32 + random.below(32)), 16);
        for (std::size_t k = first; k < spelling.text().size() && random.oneIn(2); ++k) {
            char& digit = spelling.begin()[k];
            digit = static_cast<char>(digit >= 'a' ? digit - 'a' + 'A' : digit);
        }
        spelling.put(randomTail(random));
        compareHexadecimal(tally, spelling.text());
    }
    EXPECT_GT(tally.taken, wholeSpellings / 2);
    EXPECT_GT(tally.refused, wholeSpellings / 8);
    combine(oddWholes, [&](std::string_view text) { compareHexadecimal(tally, text); });
    combine(oddReals, [&](std::string_view text) { compareHexadecimal(tally, text); });
}

TEST(TakePlainRange, AgreesWithTheScan) {
    Random random(5);
    Tally tally;
    Spelling spelling;
    for (int i = 0; i < wholeSpellings; ++i) {
        spelling.clear();
        spelling.put(random.pick(fronts));
        spelling.put(random.oneIn(32) ? "-" : "");
        spelling.putNumber(random.bits() >> (random.oneIn(8) ? random.below(64) : 36 + random.below(28)));
        if (!random.oneIn(4)) {
            spelling.put(random.oneIn(16) ? "--" : "-");
            spelling.putNumber(random.bits() >> (random.oneIn(8) ? random.below(64) : 36 + random.below(28)));
        }
        spelling.put(randomTail(random));
        compareRange(tally, spelling.text());
    }
    EXPECT_GT(tally.taken, wholeSpellings / 2);
    EXPECT_GT(tally.refused, wholeSpellings / 8);
    combine(oddWholes, [&](std::string_view text) { compareRange(tally, text); });
    combine(oddReals, [&](std::string_view text) { compareRange(tally, text); });
}

TEST(TakePlainLetter, AgreesWithTheScanOnEveryPairOfCharacters) {
    int taken = 0;
    for (const std::string_view front : {""sv, " "sv, "\t "sv, "\n"sv}) {
        for (int letter = 0; letter < 256; ++letter) {
            for (int behind = 0; behind < 256; ++behind) {
                std::string text(front);
                text += {static_cast<char>(letter), static_cast<char>(behind)};
                char value = 'z';
                const char* end = takePlainLetter(text.c_str(), value);
                if (end == nullptr) {
                    ASSERT_EQ(value, 'z') << testing::PrintToString(text);
                    const bool plain = letter > ' ' && letter < 127 && isBlank(static_cast<char>(behind));
                    ASSERT_FALSE(plain && front != "\n") << testing::PrintToString(text);
                    continue;
                }
                char expected = '?';
                Cursor cursor{.next = text.c_str(), .last = text.c_str() + text.size()};
                ASSERT_TRUE(scanLetter(cursor, expected)) << testing::PrintToString(text);
                ASSERT_EQ(value, expected) << testing::PrintToString(text);
                ASSERT_TRUE(endsLike(end, cursor.next, text)) << testing::PrintToString(text);
                ++taken;
            }
        }
    }
    EXPECT_GE(taken, 3 * 94 * 6);
}

TEST(EndPlainLine, ConsumesOneLineEndAndNothingElse) {
    struct Row {
        std::string_view text; // behind the last number of a line
        bool ends;
        std::size_t consumed;
        std::int32_t feeds;
    };
    static constexpr std::array<Row, 20> rows = {{
        {"\n"sv, true, 1, 1},      {"\nx"sv, true, 1, 1},     {"\n\n"sv, true, 1, 1},
        {"\r"sv, true, 1, 0},      {"\rx"sv, true, 1, 0},     {"\r\r"sv, true, 1, 0},
        {"\r\n"sv, true, 2, 1},    {"\r\n\n"sv, true, 2, 1},  {"\n\r"sv, true, 1, 1},
        {" \t \n"sv, true, 4, 1},  {"\t\r\nx"sv, true, 3, 1}, {""sv, false, 0, 0},
        {" "sv, false, 0, 0},      {"x\n"sv, false, 0, 0},    {" #\n"sv, false, 0, 0},
        {"\x1A\n"sv, false, 0, 0}, {" 5\n"sv, false, 0, 0},   {"\v\n"sv, false, 0, 0},
        {"\f\n"sv, false, 0, 0},   {"\0\n"sv, false, 0, 0},
    }};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(std::string(row.text)));
        std::string bytes = "1 2 3";
        const std::size_t numbers = bytes.size();
        bytes += row.text;
        FileRecord file{};
        file.line = 7;
        file.text = {.bytes = bytes.data(), .capacity = bytes.size(), .next = 0, .end = bytes.size()};
        EXPECT_EQ(plainText(&file), bytes.data());
        EXPECT_EQ(endPlainLine(&file, bytes.data() + numbers), row.ends);
        EXPECT_EQ(file.text.next, row.ends ? numbers + row.consumed : 0);
        EXPECT_EQ(file.line, 7 + row.feeds);
    }
}

TEST(PlainText, OfAFileThatWasNotReadYetIsEmpty) {
    FileRecord file{};
    EXPECT_STREQ(plainText(&file), "");
}
