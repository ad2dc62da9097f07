#include "utilkit/fname.hpp"

#include "utilkit/stralloc.hpp"

#include <cstring>

namespace vexbind {

const char* getFileName0(const char* path) {
    const char* slash = std::strrchr(path, '/');
    return slash == nullptr ? path : slash + 1;
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
    const char* slash = std::strrchr(path, '/');
    if (slash == nullptr) {
        return nullptr;
    }
    const auto length = static_cast<std::size_t>(slash - path);
    Text directory = strAlloc(length + 1, path);
    std::memcpy(directory.get(), path, length);
    directory[length] = '\0';
    return directory;
}

} // namespace vexbind
