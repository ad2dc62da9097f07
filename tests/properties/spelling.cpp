#include "properties/spelling.hpp"

#include "properties/format.hpp"

#include <array>
#include <cstdlib>

namespace properties {

namespace {

constexpr char endOfFileMark = '\x1A'; // dropped wherever it stands

std::string digitsOf(const Decimal& value) {
    return std::to_string(std::llabs(value.digits));
}

// Digits with a point in front of the last `places`.
std::string placePoint(std::string digits, int places) {
    const auto behind = static_cast<std::size_t>(places);
    if (digits.size() <= behind)
        digits.insert(0, behind + 1 - digits.size(), '0');
    digits.insert(digits.size() - behind, 1, '.');
    return digits;
}

} // namespace

std::string plainReal(const Decimal& value) {
    const std::string digits = digitsOf(value);
    return (value.digits < 0 ? "-" : "") + (value.places == 0 ? digits : placePoint(digits, value.places));
}

void TextWriter::line(const std::string& text) {
    comment();
    content += text;
    if (spelling.comments && spelling.random.oneIn(6)) {
        const std::size_t at = content.size() - spelling.random.below(text.size() + 1);
        content.insert(at, 1, endOfFileMark);
    }
    end();
}

void TextWriter::fields(const Words& words) {
    std::string front;
    if (spelling.blanks && spelling.random.oneIn(3))
        front = blank();
    Words all = words;
    all.front().insert(0, front);
    fieldsAtOnce(all);
}

void TextWriter::fieldsAtOnce(const Words& words) {
    std::string text;
    for (const std::string& word : words) {
        if (&word != &words.front())
            text += blank();
        text += word;
    }
    if (spelling.blanks && spelling.random.oneIn(3))
        text += blank();
    constexpr std::array<const char*, 4> more = {" 0", " 1.5 x", "\t#", " -"};
    if (spelling.surplus && spelling.random.oneIn(3))
        text += spelling.random.pick(more);
    line(text);
}

std::string TextWriter::real(const Decimal& value) {
    if (!spelling.numbers)
        return plainReal(value);
    Random& random = spelling.random;
    std::string number;
    // The point anywhere and the exponent to go with it.
    const int shift = random.oneIn(2) ? 0 : random.between(-value.places, 3);
    const int places = value.places + shift;
    std::string digits = digitsOf(value);
    if (random.oneIn(3))
        digits.insert(0, 2, '0');
    number = places == 0 && random.oneIn(2) ? digits : placePoint(digits, places);
    const bool hasPoint = number.find('.') != std::string::npos;
    if (hasPoint && random.oneIn(3))
        number += "00";
    if (number.starts_with("0.") && number.size() > 2 && random.oneIn(2))
        number.erase(0, 1);
    if (shift != 0 || random.oneIn(4)) {
        constexpr std::array<const char*, 4> marks = {"e", "E", "e+", "E0"};
        number += shift < 0 ? "e-" : random.pick(marks);
        number += std::to_string(std::abs(shift));
    }
    if (value.digits < 0)
        return "-" + number;
    if (value.digits == 0 && random.oneIn(4))
        return "-" + number;
    return random.oneIn(4) ? "+" + number : number;
}

std::string TextWriter::integer(long value) {
    if (!spelling.numbers)
        return std::to_string(value);
    std::string number = std::to_string(std::labs(value));
    if (spelling.random.oneIn(3))
        number.insert(0, spelling.random.below(4), '0');
    if (value < 0)
        return "-" + number;
    return spelling.random.oneIn(4) ? "+" + number : number;
}

std::string TextWriter::hexadecimal(unsigned value) {
    const std::string digits = format("%x", value);
    if (!spelling.numbers)
        return digits;
    const bool large = spelling.random.oneIn(2);
    constexpr std::array<const char*, 5> prefixes = {"", "0x", "0X", "00", "0x0"};
    return spelling.random.pick(prefixes) + (large ? toUpper(digits) : digits);
}

std::string TextWriter::text() {
    return spelling.openEnds && spelling.random.oneIn(2) ? content.substr(0, lastEnd) : content;
}

void TextWriter::end() {
    lastEnd = content.size();
    content += spelling.random.pick(spelling.lineEnds);
}

void TextWriter::comment() {
    constexpr std::array<const char*, 6> comments = {"#", "", "# 1 2 3", "#@PLY940101", "\x1A", "\x1A#"};
    while (spelling.comments && spelling.random.oneIn(3)) {
        content += spelling.random.pick(comments);
        end();
    }
}

std::string TextWriter::blank() {
    constexpr std::array<const char*, 4> blanks = {" ", "  ", "\t", " \t "};
    return spelling.blanks ? spelling.random.pick(blanks) : " ";
}

} // namespace properties
