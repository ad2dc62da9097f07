// Parsing is strict: a case that means something else than its reader sees is worse than none.
#include "runner/case_file.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace {

constexpr std::size_t repeatLimit = 16'000'000;

// One step through a line of text: the bytes that a character, an escape or a name stands for.
struct Piece {
    std::string text;
    bool plain = false; // an ordinary character, not an escape or a name
    bool joins = false; // the backslash that takes the line feed away
};

struct Kind {
    std::string_view word;
    bool named;      // `--- kind name`
    bool hasContent; // lines may follow
};

constexpr std::array<Kind, 10> kinds = {{
    {"args", false, true},
    {"file", true, true},
    {"hex", true, true},
    {"dir", true, false},
    {"cd", true, false},
    {"status", true, false},
    {"stdout", false, true},
    {"stderr", false, true},
    {"out", true, true},
    {"text-out", true, true},
}};

// A section before its kind is looked at.
struct RawSection {
    const Kind* kind = nullptr;
    int headLine = 0;
    CaseSection section;
};

std::string fault(int line, const std::string& reason) {
    return std::to_string(line) + ": " + reason;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

// The value of two hexadecimal digits at the front of `text`, or -1.
int hexByte(std::string_view text) {
    if (text.size() < 2)
        return -1;
    const int high = hexDigit(text[0]);
    const int low = hexDigit(text[1]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

std::vector<std::string> splitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// Reads the escape at `at` (a backslash) and steps over it; false when there is no such escape.
bool nextEscape(std::string_view line, std::size_t& at, Piece& piece) {
    if (at + 1 == line.size()) {
        piece.joins = true;
        at += 1;
        return true;
    }
    const char letter = line[at + 1];
    if (letter == 'x') {
        const int value = hexByte(line.substr(at + 2));
        if (value < 0)
            return false;
        piece.text = std::string(1, static_cast<char>(value));
        at += 4;
        return true;
    }
    constexpr std::string_view letters = "rnts\\";
    constexpr std::string_view bytes = "\r\n\t \\";
    const std::size_t found = letters.find(letter);
    if (found == std::string_view::npos)
        return false;
    piece.text = std::string(1, bytes[found]);
    at += 2;
    return true;
}

bool nextPiece(std::string_view line, std::size_t& at, const CaseNames& names, Piece& piece) {
    piece = {};
    if (line[at] == '\\')
        return nextEscape(line, at, piece);
    const std::array<std::pair<std::string_view, const std::string*>, 3> words = {{
        {"{dir}", &names.directory},
        {"{notice}", &names.notice},
        {"{date}", &names.date},
    }};
    for (const auto& [word, meaning] : words) {
        if (line.substr(at).starts_with(word)) {
            piece.text = *meaning;
            at += word.size();
            return true;
        }
    }
    piece.text = std::string(1, line[at]);
    piece.plain = true;
    at += 1;
    return true;
}

void decodeTextLine(const std::string& text, int line, const CaseNames& names, CaseContent& content,
                    std::string& error) {
    if (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) {
        error = fault(line, "a blank, tab or carriage return at the end of a line is written as "
                            "\\s, \\t or \\r");
        return;
    }
    bool joined = false;
    for (std::size_t at = 0; at < text.size();) {
        Piece piece;
        if (!nextPiece(text, at, names, piece)) {
            error = fault(line, "unknown escape: " + text.substr(at, 4));
            return;
        }
        content.bytes += piece.text;
        joined = piece.joins;
    }
    if (!joined)
        content.bytes += '\n';
}

// Appends what one word of hex (HH or HH*N) stands for.
bool decodeHexWord(std::string_view word, std::string& bytes) {
    const int value = hexByte(word);
    if (value < 0)
        return false;
    std::size_t count = 1;
    if (word.size() > 2) {
        if (word[2] != '*')
            return false;
        const char* end = word.data() + word.size();
        const auto [stop, problem] = std::from_chars(word.data() + 3, end, count);
        if (problem != std::errc{} || stop != end || count == 0 || count > repeatLimit)
            return false;
    }
    bytes.append(count, static_cast<char>(value));
    return true;
}

void decodeHexLine(const std::string& text, int line, CaseContent& content, std::string& error) {
    std::istringstream words(text.substr(0, text.find('#')));
    for (std::string word; words >> word;) {
        if (!decodeHexWord(word, content.bytes)) {
            error = fault(line, "bad hex: \"" + word + "\" (a byte is HH, repeated bytes HH*N)");
            return;
        }
    }
}

const Kind* findKind(std::string_view word) {
    const auto* found =
        std::find_if(kinds.begin(), kinds.end(), [&](const Kind& kind) { return kind.word == word; });
    return found == kinds.end() ? nullptr : found;
}

// A name that stays below the fresh directory and is spelled in one way only.
bool isPlainName(const std::string& name) {
    if (name.empty() || name.find('\0') != std::string::npos)
        return false;
    std::string_view rest = name;
    while (true) {
        const std::size_t slash = rest.find('/');
        const std::string_view part = rest.substr(0, slash);
        if (part.empty() || part == "." || part == "..")
            return false;
        if (slash == std::string_view::npos)
            return true;
        rest.remove_prefix(slash + 1);
    }
}

// The head line `--- kind` or `--- kind name`.
RawSection openSection(const std::string& head, int line, std::string& error) {
    const std::string_view rest = std::string_view(head).substr(4);
    const std::size_t blank = rest.find(' ');
    const std::string word(rest.substr(0, blank));
    RawSection raw;
    raw.kind = findKind(word);
    raw.headLine = line;
    raw.section.line = line + 1;
    if (raw.kind == nullptr) {
        error = fault(line, "unknown section: " + word);
        return raw;
    }
    raw.section.isHex = word == "hex" || word == "out";
    if (blank != std::string_view::npos) {
        CaseContent name;
        decodeTextLine(std::string(rest.substr(blank + 1)), line, {}, name, error);
        if (error.empty() && !name.bytes.ends_with('\n'))
            error = fault(line, "a section's head is one line");
        if (!error.empty())
            return raw;
        raw.section.name = name.bytes.substr(0, name.bytes.size() - 1);
    }
    if (!raw.kind->named && blank != std::string_view::npos) {
        error = fault(line, "a section " + word + " has no name");
    } else if (raw.kind->named && word != "status" && !isPlainName(raw.section.name)) {
        error = fault(line, "a section " + word +
                                " needs a name relative to the fresh directory, without . and ..");
    }
    return raw;
}

std::vector<RawSection> openSections(const std::vector<std::string>& lines, std::string& error) {
    std::vector<RawSection> sections;
    bool explained = false;
    int number = 0;
    for (const std::string& line : lines) {
        number += 1;
        if (line.starts_with("--- ")) {
            sections.push_back(openSection(line, number, error));
        } else if (sections.empty()) {
            if (!line.starts_with('#'))
                error = fault(number, "a line before the first section begins with #");
            explained = explained || line.size() > 2;
        } else if (!sections.back().kind->hasContent) {
            error = fault(number, "a section " + std::string(sections.back().kind->word) + " has no content");
        } else {
            sections.back().section.lines.push_back(line);
        }
        if (!error.empty())
            return sections;
    }
    if (!explained)
        error = fault(1, "no comment at the head says what the case pins");
    return sections;
}

// Sections that describe the same thing share a key.
std::string sectionKey(const RawSection& raw) {
    const std::string_view word = raw.kind->word;
    if (word == "out" || word == "text-out")
        return "out " + raw.section.name;
    if (word == "file" || word == "hex" || word == "dir")
        return "in " + raw.section.name;
    return std::string(word);
}

// Decodes a section once, so that a fault shows before the run.
void checkSection(const RawSection& raw, std::string& error) {
    const std::string_view word = raw.kind->word;
    if (word == "args") {
        static_cast<void>(splitWords(raw.section, {}, error));
    } else {
        static_cast<void>(decodeSection(raw.section, {}, error));
    }
    const bool noticeKnown = word == "stdout" || word == "stderr" || word == "text-out";
    for (std::size_t i = 0; !raw.section.isHex && i < raw.section.lines.size(); ++i) {
        const std::string& line = raw.section.lines[i];
        const int number = raw.section.line + static_cast<int>(i);
        if (!noticeKnown && line.find("{notice}") != std::string::npos) {
            error = fault(number, "{notice} is not known before the run");
        }
        if (word != "text-out" && line.find("{date}") != std::string::npos) {
            error = fault(number, "{date} stands in a text-out only");
        }
    }
}

void storeSection(const RawSection& raw, CaseFile& file, std::string& error) {
    const std::string_view word = raw.kind->word;
    if (word == "args")
        file.args = raw.section;
    if (word == "file" || word == "hex")
        file.inputs.push_back(raw.section);
    if (word == "dir")
        file.directories.push_back(raw.section.name);
    if (word == "cd")
        file.startDirectory = raw.section.name;
    if (word == "stdout")
        file.standardOutput = raw.section;
    if (word == "stderr")
        file.standardError = raw.section;
    if (word == "out" || word == "text-out")
        file.outputs.push_back(raw.section);
    if (word == "status") {
        const std::string& digits = raw.section.name;
        const char* end = digits.data() + digits.size();
        const auto [stop, problem] = std::from_chars(digits.data(), end, file.status);
        if (problem != std::errc{} || stop != end || file.status < 0 || file.status > 255) {
            error = fault(raw.headLine, "an exit status is a number from 0 to 255");
        }
    }
}

bool startsWithName(std::string_view text) {
    return text.starts_with("{dir}") || text.starts_with("{notice}") || text.starts_with("{date}");
}

} // namespace

ParsedCase parseCase(std::string_view text, const std::string& path) {
    ParsedCase parsed;
    CaseFile& file = parsed.file;
    file.path = path;
    file.standardError.lines = {"{notice}"};

    std::string error;
    std::set<std::string> seen;
    const std::vector<RawSection> sections = openSections(splitLines(text), error);
    for (const RawSection& raw : sections) {
        if (!error.empty())
            break;
        if (!seen.insert(sectionKey(raw)).second) {
            error = fault(raw.headLine, "duplicate section: " + sectionKey(raw));
            break;
        }
        checkSection(raw, error);
        if (error.empty())
            storeSection(raw, file, error);
    }
    if (error.empty() && !seen.contains("args"))
        error = fault(1, "no section args");
    if (!error.empty())
        parsed.error = path + ":" + error;
    return parsed;
}

ParsedCase readCase(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!in.is_open() || in.bad())
        return {.file = {}, .error = path + ":0: cannot be read"};
    return parseCase(text, path);
}

CaseContent decodeSection(const CaseSection& section, const CaseNames& names, std::string& error) {
    CaseContent content;
    int line = section.line;
    for (const std::string& text : section.lines) {
        if (!error.empty())
            break;
        content.marks.push_back({.offset = content.bytes.size(), .line = line, .text = text});
        if (section.isHex) {
            decodeHexLine(text, line, content, error);
        } else {
            decodeTextLine(text, line, names, content, error);
        }
        line += 1;
    }
    return content;
}

std::vector<std::string> splitWords(const CaseSection& args, const CaseNames& names, std::string& error) {
    std::vector<std::string> words;
    bool open = false; // the last word goes on
    bool quoted = false;
    int line = args.line;
    for (const std::string& text : args.lines) {
        bool joined = false;
        for (std::size_t at = 0; at < text.size();) {
            Piece piece;
            if (!nextPiece(text, at, names, piece)) {
                error = fault(line, "unknown escape: " + text.substr(at, 4));
                return words;
            }
            joined = piece.joins;
            if (piece.joins)
                break;
            const bool blank = piece.plain && (piece.text == " " || piece.text == "\t");
            if (blank && !quoted) {
                open = false;
                continue;
            }
            if (!open)
                words.emplace_back();
            open = true;
            if (piece.plain && piece.text == "\"") {
                quoted = !quoted;
            } else {
                words.back() += piece.text;
            }
        }
        if (quoted && !joined) {
            error = fault(line, "a quoted word does not end on its line");
            return words;
        }
        open = open && joined;
        line += 1;
    }
    if (quoted)
        error = fault(line - 1, "a quoted word does not end");
    for (const std::string& word : words) {
        if (word.find('\0') != std::string::npos)
            error = fault(args.line, "a word cannot hold \\x00");
    }
    return words;
}

std::string escapeText(std::string_view text, std::string_view directory) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const bool ended = text.ends_with('\n');
    if (ended)
        text.remove_suffix(1);
    std::string shown;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view rest = text.substr(at);
        const auto byte = static_cast<unsigned char>(text[at]);
        if (!directory.empty() && rest.starts_with(directory)) {
            shown += "{dir}";
            at += directory.size() - 1;
        } else if (byte == '\\') {
            shown += "\\\\";
        } else if (byte == '\r') {
            shown += "\\r";
        } else if (byte == '\n') {
            shown += "\\n";
        } else if (byte == '\t') {
            shown += "\\t";
        } else if (byte == ' ' && rest.size() == 1 && ended) {
            shown += "\\s";
        } else if (byte < 0x20 || byte > 0x7E || startsWithName(rest) ||
                   (at == 0 && rest.starts_with("--- "))) {
            shown += "\\x";
            shown += digits[byte >> 4U];
            shown += digits[byte & 15U];
        } else {
            shown += text[at];
        }
    }
    return ended ? shown : shown + "\\";
}
