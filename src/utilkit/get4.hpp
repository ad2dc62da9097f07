// Little-endian input, the same on every host.
#pragma once

#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// The next word. Failures are raised as READ_ERR at read4Failed and EOF_ERR at read4AtEnd, with the
/// position behind the word.
std::int32_t get4Bytes(FileRecord* file);

/// The next half word, sign-extended; failures likewise at read2Failed and read2AtEnd.
std::int32_t get2Bytes(FileRecord* file);

/// Reads over `count` bytes; false when not all are there. The position then tells where the file ended.
[[nodiscard]] bool skipBytes(FileRecord* file, std::uint32_t count);

} // namespace vexbind
