// Packets of 3D sprites: textured rectangles of any size, or of one of three, placed at one vertex.
#pragma once

#include "model/tables.hpp"
#include "tmd/packetarea.hpp"

#include <cstdint>

namespace vexbind {

/// Builds the packet of a sprite in `area`, whose flag and mode are set, counts it and dumps it when Dump
/// asks for it. The second and third vertex index hold width and height in texels. Reads Texinfo. Returns the
/// packet's size in bytes.
std::uint32_t sprite(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

} // namespace vexbind
