// Every packet of an untextured polygon against its bytes in the file.
#include "tmd/notexture.hpp"

#include "unit/support.hpp"
#include "unit/tmd/packet_bytes.hpp"

#include "model/params.hpp"
#include "settings/settings.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

// The colours are 10 11 12, 20 21 22, 30 31 32 and 40 41 42.
constexpr std::array<std::uint8_t, 12> colours = {0x10, 0x11, 0x12, 0x20, 0x21, 0x22,
                                                  0x30, 0x31, 0x32, 0x40, 0x41, 0x42};

// clang-format off
const std::vector<ExpectedPacket> flatRows = {
    {"plain triangle", flat_notexture, 0x00000000, 0x20000000,
     "04 03 00 20  10 11 12 20  0B 0A 03 02 14 13 FF FF",
     &nFlat3, &nFlatTrans3},
    {"plain quadrangle", flat_notexture, 0x01000000, 0x28000000,
     "05 04 00 28  10 11 12 28  0B 0A 03 02 14 13 FF FF 01 80 00 00",
     &nFlat4, &nFlatTrans4},
    {"two-sided triangle", flat_notexture, 0x00040000, 0x20020000,
     "04 03 02 20  10 11 12 20  0B 0A 03 02 14 13 FF FF",
     &nFlat3, &nFlatTrans3},
    {"light-off triangle", flat_notexture, 0x00020000, 0x21010000,
     "04 03 01 21  10 11 12 21  03 02 14 13 FF FF 00 00",
     &nFlat3NoLight, &nFlatTrans3NoLight},
    {"light-off quadrangle", flat_notexture, 0x01020000, 0x29010000,
     "05 03 01 29  10 11 12 29  03 02 14 13 FF FF 01 80",
     &nFlat4NoLight, &nFlatTrans4NoLight},
    // A light-off packet has one colour, whatever the gradation bit says.
    {"light-off triangle with the gradation bit", flat_notexture, 0x00030000, 0x21010000,
     "04 03 01 21  10 11 12 21  03 02 14 13 FF FF 00 00",
     &nFlat3NoLight, &nFlatTrans3NoLight},
    {"light-off quadrangle with the gradation bit", flat_notexture, 0x01030000, 0x29010000,
     "05 03 01 29  10 11 12 29  03 02 14 13 FF FF 01 80",
     &nFlat4NoLight, &nFlatTrans4NoLight},
    {"gradation triangle", flat_notexture, 0x00010000, 0x20040000,
     "06 05 04 20  10 11 12 20  20 21 22 EE  30 31 32 EE  0B 0A 03 02 14 13 FF FF",
     &nGradFlat3, &nGradFlatTrans3},
    {"gradation quadrangle", flat_notexture, 0x01010000, 0x28040000,
     "08 07 04 28  10 11 12 28  20 21 22 EE  30 31 32 EE  40 41 42 EE  0B 0A 03 02 14 13 FF FF 01 80 00 00",
     &nGradFlat4, &nGradFlatTrans4},
};

const std::vector<ExpectedPacket> gouraudRows = {
    {"plain triangle", gouraud_notexture, 0x00400000, 0x30000000,
     "06 04 00 30  10 11 12 30  0B 0A 03 02 0D 0C 14 13 FE FF FF FF",
     &nGouraud3, &nGouraudTrans3},
    {"plain quadrangle", gouraud_notexture, 0x01400000, 0x38000000,
     "08 05 00 38  10 11 12 38  0B 0A 03 02 0D 0C 14 13 FE FF FF FF 1F 1E 01 80",
     &nGouraud4, &nGouraudTrans4},
    {"two-sided quadrangle", gouraud_notexture, 0x01440000, 0x38020000,
     "08 05 02 38  10 11 12 38  0B 0A 03 02 0D 0C 14 13 FE FF FF FF 1F 1E 01 80",
     &nGouraud4, &nGouraudTrans4},
    // Here the fourth bytes of the colours are cleared.
    {"light-off triangle", gouraud_notexture, 0x00420000, 0x31010000,
     "06 05 01 31  10 11 12 31  10 11 12 00  10 11 12 00  03 02 14 13 FF FF 00 00",
     &nGouraud3NoLight, &nGouraudTrans3NoLight},
    {"light-off quadrangle", gouraud_notexture, 0x01420000, 0x39010000,
     "08 06 01 39  10 11 12 39  10 11 12 00  10 11 12 00  10 11 12 00  03 02 14 13 FF FF 01 80",
     &nGouraud4NoLight, &nGouraudTrans4NoLight},
    {"light-off gradation triangle", gouraud_notexture, 0x00430000, 0x31010000,
     "06 05 01 31  10 11 12 31  20 21 22 00  30 31 32 00  03 02 14 13 FF FF 00 00",
     &nGouraud3NoLight, &nGouraudTrans3NoLight},
    {"light-off gradation quadrangle", gouraud_notexture, 0x01430000, 0x39010000,
     "08 06 01 39  10 11 12 39  20 21 22 00  30 31 32 00  40 41 42 00  03 02 14 13 FF FF 01 80",
     &nGouraud4NoLight, &nGouraudTrans4NoLight},
    {"gradation triangle", gouraud_notexture, 0x00410000, 0x30040000,
     "06 06 04 30  10 11 12 30  20 21 22 EE  30 31 32 EE"
     "  0B 0A 03 02 0D 0C 14 13 FE FF FF FF",
     &nGradGouraud3, &nGradGouraudTrans3},
    {"gradation quadrangle", gouraud_notexture, 0x01410000, 0x38040000,
     "08 08 04 38  10 11 12 38  20 21 22 EE  30 31 32 EE  40 41 42 EE"
     "  0B 0A 03 02 0D 0C 14 13 FE FF FF FF 1F 1E 01 80",
     &nGradGouraud4, &nGradGouraudTrans4},
};

// Types 4 to 7, here without their type byte: quadrangles but for the quadrangle bit of the mode, and
// but for the fourth vertex of a flat light-off packet, which is 0.
const std::vector<ExpectedPacket> otherRows = {
    {"flat plain", flat_notexture, 0x00000000, 0x20000000,
     "05 04 00 20  10 11 12 20  0B 0A 03 02 14 13 FF FF 01 80 00 00",
     &nFlat4, &nFlatTrans4},
    {"flat light-off", flat_notexture, 0x00020000, 0x21010000,
     "05 03 01 21  10 11 12 21  03 02 14 13 FF FF 00 00",
     &nFlat4NoLight, &nFlatTrans4NoLight},
    {"flat light-off with the gradation bit", flat_notexture, 0x00030000, 0x21010000,
     "05 03 01 21  10 11 12 21  03 02 14 13 FF FF 00 00",
     &nFlat4NoLight, &nFlatTrans4NoLight},
    {"flat gradation", flat_notexture, 0x00010000, 0x20040000,
     "08 07 04 20  10 11 12 20  20 21 22 EE  30 31 32 EE  40 41 42 EE  0B 0A 03 02 14 13 FF FF 01 80 00 00",
     &nGradFlat4, &nGradFlatTrans4},
    {"gouraud plain", gouraud_notexture, 0x00400000, 0x30000000,
     "08 05 00 30  10 11 12 30  0B 0A 03 02 0D 0C 14 13 FE FF FF FF 1F 1E 01 80",
     &nGouraud4, &nGouraudTrans4},
    {"gouraud light-off", gouraud_notexture, 0x00420000, 0x31010000,
     "08 06 01 31  10 11 12 31  10 11 12 00  10 11 12 00  10 11 12 00  03 02 14 13 FF FF 01 80",
     &nGouraud4NoLight, &nGouraudTrans4NoLight},
    {"gouraud light-off gradation", gouraud_notexture, 0x00430000, 0x31010000,
     "08 06 01 31  10 11 12 31  20 21 22 00  30 31 32 00  40 41 42 00  03 02 14 13 FF FF 01 80",
     &nGouraud4NoLight, &nGouraudTrans4NoLight},
    {"gouraud gradation", gouraud_notexture, 0x00410000, 0x30040000,
     "08 08 04 30  10 11 12 30  20 21 22 EE  30 31 32 EE  40 41 42 EE"
     "  0B 0A 03 02 0D 0C 14 13 FE FF FF FF 1F 1E 01 80",
     &nGradGouraud4, &nGradGouraudTrans4},
};
// clang-format on

// A material of kind "G" with the four colours, or with the first `bytes` of their bytes.
MaterialRecord colouredMaterial(std::size_t bytes = colours.size()) {
    MaterialRecord mat{.attr = 0, .shading = 'F', .kind = 'G', .paramCount = 0, .param = 0};
    set_params(mat, std::span(colours).first(bytes));
    return mat;
}

// Builds the packet of `row` and expects its bytes behind a header with `mode` bits more, EE behind it,
// its size, and one more packet in `counter` alone.
void expectPacket(const ExpectedPacket& row, std::uint32_t attr, std::uint32_t mode, Counter* counter) {
    SCOPED_TRACE(row.name + std::string(mode != 0 ? ", translucent" : ""));
    std::string expected = fromHex(row.bytes);
    expected[3] = static_cast<char>(static_cast<unsigned char>(expected[3]) | mode);
    expected[7] = static_cast<char>(static_cast<unsigned char>(expected[7]) | mode);
    const PolygonRecord poly{.attr = attr, .vert = vertices, .norm = normals, .mat_no = 0};
    expectBuilt(
        {.build = row.build, .poly = poly, .mat = colouredMaterial(), .header = row.header | mode << 24},
        expected.size(), expected, counter);
}

void expectPackets(const std::vector<ExpectedPacket>& rows, std::uint32_t type) {
    for (const ExpectedPacket& row : rows) {
        expectPacket(row, row.attr | type, 0, row.opaque);
        expectPacket(row, row.attr | type | trans, 2, row.translucent);
        // The rate of the translucency does not show.
        expectPacket(row, row.attr | type | 0x00180000, 0, row.opaque);
    }
}

// The lines that a builder prints for polygon `number` with the four colours.
std::string dumpOf(Builder build, const PolygonRecord& poly, std::uint32_t header, std::uint32_t number) {
    return dumpBy({.build = build, .poly = poly, .mat = colouredMaterial(), .header = header}, number);
}

} // namespace

TEST(FlatNotexture, BuildsEveryPacket) {
    const FreshGlobals globals;
    expectPackets(flatRows, 0);
}

TEST(GouraudNotexture, BuildsEveryPacket) {
    const FreshGlobals globals;
    expectPackets(gouraudRows, 0);
}

TEST(Notexture, BuildsOtherTypesInTheFormOfQuadrangles) {
    const FreshGlobals globals;
    for (const std::uint32_t type : {4U, 5U, 6U, 7U}) {
        SCOPED_TRACE(type);
        expectPackets(otherRows, type << 24);
    }
}

TEST(Notexture, MissingColoursAreBlack) {
    const FreshGlobals globals;
    const PolygonRecord poly{.attr = 0x01010000, .vert = {}, .norm = {}, .mat_no = 0};
    PacketArea area = areaWith(0x28040000);
    EXPECT_EQ(flat_notexture(poly, colouredMaterial(4), area), 32U);
    EXPECT_EQ(hexOf(bytesOfArea(area).substr(0, 20)),
              hexOf(fromHex("08 07 04 28  10 11 12 28  20 00 00 EE  00 00 00 EE  00 00 00 EE")));
    area = areaWith(0x28040000);
    EXPECT_EQ(flat_notexture(poly, MaterialRecord{}, area), 32U);
    EXPECT_EQ(hexOf(bytesOfArea(area).substr(0, 20)),
              hexOf(fromHex("08 07 04 28  00 00 00 28  00 00 00 EE  00 00 00 EE  00 00 00 EE")));
}

TEST(Notexture, LaterPacketsShowThroughTheStaleBytes) {
    const FreshGlobals globals;
    const PolygonRecord plain{.attr = 0x00000000, .vert = vertices, .norm = normals, .mat_no = 0};
    const PolygonRecord graded{.attr = 0x00010000, .vert = vertices, .norm = normals, .mat_no = 0};
    PacketArea area{};
    area[0] = 0x20000000;
    flat_notexture(plain, colouredMaterial(), area);
    area[0] = 0x20040000;
    flat_notexture(graded, colouredMaterial(), area);
    // Bytes 11 and 15 of the plain packet: the upper bytes of V0 and V2.
    EXPECT_EQ(hexOf(bytesOfArea(area).substr(0, 24)),
              hexOf(fromHex("06 05 04 20  10 11 12 20  20 21 22 02  30 31 32 FF  0B 0A 03 02 14 13 FF FF")));
}

TEST(Notexture, DumpsFromLevelTwoOn) {
    const FreshGlobals globals;
    for (const std::uint8_t level : std::array<std::uint8_t, 2>{0, 1}) {
        Dump = level;
        EXPECT_EQ(dumpOf(flat_notexture, smallPolygon(0), 0x20000000, 0), "");
        EXPECT_EQ(dumpOf(gouraud_notexture, smallPolygon(0x00400000), 0x30000000, 0), "");
    }
    for (const std::uint8_t level : std::array<std::uint8_t, 3>{2, 3, 255}) {
        Dump = level;
        EXPECT_NE(dumpOf(flat_notexture, smallPolygon(0), 0x20000000, 0), "");
        EXPECT_NE(dumpOf(gouraud_notexture, smallPolygon(0x00400000), 0x30000000, 0), "");
    }
}

TEST(Notexture, DumpOfALightOffPolygonKeepsTheGradationBitQuiet) {
    const FreshGlobals globals;
    Dump = 2;
    EXPECT_EQ(dumpOf(flat_notexture, smallPolygon(0x01270000), 0x2B030000, 12),
              "= [ 12] FLAT NO TEX TRANS TWO-SIDED 4-POLY(0x2b030305) LIGHT: OFF =\n"
              "\tVert-0: (     0,      0,    100) (#0)\n"
              "\tVert-1: (     1,     -1,    100) (#1)\n"
              "\tVert-2: (     2,     -2,    100) (#2)\n"
              "\tVert-3: (     3,     -3,    100) (#3)\n"
              "\tColor : ( 16  17  18)\n");
    EXPECT_EQ(dumpOf(gouraud_notexture, smallPolygon(0x00430000), 0x31010000, 1000),
              "= [1000] GOURAUD NO TEX 3-POLY(0x31010506) LIGHT: OFF =\n"
              "\tVert-0: (     0,      0,    100) (#0)\n"
              "\tVert-1: (     1,     -1,    100) (#1)\n"
              "\tVert-2: (     2,     -2,    100) (#2)\n"
              "\tColors: ( 16  17  18) ( 32  33  34) ( 48  49  50) \n");
}

TEST(Notexture, DumpMarksOtherTypesAsBad) {
    const FreshGlobals globals;
    Dump = 2;
    for (const std::uint32_t type : {4U, 5U, 6U, 7U}) {
        EXPECT_EQ(dumpOf(flat_notexture, smallPolygon(type << 24), 0x20000000, 0),
                  "= [  0] FLAT NO TEX 4-POLY(0x20000405) LIGHT: ON =\n"
                  " <Bad Data>\n"
                  "\tVert-0: (     0,      0,    100) (#0)\n"
                  "\tVert-1: (     1,     -1,    100) (#1)\n"
                  "\tVert-2: (     2,     -2,    100) (#2)\n"
                  "\tVert-3: (     3,     -3,    100) (#3)\n"
                  "\tNorm-0: (  4096,      4,  -4096) (#4)\n"
                  "\tColor : ( 16  17  18) \n")
            << type;
        EXPECT_EQ(dumpOf(gouraud_notexture, smallPolygon(type << 24 | 0x00410000), 0x30040000, 0),
                  "= [  0] GOURAUD NO TEX GRADATION 4-POLY(0x30040808) LIGHT: ON =\n"
                  " <Bad Data>\n"
                  "\tVert-0: (     0,      0,    100) (#0)\n"
                  "\tVert-1: (     1,     -1,    100) (#1)\n"
                  "\tVert-2: (     2,     -2,    100) (#2)\n"
                  "\tVert-3: (     3,     -3,    100) (#3)\n"
                  "\tNorm-0: (  4096,      4,  -4096) (#4)\n"
                  "\tNorm-1: (  4096,      3,  -4096) (#3)\n"
                  "\tNorm-2: (  4096,      2,  -4096) (#2)\n"
                  "\tNorm-3: (  4096,      1,  -4096) (#1)\n"
                  "\tColors: ( 16  17  18) ( 32  33  34) ( 48  49  50) ( 64  65  66) \n")
            << type;
        // The fourth vertex of this packet is its closing 0.
        EXPECT_EQ(dumpOf(flat_notexture, smallPolygon(type << 24 | 0x00030000), 0x21010000, 0),
                  "= [  0] FLAT NO TEX 4-POLY(0x21010305) LIGHT: OFF =\n"
                  " <Bad Data>\n"
                  "\tVert-0: (     0,      0,    100) (#0)\n"
                  "\tVert-1: (     1,     -1,    100) (#1)\n"
                  "\tVert-2: (     2,     -2,    100) (#2)\n"
                  "\tVert-3: (     0,      0,    100) (#0)\n"
                  "\tColor : ( 16  17  18)\n")
            << type;
    }
}

TEST(Notexture, DumpShowsIndicesAsTheFileHoldsThem) {
    const FreshGlobals globals;
    Dump = 2;
    const PolygonRecord poly{
        .attr = 0x00000000, .vert = {-1, 0x10002, 5, 0}, .norm = {0x10000 + 5, 0, 0, 0}, .mat_no = 0};
    EXPECT_EQ(dumpOf(flat_notexture, poly, 0x20000000, 0),
              "= [  0] FLAT NO TEX 3-POLY(0x20000304) LIGHT: ON =\n"
              "\tVert-0: Bad vertex: 65535\n"
              "\tVert-1: (     2,     -2,    100) (#2)\n"
              "\tVert-2: Bad vertex: 5\n"
              "\tNorm-0: Bad normal: 5\n"
              "\tColor : ( 16  17  18) \n");
}
