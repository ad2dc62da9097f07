// Numbers in text, read as the C library's sscanf reads them in the "C" locale.
//
// Plain spellings of real numbers take a short road (std::from_chars); any other is left to sscanf itself,
// so that the results agree for every spelling. A value that does not convert is left alone. The text must
// be terminated at `last`.
#pragma once

#include <cstdint>
#include <limits>
#include <span>

namespace vexbind {

/// Whether `character` is white space in the "C" locale.
constexpr bool isBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

struct Cursor {
    const char* next;
    const char* last;
};

/// As "%f": moves the cursor behind the number, or returns false when nothing converts.
bool scanReal(Cursor& cursor, float& value);

/// As "%d".
bool scanDecimal(Cursor& cursor, std::int32_t& value);

/// As "%x".
bool scanHexadecimal(Cursor& cursor, std::uint32_t& value);

/// As " %c": the next character that is not white space.
bool scanLetter(Cursor& cursor, char& letter);

/// As "%s": the next word, terminated in place, which loses the rest of the text; null when there is none,
/// with the text as it was.
char* takeWord(char* text);

/// As "%f" for every value, until one does not convert; whether all did.
bool scanReals(Cursor cursor, std::span<float> values);

/// As "%d" for every value, until one does not convert; whether all did.
bool scanDecimals(Cursor cursor, std::span<std::int32_t> values);

/// `value` truncated toward zero; what does not fit, and what is not a number, gives the smallest
/// 32-bit number.
inline std::int32_t truncateToInt(double value) {
    // Both bounds are exact; a value that is not a number fails the comparison.
    if (value > -2147483649.0 && value < 2147483648.0) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

} // namespace vexbind
