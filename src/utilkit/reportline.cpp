// Owns the count of what has been handed to the stream since it was flushed.
#include "utilkit/reportline.hpp"

#include "utilkit/put4.hpp"

#include <algorithm>

namespace vexbind {

/// No stream holds less before it sends on, but for those to a terminal.
static constexpr std::size_t streamBlock = 4096;

static std::size_t handedOver = 0;

/// Hands over what the line has, which starts anew.
static void handOver(ReportLine& line) {
    if (handedOver + line.end > streamBlock) {
        writePendingWords();
        std::fflush(line.stream);
        handedOver = 0;
    }
    std::fwrite(line.text.data(), 1, line.end, line.stream);
    handedOver += line.end;
    line.end = 0;
}

void appendInParts(ReportLine& line, std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = text.copy(line.text.data() + line.end, line.text.size() - line.end);
        line.end += size;
        text.remove_prefix(size);
        if (!text.empty()) {
            handOver(line);
        }
    }
}

/// Appends digits of the base, a sign in front of a negative number, and blanks up to the width.
template <std::uint32_t base> static void appendNumber(ReportLine& line, Padded field) {
    static constexpr std::string_view digits = "0123456789abcdef";
    const bool negative = field.number < 0;
    auto rest = static_cast<std::uint32_t>(negative ? -field.number : field.number);
    std::array<char, 16> text{};
    text.fill(' ');
    std::size_t first = text.size();
    do {
        --first;
        text[first] = digits[rest % base];
        rest /= base;
    } while (rest != 0);
    if (negative) {
        --first;
        text[first] = '-';
    }
    first = std::min(first, text.size() - field.width);
    append(line, std::string_view(text.data() + first, text.size() - first));
}

void append(ReportLine& line, Padded field) {
    appendNumber<10>(line, field);
}

void append(ReportLine& line, Hexadecimal field) {
    append(line, "0x");
    appendNumber<16>(line, {.number = field.number, .width = 0});
}

void putReportLine(ReportLine& line) {
    append(line, "\n");
    handOver(line);
}

} // namespace vexbind
