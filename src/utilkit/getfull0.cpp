#include "utilkit/getfull0.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/platform.hpp"
#include "utilkit/status.hpp"
#include "utilkit/stralloc.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace vexbind {

static constexpr std::size_t directoryRoom = 255; // for a working directory and its terminator
static constexpr std::size_t fullPathRoom = 255;  // what a full path takes at least

/// Makes `path` absolute in `buffer`.
static void makeAbsolute(const char* path, std::string& buffer) {
    if (isAbsolute(path)) {
        buffer = path;
        return;
    }
    std::array<char, directoryRoom> directory{};
    if (!queryDirectory(directory, path)) {
        raiseError(noWorkingDirectory, GETCWD_ERR, path);
    }
    buffer = directory.data();
    completePath(buffer, path);
}

const char* getFullPath0(const char* path, std::string& buffer) {
    makeAbsolute(path, buffer);
    std::string normal;
    if constexpr (hostPaths == PathRules::windows) {
        std::replace(buffer.begin(), buffer.end(), '\\', '/');
        normal = buffer.substr(0, volumeLength(buffer));
    }
    const std::size_t volume = normal.size();
    std::string_view rest = buffer;
    rest.remove_prefix(volume);
    while (!rest.empty()) {
        const std::size_t length = std::min(rest.find('/'), rest.size());
        const std::string_view component = rest.substr(0, length);
        rest.remove_prefix(std::min(length + 1, rest.size()));
        if (component == "..") {
            if (normal.size() == volume) {
                raiseError(badPathName, PATH_ERR, path);
            } else {
                normal.resize(normal.rfind('/'));
            }
        } else if (!component.empty() && component != ".") {
            normal += '/';
            normal += component;
        }
    }
    // Kept: a path that comes down to the root stays as it was written.
    if (normal.size() != volume) {
        buffer = normal;
    }
    return buffer.c_str();
}

Text getFullPath(const char* path) {
    std::string buffer;
    getFullPath0(path, buffer);
    Text fullPath = strAlloc(std::max(fullPathRoom, buffer.size() + 1), path);
    std::memcpy(fullPath.get(), buffer.c_str(), buffer.size() + 1);
    return fullPath;
}

} // namespace vexbind
