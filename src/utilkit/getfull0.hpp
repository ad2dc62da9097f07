// Absolute path names.
#pragma once

#include "utilkit/tracked.hpp"

#include <string>

namespace vexbind {

/// Fills `buffer` with the absolute form of `path`, without ".", ".." and repeated "/", and returns its
/// text; a path that leaves no component stays unnormalised. Failures are raised as GETCWD_ERR at
/// noWorkingDirectory (also when the directory takes more than 255 bytes with its terminator) and
/// PATH_ERR at badPathName.
const char* getFullPath0(const char* path, std::string& buffer);

/// The same as a new text, with room for 255 bytes at least.
Text getFullPath(const char* path);

} // namespace vexbind
