// The layout of every packet variant, one row each.
#include "tmd/packets.hpp"

namespace vexbind {

// The words of the table, in this file alone.
using enum Field;
using enum ColourDump;

// clang-format off
constexpr std::array<PacketRow, packetVariants> packetRows = {{
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

/// Whether a row stands at its variant's place, is whole words, adds up to its size and, with what it puts
/// behind the packet, fits the area.
static constexpr bool is_sound(const PacketRow& packetRow, std::size_t place) {
    std::size_t packet = 0;
    std::size_t bytes = headerBytes;
    for (const Field field : packetRow.fields) {
        packet = field == Field::behind ? bytes : packet;
        bytes += field_width(field);
    }
    packet = packet == 0 ? bytes : packet;
    return packetRow.variant == place && packet == packetRow.size && packetRow.size % 4 == 0 &&
           bytes <= packetBytes;
}

static constexpr bool are_sound(const std::array<PacketRow, packetVariants>& rows) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!is_sound(rows[i], i)) {
            return false;
        }
    }
    return true;
}
static_assert(are_sound(packetRows), "every row adds up to the packet that it describes");

} // namespace vexbind
