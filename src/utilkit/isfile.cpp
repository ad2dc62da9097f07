#include "utilkit/isfile.hpp"

#include "settings/settings.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"

#include <cerrno>
#include <cstdio>

namespace vexbind {

bool isFile(const char* path) {
    errno = 0;
    std::FILE* stream = std::fopen(path, "r");
    if (stream == nullptr) {
        if (errno == ENOMEM) {
            // Taking this for a file that is not there would leave out an object.
            raiseAllocError(allocFailed, path, 1, sizeof(std::FILE));
        }
        return false;
    }
    static_cast<void>(std::fclose(stream));
    return true;
}

bool isDir(const char* path) {
    PathBuffer here{};
    // A directory that cannot be returned to is not entered.
    if (!getCwd0(here) || chDir(path) != 0) {
        return false;
    }
    chDir(here.data());
    return true;
}

} // namespace vexbind
