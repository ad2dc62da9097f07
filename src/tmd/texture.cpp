#include "tmd/texture.hpp"

#include "model/attributes.hpp"
#include "settings/settings.hpp"
#include "tmd/dump.hpp"
#include "tmd/packets.hpp"
#include "tmd/report.hpp"
#include "tmd/texcoord.hpp"

namespace vexbind {

/// The variant of a quadrangle behind that of a triangle; any other type is drawn as a triangle.
static PacketVariant by_shape(PacketVariant triangles, std::uint32_t attr) {
    return static_cast<PacketVariant>(triangles + (primitive_type(attr) == quadrangle ? 1 : 0));
}

static PacketVariant flat_variant(std::uint32_t attr) {
    return by_shape((attr & lightOffBit) != 0 ? flatTexDark3 : flatTex3, attr);
}

static PacketVariant gouraud_variant(std::uint32_t attr) {
    if ((attr & lightOffBit) == 0) {
        return by_shape(gouraudTex3, attr);
    }
    return by_shape((attr & gradationBit) != 0 ? gouraudTexDarkGrad3 : gouraudTexDark3, attr);
}

static std::uint32_t build(PacketVariant variant, const PolygonHeading& heading, const PolygonRecord& poly,
                           const MaterialRecord& mat, PacketArea& area) {
    const PacketRow& row = packetRows[variant];
    const ParamList params = get_params(mat);
    PacketSource source{.colours = std::span(params).subspan(texturedColours), .poly = poly};
    set_texture(source, poly.attr, params, 4);
    const std::uint32_t size = emit_packet(row, source, area);
    if (Dump >= dumpDetails) {
        dump_heading(dout, heading, poly.attr, area);
        dump_fields(dout, row, area);
        printEtc(dout, area, mat);
    }
    return size;
}

std::uint32_t flat_texture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area) {
    return build(flat_variant(poly.attr), {.title = "FLAT TEX", .twoSided = "TWO-SIDED ", .graded = ""}, poly,
                 mat, area);
}

std::uint32_t gouraud_texture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area) {
    // Kept: here the word is "TWO-SIDES".
    return build(gouraud_variant(poly.attr), {.title = "GOURAUD TEX", .twoSided = "TWO-SIDES ", .graded = ""},
                 poly, mat, area);
}

} // namespace vexbind
