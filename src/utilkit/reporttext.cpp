// Owns waitingReport.
#include "utilkit/reporttext.hpp"

#include "utilkit/put4.hpp"

#include <charconv>

namespace vexbind {

WaitingReport waitingReport{};

void sendReport() {
    std::FILE* stream = waitingReport.stream;
    if (stream == nullptr) {
        return;
    }
    writePendingWords();
    std::fwrite(waitingReport.text.data(), 1, waitingReport.end, stream);
    waitingReport.stream = nullptr;
    waitingReport.end = 0;
}

void putPartAnew(std::FILE* stream, std::string_view text) {
    WaitingReport& waiting = waitingReport;
    do {
        sendReport();
        waiting.stream = stream;
        waiting.end = text.copy(waiting.text.data(), waiting.text.size());
        text.remove_prefix(waiting.end);
    } while (!text.empty());
}

static void putNumber(std::FILE* stream, std::int64_t number, int base, std::size_t width) {
    static constexpr std::string_view blanks = "                ";
    std::array<char, 20> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number, base).ptr;
    const std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
    if (text.size() < width) {
        putReportPart(stream, blanks.substr(0, width - text.size()));
    }
    putReportPart(stream, text);
}

void putReportPart(std::FILE* stream, Padded field) {
    putNumber(stream, field.number, 10, field.width);
}

void putReportPart(std::FILE* stream, Hexadecimal field) {
    putNumber(stream, field.number, 16, 0);
}

} // namespace vexbind
