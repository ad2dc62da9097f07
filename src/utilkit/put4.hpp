// Little-endian output, the same on every host.
#pragma once

#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// Writes one word and flushes the stream: 1, or 0 when a failure of the last byte or of the flush
/// (WRIT_ERR, writeFailed) is ignored.
std::int32_t put4Bytes(std::uint32_t value, FileRecord* file);

/// Writes `count` words and returns the bytes written; a count below 1 only flushes and returns 0.
/// The words may wait in the stream's buffer. A failed write is not reported here: the next seek or close
/// fails.
std::int32_t put4ByteArray(const std::uint32_t* words, std::int32_t count, FileRecord* file);

} // namespace vexbind
