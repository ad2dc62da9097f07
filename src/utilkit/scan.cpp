#include "utilkit/scan.hpp"

#include <charconv>
#include <cstdio>
#include <limits>
#include <system_error>

namespace vexbind {

static void skipBlanks(Cursor& cursor) {
    while (cursor.next != cursor.last && isBlank(*cursor.next)) {
        ++cursor.next;
    }
}

static bool endsHere(const char* position, const char* last) {
    return position == last || isBlank(*position);
}

/// Takes what from_chars converted when it is a whole word and in range; `value` is left alone otherwise.
template <class Number>
static bool acceptWord(Cursor& cursor, std::from_chars_result result, const Number& converted,
                       Number& value) {
    if (result.ec != std::errc() || !endsHere(result.ptr, cursor.last)) {
        return false;
    }
    cursor.next = result.ptr;
    value = converted;
    return true;
}

/// The C library's opinion, by a format of one conversion and "%n".
template <class Number> static bool scanByLibrary(Cursor& cursor, const char* format, Number& value) {
    int consumed = 0;
    // NOLINTNEXTLINE(cert-err34-c): wrapping numbers that are too large is the C scanner's way, wanted here
    if (std::sscanf(cursor.next, format, &value, &consumed) != 1) {
        return false;
    }
    cursor.next += consumed;
    return true;
}

static bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

static bool isSign(char character) {
    return character == '-' || character == '+';
}

bool scanReal(Cursor& cursor, float& value) {
    skipBlanks(cursor);
    // Words such as "inf" are for the library, which knows more of them.
    const char* digits = cursor.next + (*cursor.next == '-' ? 1 : 0);
    float converted = 0;
    if ((isDigit(*digits) || *digits == '.') &&
        acceptWord(cursor, std::from_chars(cursor.next, cursor.last, converted), converted, value)) {
        return true;
    }
    return scanByLibrary(cursor, "%f%n", value);
}

bool scanDecimal(Cursor& cursor, std::int32_t& value) {
    skipBlanks(cursor);
    const char* digits = cursor.next + (isSign(*cursor.next) ? 1 : 0);
    if (!isDigit(*digits)) {
        return false;
    }
    const char* first = *cursor.next == '+' ? digits : cursor.next;
    // A number that does not fit is read with 64 bits, held at their bounds, and cut, whatever a long has
    // here: every machine reads the same.
    std::int64_t number = 0;
    const std::from_chars_result result = std::from_chars(first, cursor.last, number);
    if (result.ec != std::errc()) {
        number = *first == '-' ? std::numeric_limits<std::int64_t>::min()
                               : std::numeric_limits<std::int64_t>::max();
    }
    value = static_cast<std::int32_t>(number);
    cursor.next = result.ptr;
    return true;
}

bool scanHexadecimal(Cursor& cursor, std::uint32_t& value) {
    skipBlanks(cursor);
    std::uint32_t converted = 0;
    if (acceptWord(cursor, std::from_chars(cursor.next, cursor.last, converted, 16), converted, value)) {
        return true;
    }
    // Read with 64 bits and cut, as decimals are.
    unsigned long long number = 0;
    if (!scanByLibrary(cursor, "%llx%n", number)) {
        return false;
    }
    value = static_cast<std::uint32_t>(number);
    return true;
}

bool scanLetter(Cursor& cursor, char& letter) {
    skipBlanks(cursor);
    if (*cursor.next == '\0') {
        return false;
    }
    letter = *cursor.next;
    ++cursor.next;
    return true;
}

char* takeWord(char* text) {
    while (isBlank(*text)) {
        ++text;
    }
    char* end = text;
    while (*end != '\0' && !isBlank(*end)) {
        ++end;
    }
    *end = '\0';
    return end == text ? nullptr : text;
}

bool scanReals(Cursor cursor, std::span<float> values) {
    for (float& value : values) {
        if (!scanReal(cursor, value)) {
            return false;
        }
    }
    return true;
}

bool scanDecimals(Cursor cursor, std::span<std::int32_t> values) {
    for (std::int32_t& value : values) {
        if (!scanDecimal(cursor, value)) {
            return false;
        }
    }
    return true;
}

} // namespace vexbind
