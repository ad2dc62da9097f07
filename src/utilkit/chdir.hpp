// The working directory. It is changed here and nowhere else.
#pragma once

#include <cstdint>
#include <span>

namespace vexbind {

/// Changes the working directory: 0 on success, which copies `path` into `_cwd`, and 255 on failure. A null
/// `path` does nothing and gives 0.
std::uint8_t chDir(const char* path);

/// Puts the terminated name of the working directory into `buffer`; false when it cannot be had
/// or does not fit.
[[nodiscard]] bool getCwd0(std::span<char> buffer);

} // namespace vexbind
