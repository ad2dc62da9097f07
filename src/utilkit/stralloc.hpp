// New tracked texts.
#pragma once

#include "utilkit/tracked.hpp"

#include <cstddef>

namespace vexbind {

/// A new block of `size` bytes, contents undefined. A failure is raised as ALC_ERR at strAllocFailed,
/// named `name` ("strAlloc" when null); null when that is ignored.
Text strAlloc(std::size_t size, const char* name);

/// A new copy of `text`. A failure is raised as ALC_ERR at strCopyFailed and names the text.
Text strCopy(const char* text);

} // namespace vexbind
