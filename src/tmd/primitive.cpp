// Sets currentObject and currentPolygon.
#include "tmd/primitive.hpp"

#include "model/attributes.hpp"
#include "model/tables.hpp"
#include "tmd/current.hpp"
#include "tmd/line.hpp"
#include "tmd/modes.hpp"
#include "tmd/notexture.hpp"
#include "tmd/packetrows.hpp"
#include "tmd/sprite.hpp"
#include "tmd/texture.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/reporttext.hpp"

#include <cstdio>

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
    std::uint32_t lastAttr = 0;
    Classified last = classify(lastAttr);
    TableWalk<PolygonRecord> walk{.array = polygon};
    for (std::int32_t i = 0; i < object->npoly; ++i) {
        auto& poly = nextElement(walk);
        if (poly.mat_no < 0 && !warned) {
            writePendingWords();
            sendReport();
            warn(NO_MATERIAL_MSG);
            std::fflush(stdout);
            warned = true;
        }
        const auto& mat = elementAt<MaterialRecord>(poly.mat_no + 1, material);
        if (poly.attr != lastAttr) {
            lastAttr = poly.attr;
            last = classify(lastAttr);
        }
        if (last.attr != lastAttr) {
            poly.attr = last.attr; // of flat lines alone: not all of the table is to be written back
        }
        area[0] = last.flag << 8 * flagOffset | last.mode << 8 * modeOffset;
        const std::uint32_t size = last.build(poly, mat, area);
        total += size;
        put4Words<largestPacket / 4>(area, size / 4, file);
        ++currentPolygon;
    }
    return total;
}

} // namespace vexbind
