// The layout of every packet variant, one row each that reads like the packet in the file.
#pragma once

#include "tmd/counters.hpp"
#include "tmd/packetarea.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

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

/// The rows, in the order of the variants.
inline constexpr std::array<PacketRow, packetVariants> packetRows = [] {
    using enum Field;
    using enum ColourDump;
    // clang-format off
return std::array<PacketRow, packetVariants>{{
//   variant           size olen colours  counted as: opaque, translucent
//   fields behind the header
    {flatDark3,           16, 4,  row,  &nFlat3NoLight,       &nFlatTrans3NoLight,
     {C0, mode, V0, V1, V2, zero2}},
    {flatDark4,           16, 5,  row,  &nFlat4NoLight,       &nFlatTrans4NoLight,
     {C0, mode, V0, V1, V2, V3}},
    {flatDarkOther,       16, 5,  row,  &nFlat4NoLight,       &nFlatTrans4NoLight,
     {C0, mode, V0, V1, V2, noV3}},
    {flatPlain3,          16, 4,  list, &nFlat3,              &nFlatTrans3,
     {C0, mode, N0, V0, V1, V2}},
    {flatPlain4,          20, 5,  list, &nFlat4,              &nFlatTrans4,
     {C0, mode, N0, V0, V1, V2, V3, zero2}},
    {flatGrad3,           24, 6,  list, &nGradFlat3,          &nGradFlatTrans3,
     {C0, mode, C1, stale, C2, stale, N0, V0, V1, V2}},
    {flatGrad4,           32, 8,  list, &nGradFlat4,          &nGradFlatTrans4,
     {C0, mode, C1, stale, C2, stale, C3, stale, N0, V0, V1, V2, V3, zero2}},
    // Kept: here the fourth bytes of the colours are cleared, unlike those of the lit packets.
    {gouraudDark3,        24, 6,  list, &nGouraud3NoLight,    &nGouraudTrans3NoLight,
     {C0, mode, C0, zero, C0, zero, V0, V1, V2, zero2}},
    {gouraudDark4,        28, 8,  list, &nGouraud4NoLight,    &nGouraudTrans4NoLight,
     {C0, mode, C0, zero, C0, zero, C0, zero, V0, V1, V2, V3}},
    {gouraudDarkGrad3,    24, 6,  list, &nGouraud3NoLight,    &nGouraudTrans3NoLight,
     {C0, mode, C1, zero, C2, zero, V0, V1, V2, zero2}},
    {gouraudDarkGrad4,    28, 8,  list, &nGouraud4NoLight,    &nGouraudTrans4NoLight,
     {C0, mode, C1, zero, C2, zero, C3, zero, V0, V1, V2, V3}},
    {gouraudPlain3,       20, 6,  row,  &nGouraud3,           &nGouraudTrans3,
     {C0, mode, N0, V0, N1, V1, N2, V2}},
    {gouraudPlain4,       24, 8,  row,  &nGouraud4,           &nGouraudTrans4,
     {C0, mode, N0, V0, N1, V1, N2, V2, N3, V3}},
    {gouraudGrad3,        28, 6,  list, &nGradGouraud3,       &nGradGouraudTrans3,
     {C0, mode, C1, stale, C2, stale, N0, V0, N1, V1, N2, V2}},
    {gouraudGrad4,        36, 8,  list, &nGradGouraud4,       &nGradGouraudTrans4,
     {C0, mode, C1, stale, C2, stale, C3, stale, N0, V0, N1, V1, N2, V2, N3, V3}},
    {flatTex3,            24, 7,  hide, &nFlat3Tex,           &nFlatTrans3Tex,
     {UV0, cba, UV1, tsb, UV2, zero2, N0, V0, V1, V2}},
    {flatTex4,            32, 9,  hide, &nFlat4Tex,           &nFlatTrans4Tex,
     {UV0, cba, UV1, tsb, UV2, zero2, UV3, zero2, N0, V0, V1, V2, V3, zero2}},
    {flatTexDark3,        28, 7,  list, &nFlat3TexNoLight,    &nFlatTrans3TexNoLight,
     {UV0, cba, UV1, tsb, UV2, zero2, C0, zero, V0, V1, V2, zero2}},
    {flatTexDark4,        32, 9,  list, &nFlat4TexNoLight,    &nFlatTrans4TexNoLight,
     {UV0, cba, UV1, tsb, UV2, zero2, UV3, zero2, C0, zero, V0, V1, V2, V3}},
    {gouraudTex3,         28, 9,  hide, &nGouraud3Tex,        &nGouraudTrans3Tex,
     {UV0, cba, UV1, tsb, UV2, zero2, N0, V0, N1, V1, N2, V2}},
    {gouraudTex4,         36, 12, hide, &nGouraud4Tex,        &nGouraudTrans4Tex,
     {UV0, cba, UV1, tsb, UV2, zero2, UV3, zero2, N0, V0, N1, V1, N2, V2, N3, V3}},
    // Kept: the triangle leaves the fourth byte of its first colour alone, the quadrangle does not.
    {gouraudTexDark3,     36, 9,  row,  &nGouraud3TexNoLight, &nGouraudTrans3TexNoLight,
     {UV0, cba, UV1, tsb, UV2, zero2, C0, stale, C0, zero, C0, zero, V0, V1, V2, zero2}},
    {gouraudTexDark4,     44, 12, row,  &nGouraud4TexNoLight, &nGouraudTrans4TexNoLight,
     {UV0, cba, UV1, tsb, UV2, zero2, UV3, zero2,
      C0, zero, C0, zero, C0, zero, C0, zero, V0, V1, V2, V3}},
    {gouraudTexDarkGrad3, 36, 9,  row,  &nGouraud3TexNoLight, &nGouraudTrans3TexNoLight,
     {UV0, cba, UV1, tsb, UV2, zero2, C0, stale, C1, zero, C2, zero, V0, V1, V2, zero2}},
    {gouraudTexDarkGrad4, 44, 12, row,  &nGouraud4TexNoLight, &nGouraudTrans4TexNoLight,
     {UV0, cba, UV1, tsb, UV2, zero2, UV3, zero2,
      C0, zero, C1, zero, C2, zero, C3, zero, V0, V1, V2, V3}},
    {lineFlat,            12, 3,  row,  &nFlatLine,           &nFlatTransLine,
     {C0, mode, V0, V1}},
    {lineGrad,            16, 4,  ends, &nGouraudLine,        &nGouraudTransLine,
     {C0, mode, C1, zero, V0, V1}},
    {spriteFree,          16, 5,  hide, &nSpriteFree,         &nTransSpriteFree,
     {V0, tsb, UV0, cba, width, height}},
    // A sprite of a fixed size is merely shorter: its size stands in the area all the same.
    {sprite1x1,           12, 4,  hide, &nSprite1,            &nTransSprite1,
     {V0, tsb, UV0, cba, behind, width, height}},
    {sprite8x8,           12, 4,  hide, &nSprite8,            &nTransSprite8,
     {V0, tsb, UV0, cba, behind, width, height}},
    {sprite16x16,         12, 4,  hide, &nSprite16,           &nTransSprite16,
     {V0, tsb, UV0, cba, behind, width, height}},
}};
    // clang-format on
}();

/// A field and where it stands.
struct PlacedField {
    Field field;
    std::size_t offset; // in the packet, from its first byte
};

/// The fields of a row, those behind the packet among them.
constexpr std::array<PlacedField, maxFields> place_fields(const PacketRow& row) {
    std::array<PlacedField, maxFields> placed{};
    std::size_t offset = headerBytes;
    for (std::size_t i = 0; i < maxFields; ++i) {
        placed[i] = {.field = row.fields[i], .offset = offset};
        offset += field_width(row.fields[i]);
    }
    return placed;
}

/// Whether a row stands at its variant's place, is whole words with no field across two of them, adds up
/// to its size and, with what it puts behind the packet, fits the area.
constexpr bool is_sound(const PacketRow& row, std::size_t place) {
    std::size_t packet = 0;
    std::size_t bytes = headerBytes;
    bool aligned = true;
    for (const PlacedField& placed : place_fields(row)) {
        packet = placed.field == Field::behind ? placed.offset : packet;
        aligned = aligned && placed.offset % 4 + field_width(placed.field) <= 4;
        bytes += field_width(placed.field);
    }
    packet = packet == 0 ? bytes : packet;
    return row.variant == place && packet == row.size && row.size % 4 == 0 && aligned && bytes <= packetBytes;
}

constexpr bool are_sound(const std::array<PacketRow, packetVariants>& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!is_sound(rows[i], i)) {
            return false;
        }
    }
    return true;
}
static_assert(are_sound(packetRows), "every row adds up to the packet that it describes");

/// The size of the largest packet, in bytes.
inline constexpr std::size_t largestPacket =
    std::max_element(packetRows.begin(), packetRows.end(), [](const PacketRow& one, const PacketRow& other) {
        return one.size < other.size;
    })->size;

/// place_fields of every row.
inline constexpr auto packetFields = [] {
    std::array<std::array<PlacedField, maxFields>, packetVariants> all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
        all[i] = place_fields(packetRows[i]);
    }
    return all;
}();

} // namespace vexbind
