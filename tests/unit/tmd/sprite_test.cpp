// Every packet of a sprite against its bytes in the file.
#include "tmd/sprite.hpp"

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

struct PacketRow {
    std::int32_t width;
    std::int32_t height;
    std::size_t size;
    const char* bytes; // what the area then holds, with the size behind the packet of a fixed one
    Counter* opaque;
    Counter* translucent;
};

// Texture 1 lies at (650, 259) with 8 bits a texel: U is u + 14, V is v + 03. The texel is (01, 02).
// clang-format off
const std::vector<PacketRow> rows = {
    {0x0102, 0x0304, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  02 01 04 03", &nSpriteFree, &nTransSpriteFree},
    {1, 1, 12, "04 02 01 6C  03 02 1A 09  15 05 CD AB  01 00 01 00", &nSprite1, &nTransSprite1},
    {8, 8, 12, "04 02 01 74  03 02 1A 09  15 05 CD AB  08 00 08 00", &nSprite8, &nTransSprite8},
    {16, 16, 12, "04 02 01 7C  03 02 1A 09  15 05 CD AB  10 00 10 00", &nSprite16, &nTransSprite16},
    // Of equal sides, but not of a size that has a form of its own.
    {0, 0, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  00 00 00 00", &nSpriteFree, &nTransSpriteFree},
    {2, 2, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  02 00 02 00", &nSpriteFree, &nTransSpriteFree},
    {32, 32, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  20 00 20 00", &nSpriteFree, &nTransSpriteFree},
    {-1, -1, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  FF FF FF FF", &nSpriteFree, &nTransSpriteFree},
    // Of sides that differ.
    {8, 16, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  08 00 10 00", &nSpriteFree, &nTransSpriteFree},
    {16, 8, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  10 00 08 00", &nSpriteFree, &nTransSpriteFree},
    {1, 8, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  01 00 08 00", &nSpriteFree, &nTransSpriteFree},
    {1, 0, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  01 00 00 00", &nSpriteFree, &nTransSpriteFree},
    // The sides are compared as they are, and cut to 16 bits afterwards.
    {0x10008, 0x10008, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  08 00 08 00", &nSpriteFree, &nTransSpriteFree},
    {0x10001, 1, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  01 00 01 00", &nSpriteFree, &nTransSpriteFree},
    {16, 0x10010, 16, "05 03 01 64  03 02 1A 09  15 05 CD AB  10 00 10 00", &nSpriteFree, &nTransSpriteFree},
};
// clang-format on

const TextureRecord texture = {.pmode = 9,
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

MaterialRecord texturedMaterial(std::array<std::uint8_t, 9> list = {1, 0x01, 0x02, 3, 4, 5, 6, 7, 8}) {
    MaterialRecord mat{.attr = 0, .shading = 'F', .kind = 'T', .paramCount = 0, .param = 0};
    set_params(mat, list);
    return mat;
}

PolygonRecord spriteOf(std::uint32_t bits, std::int32_t width, std::int32_t height) {
    return {
        .attr = 0x03800000 | bits, .vert = {0x00050203, width, height, 0x7777}, .norm = normals, .mat_no = 0};
}

// Expects the packet of `row` with the low byte `lowTsb` of TSB, from a header with the mode `mode`.
void expectPacket(const PacketRow& row, std::uint32_t bits, std::uint32_t mode, std::uint8_t lowTsb) {
    SCOPED_TRACE(testing::Message() << row.width << "x" << row.height << std::hex << ", " << bits);
    std::string expected = fromHex(row.bytes);
    expected[3] = static_cast<char>(static_cast<unsigned char>(expected[3]) | (mode & 2));
    expected[6] = static_cast<char>(lowTsb);
    expectBuilt({.build = sprite,
                 .poly = spriteOf(bits, row.width, row.height),
                 .mat = texturedMaterial(),
                 .header = mode << 24 | 0x00010000},
                row.size, expected, (mode & 2) != 0 ? row.translucent : row.opaque);
}

std::string packetWith(const MaterialRecord& mat, std::uint32_t bits = 0) {
    PacketArea area = areaWith(0x64010000);
    sprite(spriteOf(bits, 3, 4), mat, area);
    return bytesOfArea(area).substr(0, 16);
}

std::string dumpOf(std::uint32_t bits, std::array<std::int32_t, 3> numbers, std::uint32_t header) {
    const PolygonRecord poly{
        .attr = 0x03800000 | bits, .vert = {numbers[0], numbers[1], numbers[2], 0}, .norm = {}, .mat_no = 0};
    return dumpBy({.build = sprite, .poly = poly, .mat = texturedMaterial(), .header = header}, 3);
}

} // namespace

TEST(Sprite, BuildsEveryPacket) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    for (const PacketRow& row : rows) {
        expectPacket(row, 0, 0x64, 0x1A);
        // The rate of an opaque sprite does not show.
        expectPacket(row, 0x00180000, 0x64, 0x1A);
        expectPacket(row, 0x00200000, 0x66, 0x1A);
        expectPacket(row, 0x00280000, 0x66, 0x3A);
        expectPacket(row, 0x00300000, 0x66, 0x5A);
        expectPacket(row, 0x00380000, 0x66, 0x7A);
        // Neither do two-sided, light off, gouraud and gradation.
        expectPacket(row, 0x00470000, 0x64, 0x1A);
    }
}

TEST(Sprite, ClearsTheSizeBitsFirst) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    for (const PacketRow& row : rows) {
        for (const std::uint32_t size : {0x08U, 0x10U, 0x18U}) {
            expectPacket(row, 0, 0x64 | size, 0x1A);
            expectPacket(row, 0x00200000, 0x66 | size, 0x1A);
        }
    }
}

TEST(Sprite, ReadsTheTexelFromTheTexturesPlaceInItsPage) {
    const FreshGlobals globals;
    struct Row {
        std::uint8_t pmode;
        std::uint32_t x;
        std::uint32_t y;
        const char* uv; // of the texel (10, 250)
    };
    const std::vector<Row> places = {
        {0, 640, 0, "0A FA"}, {0, 650, 0, "32 FA"}, {8, 650, 0, "32 FA"},    {1, 650, 0, "1E FA"},
        {9, 650, 0, "1E FA"}, {2, 650, 0, "14 FA"}, {3, 650, 0, "14 FA"},    {10, 650, 0, "14 FA"},
        {8, 63, 5, "06 FF"},  {9, 63, 6, "88 00"},  {0x18, 650, 0, "14 FA"}, {2, 64, 480, "0A DA"},
    };
    const MaterialRecord mat = texturedMaterial({0, 10, 250});
    for (const Row& row : places) {
        TextureRecord record{};
        record.pmode = row.pmode;
        record.pixel_x = row.x;
        record.pixel_y = row.y;
        const TextureTable table{record};
        for (const std::int32_t layout : {0, 1, 2}) {
            arcade = layout;
            EXPECT_EQ(hexOf(packetWith(mat).substr(8, 2)), hexOf(fromHex(row.uv)))
                << +row.pmode << " at " << row.x << ", " << row.y;
        }
    }
}

TEST(Sprite, MergesTheRateWhereTheLayoutHasIt) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, TextureRecord{}};
    struct Row {
        std::int32_t layout;
        std::uint32_t bits;
        const char* tsb;
    };
    const std::vector<Row> rates = {
        {0, 0x00200000, "00 00"}, {0, 0x00280000, "20 00"}, {0, 0x00300000, "40 00"},
        {0, 0x00380000, "60 00"}, {1, 0x00200000, "00 00"}, {1, 0x00280000, "80 00"},
        {1, 0x00300000, "00 01"}, {1, 0x00380000, "80 01"}, {2, 0x00200000, "00 00"},
        {2, 0x00280000, "20 00"}, {2, 0x00300000, "40 00"}, {2, 0x00380000, "60 00"},
        {0, 0x00180000, "00 00"}, {1, 0x00180000, "00 00"}, {2, 0x00180000, "00 00"},
    };
    for (const Row& row : rates) {
        arcade = row.layout;
        EXPECT_EQ(hexOf(packetWith(texturedMaterial(), row.bits).substr(6, 2)), hexOf(fromHex(row.tsb)))
            << "layout " << row.layout << std::hex << ", bits " << row.bits;
    }
}

TEST(Sprite, WithoutItsTextureTakesOneThatIsAllZero) {
    const FreshGlobals globals;
    const char* expected = "05 03 01 64  03 02 00 00  01 02 00 00  03 00 04 00";
    EXPECT_EQ(hexOf(packetWith(texturedMaterial())), hexOf(fromHex(expected)));
    const TextureTable table{texture};
    EXPECT_EQ(hexOf(packetWith(texturedMaterial())), hexOf(fromHex(expected)));
}

TEST(Sprite, DumpsFromLevelTwoOn) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    for (const std::uint8_t level : std::array<std::uint8_t, 2>{0, 1}) {
        Dump = level;
        EXPECT_EQ(dumpOf(0, {2, 8, 16}, 0x64010000), "");
    }
    for (const std::uint8_t level : std::array<std::uint8_t, 2>{2, 255}) {
        Dump = level;
        EXPECT_NE(dumpOf(0, {2, 8, 16}, 0x64010000), "");
    }
}

TEST(Sprite, DumpsWhatThePacketHolds) {
    const FreshGlobals globals;
    const TextureTable table{TextureRecord{}, texture};
    Dump = 2;
    EXPECT_EQ(dumpOf(0, {2, 8, 16}, 0x64010000), "= [  3] 3D SPRITE(0x64010305) =\n"
                                                 "\tVert-0: (     2,     -2,    100) (#2)\n"
                                                 "\t(u v, wxh) = (21, 5, 8x16)\n"
                                                 "\tPixel mode  : 16bit\n"
                                                 "\tTexture Page: 26   Texture No. :  1\n");
    // A fixed size is shown too.
    EXPECT_EQ(dumpOf(0x00300000, {5, 16, 16}, 0x66010000), "= [  3] TRANS 3D SPRITE(0x7e010204) =\n"
                                                           "\tVert-0: Bad vertex: 5\n"
                                                           "\t(u v, wxh) = (21, 5, 16x16)\n"
                                                           "\tPixel mode  : 16bit\n"
                                                           "\tTexture Page: 26   Texture No. :  1\n"
                                                           "\tTranslucency: 100% back - 100% polygon\n");
    EXPECT_EQ(dumpOf(0, {0, -1, 0x10008}, 0x64010000), "= [  3] 3D SPRITE(0x64010305) =\n"
                                                       "\tVert-0: (     0,      0,    100) (#0)\n"
                                                       "\t(u v, wxh) = (21, 5, 65535x8)\n"
                                                       "\tPixel mode  : 16bit\n"
                                                       "\tTexture Page: 26   Texture No. :  1\n");
}
