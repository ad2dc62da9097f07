// The text of the detail dump, full of numbers: it waits in a block of its own, and is put together there at
// a fraction of the cost of formatted printing.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace vexbind {

/// Text that was put and not sent yet, all of it for one stream.
struct WaitingReport {
    std::FILE* stream; // null when there is none
    std::size_t end;
    std::array<char, std::size_t{4} * 1024> text;
};
extern WaitingReport waitingReport;

/// Hands the waiting text to its stream, behind the words that wait for the TMD: who stops reading the report
/// finds every packet in the TMD that it has shown to the end. Whoever else prints, or ends the process,
/// calls this first.
void sendReport();

/// A number, right-aligned in at least `width` (at most 16) columns.
struct Padded {
    std::int64_t number;
    std::size_t width;
};

/// A number in lower-case hexadecimal digits, without a prefix.
struct Hexadecimal {
    std::uint32_t number;
};

/// putReportPart for text that cannot wait behind that which waits: sends it first.
void putPartAnew(std::FILE* stream, std::string_view text);

/// Puts one part of the text; a number alone takes as many columns as it has digits.
inline void putReportPart(std::FILE* stream, std::string_view text) {
    WaitingReport& waiting = waitingReport;
    if (waiting.stream != stream || text.size() > waiting.text.size() - waiting.end) [[unlikely]] {
        putPartAnew(stream, text);
        return;
    }
    waiting.end += text.copy(waiting.text.data() + waiting.end, text.size());
}

void putReportPart(std::FILE* stream, Padded field);
void putReportPart(std::FILE* stream, Hexadecimal field);

template <std::integral Number> void putReportPart(std::FILE* stream, Number number) {
    static_assert(sizeof(Number) <= sizeof(std::int32_t) && !std::same_as<Number, char>);
    putReportPart(stream, Padded{.number = number, .width = 0});
}

/// Puts text, lines of it or less, and numbers, one behind the other.
template <class... Parts> void putReport(std::FILE* stream, const Parts&... parts) {
    (putReportPart(stream, parts), ...);
}

} // namespace vexbind
