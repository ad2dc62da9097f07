// What no converter can save: a floor under the time of a conversion.
//
//   floor FILE ...            reads the files in blocks
//   floor -o OUT BYTES FILE ... reads the files in blocks, finds the ends of their lines, and writes as many
//                             bytes to OUT
//
// Prints the bytes that it read and the lines that it found.
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace {

std::array<char, std::size_t{256} * 1024> block;

[[noreturn]] void give_up(const char* name) {
    std::perror(name);
    std::exit(1);
}

int open_file(const char* name, int flags) {
    constexpr int mode = 0666;
    const int file = open(name, flags, mode);
    if (file < 0) {
        give_up(name);
    }
    return file;
}

std::uint64_t count_lines(std::string_view text) {
    std::uint64_t lines = 0;
    const char* next = text.data();
    const char* end = next + text.size();
    while (next != end) {
        const void* found = std::memchr(next, '\n', static_cast<std::size_t>(end - next));
        if (found == nullptr) {
            break;
        }
        ++lines;
        next = static_cast<const char*>(found) + 1;
    }
    return lines;
}

struct Seen {
    std::uint64_t bytes = 0;
    std::uint64_t lines = 0;
};

void read_file(const char* name, bool findLines, Seen& seen) {
    const int file = open_file(name, O_RDONLY);
    for (;;) {
        const ssize_t count = read(file, block.data(), block.size());
        if (count < 0) {
            give_up(name);
        }
        if (count == 0) {
            break;
        }
        const std::string_view text(block.data(), static_cast<std::size_t>(count));
        seen.bytes += text.size();
        seen.lines += findLines ? count_lines(text) : 0;
    }
    close(file);
}

void write_file(const char* name, std::uint64_t bytes) {
    const int file = open_file(name, O_WRONLY | O_CREAT | O_TRUNC);
    while (bytes > 0) {
        const ssize_t count = write(file, block.data(), bytes < block.size() ? bytes : block.size());
        if (count < 0) {
            give_up(name);
        }
        bytes -= static_cast<std::uint64_t>(count);
    }
    if (close(file) != 0) {
        give_up(name);
    }
}

int explain() {
    std::fprintf(stderr, "usage: floor [-o OUT BYTES] FILE ...\n");
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::span<char*> words(argv + 1, argv + argc);
    const char* out = nullptr;
    std::uint64_t bytes = 0;
    if (words.size() > 3 && std::string_view(words[0]) == "-o") {
        out = words[1];
        const std::string_view number = words[2];
        const char* end = number.data() + number.size();
        if (const auto [behind, error] = std::from_chars(number.data(), end, bytes);
            behind != end || error != std::errc()) {
            return explain();
        }
        words = words.subspan(3);
    }
    if (words.empty()) {
        return explain();
    }
    Seen seen;
    for (const char* name : words) {
        read_file(name, out != nullptr, seen);
    }
    if (out != nullptr) {
        write_file(out, bytes);
    }
    std::printf("%llu bytes, %llu lines\n", static_cast<unsigned long long>(seen.bytes),
                static_cast<unsigned long long>(seen.lines));
    return 0;
}
