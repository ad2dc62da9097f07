// Reading text ahead in large blocks, so that lines and words can be handed out where they lie.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace vexbind {

/// Null bytes behind a text: so many characters may be looked at from any place up to its end.
inline constexpr std::size_t terminatorBytes = 3;

/// Bytes read ahead from one stream. A zeroed record is an empty block.
struct TextBlock {
    char* bytes;          // owned, `capacity` + terminatorBytes; null at first
    std::size_t capacity; // 0 before the first fill
    std::size_t next;     // the first byte not handed out yet
    std::size_t end;      // behind the last byte read; the null bytes stand there
};

/// The bytes read ahead and not handed out yet.
std::string_view pendingText(const TextBlock& block);

/// Reads more behind the pending bytes, which may move; false when there is no more to be had. The block
/// grows as long texts need it; a failed allocation is raised at strAllocFailed. The first fill takes the
/// stream's own buffer away: nothing may have been read from it before.
bool fillTextBlock(TextBlock& block, std::FILE* stream);

void freeTextBlock(TextBlock& block);

} // namespace vexbind
