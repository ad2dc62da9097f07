#include "tmd/dump.hpp"

#include "model/attributes.hpp"
#include "tmd/current.hpp"
#include "tmd/report.hpp"
#include "utilkit/reporttext.hpp"

namespace vexbind {

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

/// How many of four fields, which follow one another, the row has.
static std::uint32_t count_fields(const PacketRow& row, Field first) {
    std::uint32_t count = 0;
    for (const Field field : row.fields) {
        count += field >= first && static_cast<int>(field) < static_cast<int>(first) + 4 ? 1 : 0;
    }
    return count;
}

static void dump_texels(std::FILE* stream, const PacketRow& row, const PacketArea& area) {
    using enum Field;
    const std::uint32_t count = count_fields(row, UV0);
    if (count == 0) {
        return;
    }
    putReport(stream, "\tUV 0-", count - 1, ":");
    for (const Field field : {UV0, UV1, UV2, UV3}) {
        const std::size_t offset = field_offset(row, field);
        if (offset != 0) {
            putReport(stream, " (", shown_byte(area, offset), " ", shown_byte(area, offset + 1), ")");
        }
    }
    putReport(stream, "\n");
}

static void dump_colours(std::FILE* stream, const PacketRow& row, const PacketArea& area) {
    const std::uint32_t count = count_fields(row, Field::C0);
    const std::size_t first = field_offset(row, Field::C0);
    if (row.colours == ColourDump::hide) {
        return;
    }
    if (row.colours == ColourDump::list) {
        printColors(stream, area, first, count);
        return;
    }
    const char* between = row.colours == ColourDump::ends ? "-" : " ";
    putReport(stream, "\tColor :");
    for (std::uint32_t i = 0; i < count; ++i) {
        putReport(stream, i == 0 ? " " : between);
        put_colour(stream, area, first + std::size_t{4} * i);
    }
    putReport(stream, "\n");
}

void dump_number(std::FILE* stream) {
    putReport(stream, "= [", Padded{currentPolygon, 3}, "] ");
}

void dump_heading(std::FILE* stream, const PolygonHeading& heading, std::uint32_t attr,
                  const PacketArea& area) {
    const bool lightOff = (attr & lightOffBit) != 0;
    dump_number(stream);
    putReport(stream, heading.title, " ", (attr & translucentBit) != 0 ? "TRANS " : "",
              (attr & twoSidedBit) != 0 ? heading.twoSided : "",
              (attr & gradationBit) != 0 && !lightOff ? heading.graded : "",
              primitive_type(attr) == triangle ? "3" : "4", "-POLY(0x", Hexadecimal{area[0]},
              ") LIGHT: ", lightOff ? "OFF" : "ON", " =\n");
    if (primitive_type(attr) > quadrangle) {
        putReport(stream, " <Bad Data>\n");
    }
}

void dump_fields(std::FILE* stream, const PacketRow& row, const PacketArea& area) {
    dump_vertices(stream, row, area);
    dump_normals(stream, row, area);
    dump_texels(stream, row, area);
    dump_colours(stream, row, area);
}

} // namespace vexbind
