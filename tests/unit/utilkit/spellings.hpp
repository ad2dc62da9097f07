// Spellings of numbers for the tests of what reads them: at random, near the middle between two singles,
// and odd ones.
#pragma once

#include "unit/random.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

namespace spellings {

using namespace std::string_view_literals;

// A text under construction, terminated; behind it stands what is left of an earlier one.
class Spelling {
  public:
    void clear() {
        length = 0;
        bytes[0] = '\0';
    }
    void put(std::string_view more) {
        std::memcpy(bytes.data() + length, more.data(), more.size());
        length += more.size();
        bytes[length] = '\0';
    }
    template <class Number> void putNumber(Number number, int base = 10) {
        char* end = std::to_chars(bytes.data() + length, bytes.data() + bytes.size(), number, base).ptr;
        length = static_cast<std::size_t>(end - bytes.data());
        *end = '\0';
    }
    char* begin() { return bytes.data(); }
    std::string_view text() const { return {bytes.data(), length}; }

  private:
    std::array<char, 128> bytes{};
    std::size_t length = 0;
};

inline constexpr std::array fronts = {""sv, ""sv, ""sv, ""sv, ""sv, " "sv, "   "sv, "\t"sv, " \t "sv};

// What may follow a plain number: white space, and with it anything.
inline constexpr std::array plainTails = {" "sv,  " "sv,  "  -7"sv, " .5 6"sv, "\t"sv,     "\t8"sv,
                                          "\n"sv, "\r"sv, "\r\n"sv, "\n9\n"sv, " \x1A\n"sv};
// ... and what may not.
inline constexpr std::array oddTails = {""sv,       ","sv,   "-"sv,     "+"sv,     "."sv,    "x"sv,
                                        "e"sv,      "p1"sv,  "\x1A "sv, "#"sv,     ":"sv,    "/ "sv,
                                        "\x01\n"sv, "\0 "sv, "\x80"sv,  "\xA0 "sv, "\xFF"sv, "f"sv,
                                        "L"sv,      "g "sv,  ";\n"sv,   "\"\n"sv,  "(1)"sv,  "\x7F"sv};

inline std::string_view randomTail(Random& random) {
    return random.oneIn(8) ? random.pick(oddTails) : random.pick(plainTails);
}

inline void putSign(Random& random, Spelling& spelling) {
    const std::uint32_t choice = random.below(32);
    spelling.put(choice == 0 ? "+" : choice < 8 ? "-" : "");
}

inline void putExponent(Random& random, Spelling& spelling) {
    spelling.put(random.oneIn(2) ? "e" : "E");
    spelling.put(random.pick(std::array{""sv, "+"sv, "-"sv}));
    spelling.put(random.oneIn(8) ? "0" : "");
    if (!random.oneIn(16)) {
        spelling.putNumber(random.oneIn(16) ? random.below(500) : random.below(26));
    }
}

// Some of 19 random digits with a point among them.
inline void putRandomReal(Random& random, Spelling& spelling) {
    spelling.put(random.pick(fronts));
    putSign(random, spelling);
    Spelling digits;
    digits.put(random.oneIn(8) ? "000"sv.substr(random.below(3)) : ""sv);
    digits.putNumber(random.bits() % 8'000'000'000'000'000'000 + 1'000'000'000'000'000'000);
    const std::uint32_t count = random.oneIn(8) ? random.below(19) : 1 + random.below(10);
    const std::uint32_t whole = random.below(count + 1);
    spelling.put(digits.text().substr(0, whole));
    if (!random.oneIn(4)) {
        spelling.put(".");
    }
    spelling.put(digits.text().substr(whole, count - whole));
    if (random.oneIn(4)) {
        putExponent(random, spelling);
    }
    spelling.put(randomTail(random));
}

// `digits` times ten to the -`places`, as digits with a point and an exponent that makes up for its place.
inline void putScaled(Random& random, Spelling& spelling, std::uint64_t digits, int places) {
    Spelling all;
    all.putNumber(digits);
    const auto count = static_cast<int>(all.text().size());
    const bool hasExponent = random.oneIn(2);
    const int behind =
        hasExponent ? static_cast<int>(random.below(static_cast<std::uint32_t>(count + 1))) : places;
    const auto whole = static_cast<std::size_t>(count - behind);
    spelling.put(all.text().substr(0, whole));
    spelling.put(behind > 0 || random.oneIn(2) ? "." : "");
    spelling.put(all.text().substr(whole));
    if (hasExponent && behind != places) {
        spelling.put("e");
        spelling.putNumber(behind - places);
    }
}

// A number that is exactly in the middle between two singles, or beside it in the last of 15 digits.
inline void putMiddle(Random& random, Spelling& spelling) {
    // The significands of two neighbours are even numbers of 25 bits; the odd one lies between.
    std::uint64_t digits = 1U << 24 | 1U | (random.bits() & 0xFFFFFF);
    int places = static_cast<int>(random.below(11));
    for (int i = 0; i < places; ++i) {
        digits *= 5;
    }
    if (places == 0) {
        digits <<= random.below(25);
    }
    if (!random.oneIn(4)) {
        for (; digits < 100'000'000'000'000; digits *= 10) {
            ++places;
        }
        digits += random.pick(std::array<std::uint64_t, 3>{0, 1, std::numeric_limits<std::uint64_t>::max()});
    }
    putScaled(random, spelling, digits, places);
}

// The middle between two singles of any size, in 15 to 17 digits, or beside it in the last of them.
inline void putRoundedMiddle(Random& random, Spelling& spelling) {
    const auto bits = static_cast<std::uint32_t>(0x30000000 + random.below(0x4C000000)); // 4.6e-10 to 2.7e36
    const auto lower = std::bit_cast<float>(bits);
    const auto upper = std::bit_cast<float>(bits + 1);
    const double middle = (static_cast<double>(lower) + static_cast<double>(upper)) / 2;
    const int precision = random.oneIn(8) ? 15 + static_cast<int>(random.below(2)) : 14;
    std::array<char, 64> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), middle,
                                    std::chars_format::scientific, precision)
                          .ptr;
    char& last = digits[static_cast<std::size_t>(precision) + 1];
    const std::uint32_t change = random.below(3);
    last = static_cast<char>(last + (change == 1 && last < '9' ? 1 : change == 2 && last > '0' ? -1 : 0));
    spelling.put({digits.data(), end});
}

// The words of a text.
inline std::vector<std::string_view> split(std::string_view text) {
    std::vector<std::string_view> words;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(' '), text.size());
        words.push_back(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return words;
}

inline const std::vector<std::string_view> oddReals =
    split("0 -0 0.0 -.0 -0.e5 000000000000000 0000000000000000 .000000000000000 .0000000000000000 "
          ".5 5. -.5 -5. . - -. + +1 --1 1- 1-2 1+2 1.2.3 1..2 1,5 "
          // Exponents
          "1e5 1E-7 1e+02 1e22 1e23 1e37 1e38 1e99 1e100 1e400 0e99 0e400 1e 1e+ 1e- 1e5e5 1e5.5 1e-+5 "
          "1e005 1e-005 e5 .e5 5.e5 1e-22 1e-23 1e-37 "
          // Numbers below the normal singles, and at the ends of what is plain
          "1e-38 1e-40 1e-45 1e-46 1e-400 1.17549435e-38 1.17549421e-38 123456789012345e22 "
          "123456789012345e23 999999999999999e22 .000000000000001e-7 .000000000000001e-8 3.4028234e38 "
          "3.4028236e38 340282346638528 999999999999999 1000000000000000 123456789012345678901234567890 "
          "1234567890.12345 1234567890.123456 123456789012345. 12345678901234.5e-14 "
          // Middles
          "16777216 16777217 16777218 16777219 16777217.0000001 16777216.9999999 "
          "0.1 0.333333333333333 0.3333333333333333 "
          // Other spellings of the library, and of nobody
          "inf -inf nan infinity 0x 0x1 0x1p3 0x1.8p1 0X1F 1f 1d5 1_000 1'000 #1 1# \xA0"
          "1 \xB2 \x1A"
          "1 1\x1A"
          "2 \0"
          "1 1\0002"sv);

inline const std::vector<std::string_view> oddWholes =
    split("0 -0 00 7 -7 +7 --7 - 000000001 0000000001 99999999 999999999 -999999999 1000000000 2147483647 "
          "2147483648 -2147483648 4294967295 4294967296 99999999999999999999999 1.5 1e5 1,2 "
          // Ranges
          "1-2 1- 1--2 1-2-3 1-2,3 3-1 -3-1 1-+2 1-999999999 1-1000000000 999999999-999999999 1000000000-1 "
          "0-0 007-011 "
          // Hexadecimal ones
          "a F fF g G1 12ab ffffffff FFFFFFFF 0ffffffff 100000000 00000000 000000000 deadBEEF 0x 0x1 0X1f x1 "
          "0b1 -ff +ff @ ` / : A: f/ #1 \xB2 \x01 \x1A"
          "1 1\x1A \0"
          "1 1\0002"sv);

} // namespace spellings
