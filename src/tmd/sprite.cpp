#include "tmd/sprite.hpp"

#include "model/attributes.hpp"
#include "settings/settings.hpp"
#include "tmd/dump.hpp"
#include "tmd/modes.hpp"
#include "tmd/packets.hpp"
#include "tmd/report.hpp"
#include "tmd/texcoord.hpp"
#include "utilkit/reporttext.hpp"

namespace vexbind {

namespace {

/// A form of sprite: free size, or a fixed size that the mode carries.
struct SpriteForm {
    PacketVariant variant;
    std::uint32_t mode;
};

} // namespace

static SpriteForm sprite_form(std::int32_t width, std::int32_t height) {
    if (width == height && width == 1) {
        return {.variant = sprite1x1, .mode = spriteSize1};
    }
    if (width == height && width == 8) {
        return {.variant = sprite8x8, .mode = spriteSize8};
    }
    if (width == height && width == 16) {
        return {.variant = sprite16x16, .mode = spriteSize16};
    }
    return {.variant = spriteFree, .mode = spriteSizeFree};
}

static void dump(const PacketRow& row, std::uint32_t attr, const MaterialRecord& mat,
                 const PacketArea& area) {
    using enum Field;
    const std::size_t uv = field_offset(row, UV0);
    dump_number(dout);
    putReport(dout, (attr & translucentBit) != 0 ? "TRANS " : "", "3D SPRITE(0x", Hexadecimal{area[0]},
              ") =\n");
    printVert(dout, get_half(area, field_offset(row, V0)), 0);
    putReport(dout, "\t(u v, wxh) = (", get_byte(area, uv), ", ", get_byte(area, uv + 1), ", ",
              get_half(area, field_offset(row, width)), "x", get_half(area, field_offset(row, height)),
              ")\n");
    printEtc(dout, area, mat);
}

std::uint32_t sprite(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area) {
    const SpriteForm form = sprite_form(poly.vert[1], poly.vert[2]);
    const PacketRow& row = packetRows[form.variant];
    const std::uint32_t mode = (get_byte(area, modeOffset) & ~spriteSizeMask) | form.mode;
    put_byte(area, modeOffset, static_cast<std::uint8_t>(mode));

    const ParamList params = get_params(mat);
    PacketSource source{.colours = params, .poly = poly};
    set_texture(source, poly.attr, params, 1);
    const std::uint32_t size = emit_packet(row, source, area);
    if (Dump >= dumpDetails) {
        dump(row, poly.attr, mat, area);
    }
    return size;
}

} // namespace vexbind
