#include "utilkit/mkfname.hpp"

#include "utilkit/fname.hpp"
#include "utilkit/stralloc.hpp"
#include "utilkit/strrcmp.hpp"

#include <cstring>
#include <string_view>

namespace vexbind {

namespace {

/// A name in the making: the path up to and including its last ".", and what is put behind it.
struct Extended {
    std::string_view stem;
    const char* dot;       // "." when the stem lacks one, else empty
    const char* extension; // null: the path stays as it is
};

} // namespace

static const char* withoutDot(const char* extension) {
    return extension[0] == '.' ? extension + 1 : extension;
}

static Extended extend(const char* path, const char* extension, ExtensionList extensions) {
    extension = withoutDot(extension);
    const char* present = getExt0(path);
    if (present == nullptr) {
        return {.stem = path, .dot = ".", .extension = extension};
    }
    const std::string_view stem(path, static_cast<std::size_t>(present - path));
    if (std::strcmp(present, extension) != 0) {
        for (const char*& entry : extensions) {
            if (strrcmp(entry, present) == 0) {
                // Kept: the caller's own entry loses its dot.
                entry = withoutDot(entry);
                return {.stem = stem, .dot = "", .extension = entry};
            }
        }
    }
    return {.stem = stem, .dot = "", .extension = nullptr};
}

static const char* compose(const Extended& parts, std::string& buffer) {
    buffer = parts.stem;
    buffer += parts.dot;
    buffer += parts.extension;
    return buffer.c_str();
}

const char* mkFileName0(const char* path, const char* extension, ExtensionList extensions,
                        std::string& buffer) {
    const Extended parts = extend(path, extension, extensions);
    if (parts.extension == nullptr) {
        buffer = path;
        return buffer.c_str();
    }
    return compose(parts, buffer);
}

Text mkFileName(const char* path, const char* extension, ExtensionList extensions) {
    const Extended parts = extend(path, extension, extensions);
    if (parts.extension == nullptr) {
        return strCopy(path);
    }
    std::string buffer;
    compose(parts, buffer);
    // Room for the name and its terminator.
    Text name = strAlloc(buffer.size() + 1, parts.dot[0] == '.' ? path : "mkFileName");
    std::memcpy(name.get(), buffer.c_str(), buffer.size() + 1);
    return name;
}

} // namespace vexbind
