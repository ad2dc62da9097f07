// What the listing passes of the PLY and the MAT reader have in common.
#pragma once

#include "model/rsd.hpp"
#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// A format that is listed: its name in the stamp, its extensions, and the status when there is no file.
struct ListedFormat {
    const char* name;
    const char* extension;
    ExtensionList extensions;
    std::int32_t notFound;
};

/// Settles the letter case of `fileName` (owned by the object; may be replaced), opens the file and sets
/// the object's version by its stamp, with a warning for the old one. The caller closes the file.
FileRecord* open_listed(RSD* object, char*& fileName, const ListedFormat& format);

} // namespace vexbind
