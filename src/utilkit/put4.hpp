// Little-endian output, the same on every host.
#pragma once

#include "utilkit/fopen.hpp"
#include "utilkit/wrap.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vexbind {

/// Writes one word and flushes the stream: 1, or 0 when a failure of the last byte or of the flush
/// (WRIT_ERR, writeFailed) is ignored.
std::int32_t put4Bytes(std::uint32_t value, FileRecord* file);

/// Writes `count` words and returns the bytes written; a count below 1 only flushes and returns 0.
/// The words may wait in `pendingWords`. A failed write is not reported here: the next seek or close
/// fails.
std::int32_t put4ByteArray(const std::uint32_t* words, std::int32_t count, FileRecord* file);

/// Bytes that were put and not written yet, all of one file. What is put into another file sends them on
/// their way, as do put4Bytes, fileSeek, fileClose, sendReport and Exit.
struct PendingWords {
    FileRecord* file; // null when there are none
    std::size_t end;
    std::array<std::byte, std::size_t{64} * 1024> bytes;
};
extern PendingWords pendingWords;

/// Hands the pending bytes to their stream and flushes it. When either fails, the bytes are lost and the
/// stream remembers it; nothing is written to it any more.
void writePendingWords();

/// put4ByteArray for the first `count` words of a small array: at least one, at most `few`.
template <std::size_t few, std::size_t capacity>
void put4Words(const std::array<std::uint32_t, capacity>& words, std::uint32_t count, FileRecord* file) {
    static_assert(few <= capacity);
    static constexpr std::size_t most = few * sizeof(std::uint32_t);
    PendingWords& pending = pendingWords;
    if (std::endian::native != std::endian::little || pending.file != file ||
        pending.bytes.size() - pending.end < most) {
        put4ByteArray(words.data(), static_cast<std::int32_t>(count), file);
        return;
    }
    // A copy of fixed size is far quicker than one of the size that is wanted.
    std::memcpy(pending.bytes.data() + pending.end, words.data(), most);
    const std::uint32_t size = 4 * count;
    pending.end += size;
    file->position = wrapAdd(file->position, size);
}

} // namespace vexbind
