#include "model/mat.hpp"

#include "model/attributes.hpp"
#include "model/listing.hpp"
#include "model/params.hpp"
#include "model/search.hpp"
#include "model/stamp.hpp"
#include "model/syntax.hpp"
#include "model/tables.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/plainscan.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

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

/// What the attribute byte of a material comes to in a polygon's attribute word, for all its five bits.
static constexpr auto attributeBits = [] {
    std::array<std::uint32_t, 32> bits{};
    for (std::uint32_t attr = 0; attr < bits.size(); ++attr) {
        const std::uint32_t rate = (attr & materialRateMask) >> materialRateShift;
        bits[attr] = ((attr & materialTranslucent) != 0 ? translucentBit : 0) | rate << transRateShift |
                     ((attr & materialTwoSided) != 0 ? twoSidedBit : 0) |
                     ((attr & materialLightOff) != 0 ? lightOffBit : 0);
    }
    return bits;
}();

/// The attributes that a polygon takes from its material.
static std::uint32_t polygon_attributes(const MaterialRecord& record) {
    const bool textured = record.kind == 'T' || record.kind == 'D' || record.kind == 'H';
    const bool graded = record.kind == 'G' || record.kind == 'H';
    // Without light the colours of a known kind decide, whatever the shading.
    const bool decided = (record.attr & materialLightOff) != 0 && (textured || graded || record.kind == 'C');
    const bool gouraud = decided ? graded : record.shading == 'G';
    return attributeBits[record.attr % attributeBits.size()] | (textured ? texturedBit : 0) |
           (gouraud ? gouraudBit : 0) | (graded ? gradationBit : 0);
}

static void claim_polygon(std::int32_t poly_no, std::int32_t mat_no, std::uint32_t attributes) {
    auto& record = elementAt<PolygonRecord>(poly_no, polygon);
    record.mat_no = mat_no;
    record.attr = (record.attr & typeMask) | attributes;
}

static std::uint32_t attributes_of(std::int32_t mat_no) {
    return polygon_attributes(elementAt<MaterialRecord>(mat_no + 1, material));
}

void set_mat_no(std::int32_t poly_no, std::int32_t mat_no) {
    claim_polygon(poly_no, mat_no, attributes_of(mat_no));
}

/// Assigns the material to polygons `first` to `last`. All numbers below the table fare alike, and so do
/// all above it: one of each is tried.
static void assign_range(std::int64_t first, std::int64_t last, std::int32_t mat_no,
                         std::uint32_t attributes) {
    const std::int64_t count = polygon == nullptr ? 0 : polygon->elementCount;
    for (std::int64_t k = first; k <= last; k = std::max(k + 1, std::int64_t{0})) {
        claim_polygon(static_cast<std::int32_t>(k), mat_no, attributes);
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
        static_cast<void>(scanDecimal(cursor, last)); // "4-" is 4 to 4
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
        assign_range(first, last, mat_no, attributes_of(mat_no));
        list += length;
        if (*list == ',') {
            ++list;
        }
    }
}

static const MaterialKind* find_kind(char letter) {
    const auto* kind = std::find_if(materialKinds.begin(), materialKinds.end(),
                                    [letter](const MaterialKind& each) { return each.letter == letter; });
    return kind == materialKinds.end() ? nullptr : kind;
}

static const Order& order_of(const MaterialKind& kind, bool old) {
    return old ? kind.old : kind.current;
}

/// Completes the list of a line of `kind` when its numbers are in their places.
static void complete_list(const MaterialKind& kind, CarriedNumbers& carried) {
    carried.count = kind.kept;
    for (std::size_t i = kind.written; i < kind.kept; ++i) {
        carried.bytes[i] = plainTextureGrey;
    }
}

/// Takes a line of one polygon or one range, plain numbers and no more; false when the next line is no
/// such line.
static bool take_plain_material(FileRecord* file, std::int32_t mat_no, MaterialRecord& record, bool old,
                                CarriedNumbers& carried) {
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::uint32_t attr = 0;
    MaterialRecord taken{};
    const char* text = takePlainRange(plainText(file), first, last);
    text = text == nullptr ? nullptr : takePlainHexadecimal(text, attr);
    text = text == nullptr ? nullptr : takePlainLetter(text, taken.shading);
    text = text == nullptr ? nullptr : takePlainLetter(text, taken.kind);
    const MaterialKind* kind = find_kind(taken.kind); // none where there is no letter
    if (kind == nullptr) {
        return false;
    }
    const Order& order = order_of(*kind, old);
    for (std::size_t i = 0; i < kind->written; ++i) {
        std::int32_t number = 0;
        text = takePlainShort(text, number);
        if (text == nullptr) {
            return false;
        }
        carried.bytes[order[i]] = static_cast<std::uint8_t>(number);
    }
    if (!endPlainLine(file, text)) {
        return false;
    }
    record.attr = static_cast<std::uint8_t>(attr);
    record.shading = taken.shading;
    record.kind = taken.kind;
    assign_range(first, last, mat_no, polygon_attributes(record));
    complete_list(*kind, carried);
    return true;
}

static void read_material(FileRecord* file, std::int32_t mat_no, MaterialRecord& record, bool old,
                          CarriedNumbers& carried) {
    const Line line = getLine(file);
    MaterialLine fields{};
    if (!scan_material_line(line, fields)) {
        raise_syntax(matLineSyntax, file, line);
    }
    record.attr = static_cast<std::uint8_t>(fields.attr);
    record.shading = fields.shading;
    record.kind = fields.kind;

    // The line is whole again when its numbers are scanned and when it is shown.
    const char behind = *fields.listEnd;
    *fields.listEnd = '\0';
    get_material_item(fields.list, mat_no);
    *fields.listEnd = behind;

    const MaterialKind* kind = find_kind(fields.kind);
    if (kind == nullptr) {
        return; // Kept: a line of any other kind repeats the numbers of the line before.
    }
    std::array<std::int32_t, maxParams> values{};
    if (!scanDecimals(fields.numbers, std::span(values).first(kind->written))) {
        raise_syntax(kind->tooFew, file, line);
    }
    const Order& order = order_of(*kind, old);
    for (std::size_t i = 0; i < kind->written; ++i) {
        carried.bytes[order[i]] = static_cast<std::uint8_t>(values[i]);
    }
    complete_list(*kind, carried);
}

void get_material_desc(FileRecord* file, RSD* object) {
    const bool old = object->version == oldVersion;
    CarriedNumbers carried{};
    TableWalk<MaterialRecord> walk{.array = material, .index = 1};
    for (std::int32_t i = 0; i < object->nmat; ++i) {
        auto& record = nextElement(walk);
        if (!take_plain_material(file, i, record, old, carried)) {
            read_material(file, i, record, old, carried);
        }
        set_params(record, std::span(carried.bytes).first(carried.count));
    }
}

void free_materials(const RSD* object) {
    TableWalk<MaterialRecord> walk{.array = material, .index = 1};
    for (std::int32_t i = 0; i < object->nmat; ++i) {
        free_params(nextElement(walk));
    }
    reuse_pool();
}

} // namespace vexbind
