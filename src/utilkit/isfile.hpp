// What a path names.
#pragma once

namespace vexbind {

/// Whether `path` can be opened for reading (a directory can).
bool isFile(const char* path);

/// Whether the working directory can be changed to `path`; it is where it was afterwards.
bool isDir(const char* path);

} // namespace vexbind
