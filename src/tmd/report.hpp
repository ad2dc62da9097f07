// What the program says of the TMD: the summary of the file, and the lines of the detail dump. The values
// of the dump are read back from the packet, so it shows what the file holds.
#pragma once

#include "model/tables.hpp"
#include "tmd/packetarea.hpp"
#include "tmd/tmdux.hpp"
#include "utilkit/reporttext.hpp"

#include <cstdint>
#include <cstdio>

namespace vexbind {

/// Prints the summary of the finished file.
void printTMD(std::FILE* stream, const TmdBuild& tmd);

/// Prints the vertex that a packet names at `position`: 1, or 0 when the current object has no such
/// vertex (a negative index is not noticed).
std::int32_t printVert(std::FILE* stream, std::int32_t index, std::int32_t position);

/// The same for a normal.
std::int32_t printNorm(std::FILE* stream, std::int32_t index, std::int32_t position);

/// The byte at `offset` of a packet as the dump shows it, in three columns.
inline Padded shown_byte(const PacketArea& area, std::size_t offset) {
    return {.number = get_byte(area, offset), .width = 3};
}

/// Puts the colour whose word is at `offset` of a packet: "(  1   2   3)", red, green and blue.
void put_colour(std::FILE* stream, const PacketArea& area, std::size_t offset);

/// Prints `count` colour words of a packet, the first of them at `offset`.
void printColors(std::FILE* stream, const PacketArea& area, std::size_t offset, std::uint32_t count);

/// Prints pixel mode, CLUT, texture page and translucency of a textured packet, read back from it, and the
/// texture number of its material.
void printEtc(std::FILE* stream, const PacketArea& area, const MaterialRecord& mat);

} // namespace vexbind
