// Tracked files: every file is opened, sought and closed here, through a FileRecord from which the
// error messages draw.
#pragma once

#include "utilkit/mkfname.hpp"
#include "utilkit/textblock.hpp"

#include <cstdint>
#include <cstdio>

namespace vexbind {

struct FileRecord {
    std::FILE* stream;     // owned; null once closed
    char* name;            // owned; as passed to fileOpen, null for records of fileOpen0
    char* fullPath;        // owned; absolute, null for records of fileOpen0
    std::int32_t line;     // line feeds consumed so far
    std::int32_t position; // byte offset, as kept by the binary routines and fileSeek
    TextBlock text;        // what the text routines have read ahead
    bool writes;           // opened for writing
};

inline constexpr std::uint32_t countedFileRecord = 20; // five 4-byte fields

/// Opens `name` with the mode of the standard open call. The caller owns the record and gives it to
/// fileClose. Failures are raised at fileRecordAllocFailed and, as OPEN_ERR, at openFailed; null when
/// that is ignored.
FileRecord* fileOpen(const char* name, const char* mode);

/// The same into the caller's record, which gets no names. Allocates nothing that is counted.
FileRecord* fileOpen0(const char* name, const char* mode, FileRecord* record);

/// Closes the stream and releases the record; null is accepted. A failed close, or any write on the
/// stream that failed before, is raised as CLOSE_ERR at closeFailed.
void fileClose(FileRecord* record);

/// The same for a record of fileOpen0, which stays the caller's.
void fileClose0(FileRecord* record);

/// Opens the first of `name` itself and what mkFileName0 makes of it with each extension of the list; null,
/// without a message, when none opens.
FileRecord* fileMatchOpen(const char* name, ExtensionList extensions, const char* mode);

/// The same through fileOpen0, with the first extension of the list alone (there must be one).
FileRecord* fileMatchOpen0(const char* name, ExtensionList extensions, const char* mode, FileRecord* record);

/// fileMatchOpen for a file that must be there: when none opens, OPEN_ERR with `name` is raised at
/// `status`.
FileRecord* fileMatchOpenOrFail(const char* name, ExtensionList extensions, std::int32_t status);

/// Moves to `offset` bytes from the start: 1, or 0 when the failure (SEEK_ERR, seekFailed) is ignored.
std::int32_t fileSeek(FileRecord* record, std::int32_t offset);

} // namespace vexbind
