// RSD files: which PLY, MAT, GRP and texture files make up an object.
#pragma once

#include "model/rsd.hpp"

namespace vexbind {

/// Reads the RSD file `fullPath` into the object. Syntax errors are raised at rsdPlySyntax,
/// rsdMatSyntax and rsdNtexSyntax; a file that does not open as OPEN_ERR at openFailed.
void read_rsd_files(const char* fullPath, RSD* object);

} // namespace vexbind
