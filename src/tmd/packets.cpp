#include "tmd/packets.hpp"

#include "tmd/modes.hpp"

#include <utility>

namespace vexbind {

/// The place of a field among its like: 2 for V2.
static constexpr std::size_t number_of(Field field, Field first) {
    return static_cast<std::size_t>(field) - static_cast<std::size_t>(first);
}

static std::uint32_t low_half(std::int32_t index) {
    return static_cast<std::uint16_t>(index);
}

/// `count` bytes as a number, the first in its lowest bits.
template <std::size_t count> static std::uint32_t join(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value |= static_cast<std::uint32_t>(bytes[i]) << 8 * i;
    }
    return value;
}

/// The value of a field, its first byte in the lowest bits.
template <Field field> static std::uint32_t field_value(const PacketSource& source, std::uint32_t header) {
    using enum Field;
    switch (field) {
    case C0:
    case C1:
    case C2:
    case C3:
        return join<3>(source.colours.data() + 3 * number_of(field, C0));
    case mode:
        return header >> 8 * modeOffset;
    case N0:
    case N1:
    case N2:
    case N3:
        return low_half(source.poly.norm[number_of(field, N0)]);
    case V0:
    case V1:
    case V2:
    case V3:
        return low_half(source.poly.vert[number_of(field, V0)]);
    case UV0:
    case UV1:
    case UV2:
    case UV3:
        return join<2>(source.uv.data() + 2 * number_of(field, UV0));
    case cba:
        return source.cba;
    case tsb:
        return source.tsb;
    case width:
        return low_half(source.poly.vert[1]);
    case height:
        return low_half(source.poly.vert[2]);
    case zero:
    case noV3:
    case zero2:
    case stale:
    case behind:
    case none:
        break;
    }
    return 0;
}

/// The bits of a word that the packet leaves as they were.
// Kept: there the byte of an earlier packet shows.
static constexpr std::uint32_t stale_bits(PacketVariant variant, std::size_t word) {
    std::uint32_t stale = 0xFFFFFFFF;
    for (const PlacedField& placed : packetFields[variant]) {
        if (placed.offset / 4 == word && placed.field != Field::stale && field_width(placed.field) != 0) {
            const std::uint32_t bits = (1U << 8 * field_width(placed.field)) - 1;
            stale &= ~(bits << 8 * (placed.offset % 4));
        }
    }
    return stale;
}

template <PacketVariant variant, std::size_t word>
static void fill_word(const PacketSource& source, PacketArea& area) {
    static constexpr const auto& fields = packetFields[variant];
    static constexpr std::uint32_t stale = stale_bits(variant, word);
    if constexpr (stale != 0xFFFFFFFF) {
        std::uint32_t value = stale == 0 ? 0 : area[word] & stale;
        const auto add = [&]<std::size_t i>() {
            if constexpr (fields[i].offset / 4 == word) {
                value |= field_value<fields[i].field>(source, area[0]) << 8 * (fields[i].offset % 4);
            }
        };
        [&]<std::size_t... i>(std::index_sequence<i...>) {
            (add.template operator()<i>(), ...);
        }
        (std::make_index_sequence<maxFields>{});
        area[word] = value;
    }
}

/// Fills the words behind the header.
template <PacketVariant variant> static void fill_packet(const PacketSource& source, PacketArea& area) {
    [&]<std::size_t... i>(std::index_sequence<i...>) {
        (fill_word<variant, i + 1>(source, area), ...);
    }
    (std::make_index_sequence<packetWords - 1>{});
}

using PacketFiller = void (*)(const PacketSource& source, PacketArea& area);

/// One straight run of code for each row.
static constexpr auto packetFillers = []<std::size_t... i>(std::index_sequence<i...>) {
    return std::array<PacketFiller, packetVariants>{fill_packet<static_cast<PacketVariant>(i)>...};
}
(std::make_index_sequence<packetVariants>{});

std::uint32_t emit_packet(const PacketRow& row, const PacketSource& source, PacketArea& area) {
    const std::uint32_t flagAndMode = area[0] & 0xFFFF0000;
    const std::uint32_t ilen = row.size / 4U - 1;
    area[0] = flagAndMode | std::uint32_t{row.olen} << 8 * olenOffset | ilen << 8 * ilenOffset;
    packetFillers[row.variant](source, area);
    ++*((area[0] >> 8 * modeOffset & modeABE) != 0 ? row.translucent : row.opaque);
    return row.size;
}

std::size_t field_offset(const PacketRow& row, Field field) {
    for (const PlacedField& placed : packetFields[row.variant]) {
        if (placed.field == field) {
            return placed.offset;
        }
    }
    return 0;
}

} // namespace vexbind
