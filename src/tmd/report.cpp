#include "tmd/report.hpp"

#include "model/params.hpp"
#include "model/rsd.hpp"
#include "settings/settings.hpp"
#include "tmd/counters.hpp"
#include "tmd/current.hpp"
#include "tmd/modes.hpp"
#include "utilkit/drawline.hpp"
#include "utilkit/reporttext.hpp"

#include <array>

namespace vexbind {

/// One section of the file: its name, padded, its count and its bytes.
static void print_section(std::FILE* stream, const char* name, std::uint32_t count, std::uint32_t bytes) {
    std::fprintf(stream, "   %s: %5u (%6lld bytes)\n", name, count, static_cast<long long>(bytes));
}

void printTMD(std::FILE* stream, const TmdBuild& tmd) {
    std::fprintf(stream, "================= TMD ==================\n");
    std::fprintf(stream, "   Output TMD  : %s\n", Tmdfile);
    std::fprintf(stream, "   TMD header  :       (    12 bytes)\n");
    print_section(stream, "Objects     ", tmd.nObj, tmd.objtblBytes);
    print_section(stream, "Primitives  ", ObjList.nPrim, tmd.primitiveBytes);
    for (const CounterLine& line : counterLines) {
        if (*line.count != 0) {
            std::fprintf(stream, "%22u\t... %s%s%s%s%s\n", *line.count, line.labels[0], line.labels[1],
                         line.labels[2], line.labels[3], line.labels[4]);
        }
    }
    print_section(stream, "Vertices    ", ObjList.nVert, tmd.vertexBytes);
    print_section(stream, "Normals     ", ObjList.nNorm, tmd.normalBytes);
    drawLine(stream, '-', 40);
    const std::uint32_t total =
        tmd.objtblBytes + tmd.primitiveBytes + tmd.vertexBytes + tmd.normalBytes + tmdHeaderBytes;
    std::fprintf(stream, "\nTotal file size:        %6lld bytes\n", static_cast<long long>(total));
}

namespace {

/// A table whose elements packets name.
struct NamedTable {
    const char* label;
    const char* noun;
    const ChunkedArray* table;
    std::int32_t count; // of the current object's elements
};

} // namespace

static bool leaves_16_bits(std::int32_t coordinate) {
    return coordinate > INT16_MAX || coordinate < INT16_MIN; // GCOVR_EXCL_BR_LINE: see printVert
}

static Padded shown_coordinate(std::int16_t coordinate) {
    return {.number = coordinate, .width = 6};
}

/// Puts element `index` and gives its coordinates to `shown`; false, with words that say so, when the
/// current object has no such element. The caller ends the line.
static bool put_element(std::FILE* stream, const NamedTable& from, std::int32_t index, std::int32_t position,
                        Coordinates& shown) {
    const auto number = static_cast<std::uint32_t>(index);
    putReport(stream, "\t", from.label, "-", position, ": ");
    if (index >= from.count) {
        putReport(stream, "Bad ", from.noun, ": ", number);
        return false;
    }
    shown = elementAt<Coordinates>(index, from.table);
    putReport(stream, "(", shown_coordinate(shown.x), ", ", shown_coordinate(shown.y), ", ",
              shown_coordinate(shown.z), ") (#", number, ")");
    return true;
}

std::int32_t printVert(std::FILE* stream, std::int32_t index, std::int32_t position) {
    Coordinates shown{};
    const NamedTable vertices{
        .label = "Vert", .noun = "vertex", .table = vertex, .count = currentObject->nvert};
    const bool found = put_element(stream, vertices, index, position, shown);
    // Kept: coordinates have 16 bits by now, so the mark never shows.
    const bool overflow = leaves_16_bits(shown.x) || leaves_16_bits(shown.y) || leaves_16_bits(shown.z);
    putReport(stream, overflow ? " overflow!!\n" : "\n"); // GCOVR_EXCL_BR_LINE: never so, as said
    return found ? 1 : 0;
}

std::int32_t printNorm(std::FILE* stream, std::int32_t index, std::int32_t position) {
    Coordinates shown{};
    const NamedTable normals{
        .label = "Norm", .noun = "normal", .table = normal, .count = currentObject->nnorm};
    const bool found = put_element(stream, normals, index, position, shown);
    putReport(stream, "\n");
    return found ? 1 : 0;
}

void put_colour(std::FILE* stream, const PacketArea& area, std::size_t offset) {
    putReport(stream, "(", shown_byte(area, offset), " ", shown_byte(area, offset + 1), " ",
              shown_byte(area, offset + 2), ")");
}

void printColors(std::FILE* stream, const PacketArea& area, std::size_t offset, std::uint32_t count) {
    putReport(stream, "\tColor", count < 2 ? " : " : "s: ");
    for (std::uint32_t i = 0; i < count; ++i) {
        put_colour(stream, area, offset + std::size_t{4} * i);
        putReport(stream, " ");
    }
    putReport(stream, "\n");
}

// Kept: the names of the pixel modes and of the translucencies follow one another, and pixel mode 3 shows the
// first of the latter.
static constexpr std::size_t pixelModeNames = 3;
static constexpr std::array<const char*, 7> modeNames = {
    "4bit",
    "8bit",
    "16bit",
    "50% back + 50% polygon",
    "100% back + 100% polygon",
    "100% back - 100% polygon",
    "100% back + 25% polygon",
};

void printEtc(std::FILE* stream, const PacketArea& area, const MaterialRecord& mat) {
    const std::uint32_t mode = get_byte(area, modeOffset);
    const bool isSprite = primitive_code(mode) == primitive_code(codeSprite);
    const std::uint32_t clut = get_half(area, isSprite ? 10 : 6);
    const std::uint32_t tsb = get_half(area, isSprite ? 6 : 10);

    const std::uint32_t pixelMode = tsb >> (arcade == arcadeLayoutA ? 9 : 7) & 3;
    putReport(stream, "\tPixel mode  : ", modeNames[pixelMode]);
    if (pixelMode < 2) {
        const std::uint32_t column = (clut & 63) * 16;
        const std::uint32_t row = clut >> 6 & (arcade == homeLayout ? 0x1FF : 0x3FF);
        putReport(stream, " CLUT : (x y)=(", Padded{column, 3}, " ", Padded{row, 3}, ")");
    }
    const std::uint32_t page = tsb & (arcade == arcadeLayoutA ? 127 : 31);
    const std::uint32_t lowerPages = arcade == arcadeLayoutB ? (tsb & 0x800) >> 6 : 0;
    const std::uint32_t texture = get_params(mat)[textureNumber];
    putReport(stream, "\n\tTexture Page: ", Padded{page + lowerPages, 2});
    putReport(stream, "   Texture No. : ", Padded{texture, 2}, "\n");
    if ((mode & modeABE) != 0) {
        const std::uint32_t rate = tsb >> (arcade == arcadeLayoutA ? 7 : 5) & 3;
        putReport(stream, "\tTranslucency: ", modeNames[pixelModeNames + rate], "\n");
    }
}

} // namespace vexbind
