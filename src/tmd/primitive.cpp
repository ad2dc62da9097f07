// Sets currentObject and currentPolygon.
#include "tmd/primitive.hpp"

#include "model/attributes.hpp"
#include "model/tables.hpp"
#include "settings/settings.hpp"
#include "tmd/current.hpp"
#include "tmd/line.hpp"
#include "tmd/modes.hpp"
#include "tmd/notexture.hpp"
#include "tmd/packetrows.hpp"
#include "tmd/sprite.hpp"
#include "tmd/texture.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/put4.hpp"

namespace vexbind {

const RSD* currentObject = nullptr;
std::uint32_t currentPolygon = 0;

namespace {

using Builder = std::uint32_t (*)(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area);

/// What a polygon's attribute word comes to.
struct Classified {
    std::uint32_t attr; // as the table keeps it
    std::uint32_t mode;
    std::uint32_t flag;
    Builder build;
};

} // namespace

static Classified classify_line(std::uint32_t attr) {
    if ((attr & gradationBit) != 0) {
        return {.attr = attr, .mode = codeLine | modeIIP, .flag = flagLGT, .build = gouraud_line};
    }
    // Kept: in the table too, so that a flat line never carries the gouraud bit.
    return {.attr = attr & ~gouraudBit, .mode = codeLine, .flag = flagLGT, .build = flat_line};
}

static Classified classify_polygon(std::uint32_t attr) {
    const bool gouraud = (attr & gouraudBit) != 0;
    const bool textured = (attr & texturedBit) != 0;
    const bool lightOff = (attr & lightOffBit) != 0;
    Classified result{.attr = attr, .mode = codePolygon, .flag = 0, .build = nullptr};
    result.mode |= gouraud ? modeIIP : 0;
    result.mode |= primitive_type(attr) == quadrangle ? modeQuad : 0;
    result.mode |= textured ? modeTME : 0;
    result.mode |= lightOff ? modeTGE : 0;
    result.flag |= lightOff ? flagLGT : 0;
    result.flag |= (attr & twoSidedBit) != 0 ? flagFCE : 0;
    if (textured) {
        result.build = gouraud ? gouraud_texture : flat_texture;
    } else {
        result.flag |= (attr & gradationBit) != 0 && !lightOff ? flagGRD : 0;
        result.build = gouraud ? gouraud_notexture : flat_notexture;
    }
    return result;
}

static Classified classify_primitive(std::uint32_t attr) {
    switch (primitive_type(attr)) {
    case line:
        return classify_line(attr);
    case sprite3d:
        return {.attr = attr, .mode = codeSprite | modeTME, .flag = flagLGT, .build = sprite};
    default:
        return classify_polygon(attr);
    }
}

static Classified classify(std::uint32_t attr) {
    Classified result = classify_primitive(attr);
    result.mode |= (attr & translucentBit) != 0 ? modeABE : 0;
    return result;
}

std::uint32_t set_primitive(const RSD* object, PacketArea& area, FileRecord* file) {
    currentObject = object;
    currentPolygon = 0;
    bool warned = false;
    std::uint32_t total = 0;
    // Polygons are mostly like the one before.
    std::uint32_t attr = 0;
    Classified result = classify(attr);
    TableWalk<PolygonRecord> walk{.array = polygon};
    for (std::int32_t i = 0; i < object->npoly; ++i) {
        auto& poly = nextElement(walk);
        if (poly.mat_no < 0 && !warned) {
            writePendingWords();
            warn(NO_MATERIAL_MSG);
            warned = true;
        }
        const auto& mat = elementAt<MaterialRecord>(poly.mat_no + 1, material);
        if (poly.attr != attr) {
            attr = poly.attr;
            result = classify(attr);
        }
        if (result.attr != attr) {
            poly.attr = result.attr;
        }
        area[0] = result.flag << 8 * flagOffset | result.mode << 8 * modeOffset;
        const std::uint32_t size = result.build(poly, mat, area);
        total += size;
        put4Words<largestPacket / 4>(area, size / 4, file);
        ++currentPolygon;
    }
    return total;
}

} // namespace vexbind
