// The form of an end-to-end case (tests/cases/README.md): from its text to a plain record,
// and from its sections to the bytes that they stand for.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// One section that has content, with its lines as they stand in the case file.
struct CaseSection {
    std::string name;               // of the file it describes; empty for args, stdout and stderr
    std::vector<std::string> lines; // without their line feeds
    int line = 0;                   // number of the first content line; 0 when left out
    bool isHex = false;
};

struct CaseFile {
    std::string path;
    CaseSection args;
    std::vector<CaseSection> inputs;      // sections file and hex
    std::vector<std::string> directories; // sections dir
    std::string startDirectory;           // section cd; empty for the fresh directory itself
    int status = 0;
    CaseSection standardOutput;
    CaseSection standardError;
    std::vector<CaseSection> outputs; // sections out and text-out
};

// A case, or what is wrong with it as "path:line: reason" (empty when nothing is).
struct ParsedCase {
    CaseFile file;
    std::string error;
};

// What {dir}, {notice} and {date} stand for.
struct CaseNames {
    std::string directory;
    std::string notice;
    std::string date;
};

// Where the bytes from `offset` on come from in the case file.
struct CaseMark {
    std::size_t offset = 0;
    int line = 0;
    std::string text;
};

// The bytes of a section, with a mark for each of its lines, in order.
struct CaseContent {
    std::string bytes;
    std::vector<CaseMark> marks;
};

// Parses and checks the text of a case; `path` is only named in errors.
[[nodiscard]] ParsedCase parseCase(std::string_view text, const std::string& path);

// Reads and parses a case; a file that cannot be read is an error like any other.
[[nodiscard]] ParsedCase readCase(const std::string& path);

// The bytes of a text or hex section. On a fault `error` becomes "line: reason".
[[nodiscard]] CaseContent decodeSection(const CaseSection& section, const CaseNames& names,
                                        std::string& error);

// The words of an args section. On a fault `error` becomes "line: reason".
[[nodiscard]] std::vector<std::string> splitWords(const CaseSection& args, const CaseNames& names,
                                                  std::string& error);

// A piece of text, with or without its line feed, as one line of a text section; the name
// `directory` (when not empty) is shown as {dir}.
[[nodiscard]] std::string escapeText(std::string_view text, std::string_view directory);
