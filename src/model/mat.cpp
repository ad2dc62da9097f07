#include "model/mat.hpp"

#include "model/attributes.hpp"
#include "model/listing.hpp"
#include "model/params.hpp"
#include "model/search.hpp"
#include "model/stamp.hpp"
#include "model/syntax.hpp"
#include "model/tables.hpp"
#include "utilkit/errors.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string_view>

namespace vexbind {

namespace {

using Order = std::array<std::uint8_t, maxParams>;

/// One kind of material: how many numbers its line carries, how many bytes are kept, and to which byte
/// each number goes. Old files write vertex 1 and vertex 2 in the opposite order.
struct MaterialKind {
    char letter;
    Status tooFew;
    std::uint8_t written;
    std::uint8_t kept;
    Order current;
    Order old;
};

// clang-format off
constexpr std::array<MaterialKind, 5> materialKinds = {{
    // R G B for vertex 0 to 3
    {'G', matGradationSyntax, 12, 12,
     {0,1,2, 3,4,5, 6,7,8, 9,10,11},
     {0,1,2, 6,7,8, 3,4,5, 9,10,11}},
    // R G B
    {'C', matColourSyntax, 3, 3,
     {0,1,2},
     {0,1,2}},
    // texture number, U V for vertex 0 to 3; the reader adds a grey
    {'T', matTextureSyntax, 9, 12,
     {0, 1,2, 3,4, 5,6, 7,8},
     {0, 1,2, 5,6, 3,4, 7,8}},
    // texture number, U V for vertex 0 to 3, R G B
    {'D', matTextureColourSyntax, 12, 12,
     {0, 1,2, 3,4, 5,6, 7,8, 9,10,11},
     {0, 1,2, 5,6, 3,4, 7,8, 9,10,11}},
    // texture number, U V for vertex 0 to 3, R G B for vertex 0 to 3
    {'H', matTextureGradationSyntax, 21, 21,
     {0, 1,2, 3,4, 5,6, 7,8, 9,10,11, 12,13,14, 15,16,17, 18,19,20},
     {0, 1,2, 5,6, 3,4, 7,8, 9,10,11, 15,16,17, 12,13,14, 18,19,20}},
}};
// clang-format on

constexpr std::uint8_t plainTextureGrey = 128;

/// The numbers of the last line that had any; a line of an unknown kind takes them over.
struct CarriedNumbers {
    std::array<std::uint8_t, maxParams> bytes;
    std::size_t count;
};

/// The leading fields of a description line, and where its numbers begin.
struct MaterialLine {
    char* list; // polygon list, up to listEnd
    char* listEnd;
    std::uint32_t attr;
    char shading;
    char kind;
    Cursor numbers;
};

} // namespace

std::int32_t read_mat_info(RSD* object) {
    const ListedFormat format{
        .name = "MAT", .extension = "mat", .extensions = MAT_EXT, .notFound = matNotFound};
    FileRecord* file = open_listed(object, object->mat, format);
    get_mat_length(file, object);
    fileClose(file);
    return 1;
}

void get_mat_length(FileRecord* file, RSD* object) {
    const Line line = getLine(file);
    std::array<std::int32_t, 1> count{};
    if (!scanDecimals(begin_of(line), count)) {
        raise_syntax(matCountSyntax, file, line);
    }
    object->nmat = count[0];
}

void read_mat(const char* name, RSD* object) {
    FileRecord* file = fileMatchOpenOrFail(name, MAT_EXT, openFailed);
    get_id(file, "MAT");
    get_mat_length(file, object);
    get_material_desc(file, object);
    fileClose(file);
}

static bool isOneOf(char letter, std::string_view letters) {
    return letters.find(letter) != std::string_view::npos;
}

/// As "%s %x %c %c %c": whether all five fields are there.
static bool scan_material_line(Line line, MaterialLine& fields) {
    fields.list = line.text;
    while (isBlank(*fields.list)) {
        ++fields.list;
    }
    fields.listEnd = fields.list;
    while (*fields.listEnd != '\0' && !isBlank(*fields.listEnd)) {
        ++fields.listEnd;
    }
    Cursor& cursor = fields.numbers;
    cursor = {.next = fields.listEnd, .last = line.text + line.length};
    char check = 0;
    if (!scanHexadecimal(cursor, fields.attr) || !scanLetter(cursor, fields.shading) ||
        !scanLetter(cursor, fields.kind)) {
        return false;
    }
    Cursor ahead = cursor;
    return scanLetter(ahead, check);
}

/// Scans the numbers of `kind` into `carried`; false when there are too few.
static bool scan_params(Cursor numbers, const MaterialKind& kind, bool old, CarriedNumbers& carried) {
    std::array<std::int32_t, maxParams> values{};
    if (!scanDecimals(numbers, std::span(values).first(kind.written))) {
        return false;
    }
    carried.count = kind.kept;
    const Order& order = old ? kind.old : kind.current;
    for (std::size_t i = 0; i < kind.written; ++i) {
        carried.bytes[order[i]] = static_cast<std::uint8_t>(values[i]);
    }
    std::fill(carried.bytes.begin() + kind.written, carried.bytes.begin() + kind.kept, plainTextureGrey);
    return true;
}

void get_material_desc(FileRecord* file, RSD* object) {
    const bool old = object->version == oldVersion;
    CarriedNumbers carried{};
    for (std::int32_t i = 0; i < object->nmat; ++i) {
        const Line line = getLine(file);
        MaterialLine fields{};
        if (!scan_material_line(line, fields)) {
            raise_syntax(matLineSyntax, file, line);
        }
        auto& record = elementAt<MaterialRecord>(i + 1, material);
        record.attr = static_cast<std::uint8_t>(fields.attr);
        record.shading = fields.shading;
        record.kind = fields.kind;

        // The line is whole again when its numbers are scanned and when it is shown.
        const char behind = *fields.listEnd;
        *fields.listEnd = '\0';
        get_material_item(fields.list, i);
        *fields.listEnd = behind;

        const auto* kind = std::find_if(materialKinds.begin(), materialKinds.end(),
                                        [&](const MaterialKind& each) { return each.letter == fields.kind; });
        if (kind != materialKinds.end() && !scan_params(fields.numbers, *kind, old, carried)) {
            raise_syntax(kind->tooFew, file, line);
        }
        // Kept: a line of any other kind repeats the numbers of the line before.
        set_params(record, std::span(carried.bytes).first(carried.count));
    }
}

/// The attributes that a polygon takes from its material.
static std::uint32_t polygon_attributes(const MaterialRecord& record) {
    const bool textured = isOneOf(record.kind, "TDH");
    const bool graded = isOneOf(record.kind, "GH");
    const bool lightOff = (record.attr & materialLightOff) != 0;
    bool gouraud = record.shading == 'G';
    if (lightOff && isOneOf(record.kind, "CDT")) {
        gouraud = false;
    } else if (lightOff && graded) {
        gouraud = true;
    }
    const std::uint32_t rate = (record.attr & materialRateMask) >> materialRateShift;
    return (textured ? texturedBit : 0) | (gouraud ? gouraudBit : 0) |
           ((record.attr & materialTranslucent) != 0 ? translucentBit : 0) | rate << transRateShift |
           ((record.attr & materialTwoSided) != 0 ? twoSidedBit : 0) | (lightOff ? lightOffBit : 0) |
           (graded ? gradationBit : 0);
}

void set_mat_no(std::int32_t poly_no, std::int32_t mat_no) {
    auto& record = elementAt<PolygonRecord>(poly_no, polygon);
    record.mat_no = mat_no;
    record.attr =
        (record.attr & typeMask) | polygon_attributes(elementAt<MaterialRecord>(mat_no + 1, material));
}

/// Assigns the material to polygons `first` to `last`. All numbers below the table fare alike, and so do
/// all above it: one of each is tried.
static void assign_range(std::int64_t first, std::int64_t last, std::int32_t mat_no) {
    const std::int64_t count = polygon == nullptr ? 0 : polygon->elementCount;
    for (std::int64_t k = first; k <= last; k = std::max(k + 1, std::int64_t{0})) {
        set_mat_no(static_cast<std::int32_t>(k), mat_no);
        if (k > count) {
            return;
        }
    }
}

/// As "%d-%d" or else "%d": false when not even one number converts.
static bool scan_range(Cursor cursor, std::int32_t& first, std::int32_t& last) {
    if (!scanDecimal(cursor, first)) {
        return false;
    }
    last = first;
    if (*cursor.next == '-') {
        ++cursor.next;
        scanDecimal(cursor, last);
    }
    return true;
}

void get_material_item(const char* list, std::int32_t mat_no) {
    const char* end = list + std::strlen(list);
    for (;;) {
        const std::size_t length = std::strspn(list, "0123456789-");
        if (length == 0) {
            return;
        }
        std::int32_t first = 0;
        std::int32_t last = 0;
        if (!scan_range({.next = list, .last = end}, first, last)) {
            raiseError(badPolygonList, MATLIST_ERR, list);
        }
        assign_range(first, last, mat_no);
        list += length;
        if (*list == ',') {
            ++list;
        }
    }
}

void free_materials(const RSD* object) {
    for (std::int32_t i = 0; i < object->nmat; ++i) {
        free_params(elementAt<MaterialRecord>(i + 1, material));
    }
    reuse_params_behind(elementAt<MaterialRecord>(0, material));
}

} // namespace vexbind
