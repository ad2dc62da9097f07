// The ID list: a header that tells the game's source which object of the TMD has which ID.
#pragma once

namespace vexbind {

/// Writes the header, named after the TMD `name`, into the working directory.
void write_idtable(const char* name);

} // namespace vexbind
