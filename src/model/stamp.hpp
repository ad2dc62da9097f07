// The first line of RSD, PLY and MAT files: "@", the format's name and a date.
#pragma once

#include "utilkit/fopen.hpp"

namespace vexbind {

/// What get_id finds.
enum StampVersion { badStamp = 0, oldStamp = 1, currentStamp = 2 };

/// Reads the first line and checks its stamp against `format` (three letters). An unknown date is raised
/// as VER_ERR at wrongVersion (badStamp when ignored), a line without the stamp as FORM_ERR at
/// wrongFormat (currentStamp when ignored).
StampVersion get_id(FileRecord* file, const char* format);

} // namespace vexbind
