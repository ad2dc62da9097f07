#include "tmd/packets.hpp"

#include "tmd/modes.hpp"

namespace vexbind {

static constexpr std::array<PacketRow, packetVariants> make_rows() {
    using enum Field;
    // clang-format off
    return {{
    //   variant       size olen dump   counted as: opaque, translucent
    //   fields behind the header
        {flatDark3,        16, 4, oneColour, &nFlat3NoLight,       &nFlatTrans3NoLight,
         {C0, mode, V0, V1, V2, zero2}},
        {flatDark4,        16, 5, oneColour, &nFlat4NoLight,       &nFlatTrans4NoLight,
         {C0, mode, V0, V1, V2, V3}},
        {flatDarkOther,    16, 5, oneColour, &nFlat4NoLight,       &nFlatTrans4NoLight,
         {C0, mode, V0, V1, V2, noV3}},
        {flatPlain3,       16, 4, list1,     &nFlat3,              &nFlatTrans3,
         {C0, mode, N0, V0, V1, V2}},
        {flatPlain4,       20, 5, list1,     &nFlat4,              &nFlatTrans4,
         {C0, mode, N0, V0, V1, V2, V3, zero2}},
        {flatGrad3,        24, 6, list3,     &nGradFlat3,          &nGradFlatTrans3,
         {C0, mode, C1, stale, C2, stale, N0, V0, V1, V2}},
        {flatGrad4,        32, 8, list4,     &nGradFlat4,          &nGradFlatTrans4,
         {C0, mode, C1, stale, C2, stale, C3, stale, N0, V0, V1, V2, V3, zero2}},
        // Kept: here the fourth bytes of the colours are cleared, unlike those of the lit packets.
        {gouraudDark3,     24, 6, list3,     &nGouraud3NoLight,    &nGouraudTrans3NoLight,
         {C0, mode, C0, zero, C0, zero, V0, V1, V2, zero2}},
        {gouraudDark4,     28, 8, list4,     &nGouraud4NoLight,    &nGouraudTrans4NoLight,
         {C0, mode, C0, zero, C0, zero, C0, zero, V0, V1, V2, V3}},
        {gouraudDarkGrad3, 24, 6, list3,     &nGouraud3NoLight,    &nGouraudTrans3NoLight,
         {C0, mode, C1, zero, C2, zero, V0, V1, V2, zero2}},
        {gouraudDarkGrad4, 28, 8, list4,     &nGouraud4NoLight,    &nGouraudTrans4NoLight,
         {C0, mode, C1, zero, C2, zero, C3, zero, V0, V1, V2, V3}},
        {gouraudPlain3,    20, 6, oneColour, &nGouraud3,           &nGouraudTrans3,
         {C0, mode, N0, V0, N1, V1, N2, V2}},
        {gouraudPlain4,    24, 8, oneColour, &nGouraud4,           &nGouraudTrans4,
         {C0, mode, N0, V0, N1, V1, N2, V2, N3, V3}},
        {gouraudGrad3,     28, 6, list3,     &nGradGouraud3,       &nGradGouraudTrans3,
         {C0, mode, C1, stale, C2, stale, N0, V0, N1, V1, N2, V2}},
        {gouraudGrad4,     36, 8, list4,     &nGradGouraud4,       &nGradGouraudTrans4,
         {C0, mode, C1, stale, C2, stale, C3, stale, N0, V0, N1, V1, N2, V2, N3, V3}},
    }};
    // clang-format on
}

constexpr std::array<PacketRow, packetVariants> packetRows = make_rows();

/// Whether a row stands at its variant's place, is whole words, fits the area and adds up to its size.
static constexpr bool is_sound(const PacketRow& row, std::size_t place) {
    std::size_t bytes = headerBytes;
    for (const Field field : row.fields) {
        bytes += field_width(field);
    }
    return row.variant == place && bytes == row.size && row.size % 4 == 0 && row.size <= packetBytes;
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

static void put_colour(PacketArea& area, std::size_t offset, std::span<const std::uint8_t, 3> colour) {
    for (std::size_t i = 0; i < colour.size(); ++i) {
        put_byte(area, offset + i, colour[i]);
    }
}

static std::uint16_t low_half(std::int32_t index) {
    return static_cast<std::uint16_t>(index);
}

static void put_field(Field field, const PacketSource& source, PacketArea& area, std::size_t offset) {
    const auto number = [field](Field first) {
        return static_cast<std::size_t>(field) - static_cast<std::size_t>(first);
    };
    using enum Field;
    switch (field) {
    case C0:
    case C1:
    case C2:
    case C3:
        put_colour(area, offset, source.colours.subspan(3 * number(C0)).first<3>());
        break;
    case mode:
        put_byte(area, offset, get_byte(area, modeOffset));
        break;
    case N0:
    case N1:
    case N2:
    case N3:
        put_half(area, offset, low_half(source.poly.norm[number(N0)]));
        break;
    case V0:
    case V1:
    case V2:
    case V3:
        put_half(area, offset, low_half(source.poly.vert[number(V0)]));
        break;
    case zero:
        put_byte(area, offset, 0);
        break;
    case noV3:
    case zero2:
        put_half(area, offset, 0);
        break;
    case stale: // Kept: the byte of an earlier packet shows.
    case none:
        break;
    }
}

std::uint32_t emit_packet(const PacketRow& row, const PacketSource& source, PacketArea& area) {
    put_byte(area, olenOffset, row.olen);
    put_byte(area, ilenOffset, static_cast<std::uint8_t>(row.size / 4 - 1));
    std::size_t offset = headerBytes;
    for (const Field field : row.fields) {
        if (field == Field::none) {
            break;
        }
        put_field(field, source, area, offset);
        offset += field_width(field);
    }
    ++*((get_byte(area, modeOffset) & modeABE) != 0 ? row.translucent : row.opaque);
    return row.size;
}

std::size_t field_offset(const PacketRow& row, Field field) {
    std::size_t offset = headerBytes;
    for (const Field each : row.fields) {
        if (each == field) {
            return offset;
        }
        offset += field_width(each);
    }
    return 0;
}

} // namespace vexbind
