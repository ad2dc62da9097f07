// The detail dump of whole packets, read back from the finished packet by its row.
#pragma once

#include "tmd/packets.hpp"

#include <cstdint>
#include <cstdio>

namespace vexbind {

/// The heading of a polygon's dump, with the words for what it is.
struct PolygonHeading {
    const char* title;
    const char* twoSided; // the word for a polygon with two sides
    const char* graded;   // the word for a lit polygon with a colour per vertex; may be empty
};

/// Prints how the heading of any packet begins: the number of the polygon.
void dump_number(std::FILE* stream);

/// Prints the heading of the polygon with the attribute word `attr`.
void dump_heading(std::FILE* stream, const PolygonHeading& heading, std::uint32_t attr,
                  const PacketArea& area);

/// Prints what the packet holds: vertices, normals, texel coordinates, colours, each where the row has them.
void dump_fields(std::FILE* stream, const PacketRow& row, const PacketArea& area);

} // namespace vexbind
