#include "utilkit/textblock.hpp"

#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vexbind {

// Most files of a large project are small; a large one is read in blocks that the nearer caches hold.
static constexpr std::size_t firstCapacity = std::size_t{4} * 1024;
static constexpr std::size_t usualCapacity = std::size_t{128} * 1024;

std::string_view pendingText(const TextBlock& block) {
    return {block.bytes + block.next, block.end - block.next};
}

/// Makes room behind the pending bytes, which move to the front of the block.
static bool makeRoom(TextBlock& block) {
    if (block.next > 0) {
        std::memmove(block.bytes, block.bytes + block.next, block.end - block.next);
        block.end -= block.next;
        block.next = 0;
    }
    if (block.capacity >= usualCapacity && block.end < block.capacity) {
        return true;
    }
    // The block stands for the stream's own buffer, which is not counted either.
    const std::size_t capacity =
        block.capacity == 0 ? firstCapacity : std::max(usualCapacity, 2 * block.capacity);
    auto* bytes = static_cast<char*>(std::realloc(block.bytes, capacity + terminatorBytes));
    if (bytes == nullptr) {
        raiseAllocError(strAllocFailed, "getLine", static_cast<std::uint32_t>(capacity + terminatorBytes), 1);
        return false;
    }
    block.bytes = bytes;
    block.capacity = capacity;
    return true;
}

bool fillTextBlock(TextBlock& block, std::FILE* stream) {
    const bool isFirst = block.capacity == 0;
    if (!makeRoom(block)) {
        return false;
    }
    if (isFirst) {
        // The library would read every block in two parts, the second one through a buffer of its own.
        static_cast<void>(std::setvbuf(stream, nullptr, _IONBF, 0));
    }
    const std::size_t count = std::fread(block.bytes + block.end, 1, block.capacity - block.end, stream);
    block.end += count;
    std::memset(block.bytes + block.end, 0, terminatorBytes);
    return count > 0;
}

void freeTextBlock(TextBlock& block) {
    std::free(block.bytes);
    block = TextBlock{};
}

} // namespace vexbind
