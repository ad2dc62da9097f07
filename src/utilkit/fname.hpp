// Taking path names apart. The tail of a path is the part after its last "/", or all of it; platform.hpp has
// what separates on other systems.
#pragma once

#include "utilkit/tracked.hpp"

namespace vexbind {

/// The tail of `path`, inside `path`.
const char* getFileName0(const char* path);

/// A new copy of the tail of `path`.
Text getFileName(const char* path);

/// What follows the last "." of the tail, inside `path`; null when the tail has no ".".
const char* getExt0(const char* path);

/// A new copy of the tail of `path` without its last "." and what follows.
Text getName(const char* path);

/// A new text of everything before the last "/"; null when there is no "/".
Text getDir(const char* path);

} // namespace vexbind
