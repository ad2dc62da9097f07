// Reading text files by lines, words, or pieces of lines.
#pragma once

#include "utilkit/fopen.hpp"

#include <cstddef>
#include <span>

namespace vexbind {

/// A terminated line or word inside the file's read-ahead block; valid until the next read from the
/// same file. `text` is null when there is none.
struct Line {
    char* text;
    std::size_t length;
};

/// The next line that is neither empty nor a comment. Lines end in LF, CR or both; only line feeds
/// are counted in the record's line. Failures are raised as RTXT_ERR at lineReadFailed and EOT_ERR at
/// lineAtEnd; no line when that is ignored.
Line getLine(FileRecord* file);

/// The next word between white space; none at the end of the file.
Line getWord(FileRecord* file);

/// The next line as fgets reads it, terminated in `buffer`: at most its size less one bytes, with the line
/// feed if it is among them. False at the end of the file.
[[nodiscard]] bool getPiece(FileRecord* file, std::span<char> buffer);

} // namespace vexbind
