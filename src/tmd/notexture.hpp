// Packets of untextured polygons.
#pragma once

#include "model/tables.hpp"
#include "tmd/packetarea.hpp"

#include <cstdint>

namespace vexbind {

/// Builds the packet of a flat polygon (one normal) in `area`, whose flag and mode are set, counts it and
/// dumps it when Dump asks for it. Returns its size in bytes.
std::uint32_t flat_notexture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

/// The same for a gouraud polygon (a normal for every vertex).
std::uint32_t gouraud_notexture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

} // namespace vexbind
