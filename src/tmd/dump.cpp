#include "tmd/dump.hpp"

#include "model/attributes.hpp"
#include "tmd/current.hpp"
#include "tmd/report.hpp"

namespace vexbind {

static constexpr std::size_t firstColour = headerBytes;

/// Prints, by `print`, the indices that the row has among four fields, numbered from 0.
static void dump_indices(std::FILE* stream, const PacketRow& row, std::array<Field, 4> fields,
                         const PacketArea& area,
                         std::int32_t (*print)(std::FILE*, std::int32_t, std::int32_t)) {
    std::int32_t position = 0;
    for (const Field field : fields) {
        const std::size_t offset = field_offset(row, field);
        if (offset != 0) {
            print(stream, get_half(area, offset), position);
            ++position;
        }
    }
}

static void dump_vertices(std::FILE* stream, const PacketRow& row, const PacketArea& area) {
    using enum Field;
    const Field fourth = field_offset(row, noV3) != 0 ? noV3 : V3;
    dump_indices(stream, row, {V0, V1, V2, fourth}, area, printVert);
}

static void dump_normals(std::FILE* stream, const PacketRow& row, const PacketArea& area) {
    using enum Field;
    dump_indices(stream, row, {N0, N1, N2, N3}, area, printNorm);
}

static void dump_colours(std::FILE* stream, const PacketRow& row, const PacketArea& area) {
    if (row.colourDump != oneColour) {
        printColors(stream, area, firstColour, row.colourDump);
        return;
    }
    std::fprintf(stream, "\tColor : (%3u %3u %3u)\n", get_byte(area, firstColour),
                 get_byte(area, firstColour + 1), get_byte(area, firstColour + 2));
}

void dump_untextured(std::FILE* stream, const char* title, const PacketRow& row, std::uint32_t attr,
                     const PacketArea& area) {
    const bool lightOff = (attr & lightOffBit) != 0;
    std::fprintf(stream, "= [%3u] %s %s%s%s%d-POLY(0x%lx) LIGHT: %s =\n", currentPolygon, title,
                 (attr & translucentBit) != 0 ? "TRANS " : "", (attr & twoSidedBit) != 0 ? "TWO-SIDED " : "",
                 (attr & gradationBit) != 0 && !lightOff ? "GRADATION " : "",
                 primitive_type(attr) == triangle ? 3 : 4, static_cast<unsigned long>(area[0]),
                 lightOff ? "OFF" : "ON");
    if (primitive_type(attr) > quadrangle) {
        std::fprintf(stream, " <Bad Data>\n");
    }
    dump_vertices(stream, row, area);
    dump_normals(stream, row, area);
    dump_colours(stream, row, area);
}

} // namespace vexbind
