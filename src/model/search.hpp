// Finding input files whose names are written in another letter case or lie in a usual directory.
#pragma once

#include "utilkit/mkfname.hpp"
#include "utilkit/tracked.hpp"

#include <array>
#include <span>

namespace vexbind {

// The extensions of the input files, in the order in which they are tried. Not constant: a leading dot
// would be dropped by the name routines.
extern std::array<const char*, 2> RSD_EXT;
extern std::array<const char*, 2> PLY_EXT;
extern std::array<const char*, 2> MAT_EXT;
extern std::array<const char*, 2> TIM_EXT;

/// The folders in which textures are looked for, from the RSD file's own.
extern const std::array<const char*, 2> TIM_DIR;

/// Whether `name` in upper or else in lower case is an existing file; `name` then holds that form, and
/// is unchanged otherwise.
bool find_other_case(char* name);

/// The first existing file among `name`, its upper-case and its lower-case form in each of the
/// directories that exist; null when there is none.
Text find_in_directories(const char* name, std::span<const char* const> directories);

} // namespace vexbind
