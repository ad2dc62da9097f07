// What a path names.
#pragma once

namespace vexbind {

/// Whether `path` can be opened for reading (a directory can). Missing memory is raised as ALC_ERR, named by
/// the path, at allocFailed.
bool isFile(const char* path);

/// Whether the working directory can be changed to `path`; it is where it was afterwards.
bool isDir(const char* path);

} // namespace vexbind
