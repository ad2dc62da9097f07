#include "tmd/packets.hpp"

#include "tmd/modes.hpp"

namespace vexbind {

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
    case UV0:
    case UV1:
    case UV2:
    case UV3:
        put_byte(area, offset, source.uv[2 * number(UV0)]);
        put_byte(area, offset + 1, source.uv[2 * number(UV0) + 1]);
        break;
    case cba:
        put_half(area, offset, source.cba);
        break;
    case tsb:
        put_half(area, offset, source.tsb);
        break;
    case width:
        put_half(area, offset, low_half(source.poly.vert[1]));
        break;
    case height:
        put_half(area, offset, low_half(source.poly.vert[2]));
        break;
    case zero:
        put_byte(area, offset, 0);
        break;
    case noV3:
    case zero2:
        put_half(area, offset, 0);
        break;
    case stale: // Kept: the byte of an earlier packet shows.
    case behind:
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
