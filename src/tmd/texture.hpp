// Packets of textured polygons.
#pragma once

#include "model/tables.hpp"
#include "tmd/packetarea.hpp"

#include <cstdint>

namespace vexbind {

/// Builds the packet of a flat polygon in `area`, whose flag and mode are set, counts it and dumps it when
/// Dump asks for it. Reads Texinfo. Returns the packet's size in bytes.
std::uint32_t flat_texture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

/// The same for a gouraud polygon.
std::uint32_t gouraud_texture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

} // namespace vexbind
