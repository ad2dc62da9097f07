// Every packet of a line against its bytes in the file.
#include "tmd/line.hpp"

#include "unit/support.hpp"
#include "unit/tmd/packet_bytes.hpp"

#include "model/params.hpp"
#include "settings/settings.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

struct PacketRow {
    const char* name;
    Builder build;
    std::uint32_t attr;
    std::uint32_t header; // mode and flag, where set_primitive puts them
    const char* bytes;
    Counter* counter;
};

// clang-format off
const std::vector<PacketRow> rows = {
    {"flat", flat_line, 0x02000000, 0x40010000,
     "03 02 01 40  10 11 12 40  03 02 14 13", &nFlatLine},
    {"flat, translucent", flat_line, 0x02200000, 0x42010000,
     "03 02 01 42  10 11 12 42  03 02 14 13", &nFlatTransLine},
    {"gradation", gouraud_line, 0x02010000, 0x50010000,
     "04 03 01 50  10 11 12 50  20 21 22 00  03 02 14 13", &nGouraudLine},
    {"gradation, translucent", gouraud_line, 0x02210000, 0x52010000,
     "04 03 01 52  10 11 12 52  20 21 22 00  03 02 14 13", &nGouraudTransLine},
};
// clang-format on

// With more colours than a line has ends, or the first `bytes` of their bytes.
MaterialRecord colouredMaterial(std::size_t bytes = 12) {
    constexpr std::array<std::uint8_t, 12> colours = {0x10, 0x11, 0x12, 0x20, 0x21, 0x22,
                                                      0x30, 0x31, 0x32, 0x40, 0x41, 0x42};
    MaterialRecord mat{.attr = 0, .shading = 'F', .kind = 'G', .paramCount = 0, .param = 0};
    set_params(mat, std::span(colours).first(bytes));
    return mat;
}

} // namespace

TEST(Line, BuildsEveryPacket) {
    const FreshGlobals globals;
    for (const PacketRow& row : rows) {
        // Rate, two-sided, light off, textured and gouraud do not show.
        for (const std::uint32_t bits : {0U, 0x00180000U, 0x00040000U, 0x00020000U, 0x00C00000U}) {
            SCOPED_TRACE(testing::Message() << row.name << std::hex << " " << bits);
            const PolygonRecord poly{.attr = row.attr | bits, .vert = vertices, .norm = normals, .mat_no = 0};
            const std::string bytes = fromHex(row.bytes);
            expectBuilt({.build = row.build, .poly = poly, .mat = colouredMaterial(), .header = row.header},
                        bytes.size(), bytes, row.counter);
        }
    }
}

TEST(Line, MissingColoursAreBlack) {
    const FreshGlobals globals;
    const PolygonRecord poly{.attr = 0x02010000, .vert = vertices, .norm = {}, .mat_no = 0};
    PacketArea area = areaWith(0x50010000);
    gouraud_line(poly, colouredMaterial(3), area);
    EXPECT_EQ(hexOf(bytesOfArea(area).substr(4, 8)), hexOf(fromHex("10 11 12 50  00 00 00 00")));
}

TEST(Line, DumpsFromLevelTwoOn) {
    const FreshGlobals globals;
    for (const PacketRow& row : rows) {
        const BuilderInput input{.build = row.build,
                                 .poly = smallPolygon(row.attr),
                                 .mat = colouredMaterial(),
                                 .header = row.header};
        for (const std::uint8_t level : std::array<std::uint8_t, 2>{0, 1}) {
            Dump = level;
            EXPECT_EQ(dumpBy(input, 0), "");
        }
        for (const std::uint8_t level : std::array<std::uint8_t, 2>{2, 255}) {
            Dump = level;
            EXPECT_NE(dumpBy(input, 0), "");
        }
    }
}

TEST(Line, DumpsWhatThePacketHolds) {
    const FreshGlobals globals;
    Dump = 2;
    const std::string ends = "\tVert-0: (     0,      0,    100) (#0)\n"
                             "\tVert-1: (     1,     -1,    100) (#1)\n";
    const auto dumpOfRow = [](std::size_t place, std::uint32_t number) {
        const PacketRow& row = rows[place];
        return dumpBy({.build = row.build,
                       .poly = smallPolygon(row.attr),
                       .mat = colouredMaterial(),
                       .header = row.header},
                      number);
    };
    EXPECT_EQ(dumpOfRow(0, 0), "= [  0] FLAT LINE(0x40010203) =\n" + ends + "\tColor : ( 16  17  18)\n");
    EXPECT_EQ(dumpOfRow(1, 7),
              "= [  7] FLAT TRANS LINE(0x42010203) =\n" + ends + "\tColor : ( 16  17  18)\n");
    EXPECT_EQ(dumpOfRow(2, 10),
              "= [ 10] GRADATION LINE(0x50010304) =\n" + ends + "\tColor : ( 16  17  18)-( 32  33  34)\n");
    EXPECT_EQ(dumpOfRow(3, 1000), "= [1000] GRADATION TRANS LINE(0x52010304) =\n" + ends +
                                      "\tColor : ( 16  17  18)-( 32  33  34)\n");
}

TEST(Line, DumpMarksBadVertices) {
    const FreshGlobals globals;
    Dump = 2;
    const PolygonRecord poly{.attr = 0x02000000, .vert = {4, 5, 0, 0}, .norm = {}, .mat_no = 0};
    EXPECT_EQ(dumpBy({.build = flat_line, .poly = poly, .mat = colouredMaterial(), .header = 0x40010000}, 0),
              "= [  0] FLAT LINE(0x40010203) =\n"
              "\tVert-0: (     4,     -4,    100) (#4)\n"
              "\tVert-1: Bad vertex: 5\n"
              "\tColor : ( 16  17  18)\n");
}
