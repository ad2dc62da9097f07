#include "tmd/primitive.hpp"

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "model/params.hpp"
#include "settings/settings.hpp"
#include "tmd/counters.hpp"
#include "tmd/current.hpp"

#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::ExitedWithCode;

namespace {

// Header bytes of an untextured polygon in the file: olen, ilen, flag, mode.
struct HeaderRow {
    std::uint32_t attr; // without the type
    const char* triangle;
    const char* quadrangle;
    const char* other; // types 4 to 7
};

// Attribute bits: 22 gouraud, 21 translucent, 18 two-sided, 17 light off, 16 gradation.
// Flag: 04 gradation, 02 two-sided, 01 light off. Mode: 20 polygon, 10 gouraud, 08 quadrangle,
// 02 translucent, 01 light off.
constexpr std::array<HeaderRow, 32> headerRows = {{
    {0x00000000, "04 03 00 20", "05 04 00 28", "05 04 00 20"},
    {0x00010000, "06 05 04 20", "08 07 04 28", "08 07 04 20"},
    {0x00020000, "04 03 01 21", "05 03 01 29", "05 03 01 21"},
    {0x00030000, "04 03 01 21", "05 03 01 29", "05 03 01 21"},
    {0x00040000, "04 03 02 20", "05 04 02 28", "05 04 02 20"},
    {0x00050000, "06 05 06 20", "08 07 06 28", "08 07 06 20"},
    {0x00060000, "04 03 03 21", "05 03 03 29", "05 03 03 21"},
    {0x00070000, "04 03 03 21", "05 03 03 29", "05 03 03 21"},
    {0x00200000, "04 03 00 22", "05 04 00 2A", "05 04 00 22"},
    {0x00210000, "06 05 04 22", "08 07 04 2A", "08 07 04 22"},
    {0x00220000, "04 03 01 23", "05 03 01 2B", "05 03 01 23"},
    {0x00230000, "04 03 01 23", "05 03 01 2B", "05 03 01 23"},
    {0x00240000, "04 03 02 22", "05 04 02 2A", "05 04 02 22"},
    {0x00250000, "06 05 06 22", "08 07 06 2A", "08 07 06 22"},
    {0x00260000, "04 03 03 23", "05 03 03 2B", "05 03 03 23"},
    {0x00270000, "04 03 03 23", "05 03 03 2B", "05 03 03 23"},
    {0x00400000, "06 04 00 30", "08 05 00 38", "08 05 00 30"},
    {0x00410000, "06 06 04 30", "08 08 04 38", "08 08 04 30"},
    {0x00420000, "06 05 01 31", "08 06 01 39", "08 06 01 31"},
    {0x00430000, "06 05 01 31", "08 06 01 39", "08 06 01 31"},
    {0x00440000, "06 04 02 30", "08 05 02 38", "08 05 02 30"},
    {0x00450000, "06 06 06 30", "08 08 06 38", "08 08 06 30"},
    {0x00460000, "06 05 03 31", "08 06 03 39", "08 06 03 31"},
    {0x00470000, "06 05 03 31", "08 06 03 39", "08 06 03 31"},
    {0x00600000, "06 04 00 32", "08 05 00 3A", "08 05 00 32"},
    {0x00610000, "06 06 04 32", "08 08 04 3A", "08 08 04 32"},
    {0x00620000, "06 05 01 33", "08 06 01 3B", "08 06 01 33"},
    {0x00630000, "06 05 01 33", "08 06 01 3B", "08 06 01 33"},
    {0x00640000, "06 04 02 32", "08 05 02 3A", "08 05 02 32"},
    {0x00650000, "06 06 06 32", "08 08 06 3A", "08 08 06 32"},
    {0x00660000, "06 05 03 33", "08 06 03 3B", "08 06 03 33"},
    {0x00670000, "06 05 03 33", "08 06 03 3B", "08 06 03 33"},
}};

// The same of a textured polygon. Types 4 to 7 are built as triangles.
struct TexturedRow {
    std::uint32_t attr; // without the type
    const char* triangle;
    const char* quadrangle;
};

// Mode: 04 textured. The gradation flag is never set.
constexpr std::array<TexturedRow, 32> texturedRows = {{
    {0x00800000, "07 05 00 24", "09 07 00 2C"}, {0x00810000, "07 05 00 24", "09 07 00 2C"},
    {0x00820000, "07 06 01 25", "09 07 01 2D"}, {0x00830000, "07 06 01 25", "09 07 01 2D"},
    {0x00840000, "07 05 02 24", "09 07 02 2C"}, {0x00850000, "07 05 02 24", "09 07 02 2C"},
    {0x00860000, "07 06 03 25", "09 07 03 2D"}, {0x00870000, "07 06 03 25", "09 07 03 2D"},
    {0x00A00000, "07 05 00 26", "09 07 00 2E"}, {0x00A10000, "07 05 00 26", "09 07 00 2E"},
    {0x00A20000, "07 06 01 27", "09 07 01 2F"}, {0x00A30000, "07 06 01 27", "09 07 01 2F"},
    {0x00A40000, "07 05 02 26", "09 07 02 2E"}, {0x00A50000, "07 05 02 26", "09 07 02 2E"},
    {0x00A60000, "07 06 03 27", "09 07 03 2F"}, {0x00A70000, "07 06 03 27", "09 07 03 2F"},
    {0x00C00000, "09 06 00 34", "0C 08 00 3C"}, {0x00C10000, "09 06 00 34", "0C 08 00 3C"},
    {0x00C20000, "09 08 01 35", "0C 0A 01 3D"}, {0x00C30000, "09 08 01 35", "0C 0A 01 3D"},
    {0x00C40000, "09 06 02 34", "0C 08 02 3C"}, {0x00C50000, "09 06 02 34", "0C 08 02 3C"},
    {0x00C60000, "09 08 03 35", "0C 0A 03 3D"}, {0x00C70000, "09 08 03 35", "0C 0A 03 3D"},
    {0x00E00000, "09 06 00 36", "0C 08 00 3E"}, {0x00E10000, "09 06 00 36", "0C 08 00 3E"},
    {0x00E20000, "09 08 01 37", "0C 0A 01 3F"}, {0x00E30000, "09 08 01 37", "0C 0A 01 3F"},
    {0x00E40000, "09 06 02 36", "0C 08 02 3E"}, {0x00E50000, "09 06 02 36", "0C 08 02 3E"},
    {0x00E60000, "09 08 03 37", "0C 0A 03 3F"}, {0x00E70000, "09 08 03 37", "0C 0A 03 3F"},
}};

struct Written {
    std::uint32_t total;
    std::string bytes;
    std::string messages;
};

// Writes the packets of the first `count` polygons, beginning with the given packet area.
Written writePackets(std::int32_t count, PacketArea area) {
    RSD object = plainObject();
    object.npoly = count;
    FileRecord* file = fileOpen("packets", "w");
    testing::internal::CaptureStderr();
    const std::uint32_t total = set_primitive(&object, area, file);
    const std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_EQ(currentObject, &object);
    EXPECT_EQ(static_cast<std::uint32_t>(file->position), total);
    fileClose(file);
    currentObject = nullptr;
    return {total, bytesOf("packets"), messages};
}

Written writePackets(std::int32_t count) {
    return writePackets(count, PacketArea{});
}

// Expects one packet with this header and no other bytes.
void expectHeader(const Written& written, const std::string& header) {
    const std::size_t size = (static_cast<std::size_t>(header[1]) + 1) * 4;
    ASSERT_EQ(written.bytes.size(), size);
    EXPECT_EQ(written.total, size);
    EXPECT_EQ(written.bytes.substr(0, 4), header);
    EXPECT_EQ(written.messages, "");
}

constexpr char noMaterialText[] = "WARNING: Some primitives have no material (WHITE is assigned.)\n";

} // namespace

TEST(SetPrimitive, ComposesTheHeaderFromTheAttributeBits) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 4, .normals = 4, .polygons = 1, .materials = 1});
    PacketArea dirty{};
    dirty.fill(0xEEEEEEEE);
    for (const HeaderRow& row : headerRows) {
        const std::array<const char*, 8> byType = {row.triangle, row.quadrangle, nullptr,   nullptr,
                                                   row.other,    row.other,      row.other, row.other};
        for (const std::uint32_t type : {0U, 1U, 4U, 5U, 6U, 7U}) {
            const std::string header = fromHex(byType[type]);
            const std::size_t size = (static_cast<std::size_t>(header[1]) + 1) * 4;
            // The translucency rate is not for untextured polygons.
            for (const std::uint32_t rate : {0x00000000U, 0x00080000U, 0x00100000U, 0x00180000U}) {
                polygonAt(0) = {.attr = type << 24 | row.attr | rate, .vert = {}, .norm = {}, .mat_no = 0};
                const Written written = writePackets(1, dirty);
                ASSERT_EQ(written.bytes.size(), size) << std::hex << row.attr << " type " << type;
                EXPECT_EQ(written.total, size);
                EXPECT_EQ(written.bytes.substr(0, 4), header) << std::hex << row.attr << " type " << type;
                EXPECT_EQ(written.bytes[7], header[3]) << std::hex << row.attr << " type " << type;
                EXPECT_EQ(polygonAt(0).attr, type << 24 | row.attr | rate);
            }
        }
    }
}

TEST(SetPrimitive, ReturnsTheBytesOfAllPacketsOfTheObject) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 4, .normals = 4, .polygons = 4, .materials = 1});
    set_params(materialAt(1), std::array<std::uint8_t, 3>{1, 2, 3});
    polygonAt(0) = {.attr = 0x00000000, .vert = {0, 1, 2, 0}, .norm = {3, 0, 0, 0}, .mat_no = 0};
    polygonAt(1) = {.attr = 0x01400000, .vert = {0, 1, 2, 3}, .norm = {3, 2, 1, 0}, .mat_no = -1};
    polygonAt(2) = {.attr = 0x00020000, .vert = {2, 1, 0, 3}, .norm = {}, .mat_no = 0};
    polygonAt(3) = {.attr = 0x00000000, .vert = {}, .norm = {}, .mat_no = 0}; // of an earlier object
    const Written written = writePackets(3);
    EXPECT_EQ(written.total, 56U);
    EXPECT_EQ(written.bytes,
              fromHex("04 03 00 20  01 02 03 20  03 00 00 00 01 00 02 00"
                      "08 05 00 38  FF FF FF 38  03 00 00 00 02 00 01 00 01 00 02 00 00 00 03 00"
                      "04 03 01 21  01 02 03 21  02 00 01 00 00 00 00 00"));
    EXPECT_EQ(currentPolygon, 3U);
}

TEST(SetPrimitive, OfNoPolygonsWritesNothing) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1});
    currentPolygon = 7;
    for (const std::int32_t count : {0, -1}) {
        const Written written = writePackets(count);
        EXPECT_EQ(written.total, 0U);
        EXPECT_EQ(written.bytes, "");
        EXPECT_EQ(written.messages, "");
        EXPECT_EQ(currentPolygon, 0U);
    }
}

TEST(SetPrimitive, ClearsOnlyTheHeaderBetweenPackets) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 2, .materials = 1});
    polygonAt(0) = {.attr = 0x01440000, .vert = {}, .norm = {0, 0x1234, 0, 0}, .mat_no = 0};
    polygonAt(1) = {.attr = 0x00010000, .vert = {}, .norm = {}, .mat_no = 0};
    PacketArea dirty{};
    dirty.fill(0xEEEEEEEE);
    EXPECT_EQ(writePackets(2, dirty).bytes,
              fromHex("08 05 02 38  00 00 00 38  00 00 00 00 34 12 00 00 00 00 00 00 00 00 00 00"
                      // Byte 11 keeps the 0 of V0, byte 15 the one of V1: neither flag nor mode is left.
                      "06 05 04 20  00 00 00 20  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
    polygonAt(0) = {.attr = 0x00010000, .vert = {}, .norm = {}, .mat_no = 0};
    EXPECT_EQ(writePackets(1, dirty).bytes,
              fromHex("06 05 04 20  00 00 00 20  00 00 00 EE 00 00 00 EE 00 00 00 00 00 00 00 00"));
}

TEST(SetPrimitive, TakesTheMaterialBehindItsNumber) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 4, .materials = 3});
    for (std::int32_t i = 1; i <= 3; ++i) {
        set_params(materialAt(i), std::array<std::uint8_t, 3>{static_cast<std::uint8_t>(i * 16), 0, 0});
    }
    for (std::int32_t i = 0; i < 4; ++i) {
        polygonAt(i) = {.attr = 0, .vert = {}, .norm = {}, .mat_no = i - 1};
    }
    const std::string bytes = writePackets(4).bytes;
    ASSERT_EQ(bytes.size(), 64U);
    EXPECT_EQ(bytes.substr(4, 3), fromHex("FF FF FF"));
    EXPECT_EQ(bytes.substr(20, 3), fromHex("10 00 00"));
    EXPECT_EQ(bytes.substr(36, 3), fromHex("20 00 00"));
    EXPECT_EQ(bytes.substr(52, 3), fromHex("30 00 00"));
}

TEST(SetPrimitive, WarnsOncePerObjectOfPolygonsWithoutMaterial) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 4, .materials = 1});
    for (std::int32_t i = 0; i < 4; ++i) {
        polygonAt(i) = {.attr = 0, .vert = {}, .norm = {}, .mat_no = i == 0 ? 0 : -1};
    }
    EXPECT_EQ(writePackets(1).messages, "");
    EXPECT_EQ(writePackets(2).messages, noMaterialText);
    EXPECT_EQ(writePackets(4).messages, noMaterialText);
    EXPECT_EQ(writePackets(4).messages, noMaterialText);
}

TEST(SetPrimitive, MaterialNumbersBelowMinusOneAreOutsideTheTable) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 1});
    for (const std::int32_t number : {-2, -3, -2'147'483'647 - 1}) {
        polygonAt(0) = {.attr = 0, .vert = {}, .norm = {}, .mat_no = number};
        const Written written = writePackets(1);
        EXPECT_EQ(written.bytes, fromHex("04 03 00 20  00 00 00 20  00 00 00 00 00 00 00 00")) << number;
        EXPECT_EQ(written.messages, noMaterialText) << number;
    }
}

TEST(SetPrimitive, VerboseRejectsMaterialNumbersOutsideTheTable) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 1});
    Verbose = 1;
    struct Row {
        std::int32_t number;
        std::string messages;
    };
    const std::vector<Row> rows = {
        {-2, noMaterialText + std::string("\nBad index: 4294967295 [0-2]\n")},
        {-3, noMaterialText + std::string("\nBad index: 4294967294 [0-2]\n")},
        {2, "\nBad index: 3 [0-2]\n"},
    };
    for (const Row& row : rows) {
        polygonAt(0) = {.attr = 0, .vert = {}, .norm = {}, .mat_no = row.number};
        RSD object = plainObject();
        object.npoly = 1;
        FileRecord* file = fileOpen("packets", "w");
        PacketArea area{};
        EXPECT_EXIT(set_primitive(&object, area, file), ExitedWithCode(17), testing::Eq(row.messages));
        fileClose(file);
    }
    // The index right behind the table passes.
    polygonAt(0) = {.attr = 0, .vert = {}, .norm = {}, .mat_no = 1};
    EXPECT_EQ(writePackets(1).bytes, fromHex("04 03 00 20  00 00 00 20  00 00 00 00 00 00 00 00"));
}

TEST(SetPrimitive, KeepsTheTableAsItIs) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 1});
    polygonAt(0) = {.attr = 0x016F0000, .vert = {1, 2, 3, 4}, .norm = {5, 6, 7, 8}, .mat_no = 0};
    writePackets(1);
    EXPECT_EQ(polygonAt(0).attr, 0x016F0000U);
    EXPECT_EQ(polygonAt(0).vert, (std::array<std::int32_t, 4>{1, 2, 3, 4}));
    EXPECT_EQ(polygonAt(0).norm, (std::array<std::int32_t, 4>{5, 6, 7, 8}));
    EXPECT_EQ(polygonAt(0).mat_no, 0);
}

TEST(SetPrimitive, ComposesTheHeaderOfTexturedPolygons) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 4, .normals = 4, .polygons = 1, .materials = 1});
    PacketArea dirty{};
    dirty.fill(0xEEEEEEEE);
    for (const TexturedRow& row : texturedRows) {
        for (const std::uint32_t type : {0U, 1U, 4U, 5U, 6U, 7U}) {
            const std::string header = fromHex(type == 1 ? row.quadrangle : row.triangle);
            for (const std::uint32_t rate : {0x00000000U, 0x00080000U, 0x00100000U, 0x00180000U}) {
                const std::uint32_t attr = type << 24 | row.attr | rate;
                SCOPED_TRACE(attr);
                polygonAt(0) = {.attr = attr, .vert = {}, .norm = {}, .mat_no = 0};
                expectHeader(writePackets(1, dirty), header);
                EXPECT_EQ(polygonAt(0).attr, attr);
            }
        }
    }
}

TEST(SetPrimitive, ComposesTheHeaderOfLines) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 4, .polygons = 1, .materials = 1});
    PacketArea dirty{};
    dirty.fill(0xEEEEEEEE);
    struct LineRow {
        std::uint32_t attr;
        const char* header;
    };
    constexpr std::array<LineRow, 4> rows = {{
        {0x02000000, "03 02 01 40"},
        {0x02200000, "03 02 01 42"},
        {0x02010000, "04 03 01 50"},
        {0x02210000, "04 03 01 52"},
    }};
    for (const LineRow& row : rows) {
        // Textured, gouraud, rate, two-sided and light off do not show.
        for (const std::uint32_t bits :
             {0U, 0x00800000U, 0x00400000U, 0x00180000U, 0x00040000U, 0x00020000U, 0x00DE0000U}) {
            SCOPED_TRACE(row.attr | bits);
            polygonAt(0) = {.attr = row.attr | bits, .vert = {}, .norm = {}, .mat_no = 0};
            const Written written = writePackets(1, dirty);
            expectHeader(written, fromHex(row.header));
            EXPECT_EQ(written.bytes[7], fromHex(row.header)[3]);
        }
    }
}

TEST(SetPrimitive, ComposesTheHeaderOfSprites) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 4, .polygons = 1, .materials = 1});
    PacketArea dirty{};
    dirty.fill(0xEEEEEEEE);
    struct SpriteRow {
        std::int32_t size;
        const char* opaque;
        const char* translucent;
    };
    constexpr std::array<SpriteRow, 4> rows = {{
        {7, "05 03 01 64", "05 03 01 66"},
        {1, "04 02 01 6C", "04 02 01 6E"},
        {8, "04 02 01 74", "04 02 01 76"},
        {16, "04 02 01 7C", "04 02 01 7E"},
    }};
    for (const SpriteRow& row : rows) {
        // Textured, gouraud, rate, two-sided, light off and gradation do not show.
        for (const std::uint32_t bits : {0U, 0x00800000U, 0x00400000U, 0x00180000U, 0x00040000U, 0x00020000U,
                                         0x00010000U, 0x00DF0000U}) {
            for (const std::uint32_t trans : {0U, 0x00200000U}) {
                const std::uint32_t attr = 0x03000000 | bits | trans;
                SCOPED_TRACE(attr);
                polygonAt(0) = {.attr = attr, .vert = {0, row.size, row.size, 0}, .norm = {}, .mat_no = 0};
                expectHeader(writePackets(1, dirty), fromHex(trans != 0 ? row.translucent : row.opaque));
                EXPECT_EQ(polygonAt(0).attr, attr);
            }
        }
    }
}

TEST(SetPrimitive, HandsEachKindToItsBuilder) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 4, .normals = 4, .polygons = 7, .materials = 1});
    set_params(materialAt(1), std::array<std::uint8_t, 21>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    constexpr std::array<std::uint32_t, 7> attributes = {0x00000000, 0x00400000, 0x00800000, 0x00C00000,
                                                         0x02000000, 0x02010000, 0x03000000};
    const std::array<Counter*, 7> raised = {&nFlat3,    &nGouraud3,    &nFlat3Tex,  &nGouraud3Tex,
                                            &nFlatLine, &nGouraudLine, &nSpriteFree};
    std::array<Counter, 7> before{};
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        polygonAt(static_cast<std::int32_t>(i)) = {
            .attr = attributes[i], .vert = {1, 2, 3, 0}, .norm = {3, 2, 1, 0}, .mat_no = 0};
        before[i] = *raised[i];
    }
    const Written written = writePackets(7);
    EXPECT_EQ(written.total, 132U); // 16 + 20 + 24 + 28 + 12 + 16 + 16
    EXPECT_EQ(written.bytes,
              fromHex("04 03 00 20  00 01 02 20  03 00 01 00 02 00 03 00"
                      "06 04 00 30  00 01 02 30  03 00 01 00 02 00 02 00 01 00 03 00"
                      "07 05 00 24  01 02 00 00  03 04 00 00  05 06 00 00  03 00 01 00 02 00 03 00"
                      "09 06 00 34  01 02 00 00  03 04 00 00  05 06 00 00"
                      "  03 00 01 00 02 00 02 00 01 00 03 00"
                      "03 02 01 40  00 01 02 40  01 00 02 00"
                      "04 03 01 50  00 01 02 50  03 04 05 00  01 00 02 00"
                      "05 03 01 64  01 00 00 00  01 02 00 00  02 00 03 00"));
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        EXPECT_EQ(*raised[i], before[i] + 1) << i;
    }
}

TEST(SetPrimitive, LeavesTheSizeOfAFixedSpriteToLaterPackets) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 2, .materials = 1});
    polygonAt(0) = {.attr = 0x03000000, .vert = {1, 8, 8, 0}, .norm = {}, .mat_no = 0};
    polygonAt(1) = {.attr = 0x00010000, .vert = {}, .norm = {}, .mat_no = 0};
    PacketArea dirty{};
    dirty.fill(0xEEEEEEEE);
    // Byte 11 keeps the upper byte of the CLUT code, byte 15 that of the height.
    EXPECT_EQ(writePackets(2, dirty).bytes,
              fromHex("04 02 01 74  01 00 00 00  00 00 00 00"
                      "06 05 04 20  00 00 00 20  00 00 00 00  00 00 00 00  00 00 00 00 00 00 00 00"));
}

TEST(SetPrimitive, TakesTheGouraudBitFromFlatLinesInTheTable) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 4, .materials = 1});
    polygonAt(0) = {.attr = 0x02E60000, .vert = {1, 2, 3, 4}, .norm = {5, 6, 7, 8}, .mat_no = 0};
    polygonAt(1) = {.attr = 0x02E70000, .vert = {}, .norm = {}, .mat_no = 0}; // a gradation line
    polygonAt(2) = {.attr = 0x02BE0000, .vert = {}, .norm = {}, .mat_no = 0}; // has none
    polygonAt(3) = {.attr = 0x02E60000, .vert = {}, .norm = {}, .mat_no = 0};
    writePackets(4);
    EXPECT_EQ(polygonAt(0).attr, 0x02A60000U);
    EXPECT_EQ(polygonAt(0).vert, (std::array<std::int32_t, 4>{1, 2, 3, 4}));
    EXPECT_EQ(polygonAt(0).norm, (std::array<std::int32_t, 4>{5, 6, 7, 8}));
    EXPECT_EQ(polygonAt(1).attr, 0x02E70000U);
    EXPECT_EQ(polygonAt(2).attr, 0x02BE0000U);
    EXPECT_EQ(polygonAt(3).attr, 0x02A60000U);
}

TEST(SetPrimitive, TakesTheGouraudBitFromEqualFlatLines) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 2, .materials = 1});
    polygonAt(0) = {.attr = 0x02E60000, .vert = {}, .norm = {}, .mat_no = 0};
    polygonAt(1) = polygonAt(0);
    writePackets(2);
    EXPECT_EQ(polygonAt(0).attr, 0x02A60000U);
    EXPECT_EQ(polygonAt(1).attr, 0x02A60000U);
}
