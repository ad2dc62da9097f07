#include "model/ply.hpp"

#include "model/attributes.hpp"
#include "model/listing.hpp"
#include "model/recall.hpp"
#include "model/search.hpp"
#include "model/stamp.hpp"
#include "model/syntax.hpp"
#include "model/tables.hpp"
#include "settings/settings.hpp"
#include "utilkit/plainscan.hpp"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>

namespace vexbind {

std::int32_t read_ply_info(RSD* object) {
    const ListedFormat format{
        .name = "PLY", .extension = "ply", .extensions = PLY_EXT, .notFound = plyNotFound};
    FileRecord* file = open_listed(object, object->ply, format);
    get_ply_length(file, object);
    fileClose(file);
    return 1;
}

void get_ply_length(FileRecord* file, RSD* object) {
    const Line line = getLine(file);
    std::array<std::int32_t, 3> counts{};
    if (!scanDecimals(begin_of(line), counts)) {
        raise_syntax(plyCountSyntax, file, line);
    }
    object->nvert = counts[0];
    object->nnorm = counts[1];
    object->npoly = counts[2];
}

/// Steps over `count` lines of a section that is not wanted.
static void skip_lines(FileRecord* file, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        getLine(file);
    }
}

void read_ply(const char* name, RSD* object, PlySections wanted) {
    FileRecord* file = fileMatchOpenOrFail(name, PLY_EXT, openFailed);
    get_id(file, "PLY");
    get_ply_length(file, object);
    switch (wanted) {
    case PlySections::all:
        get_ply_vertex(file, object);
        get_ply_normal(file, object);
        get_ply_polygon(file, object);
        remember_geometry(object);
        break;
    case PlySections::vertices:
        if (!recall_vertices(object)) {
            get_ply_vertex(file, object);
        }
        break;
    case PlySections::normals:
        if (!recall_normals(object)) {
            skip_lines(file, object->nvert);
            get_ply_normal(file, object);
        }
        break;
    }
    fileClose(file);
}

/// The factor of a power-of-two exponent, computed in single precision.
static double power_of_two(std::int32_t exponent) {
    const auto power = static_cast<float>(std::pow(2.0, std::fabs(static_cast<double>(exponent))));
    return exponent < 0 ? 1.0F / power : power;
}

/// What rounds `value` half away from zero when it is added before truncation.
// Kept: 0.0 takes the negative half, so that a translated 0.0 comes out one short.
static double half_toward(float value) {
    return value > 0 ? 0.5 : -0.5;
}

static_assert(FLT_EVAL_METHOD == 0, "digits beyond those of a double would round some coordinates otherwise");

/// Scales, translates and rounds one coordinate.
// Kept: the half takes the sign of the unscaled, untranslated coordinate.
static std::int32_t place(float coordinate, std::int32_t translation) {
    return truncateToInt((half_toward(coordinate) + static_cast<double>(coordinate) * scale) + translation);
}

/// Widens one axis of the bounding box.
// Kept: a value that raises the largest is not compared with the smallest.
static void widen(std::int32_t value, std::int32_t& largest, std::int32_t& smallest) {
    if (value > largest) {
        largest = value;
    } else if (value < smallest) {
        smallest = value;
    }
}

/// Takes a line of three plain numbers; false when the next line is no such line.
static bool take_plain_reals(FileRecord* file, std::array<float, 3>& values) {
    const char* text = plainText(file);
    for (float& value : values) {
        text = takePlainReal(text, value);
        if (text == nullptr) {
            return false;
        }
    }
    return endPlainLine(file, text);
}

/// Reads a line of three numbers; SYN_ERR at `status`.
static void read_reals(FileRecord* file, Status status, std::array<float, 3>& values) {
    if (take_plain_reals(file, values)) {
        return;
    }
    const Line line = getLine(file);
    if (!scanReals(begin_of(line), values)) {
        raise_syntax(status, file, line);
    }
}

void get_ply_vertex(FileRecord* file, RSD* object) {
    if (scale == 0.0) {
        // Kept: the first object's exponent serves all later ones.
        scale = power_of_two(object->scaleFactor);
    }
    forget_vertex_table();
    ReadGeometry& read = object->read;
    read.lowestX = read.lowestY = read.lowestZ = std::numeric_limits<std::int32_t>::max();
    std::array<float, 3> c{};
    TableWalk<Coordinates> walk{.array = vertex};
    for (std::int32_t i = 0; i < object->nvert; ++i) {
        auto& record = nextElement(walk);
        read_reals(file, plyVertexSyntax, c);
        const std::int32_t x = place(c[0], object->offsetX);
        const std::int32_t y = place(c[1], object->offsetY);
        const std::int32_t z = place(c[2], object->offsetZ);
        record = {.x = static_cast<std::int16_t>(x),
                  .y = static_cast<std::int16_t>(y),
                  .z = static_cast<std::int16_t>(z)};
        widen(x, object->maxX, object->minX);
        widen(y, object->maxY, object->minY);
        widen(z, object->maxZ, object->minZ);
        read.lowestX = std::min(read.lowestX, x);
        read.lowestY = std::min(read.lowestY, y);
        read.lowestZ = std::min(read.lowestZ, z);
    }
}

/// A normal's component in 4.12 fixed point; 8.0 and more wrap.
static std::int16_t fixed_point(float component) {
    return static_cast<std::int16_t>(
        truncateToInt(static_cast<double>(component) * 4096.0 + half_toward(component)));
}

void get_ply_normal(FileRecord* file, const RSD* object) {
    forget_normal_table();
    std::array<float, 3> c{};
    TableWalk<Coordinates> walk{.array = normal};
    for (std::int32_t i = 0; i < object->nnorm; ++i) {
        auto& record = nextElement(walk);
        read_reals(file, plyNormalSyntax, c);
        record = {.x = fixed_point(c[0]), .y = fixed_point(c[1]), .z = fixed_point(c[2])};
    }
}

namespace {

/// A polygon line as it is written.
struct PolygonLine {
    std::uint32_t type;
    std::array<std::int32_t, 8> index; // of four vertices and four normals
};

} // namespace

/// Takes a line of plain numbers; false when the next line is no such line.
static bool take_plain_polygon(FileRecord* file, PolygonLine& fields) {
    const char* text = takePlainHexadecimal(plainText(file), fields.type);
    for (std::int32_t& index : fields.index) {
        if (text == nullptr) {
            return false;
        }
        text = takePlainDecimal(text, index);
    }
    return text != nullptr && endPlainLine(file, text);
}

static void read_polygon_line(FileRecord* file, PolygonLine& fields) {
    if (take_plain_polygon(file, fields)) {
        return;
    }
    const Line line = getLine(file);
    Cursor cursor = begin_of(line);
    if (!scanHexadecimal(cursor, fields.type) || !scanDecimals(cursor, fields.index)) {
        raise_syntax(plyPolygonSyntax, file, line);
    }
}

void get_ply_polygon(FileRecord* file, const RSD* object) {
    static constexpr std::uint32_t typeBits = 7;
    // Old files list the corners of a quadrangle in another winding.
    const std::size_t second = object->version == oldVersion ? 2 : 1;
    const std::size_t third = object->version == oldVersion ? 1 : 2;
    PolygonLine fields{};
    const std::array<std::int32_t, 8>& index = fields.index;
    TableWalk<PolygonRecord> walk{.array = polygon};
    for (std::int32_t i = 0; i < object->npoly; ++i) {
        auto& record = nextElement(walk);
        // Stored to before `attr` is loaded: a page of fresh memory costs two page faults otherwise.
        record.mat_no = noMaterial;
        read_polygon_line(file, fields);
        // Kept: the gradation bit stays as the table's last object left it.
        record.attr = (fields.type & typeBits) << typeShift | (record.attr & gradationBit);
        record.vert = {index[0], index[second], index[third], index[3]};
        record.norm = {index[4], index[4 + second], index[4 + third], index[7]};
    }
}

} // namespace vexbind
