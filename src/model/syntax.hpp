// Syntax errors of the text inputs.
#pragma once

#include "utilkit/getline.hpp"
#include "utilkit/scan.hpp"
#include "utilkit/status.hpp"

namespace vexbind {

/// Raises SYN_ERR at `status` for `line`, the line of `file` read last.
void raise_syntax(Status status, const FileRecord* file, Line line);

/// A cursor over the whole of `line`.
inline Cursor begin_of(Line line) {
    return {.next = line.text, .last = line.text + line.length};
}

} // namespace vexbind
