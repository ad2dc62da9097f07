// Packets, filled by the rows of tmd/packetrows.hpp.
#pragma once

#include "model/params.hpp"
#include "model/tables.hpp"
#include "tmd/packetarea.hpp"
#include "tmd/packetrows.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vexbind {

/// What a packet is filled from.
struct PacketSource {
    std::span<const std::uint8_t> colours; // R G B for vertex 0 to 3
    const PolygonRecord& poly;
    std::array<std::uint8_t, 8> uv = {}; // texel coordinates u v for vertex 0 to 3
    std::uint16_t cba = 0;
    std::uint16_t tsb = 0;
};

/// Fills everything but flag and mode, and counts the packet as opaque or translucent by its mode.
/// Returns its size in bytes.
std::uint32_t emit_packet(const PacketRow& row, const PacketSource& source, PacketArea& area);

/// The offset of `field` in packets of `row`; 0 when it has none.
std::size_t field_offset(const PacketRow& row, Field field);

} // namespace vexbind
