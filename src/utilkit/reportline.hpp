// Lines of a report full of numbers, put together at a fraction of the cost of formatted printing.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace vexbind {

/// A line on its way to `stream`, the report's.
struct ReportLine {
    std::FILE* stream;
    std::size_t end = 0;
    std::array<char, 256> text{}; // those of the detail dump fit in; longer ones go out in parts
};

/// A number of 32 bits, with a sign or without, in `width` columns or more (up to 16), blanks in front of it.
struct Padded {
    std::int64_t number;
    std::size_t width;
};

/// A number in small hexadecimal digits, with "0x" in front of it.
struct Hexadecimal {
    std::uint32_t number;
};

/// append for text that is longer than the room left.
void appendInParts(ReportLine& line, std::string_view text);

inline void append(ReportLine& line, std::string_view text) {
    if (text.size() > line.text.size() - line.end) [[unlikely]] {
        appendInParts(line, text);
        return;
    }
    line.end += text.copy(line.text.data() + line.end, text.size());
}

void append(ReportLine& line, Padded field);
void append(ReportLine& line, Hexadecimal field);

void append(ReportLine& line, std::integral auto number) {
    append(line, Padded{.number = static_cast<std::int64_t>(number), .width = 0});
}

/// Appends text and numbers, one behind the other.
template <class... Parts>
requires(sizeof...(Parts) > 1) void append(ReportLine& line, const Parts&... parts) {
    (append(line, parts), ...);
}

/// Hands the line to its stream, with a line end. Before the stream has a block to send on, the words that
/// wait for the TMD are written: who reads the report, and stops it, finds the packets that it has shown.
void putReportLine(ReportLine& line);

} // namespace vexbind
