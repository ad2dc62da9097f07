// What one operating system does otherwise than another: how names of files are spelt, and the few calls that
// differ. Nothing else asks the preprocessor
// on which system it runs.
//
// The rules for names are given both ways on every system; `hostPaths` are those that hold. With the POSIX
// ones the compiler has nothing left to ask.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <unistd.h>

namespace vexbind {

/// How a system takes names of files apart. On Windows "\" separates as "/" does, and a name may begin with a
/// drive ("C:") or a share ("//server/share"), its volume.
enum class PathRules : std::uint8_t { posix, windows };

#ifdef _WIN32
inline constexpr PathRules hostPaths = PathRules::windows;
#else
inline constexpr PathRules hostPaths = PathRules::posix;
#endif

constexpr bool isSeparator(char character, PathRules rules = hostPaths) {
    return character == '/' || (rules == PathRules::windows && character == '\\');
}

/// The length of the drive with which `path` begins, 2 or 0.
constexpr std::size_t driveLength(std::string_view path, PathRules rules = hostPaths) {
    if (rules == PathRules::posix || path.size() < 2 || path[1] != ':') {
        return 0;
    }
    const bool isLetter = (path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z');
    return isLetter ? 2 : 0;
}

/// The length of the volume with which `path` begins; 0 without one.
constexpr std::size_t volumeLength(std::string_view path, PathRules rules = hostPaths) {
    if (rules == PathRules::posix) {
        return 0;
    }
    constexpr std::string_view separators = "/\\";
    const std::size_t server = std::min(path.find_first_not_of(separators), path.size());
    if (server != 2) {
        return driveLength(path, rules);
    }
    const std::size_t serverEnd = std::min(path.find_first_of(separators, server), path.size());
    const std::size_t share = std::min(path.find_first_not_of(separators, serverEnd), path.size());
    return share == path.size() ? 0 : std::min(path.find_first_of(separators, share), path.size());
}

/// Whether `path` means the same in every working directory.
constexpr bool isAbsolute(const char* path, PathRules rules = hostPaths) {
    if (rules == PathRules::posix) {
        return path[0] == '/';
    }
    // A drive's name alone, or with a name right behind it, speaks of the working directory there.
    const std::size_t volume = volumeLength(path, rules);
    return volume > 2 || (volume == 2 && isSeparator(path[volume], rules));
}

/// What follows the volume and the last separator, inside `path`; all of it when there is neither.
inline const char* findTail(const char* path, PathRules rules = hostPaths) {
    if (rules == PathRules::posix) {
        const char* slash = std::strrchr(path, '/');
        return slash == nullptr ? path : slash + 1;
    }
    const std::string_view all(path);
    const std::size_t last = all.find_last_of("/\\");
    return path + std::max(volumeLength(all, rules), last == std::string_view::npos ? 0 : last + 1);
}

/// Puts `path`, which is not absolute, behind the `directory` in which it counts: the working directory, or
/// that of the path's own drive.
inline void completePath(std::string& directory, const char* path, PathRules rules = hostPaths) {
    const std::size_t drive = driveLength(path, rules);
    if (rules == PathRules::windows && isSeparator(path[0], rules)) {
        directory.resize(volumeLength(directory, rules));
    } else {
        directory += '/';
    }
    directory += path + drive;
}

/// Whether `directory`, as getDir gives it of a full path, is a root without its separator.
inline bool isBareRoot(const char* directory, PathRules rules = hostPaths) {
    return directory[volumeLength(directory, rules)] == '\0';
}

#ifdef _WIN32

/// Puts the terminated name of the working directory into `buffer`; of that on the drive with which `path`
/// begins, if it does. False when the name cannot be had or does not fit.
[[nodiscard]] bool queryDirectory(std::span<char> buffer, const char* path);

/// The decimal logarithm as the libraries of other systems have it, to the last bit: at powers of two, and
/// next to them, the exponent of a scale factor hangs on that.
double decimalLogarithm(double number);

#else

[[nodiscard]] inline bool queryDirectory(std::span<char> buffer, const char* /*path*/) {
    return ::getcwd(buffer.data(), buffer.size()) != nullptr;
}

inline double decimalLogarithm(double number) {
    return std::log10(number);
}

#endif

/// Prepares the streams: bytes pass as they are, and a standard stream that the caller has closed has its
/// place taken, as the output would land there and be mixed with messages.
void prepareStreams();

} // namespace vexbind
