#include "model/syntax.hpp"

#include "utilkit/errors.hpp"

namespace vexbind {

void raise_syntax(Status status, const FileRecord* file, Line line) {
    raiseError(status, SYN_ERR, file->fullPath, static_cast<long>(file->line), line.text);
}

} // namespace vexbind
