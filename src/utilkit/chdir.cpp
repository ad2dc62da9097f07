#include "utilkit/chdir.hpp"

#include "settings/settings.hpp"
#include "utilkit/platform.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <unistd.h>

namespace vexbind {

std::uint8_t chDir(const char* path) {
    if (path == nullptr) {
        return 0;
    }
    const auto result = static_cast<std::uint8_t>(::chdir(path));
    if (result == 0) {
        // The path may lie in _cwd itself, so the bytes are moved.
        const std::size_t length = std::min(std::string_view(path).size(), _cwd.size() - 1);
        std::memmove(_cwd.data(), path, length);
        _cwd[length] = '\0';
    }
    return result;
}

bool getCwd0(std::span<char> buffer) {
    return queryDirectory(buffer, "");
}

} // namespace vexbind
