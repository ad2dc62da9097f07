// From polygons to packets: what kind of primitive each polygon is, and the header of its packet.
#pragma once

#include "model/rsd.hpp"
#include "tmd/packetarea.hpp"
#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// Writes the packets of all polygons of the object, built one after the other in `area`; their bytes.
/// Warns once when a polygon has no material.
std::uint32_t set_primitive(const RSD* object, PacketArea& area, FileRecord* file);

} // namespace vexbind
