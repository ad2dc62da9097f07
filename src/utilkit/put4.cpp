#include "utilkit/put4.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/status.hpp"
#include "utilkit/wrap.hpp"

#include <array>
#include <bit>

namespace vexbind {

static constexpr std::uint32_t wordBytes = 4;

using FileWord = std::array<unsigned char, wordBytes>;

/// The bytes of `word` in file order, least significant first.
static FileWord fileWord(std::uint32_t word) {
    return {static_cast<unsigned char>(word), static_cast<unsigned char>(word >> 8),
            static_cast<unsigned char>(word >> 16), static_cast<unsigned char>(word >> 24)};
}

std::int32_t put4Bytes(std::uint32_t value, FileRecord* file) {
    const FileWord bytes = fileWord(value);
    const std::size_t written = std::fwrite(bytes.data(), 1, bytes.size(), file->stream);
    if (written != bytes.size() || std::fflush(file->stream) != 0) {
        raiseError(writeFailed, WRIT_ERR, file->name, static_cast<long>(file->position));
        return 0;
    }
    file->position = wrapAdd(file->position, wordBytes);
    return 1;
}

std::int32_t put4ByteArray(const std::uint32_t* words, std::int32_t count, FileRecord* file) {
    if (count < 1) {
        std::fflush(file->stream);
        return 0;
    }
    const auto size = static_cast<std::size_t>(count);
    if constexpr (std::endian::native == std::endian::little) {
        std::fwrite(words, wordBytes, size, file->stream);
    } else {
        for (std::size_t i = 0; i < size; ++i) {
            std::fwrite(fileWord(words[i]).data(), 1, wordBytes, file->stream);
        }
    }
    file->position = wrapAdd(file->position, wordBytes * static_cast<std::uint32_t>(count));
    return static_cast<std::int32_t>(wordBytes) * count;
}

} // namespace vexbind
