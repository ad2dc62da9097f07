// The short road for lines of numbers: plain spellings, taken straight from the read-ahead block.
//
// A take... function reads one thing at `text` and returns the place behind it, or null, with the value
// left alone, for anything that is not plain. Nothing is consumed before a whole line has been taken, so that
// a line of any other kind is left to getLine and scan, which alone say what it means. Every text ends in
// null bytes, which are not plain.
#pragma once

#include "utilkit/fopen.hpp"
#include "utilkit/scan.hpp"
#include "utilkit/textblock.hpp"
#include "utilkit/wrap.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace vexbind {

inline bool isPlainBlank(char character) {
    return character == ' ' || character == '\t';
}

inline const char* skipPlainBlanks(const char* text) {
    while (isPlainBlank(*text)) {
        ++text;
    }
    return text;
}

/// The place behind the blank that follows a number, or at any other white space there, which may be the
/// line end; null when there is none.
inline const char* endPlainNumber(const char* text) {
    if (*text == ' ') [[likely]] {
        return text + 1;
    }
    return isBlank(*text) ? text : nullptr;
}

/// The value of a decimal digit; above 9 for any other character.
inline std::uint32_t digitValue(char character) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(character)) - '0';
}

/// Appends the digits at `text` to `digits`, but not more than `most` of them.
template <int most, class Number> const char* takeDigits(const char* text, Number& digits) {
#pragma GCC unroll 16
    for (int i = 0; i < most; ++i) {
        const std::uint32_t digit = digitValue(text[i]);
        if (digit > 9) {
            return text + i;
        }
        digits = digits * 10 + digit;
    }
    return text + most;
}

/// As many digits as a 32-bit number holds, whatever they are.
inline constexpr int mostDecimalDigits = 9;

/// A decimal number without a sign, and white space behind it.
inline const char* takePlainDecimal(const char* text, std::int32_t& value) {
    std::uint32_t digits = digitValue(*text);
    if (digits > 9) [[unlikely]] {
        text = skipPlainBlanks(text);
        digits = digitValue(*text);
        if (digits > 9) {
            return nullptr;
        }
    }
    const char* end = endPlainNumber(takeDigits<mostDecimalDigits - 1>(text + 1, digits));
    if (end != nullptr) {
        value = static_cast<std::int32_t>(digits);
    }
    return end;
}

/// takePlainDecimal, quicker for up to three digits: the number is read in all three lengths and one is
/// picked, as nobody can predict how long the next colour is. Looks at three characters from `text` on.
inline const char* takePlainShort(const char* text, std::int32_t& value) {
    const std::uint32_t first = digitValue(text[0]);
    const std::uint32_t second = digitValue(text[1]);
    const std::uint32_t third = digitValue(text[2]);
    const auto hasSecond = static_cast<std::size_t>(second <= 9);
    const std::size_t hasThird = hasSecond & static_cast<std::size_t>(third <= 9);
    const char* end = endPlainNumber(text + 1 + hasSecond + hasThird);
    if (first > 9 || end == nullptr) [[unlikely]] {
        return takePlainDecimal(text, value);
    }
    const std::uint32_t two = first * 10 + second;
    const std::array<std::uint32_t, 3> readings = {first, two, two * 10 + third};
    value = static_cast<std::int32_t>(readings[hasSecond + hasThird]);
    return end;
}

/// "4-11", or "4" for 4 to 4: numbers without a sign, and white space behind them.
inline const char* takePlainRange(const char* text, std::int32_t& first, std::int32_t& last) {
    text = skipPlainBlanks(text);
    std::uint32_t low = 0;
    const char* end = takeDigits<mostDecimalDigits>(text, low);
    if (end == text) {
        return nullptr;
    }
    std::uint32_t high = low;
    if (*end == '-') {
        high = 0;
        text = end + 1;
        end = takeDigits<mostDecimalDigits>(text, high);
    }
    end = end == text ? nullptr : endPlainNumber(end);
    if (end != nullptr) {
        first = static_cast<std::int32_t>(low);
        last = static_cast<std::int32_t>(high);
    }
    return end;
}

/// The value of a hexadecimal digit; above 15 for any other character.
inline std::uint32_t hexadecimalValue(char character) {
    const auto letter = static_cast<char>(character | 0x20);
    return letter >= 'a' && letter <= 'f' ? static_cast<std::uint32_t>(letter - 'a') + 10
                                          : (digitValue(character) <= 9 ? digitValue(character) : 16);
}

/// A hexadecimal number of at most 8 digits without a prefix or a sign, and white space behind it.
inline const char* takePlainHexadecimal(const char* text, std::uint32_t& value) {
    static constexpr std::ptrdiff_t most = 8;
    const char* first = skipPlainBlanks(text);
    if (digitValue(*first) <= 9 && first[1] == ' ') [[likely]] {
        value = digitValue(*first);
        return first + 2;
    }
    const char* digitsEnd = first;
    std::uint32_t digits = 0;
    for (std::uint32_t digit = hexadecimalValue(*first); digit <= 15; digit = hexadecimalValue(*digitsEnd)) {
        digits = digits << 4 | digit;
        ++digitsEnd;
    }
    const char* end = endPlainNumber(digitsEnd);
    if (digitsEnd == first || digitsEnd - first > most || end == nullptr) {
        return nullptr;
    }
    value = digits;
    return end;
}

/// A letter that stands alone.
inline const char* takePlainLetter(const char* text, char& letter) {
    text = skipPlainBlanks(text);
    const char* end = *text > ' ' ? endPlainNumber(text + 1) : nullptr;
    if (end != nullptr) {
        letter = *text;
    }
    return end;
}

/// Powers of ten that double precision holds exactly.
inline constexpr std::array<double, 23> exactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// `digits` times ten to the `power`, rounded to single precision; false when that needs more care.
///
/// Up to 15 digits and the power are exact in double precision, so that the one operation is rounded
/// once. Rounding the result again gives another value than rounding the number itself only if the
/// number is beside, and its double right on, the middle between two singles. All results are normal
/// singles, or 0: they lie between 1e-22 and 1e37.
inline bool roundPlainReal(std::uint64_t digits, std::int32_t power, float& value) {
    static constexpr std::uint64_t belowSingle = (1U << 29) - 1; // the bits that a single does not have
    static constexpr std::uint64_t middle = 1U << 28;
    const auto exact = static_cast<double>(static_cast<std::int64_t>(digits));
    const auto magnitude = static_cast<std::uint32_t>(power < 0 ? -power : power);
    if (magnitude >= exactPowers.size()) {
        return false;
    }
    const double result = power < 0 ? exact / exactPowers[magnitude] : exact * exactPowers[magnitude];
    value = static_cast<float>(result);
    return (std::bit_cast<std::uint64_t>(result) & belowSingle) != middle;
}

/// The "e+02" behind a number, added to `power`: one or two digits.
inline const char* takePlainExponent(const char* text, std::int32_t& power) {
    ++text;
    const bool negative = *text == '-';
    text += negative || *text == '+' ? 1 : 0;
    std::uint32_t digits = 0;
    const char* end = takeDigits<2>(text, digits);
    power += negative ? -static_cast<std::int32_t>(digits) : static_cast<std::int32_t>(digits);
    return end == text ? nullptr : end;
}

/// A number of at most 15 digits, a decimal point among them or not, with or without a minus sign and an
/// exponent, and white space behind it.
inline const char* takePlainReal(const char* text, float& value) {
    static constexpr int most = 15;
    text = skipPlainBlanks(text);
    const bool negative = *text == '-';
    const char* first = text + (negative ? 1 : 0);
    std::uint64_t digits = 0;
    const char* end = takeDigits<most>(first, digits);
    std::ptrdiff_t count = end - first;
    std::int32_t power = 0;
    if (*end == '.') {
        const char* fraction = end + 1;
        end = takeDigits<most>(fraction, digits);
        power = static_cast<std::int32_t>(fraction - end);
        count -= power;
    }
    if (count < 1 || count > most) {
        return nullptr;
    }
    if ((*end | 0x20) == 'e') {
        end = takePlainExponent(end, power);
    }
    end = end == nullptr ? nullptr : endPlainNumber(end);
    float magnitude = 0;
    if (end == nullptr || !roundPlainReal(digits, power, magnitude)) {
        return nullptr;
    }
    value = negative ? -magnitude : magnitude;
    return end;
}

/// The text of a file of which nothing has been read.
inline constexpr std::array<char, terminatorBytes> noText{};

/// The pending text of `file`, which begins a line.
inline const char* plainText(FileRecord* file) {
    TextBlock& block = file->text;
    if (block.bytes == nullptr) {
        return noText.data();
    }
    if (block.bytes[block.next] == '\n') [[unlikely]] {
        // An empty line, or the rest of a line end of which getLine has taken the CR.
        ++block.next;
        file->line = wrapAdd(file->line, 1);
    }
    return block.bytes + block.next;
}

/// Consumes a line of which only the end is still to be taken, at `text`: LF, CR or CR LF. False, with
/// nothing consumed, when there is more.
inline bool endPlainLine(FileRecord* file, const char* text) {
    text = skipPlainBlanks(text);
    const bool hasReturn = *text == '\r';
    text += hasReturn ? 1 : 0;
    const bool hasFeed = *text == '\n';
    text += hasFeed ? 1 : 0;
    if (!hasReturn && !hasFeed) {
        return false;
    }
    file->line = wrapAdd(file->line, hasFeed ? 1 : 0);
    file->text.next = static_cast<std::size_t>(text - file->text.bytes);
    return true;
}

} // namespace vexbind
