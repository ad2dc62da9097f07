#include "tmd/notexture.hpp"

#include "model/attributes.hpp"
#include "settings/settings.hpp"
#include "tmd/dump.hpp"
#include "tmd/packets.hpp"

namespace vexbind {

/// The variant of a triangle or of the quadrangle after it. Types that are neither are drawn as
/// quadrangles.
static PacketVariant by_shape(PacketVariant triangles, std::uint32_t attr) {
    return static_cast<PacketVariant>(triangles + (primitive_type(attr) == triangle ? 0 : 1));
}

static PacketVariant flat_variant(std::uint32_t attr) {
    if ((attr & lightOffBit) != 0) {
        return primitive_type(attr) > quadrangle ? flatDarkOther : by_shape(flatDark3, attr);
    }
    return by_shape((attr & gradationBit) != 0 ? flatGrad3 : flatPlain3, attr);
}

static PacketVariant gouraud_variant(std::uint32_t attr) {
    const bool graded = (attr & gradationBit) != 0;
    if ((attr & lightOffBit) != 0) {
        return by_shape(graded ? gouraudDarkGrad3 : gouraudDark3, attr);
    }
    return by_shape(graded ? gouraudGrad3 : gouraudPlain3, attr);
}

static std::uint32_t build(PacketVariant variant, const char* title, const PolygonRecord& poly,
                           const MaterialRecord& mat, PacketArea& area) {
    const PacketRow& row = packetRows[variant];
    const ParamList colours = get_params(mat);
    const std::uint32_t size = emit_packet(row, {.colours = colours, .poly = poly}, area);
    if (Dump >= dumpDetails) {
        dump_heading(dout, {.title = title, .twoSided = "TWO-SIDED ", .graded = "GRADATION "}, poly.attr,
                     area);
        dump_fields(dout, row, area);
    }
    return size;
}

std::uint32_t flat_notexture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area) {
    return build(flat_variant(poly.attr), "FLAT NO TEX", poly, mat, area);
}

std::uint32_t gouraud_notexture(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area) {
    return build(gouraud_variant(poly.attr), "GOURAUD NO TEX", poly, mat, area);
}

} // namespace vexbind
