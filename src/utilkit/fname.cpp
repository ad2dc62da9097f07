#include "utilkit/fname.hpp"

#include "utilkit/platform.hpp"
#include "utilkit/stralloc.hpp"

#include <cstring>

namespace vexbind {

const char* getFileName0(const char* path) {
    return findTail(path);
}

Text getFileName(const char* path) {
    return strCopy(getFileName0(path));
}

const char* getExt0(const char* path) {
    const char* dot = std::strrchr(getFileName0(path), '.');
    return dot == nullptr ? nullptr : dot + 1;
}

Text getName(const char* path) {
    Text name = getFileName(path);
    char* dot = std::strrchr(name.get(), '.');
    if (dot != nullptr) {
        *dot = '\0';
    }
    return name;
}

Text getDir(const char* path) {
    const char* tail = findTail(path);
    if (tail == path) {
        return nullptr;
    }
    // A drive has no separator behind it.
    const auto length = static_cast<std::size_t>(tail - path) - (isSeparator(tail[-1]) ? 1 : 0);
    Text directory = strAlloc(length + 1, path);
    std::memcpy(directory.get(), path, length);
    directory[length] = '\0';
    return directory;
}

} // namespace vexbind
