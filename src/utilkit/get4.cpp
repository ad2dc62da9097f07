#include "utilkit/get4.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/status.hpp"
#include "utilkit/wrap.hpp"

#include <algorithm>
#include <array>

namespace vexbind {

/// Reads `count` bytes, least significant first, and reports what went wrong on the way.
static std::uint32_t getBytes(FileRecord* file, std::uint32_t count, std::int32_t readStatus,
                              std::int32_t endStatus) {
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(std::getc(file->stream));
        value |= static_cast<std::uint32_t>(byte) << (8 * i);
    }
    file->position = wrapAdd(file->position, count);
    if (std::ferror(file->stream) != 0) {
        raiseError(readStatus, READ_ERR, file->name, static_cast<long>(file->position));
    } else if (std::feof(file->stream) != 0) {
        raiseError(endStatus, EOF_ERR, file->name, static_cast<long>(file->position));
    }
    return value;
}

std::int32_t get4Bytes(FileRecord* file) {
    return static_cast<std::int32_t>(getBytes(file, 4, read4Failed, read4AtEnd));
}

std::int32_t get2Bytes(FileRecord* file) {
    return static_cast<std::int16_t>(getBytes(file, 2, read2Failed, read2AtEnd));
}

bool skipBytes(FileRecord* file, std::uint32_t count) {
    static std::array<char, std::size_t{256} * 1024> skipped;
    while (count > 0) {
        const std::size_t wanted = std::min<std::size_t>(count, skipped.size());
        const auto got = static_cast<std::uint32_t>(std::fread(skipped.data(), 1, wanted, file->stream));
        file->position = wrapAdd(file->position, got);
        count -= got;
        if (got < wanted) {
            return false;
        }
    }
    return true;
}

} // namespace vexbind
