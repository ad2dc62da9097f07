// Every packet variant as one row that reads like its layout in the file, and the one routine that fills
// a packet from its row.
#pragma once

#include "model/params.hpp"
#include "model/tables.hpp"
#include "tmd/counters.hpp"
#include "tmd/packetarea.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vexbind {

/// What stands next in a packet. Half words are little-endian.
enum class Field : std::uint8_t {
    none, //         behind the last field
    C0,   // 3 bytes R G B of the material's first colour
    C1,   //         ... and so on, one for each vertex
    C2,
    C3,
    mode, // 1 byte  copy of the header's mode
    N0,   // 2 bytes normal index
    N1,
    N2,
    N3,
    V0, // 2 bytes vertex index
    V1,
    V2,
    V3,
    noV3, // 2 bytes a fourth vertex index that is 0 whatever the polygon holds
    UV0,  // 2 bytes texel coordinates u, v within the texture page
    UV1,
    UV2,
    UV3,
    cba,   // 2 bytes CLUT position code
    tsb,   // 2 bytes texture page code, with the translucency rate
    width, // 2 bytes size of a sprite, in texels
    height,
    zero,   // 1 byte  0
    zero2,  // 2 bytes 0
    stale,  // 1 byte  left as the packet before had it
    behind, //         what follows is put into the area behind the packet
};

/// Bytes that `field` takes in the packet.
constexpr std::size_t field_width(Field field) {
    switch (field) {
    case Field::none:
    case Field::behind:
        return 0;
    case Field::C0:
    case Field::C1:
    case Field::C2:
    case Field::C3:
        return 3;
    case Field::mode:
    case Field::zero:
    case Field::stale:
        return 1;
    default:
        return 2;
    }
}

/// How the detail dump shows the colours of a packet: not at all, side by side, as the two ends of a line,
/// or as a list.
enum class ColourDump : std::uint8_t { hide, row, ends, list };

inline constexpr std::size_t maxFields = 20;

/// The variants. In the names, dark means light off, plain one colour and grad a colour for every vertex.
enum PacketVariant : std::size_t {
    flatDark3,
    flatDark4,
    flatDarkOther, // a type that is neither triangle nor quadrangle
    flatPlain3,
    flatPlain4,
    flatGrad3,
    flatGrad4,
    gouraudDark3, // the one colour stands at every vertex
    gouraudDark4,
    gouraudDarkGrad3,
    gouraudDarkGrad4,
    gouraudPlain3,
    gouraudPlain4,
    gouraudGrad3,
    gouraudGrad4,
    flatTex3,
    flatTex4,
    flatTexDark3,
    flatTexDark4,
    gouraudTex3,
    gouraudTex4,
    gouraudTexDark3,
    gouraudTexDark4,
    gouraudTexDarkGrad3,
    gouraudTexDarkGrad4,
    lineFlat,
    lineGrad,
    spriteFree,
    sprite1x1,
    sprite8x8,
    sprite16x16,
    packetVariants
};

struct PacketRow {
    PacketVariant variant;
    std::uint8_t size;                   // bytes, header included
    std::uint8_t olen;                   // words of the drawing packet that the console's runtime builds
    ColourDump colours;                  // in the detail dump
    Counter* opaque;                     // raised for an opaque packet
    Counter* translucent;                // raised for a translucent packet
    std::array<Field, maxFields> fields; // from headerBytes on
};

/// What a packet is filled from.
struct PacketSource {
    std::span<const std::uint8_t> colours; // R G B for vertex 0 to 3
    const PolygonRecord& poly;
    std::array<std::uint8_t, 8> uv = {}; // texel coordinates u v for vertex 0 to 3
    std::uint16_t cba = 0;
    std::uint16_t tsb = 0;
};

/// The rows, in the order of the variants.
extern const std::array<PacketRow, packetVariants> packetRows;

/// Fills everything but flag and mode, and counts the packet as opaque or translucent by its mode.
/// Returns its size in bytes.
std::uint32_t emit_packet(const PacketRow& row, const PacketSource& source, PacketArea& area);

/// The offset of `field` in packets of `row`; 0 when it has none.
std::size_t field_offset(const PacketRow& row, Field field);

} // namespace vexbind
