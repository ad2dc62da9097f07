#include "utilkit/put4.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/status.hpp"

#include <algorithm>
#include <span>

namespace vexbind {

static constexpr std::uint32_t wordBytes = 4;

using FileWord = std::array<unsigned char, wordBytes>;

/// The bytes of `word` in file order, least significant first.
static FileWord fileWord(std::uint32_t word) {
    return {static_cast<unsigned char>(word), static_cast<unsigned char>(word >> 8),
            static_cast<unsigned char>(word >> 16), static_cast<unsigned char>(word >> 24)};
}

PendingWords pendingWords{};

void writePendingWords() {
    FileRecord* file = pendingWords.file;
    if (file == nullptr) {
        return;
    }
    const std::size_t size = pendingWords.end;
    pendingWords.file = nullptr;
    pendingWords.end = 0;
    // Nothing is written behind lost bytes, so that what is there begins the right output.
    if (std::ferror(file->stream) == 0) {
        std::fwrite(pendingWords.bytes.data(), 1, size, file->stream);
        std::fflush(file->stream);
    }
}

std::int32_t put4Bytes(std::uint32_t value, FileRecord* file) {
    const FileWord bytes = fileWord(value);
    writePendingWords();
    const std::size_t written = std::fwrite(bytes.data(), 1, bytes.size(), file->stream);
    if (written != bytes.size() || std::fflush(file->stream) != 0) {
        raiseError(writeFailed, WRIT_ERR, file->name, static_cast<long>(file->position));
        return 0;
    }
    file->position = wrapAdd(file->position, wordBytes);
    return 1;
}

/// Lets `bytes` wait behind those of `file` that wait already; full blocks are written.
static void putBytes(std::span<const std::byte> bytes, FileRecord* file) {
    if (pendingWords.file != file) {
        writePendingWords();
        pendingWords.file = file;
    }
    while (!bytes.empty()) {
        const std::size_t room = pendingWords.bytes.size() - pendingWords.end;
        const std::size_t size = std::min(room, bytes.size());
        std::memcpy(pendingWords.bytes.data() + pendingWords.end, bytes.data(), size);
        pendingWords.end += size;
        bytes = bytes.subspan(size);
        if (size == room) {
            writePendingWords();
            pendingWords.file = file;
        }
    }
}

std::int32_t put4ByteArray(const std::uint32_t* words, std::int32_t count, FileRecord* file) {
    if (count < 1) {
        writePendingWords();
        std::fflush(file->stream);
        return 0;
    }
    const std::span<const std::uint32_t> all(words, static_cast<std::size_t>(count));
    if constexpr (std::endian::native == std::endian::little) {
        putBytes(std::as_bytes(all), file);
    } else {
        for (const std::uint32_t word : all) {
            const FileWord bytes = fileWord(word);
            putBytes(std::as_bytes(std::span(bytes)), file);
        }
    }
    file->position = wrapAdd(file->position, wordBytes * static_cast<std::uint32_t>(count));
    return static_cast<std::int32_t>(wordBytes) * count;
}

} // namespace vexbind
