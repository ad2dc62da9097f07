#include "utilkit/getline.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/scan.hpp"
#include "utilkit/status.hpp"
#include "utilkit/wrap.hpp"

#include <algorithm>
#include <cstring>

namespace vexbind {

static constexpr char commentMark = '#';
static constexpr char endOfFileMark = 26; // some editors put it at the end of a text

/// Consumes line ends and end-of-file marks before a line, counting the line feeds; false at the end
/// of the file.
static bool skipLineEnds(FileRecord* file) {
    TextBlock& block = file->text;
    for (;;) {
        for (; block.next < block.end; ++block.next) {
            const char character = block.bytes[block.next];
            if (character == '\n') {
                file->line = wrapAdd(file->line, 1);
            } else if (character != '\r' && character != endOfFileMark) {
                return true;
            }
        }
        if (!fillTextBlock(block, file->stream)) {
            return false;
        }
    }
}

/// The offset of the first line end in `text`, or its size.
static std::size_t findLineEnd(std::string_view text) {
    // Looking for one kind of line end must not run far past the other.
    std::size_t window = 64;
    for (std::size_t start = 0; start < text.size(); start += window, window *= 2) {
        const std::string_view part = text.substr(start, window);
        const std::size_t feed = std::min(part.find('\n'), part.size());
        const std::size_t end = std::min(part.substr(0, feed).find('\r'), feed);
        if (end < part.size()) {
            return start + end;
        }
    }
    return text.size();
}

/// Length of the pending line, of which there is at least one byte. `atEnd` tells that the file ended
/// before a line end came.
static std::size_t findLine(FileRecord* file, bool& atEnd) {
    TextBlock& block = file->text;
    std::size_t searched = 0;
    atEnd = false;
    for (;;) {
        const std::string_view pending = pendingText(block);
        const std::size_t length = searched + findLineEnd(pending.substr(searched));
        if (length < pending.size()) {
            return length;
        }
        searched = length;
        if (!fillTextBlock(block, file->stream)) {
            atEnd = true;
            return length;
        }
    }
}

Line getLine(FileRecord* file) {
    TextBlock& block = file->text;
    while (skipLineEnds(file)) {
        bool atEnd = false;
        std::size_t length = findLine(file, atEnd);
        char* text = block.bytes + block.next;
        block.next += length;
        if (!atEnd) {
            if (text[length] == '\n') {
                file->line = wrapAdd(file->line, 1);
            }
            ++block.next;
        }
        length = static_cast<std::size_t>(std::remove(text, text + length, endOfFileMark) - text);
        text[length] = '\0';
        // Kept: a last line without a line end is returned even when it is a comment.
        if (text[0] != commentMark || atEnd) {
            return {.text = text, .length = length};
        }
    }
    if (std::ferror(file->stream) != 0) {
        raiseError(lineReadFailed, RTXT_ERR, file->name, static_cast<long>(file->line));
    } else {
        raiseError(lineAtEnd, EOT_ERR, file->name, static_cast<long>(file->line));
    }
    return {.text = nullptr, .length = 0};
}

Line getWord(FileRecord* file) {
    TextBlock& block = file->text;
    std::size_t length = 0;
    for (;;) {
        if (length == 0) {
            while (block.next < block.end && isBlank(block.bytes[block.next])) {
                ++block.next;
            }
        }
        while (block.next + length < block.end && !isBlank(block.bytes[block.next + length])) {
            ++length;
        }
        const bool complete = block.next + length < block.end;
        if (complete || !fillTextBlock(block, file->stream)) {
            break;
        }
    }
    if (length == 0) {
        return {.text = nullptr, .length = 0};
    }
    char* text = block.bytes + block.next;
    // The blank behind the word is consumed with it, so its place can take the terminator.
    block.next = std::min(block.next + length + 1, block.end);
    text[length] = '\0';
    return {.text = text, .length = length};
}

bool getPiece(FileRecord* file, std::span<char> buffer) {
    TextBlock& block = file->text;
    std::size_t length = 0;
    bool ended = false;
    while (!ended && length + 1 < buffer.size()) {
        if (block.next == block.end && !fillTextBlock(block, file->stream)) {
            break;
        }
        buffer[length] = block.bytes[block.next];
        ended = buffer[length] == '\n';
        ++block.next;
        ++length;
    }
    buffer[length] = '\0';
    return length > 0;
}

} // namespace vexbind
