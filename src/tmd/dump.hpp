// The detail dump of whole packets, read back from the finished packet by its row.
#pragma once

#include "tmd/packets.hpp"

#include <cstdint>
#include <cstdio>

namespace vexbind {

/// Dumps the packet of an untextured polygon with the attribute word `attr`: heading, vertices, normals,
/// colours.
void dump_untextured(std::FILE* stream, const char* title, const PacketRow& row, std::uint32_t attr,
                     const PacketArea& area);

} // namespace vexbind
