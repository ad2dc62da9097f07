// Every packet of a textured polygon against its bytes in the file.
#include "tmd/texture.hpp"

#include "unit/support.hpp"
#include "unit/textures.hpp"
#include "unit/tmd/packet_bytes.hpp"

#include "model/params.hpp"
#include "settings/settings.hpp"

#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

// Texture 1; the texels, u then v, of the four vertices; the colours of the four vertices.
constexpr std::array<std::uint8_t, 21> params = {0x01, 0x01, 0x02, 0x11, 0x12, 0x21, 0x22,
                                                 0xE0, 0xFE, 0x10, 0x11, 0x12, 0x20, 0x21,
                                                 0x22, 0x30, 0x31, 0x32, 0x40, 0x41, 0x42};

// A texture of 4 bits whose image lies at (650, 259): 10 units, 40 texels, into its page, and 3 rows from a
// multiple of 256. So U is u + 28 and V is v + 03, in eight bits.
const TextureRecord texture = {.pmode = 8,
                               .clut_id = 0xABCD,
                               .clut_size = 0,
                               .clut_x = 0,
                               .clut_y = 0,
                               .clut_w = 0,
                               .clut_h = 0,
                               .tpage = 0x091A,
                               .pixel_size = 0,
                               .pixel_x = 650,
                               .pixel_y = 259,
                               .pixel_w = 0,
                               .pixel_h = 0};

// clang-format off
const std::vector<ExpectedPacket> flatRows = {
    {"lit triangle", flat_texture, 0x00800000, 0x24000000,
     "07 05 00 24  29 05 CD AB  39 15 1A 09  49 25 00 00  0B 0A 03 02 14 13 FF FF",
     &nFlat3Tex, &nFlatTrans3Tex},
    {"lit quadrangle", flat_texture, 0x01800000, 0x2C000000,
     "09 07 00 2C  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00  0B 0A 03 02 14 13 FF FF 01 80 00 00",
     &nFlat4Tex, &nFlatTrans4Tex},
    {"two-sided triangle", flat_texture, 0x00840000, 0x24020000,
     "07 05 02 24  29 05 CD AB  39 15 1A 09  49 25 00 00  0B 0A 03 02 14 13 FF FF",
     &nFlat3Tex, &nFlatTrans3Tex},
    // Lit packets have no colours, so the gradation bit does not show.
    {"lit triangle with the gradation bit", flat_texture, 0x00810000, 0x24000000,
     "07 05 00 24  29 05 CD AB  39 15 1A 09  49 25 00 00  0B 0A 03 02 14 13 FF FF",
     &nFlat3Tex, &nFlatTrans3Tex},
    {"lit quadrangle with the gradation bit", flat_texture, 0x01810000, 0x2C000000,
     "09 07 00 2C  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00  0B 0A 03 02 14 13 FF FF 01 80 00 00",
     &nFlat4Tex, &nFlatTrans4Tex},
    // One colour, whatever the gradation bit says.
    {"light-off triangle", flat_texture, 0x00820000, 0x25010000,
     "07 06 01 25  29 05 CD AB  39 15 1A 09  49 25 00 00  10 11 12 00  03 02 14 13 FF FF 00 00",
     &nFlat3TexNoLight, &nFlatTrans3TexNoLight},
    {"light-off quadrangle", flat_texture, 0x01820000, 0x2D010000,
     "09 07 01 2D  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00  10 11 12 00  03 02 14 13 FF FF 01 80",
     &nFlat4TexNoLight, &nFlatTrans4TexNoLight},
    {"light-off triangle with the gradation bit", flat_texture, 0x00830000, 0x25010000,
     "07 06 01 25  29 05 CD AB  39 15 1A 09  49 25 00 00  10 11 12 00  03 02 14 13 FF FF 00 00",
     &nFlat3TexNoLight, &nFlatTrans3TexNoLight},
    {"light-off quadrangle with the gradation bit", flat_texture, 0x01830000, 0x2D010000,
     "09 07 01 2D  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00  10 11 12 00  03 02 14 13 FF FF 01 80",
     &nFlat4TexNoLight, &nFlatTrans4TexNoLight},
};

const std::vector<ExpectedPacket> gouraudRows = {
    {"lit triangle", gouraud_texture, 0x00C00000, 0x34000000,
     "09 06 00 34  29 05 CD AB  39 15 1A 09  49 25 00 00  0B 0A 03 02 0D 0C 14 13 FE FF FF FF",
     &nGouraud3Tex, &nGouraudTrans3Tex},
    {"lit quadrangle", gouraud_texture, 0x01C00000, 0x3C000000,
     "0C 08 00 3C  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00"
     "  0B 0A 03 02 0D 0C 14 13 FE FF FF FF 1F 1E 01 80",
     &nGouraud4Tex, &nGouraudTrans4Tex},
    {"lit triangle with the gradation bit", gouraud_texture, 0x00C10000, 0x34000000,
     "09 06 00 34  29 05 CD AB  39 15 1A 09  49 25 00 00  0B 0A 03 02 0D 0C 14 13 FE FF FF FF",
     &nGouraud3Tex, &nGouraudTrans3Tex},
    {"two-sided quadrangle with the gradation bit", gouraud_texture, 0x01C50000, 0x3C020000,
     "0C 08 02 3C  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00"
     "  0B 0A 03 02 0D 0C 14 13 FE FF FF FF 1F 1E 01 80",
     &nGouraud4Tex, &nGouraudTrans4Tex},
    // The triangle leaves the fourth byte of its first colour alone, the quadrangle clears it.
    {"light-off triangle", gouraud_texture, 0x00C20000, 0x35010000,
     "09 08 01 35  29 05 CD AB  39 15 1A 09  49 25 00 00"
     "  10 11 12 EE  10 11 12 00  10 11 12 00  03 02 14 13 FF FF 00 00",
     &nGouraud3TexNoLight, &nGouraudTrans3TexNoLight},
    {"light-off quadrangle", gouraud_texture, 0x01C20000, 0x3D010000,
     "0C 0A 01 3D  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00"
     "  10 11 12 00  10 11 12 00  10 11 12 00  10 11 12 00  03 02 14 13 FF FF 01 80",
     &nGouraud4TexNoLight, &nGouraudTrans4TexNoLight},
    {"light-off gradation triangle", gouraud_texture, 0x00C30000, 0x35010000,
     "09 08 01 35  29 05 CD AB  39 15 1A 09  49 25 00 00"
     "  10 11 12 EE  20 21 22 00  30 31 32 00  03 02 14 13 FF FF 00 00",
     &nGouraud3TexNoLight, &nGouraudTrans3TexNoLight},
    {"light-off gradation quadrangle", gouraud_texture, 0x01C30000, 0x3D010000,
     "0C 0A 01 3D  29 05 CD AB  39 15 1A 09  49 25 00 00  08 01 00 00"
     "  10 11 12 00  20 21 22 00  30 31 32 00  40 41 42 00  03 02 14 13 FF FF 01 80",
     &nGouraud4TexNoLight, &nGouraudTrans4TexNoLight},
};
// clang-format on

MaterialRecord texturedMaterial(std::span<const std::uint8_t> list = params) {
    MaterialRecord mat{.attr = 0, .shading = 'F', .kind = 'H', .paramCount = 0, .param = 0};
    set_params(mat, list);
    return mat;
}

// Builds the packet of `row` with the attribute word `attr` and expects its bytes, with `mode` bits more in
// the header and TSB 091A or, by its low byte, another.
void expectPacket(const ExpectedPacket& row, std::uint32_t attr, std::uint32_t mode, std::uint8_t lowTsb,
                  Counter* counter) {
    SCOPED_TRACE(row.name + std::string(mode != 0 ? ", translucent" : ""));
    std::string expected = fromHex(row.bytes);
    expected[3] = static_cast<char>(static_cast<unsigned char>(expected[3]) | mode);
    expected[10] = static_cast<char>(lowTsb);
    const PolygonRecord poly{.attr = attr, .vert = vertices, .norm = normals, .mat_no = 0};
    expectBuilt(
        {.build = row.build, .poly = poly, .mat = texturedMaterial(), .header = row.header | mode << 24},
        expected.size(), expected, counter);
}

void expectPackets(const std::vector<ExpectedPacket>& rows, std::uint32_t type) {
    for (const ExpectedPacket& row : rows) {
        const std::uint32_t attr = row.attr | type;
        expectPacket(row, attr, 0, 0x1A, row.opaque);
        // The rate of an opaque polygon does not show.
        expectPacket(row, attr | 0x00180000, 0, 0x1A, row.opaque);
        expectPacket(row, attr | trans, 2, 0x1A, row.translucent);
        expectPacket(row, attr | trans | 0x00080000, 2, 0x3A, row.translucent);
        expectPacket(row, attr | trans | 0x00100000, 2, 0x5A, row.translucent);
        expectPacket(row, attr | trans | 0x00180000, 2, 0x7A, row.translucent);
    }
}

// The packet of a flat lit quadrangle of the attribute bits `bits` more.
std::string packetWith(std::span<const std::uint8_t> list, std::uint32_t bits = 0) {
    const PolygonRecord poly{.attr = 0x01800000 | bits, .vert = {}, .norm = {}, .mat_no = 0};
    PacketArea area = areaWith(0x2C000000);
    EXPECT_EQ(flat_texture(poly, texturedMaterial(list), area), 32U);
    return bytesOfArea(area).substr(0, 32);
}

std::string dumpOf(Builder build, std::uint32_t attr, std::uint32_t header, std::uint32_t number) {
    return dumpBy({.build = build, .poly = smallPolygon(attr), .mat = texturedMaterial(), .header = header},
                  number);
}

constexpr char threeVertices[] = "\tVert-0: (     0,      0,    100) (#0)\n"
                                 "\tVert-1: (     1,     -1,    100) (#1)\n"
                                 "\tVert-2: (     2,     -2,    100) (#2)\n";
constexpr char fourthVertex[] = "\tVert-3: (     3,     -3,    100) (#3)\n";
constexpr char firstNormal[] = "\tNorm-0: (  4096,      4,  -4096) (#4)\n";
constexpr char moreNormals[] = "\tNorm-1: (  4096,      3,  -4096) (#3)\n"
                               "\tNorm-2: (  4096,      2,  -4096) (#2)\n";
constexpr char fourthNormal[] = "\tNorm-3: (  4096,      1,  -4096) (#1)\n";
constexpr char threeTexels[] = "\tUV 0-2: ( 41   5) ( 57  21) ( 73  37)\n";
constexpr char fourTexels[] = "\tUV 0-3: ( 41   5) ( 57  21) ( 73  37) (  8   1)\n";
constexpr char page[] = "\tPixel mode  : 16bit\n"
                        "\tTexture Page: 26   Texture No. :  1\n";

} // namespace

TEST(FlatTexture, BuildsEveryPacket) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    expectPackets(flatRows, 0);
}

TEST(GouraudTexture, BuildsEveryPacket) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    expectPackets(gouraudRows, 0);
}

TEST(Texture, BuildsOtherTypesInTheFormOfTriangles) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    for (const std::vector<ExpectedPacket>& rows : {flatRows, gouraudRows}) {
        for (const ExpectedPacket& row : rows) {
            if ((row.attr & 0x01000000) != 0) {
                continue;
            }
            for (const std::uint32_t type : {4U, 5U, 6U, 7U}) {
                SCOPED_TRACE(type);
                expectPackets({row}, type << 24);
            }
        }
    }
}

TEST(Texture, ReadsTheTexelsFromTheTexturesPlaceInItsPage) {
    const FreshGlobals globals;
    struct Row {
        std::uint8_t pmode;
        std::uint32_t x;
        std::uint32_t y;
        const char* first; // U0 V0 of texel (10, 20)
        const char* last;  // U3 V3 of texel (255, 254)
    };
    const std::vector<Row> rows = {
        {0, 640, 0, "0A 14", "FF FE"},
        {0, 650, 0, "32 14", "27 FE"}, // 10 * 4 = 40
        {8, 650, 0, "32 14", "27 FE"},
        {1, 650, 0, "1E 14", "13 FE"}, // 20
        {9, 650, 0, "1E 14", "13 FE"},
        {2, 650, 0, "14 14", "09 FE"}, // 10
        {3, 650, 0, "14 14", "09 FE"},
        // Nothing but 0, 8, 1 and 9 counts as 4 or 8 bits.
        {4, 650, 0, "14 14", "09 FE"},
        {5, 650, 0, "14 14", "09 FE"},
        {10, 650, 0, "14 14", "09 FE"},
        {11, 650, 0, "14 14", "09 FE"},
        {12, 650, 0, "14 14", "09 FE"},
        {0x10, 650, 0, "14 14", "09 FE"},
        {0x18, 650, 0, "14 14", "09 FE"},
        {0x81, 650, 0, "14 14", "09 FE"},
        {0xFF, 650, 0, "14 14", "09 FE"},
        {0, 63, 0, "06 14", "FB FE"}, // 252
        {1, 63, 0, "88 14", "7D FE"}, // 126
        {2, 63, 0, "49 14", "3E FE"},
        {0, 64, 0, "0A 14", "FF FE"},
        {2, 0, 255, "0A 13", "FF FD"},
        {2, 0, 256, "0A 14", "FF FE"},
        {2, 0, 480, "0A F4", "FF DE"}, // 480 is 256 + 224
        // A position of -1, as its half word is read.
        {0, 0xFFFFFFFF, 0xFFFFFFFF, "06 13", "FB FD"},
        {2, 0xFFFFFFFF, 0xFFFFFFFF, "49 13", "3E FD"},
    };
    constexpr std::array<std::uint8_t, 21> list = {0, 10, 20, 0, 0, 0, 0, 255, 254};
    for (const Row& row : rows) {
        TextureRecord record{};
        record.pmode = row.pmode;
        record.pixel_x = row.x;
        record.pixel_y = row.y;
        const TextureTable table{record};
        // The layout of the frame buffer plays no part.
        for (const std::int32_t layout : {0, 1, 2}) {
            arcade = layout;
            const std::string bytes = packetWith(list);
            EXPECT_EQ(hexOf(bytes.substr(4, 2)), hexOf(fromHex(row.first))) << +row.pmode << " at " << row.x;
            EXPECT_EQ(hexOf(bytes.substr(16, 2)), hexOf(fromHex(row.last))) << +row.pmode << " at " << row.x;
        }
    }
}

TEST(Texture, MergesTheRateWhereTheLayoutHasIt) {
    const FreshGlobals globals;
    struct Row {
        std::int32_t layout;
        std::uint32_t tpage;
        std::uint32_t bits; // translucency and its rate
        const char* tsb;
    };
    const std::vector<Row> rows = {
        {0, 0x0000, 0x00200000, "00 00"},
        {0, 0x0000, 0x00280000, "20 00"},
        {0, 0x0000, 0x00300000, "40 00"},
        {0, 0x0000, 0x00380000, "60 00"},
        {0, 0x0000, 0x00180000, "00 00"},
        {1, 0x0000, 0x00200000, "00 00"},
        {1, 0x0000, 0x00280000, "80 00"},
        {1, 0x0000, 0x00300000, "00 01"},
        {1, 0x0000, 0x00380000, "80 01"},
        {1, 0x0000, 0x00180000, "00 00"},
        {2, 0x0000, 0x00200000, "00 00"},
        {2, 0x0000, 0x00280000, "20 00"},
        {2, 0x0000, 0x00300000, "40 00"},
        {2, 0x0000, 0x00380000, "60 00"},
        {2, 0x0000, 0x00180000, "00 00"},
        // Merged, not added.
        {0, 0x019F, 0x00380000, "FF 01"},
        {0, 0x0060, 0x00280000, "60 00"},
        {0, 0x0020, 0x00300000, "60 00"},
        {1, 0x067F, 0x00380000, "FF 07"},
        {1, 0x0180, 0x00280000, "80 01"},
        {2, 0x099F, 0x00300000, "DF 09"},
        // A code that needs more than 16 bits loses the rest.
        {0, 0x7FFF1234, 0x00000000, "34 12"},
    };
    constexpr std::array<std::uint8_t, 21> list = {};
    for (const Row& row : rows) {
        TextureRecord record{};
        record.tpage = row.tpage;
        const TextureTable table{record};
        arcade = row.layout;
        EXPECT_EQ(hexOf(packetWith(list, row.bits).substr(10, 2)), hexOf(fromHex(row.tsb)))
            << "layout " << row.layout << std::hex << ", page " << row.tpage << ", bits " << row.bits;
    }
}

TEST(Texture, KeepsTheLowHalfOfTheClutCode) {
    const FreshGlobals globals;
    TextureRecord record{};
    record.clut_id = 0xFFFF8040;
    const TextureTable table{record};
    EXPECT_EQ(hexOf(packetWith(std::array<std::uint8_t, 21>{}).substr(6, 2)), hexOf(fromHex("40 80")));
}

TEST(Texture, TakesTheTextureOfTheMaterialsNumber) {
    const FreshGlobals globals;
    std::array<TextureRecord, 3> records{};
    for (std::uint32_t i = 0; i < 3; ++i) {
        records[i].tpage = 0x11 * (i + 1);
    }
    const TextureTable table{records[0], records[1], records[2]};
    struct Row {
        std::uint8_t number;
        const char* tsb;
    };
    // Textures that the object does not have are all zero.
    const std::vector<Row> rows = {{0, "11 00"}, {1, "22 00"}, {2, "33 00"}, {3, "00 00"}, {255, "00 00"}};
    for (const Row& row : rows) {
        const std::array<std::uint8_t, 21> list = {row.number};
        EXPECT_EQ(hexOf(packetWith(list).substr(10, 2)), hexOf(fromHex(row.tsb))) << +row.number;
    }
}

TEST(Texture, WithoutTexturesTakesOneThatIsAllZero) {
    const FreshGlobals globals;
    // 4 bits at (0, 0), and still the rate.
    EXPECT_EQ(hexOf(packetWith(params, 0x00380000)),
              hexOf(fromHex("09 07 00 2C  01 02 00 00  11 12 60 00  21 22 00 00  E0 FE 00 00"
                            "  00 00 00 00 00 00 00 00 00 00 00 00")));
}

TEST(Texture, LaterPacketsShowThroughTheStaleByte) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    const PolygonRecord lit{.attr = 0x00C00000, .vert = vertices, .norm = normals, .mat_no = 0};
    const PolygonRecord dark{.attr = 0x00C20000, .vert = vertices, .norm = normals, .mat_no = 0};
    PacketArea area{};
    area[0] = 0x34000000;
    gouraud_texture(lit, texturedMaterial(), area);
    area[0] = 0x35010000;
    gouraud_texture(dark, texturedMaterial(), area);
    // Byte 19 of the lit packet: the upper byte of V0.
    EXPECT_EQ(hexOf(bytesOfArea(area).substr(16, 4)), hexOf(fromHex("10 11 12 02")));
    area = PacketArea{};
    area[0] = 0x35010000;
    gouraud_texture(dark, texturedMaterial(), area);
    EXPECT_EQ(hexOf(bytesOfArea(area).substr(16, 4)), hexOf(fromHex("10 11 12 00")));
}

TEST(Texture, DumpsFromLevelTwoOn) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    for (const std::uint8_t level : std::array<std::uint8_t, 2>{0, 1}) {
        Dump = level;
        EXPECT_EQ(dumpOf(flat_texture, 0x00800000, 0x24000000, 0), "");
        EXPECT_EQ(dumpOf(gouraud_texture, 0x00C00000, 0x34000000, 0), "");
    }
    for (const std::uint8_t level : std::array<std::uint8_t, 3>{2, 3, 255}) {
        Dump = level;
        EXPECT_NE(dumpOf(flat_texture, 0x00800000, 0x24000000, 0), "");
        EXPECT_NE(dumpOf(gouraud_texture, 0x00C00000, 0x34000000, 0), "");
    }
}

TEST(FlatTexture, DumpsWhatThePacketHolds) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    Dump = 2;
    EXPECT_EQ(dumpOf(flat_texture, 0x00810000, 0x24000000, 0),
              "= [  0] FLAT TEX 3-POLY(0x24000507) LIGHT: ON =\n" + std::string(threeVertices) + firstNormal +
                  threeTexels + page);
    EXPECT_EQ(dumpOf(flat_texture, 0x01A40000, 0x2E020000, 12),
              "= [ 12] FLAT TEX TRANS TWO-SIDED 4-POLY(0x2e020709) LIGHT: ON =\n" +
                  std::string(threeVertices) + fourthVertex + firstNormal + fourTexels + page +
                  "\tTranslucency: 50% back + 50% polygon\n");
    EXPECT_EQ(dumpOf(flat_texture, 0x00830000, 0x25010000, 1000),
              "= [1000] FLAT TEX 3-POLY(0x25010607) LIGHT: OFF =\n" + std::string(threeVertices) +
                  threeTexels + "\tColor : ( 16  17  18) \n" + page);
    EXPECT_EQ(dumpOf(flat_texture, 0x01BA0000, 0x2F010000, 1),
              "= [  1] FLAT TEX TRANS 4-POLY(0x2f010709) LIGHT: OFF =\n" + std::string(threeVertices) +
                  fourthVertex + fourTexels + "\tColor : ( 16  17  18) \n" + page +
                  "\tTranslucency: 100% back + 25% polygon\n");
}

TEST(GouraudTexture, DumpsWhatThePacketHolds) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    Dump = 2;
    EXPECT_EQ(dumpOf(gouraud_texture, 0x00C00000, 0x34000000, 0),
              "= [  0] GOURAUD TEX 3-POLY(0x34000609) LIGHT: ON =\n" + std::string(threeVertices) +
                  firstNormal + moreNormals + threeTexels + page);
    EXPECT_EQ(dumpOf(gouraud_texture, 0x01C50000, 0x3C020000, 0),
              "= [  0] GOURAUD TEX TWO-SIDES 4-POLY(0x3c02080c) LIGHT: ON =\n" + std::string(threeVertices) +
                  fourthVertex + firstNormal + moreNormals + fourthNormal + fourTexels + page);
    EXPECT_EQ(dumpOf(gouraud_texture, 0x00C20000, 0x35010000, 0),
              "= [  0] GOURAUD TEX 3-POLY(0x35010809) LIGHT: OFF =\n" + std::string(threeVertices) +
                  threeTexels + "\tColor : ( 16  17  18) ( 16  17  18) ( 16  17  18)\n" + page);
    EXPECT_EQ(dumpOf(gouraud_texture, 0x01EF0000, 0x3F030000, 99),
              "= [ 99] GOURAUD TEX TRANS TWO-SIDES 4-POLY(0x3f030a0c) LIGHT: OFF =\n" +
                  std::string(threeVertices) + fourthVertex + fourTexels +
                  "\tColor : ( 16  17  18) ( 32  33  34) ( 48  49  50) ( 64  65  66)\n" + page +
                  "\tTranslucency: 100% back + 100% polygon\n");
}

TEST(Texture, DumpMarksOtherTypesAsBadAndShowsTheTriangle) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    Dump = 2;
    for (const std::uint32_t type : {4U, 5U, 6U, 7U}) {
        EXPECT_EQ(dumpOf(flat_texture, type << 24 | 0x00800000, 0x24000000, 0),
                  "= [  0] FLAT TEX 4-POLY(0x24000507) LIGHT: ON =\n <Bad Data>\n" +
                      std::string(threeVertices) + firstNormal + threeTexels + page);
        EXPECT_EQ(dumpOf(flat_texture, type << 24 | 0x00820000, 0x25010000, 0),
                  "= [  0] FLAT TEX 4-POLY(0x25010607) LIGHT: OFF =\n <Bad Data>\n" +
                      std::string(threeVertices) + threeTexels + "\tColor : ( 16  17  18) \n" + page);
        EXPECT_EQ(dumpOf(gouraud_texture, type << 24 | 0x00C00000, 0x34000000, 0),
                  "= [  0] GOURAUD TEX 4-POLY(0x34000609) LIGHT: ON =\n <Bad Data>\n" +
                      std::string(threeVertices) + firstNormal + moreNormals + threeTexels + page);
        EXPECT_EQ(dumpOf(gouraud_texture, type << 24 | 0x00C30000, 0x35010000, 0),
                  "= [  0] GOURAUD TEX 4-POLY(0x35010809) LIGHT: OFF =\n <Bad Data>\n" +
                      std::string(threeVertices) + threeTexels +
                      "\tColor : ( 16  17  18) ( 32  33  34) ( 48  49  50)\n" + page);
    }
}
