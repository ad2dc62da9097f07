// A stream that can be read so far and no further.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>

#include <sys/types.h>

// What a broken stream still has to give.
struct BrokenSource {
    std::string rest;
};

// Gives the bytes that are left, and fails once there are none.
inline ssize_t readBroken(void* source, char* buffer, std::size_t size) {
    std::string& rest = static_cast<BrokenSource*>(source)->rest;
    if (rest.empty()) {
        errno = EIO;
        return -1;
    }
    const std::size_t count = rest.copy(buffer, size);
    rest.erase(0, count);
    return static_cast<ssize_t>(count);
}

// A stream of these bytes, behind which reading fails; `source` must outlive it.
inline std::FILE* openBroken(BrokenSource& source) {
    return fopencookie(&source, "r",
                       {.read = readBroken, .write = nullptr, .seek = nullptr, .close = nullptr});
}
