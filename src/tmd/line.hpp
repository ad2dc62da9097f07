// Packets of straight lines.
#pragma once

#include "model/tables.hpp"
#include "tmd/packetarea.hpp"

#include <cstdint>

namespace vexbind {

/// Builds the packet of a line of one colour in `area`, whose flag and mode are set, counts it and dumps it
/// when Dump asks for it. Returns its size in bytes.
std::uint32_t flat_line(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

/// The same for a line with a colour at each end.
std::uint32_t gouraud_line(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

} // namespace vexbind
