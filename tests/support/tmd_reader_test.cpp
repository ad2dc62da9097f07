// The reader against files written out by hand: two sound ones, and broken copies of them, each
// with the complaints that it must raise and no others.
#include "support/tmd_reader.hpp"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "runner/case_file.hpp"

namespace {

using Bytes = std::vector<unsigned char>;
using Complaints = std::vector<std::string>;
using Indices = std::vector<std::uint16_t>;

Bytes bytesOf(const std::string& hexLines) {
    const ParsedCase parsed = parseCase("# Bytes.\n--- args\n--- hex bytes\n" + hexLines, "literal");
    std::string error = parsed.error;
    const std::string bytes = error.empty() ? decodeSection(parsed.file.inputs.at(0), {}, error).bytes : "";
    EXPECT_EQ(error, "");
    return {bytes.begin(), bytes.end()};
}

// Two objects: a flat and a flat gradation triangle; a gouraud light-off quadrangle.
Bytes twoObjects() {
    return bytesOf(R"(
41 00 00 00  00 00 00 00  02 00 00 00   # ID, flags, 2 objects
7C 00 00 00  03 00 00 00                # 12: vert_top 124 = 56 + 68, n_vert 3
B4 00 00 00  01 00 00 00                # 20: normal_top 180 = 124 + 7 * 8, n_normal 1
38 00 00 00  02 00 00 00                # 28: primitive_top 56 = 2 * 28, n_primitive 2
01 00 00 00                             # 36: scale 1
94 00 00 00  04 00 00 00                # 40: vert_top 148 = 124 + 3 * 8, n_vert 4
BC 00 00 00  01 00 00 00                # 48: normal_top 188, n_normal 1
60 00 00 00  01 00 00 00                # 56: primitive_top 96 = 56 + 40, n_primitive 1
FE FF FF FF                             # 64: scale -2
04 03 00 20  FF 80 00 20                # 68: olen 4, ilen 3, mode 20; R G B, mode
00 00  00 00  01 00  02 00              #     N0, V0, V1, V2
06 05 04 20  10 20 30 20                # 84: olen 6, ilen 5, gradation, mode 20; colour 0, mode
40 50 60 00  70 80 90 00                #     colour 1, left 0; colour 2, left 0
00 00  00 00  01 00  02 00              #     N0, V0, V1, V2
08 06 01 39  01 02 03 39                # 108: olen 8, ilen 6, light off, mode 39; colour 0, mode
04 05 06 00  07 08 09 00  0A 0B 0C 00   #      colours 1, 2, 3, each with 0
00 00  01 00  02 00  03 00              #      V0, V1, V2, V3
00 00 00 00 00 00 00 00                 # 136: vertices of object 0
64 00 00 00 00 00 00 00
00 00 64 00 00 00 00 00
00 00 00 00 00 00 00 00                 # 160: vertices of object 1
01 00 FF FF 00 01 00 00
00 00 64 00 00 00 00 00
64 00 64 00 00 00 00 00
00 00 00 00 00 F0 00 00                 # 192: normal of object 0
00 10 00 00 00 00 00 00                 # 200: normal of object 1
)");
}

// One object with a packet of every kind. Normals are used in the order 3 0 2 1, vertices in the
// order 5 1 4 2, colours are 11 12 13, 21 22 23 and so on, texture coordinates 0A 0B, 1A 1B ...
Bytes everyKind() {
    return bytesOf(R"(
41 00 00 00  00 00 00 00  01 00 00 00   # ID, flags, 1 object
B4 02 00 00  06 00 00 00                # vert_top 692 = 28 + 664, n_vert 6
E4 02 00 00  04 00 00 00                # normal_top 740, n_normal 4
1C 00 00 00  1C 00 00 00                # primitive_top 28, n_primitive 28
00 00 00 00                             # scale 0
05 03 01 64  05 00 1F 00 10 20 C0 7A 40 00 20 01                        # 0 (40): sprite, 64 x 288
06 05 04 20  11 12 13 20 21 22 23 7A 31 32 33 01                        # 1 (56): flat gradation triangle
             03 00 05 00 01 00 04 00                                    #    the sprite left 7A and 01
08 07 06 2A  11 12 13 2A 21 22 23 7A 31 32 33 01 41 42 43 00            # 2 (80): flat gradation quadrangle,
             03 00 05 00 01 00 04 00 02 00 00 00                        #    two-sided, translucent
06 06 04 30  11 12 13 30 21 22 23 7A 31 32 33 01                        # 3 (112): gouraud gradation triangle
             03 00 05 00 00 00 01 00 02 00 04 00
08 08 04 38  11 12 13 38 21 22 23 7A 31 32 33 01 41 42 43 00            # 4 (140): gouraud gradation quadrangle
             03 00 05 00 00 00 01 00 02 00 04 00 01 00 02 00
04 03 00 20  11 12 13 20 03 00 05 00 01 00 04 00                        # 5 (176): flat triangle
05 04 00 28  11 12 13 28 03 00 05 00 01 00 04 00 02 00 00 00            # 6 (192): flat quadrangle
04 03 01 21  11 12 13 21 05 00 01 00 04 00 00 00                        # 7 (212): flat light-off triangle
05 03 01 29  11 12 13 29 05 00 01 00 04 00 02 00                        # 8 (228): flat light-off quadrangle
06 04 00 30  11 12 13 30 03 00 05 00 00 00 01 00 02 00 04 00            # 9 (244): gouraud triangle
08 05 00 38  11 12 13 38 03 00 05 00 00 00 01 00 02 00 04 00            # 10 (264): gouraud quadrangle
             01 00 02 00
06 05 01 31  11 12 13 31 21 22 23 00 31 32 33 00                        # 11 (288): gouraud light-off triangle
             05 00 01 00 04 00 00 00
08 06 01 39  11 12 13 39 21 22 23 00 31 32 33 00 41 42 43 00            # 12 (312): gouraud light-off quadrangle
             05 00 01 00 04 00 02 00
07 05 00 24  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00                        # 13 (340): flat textured triangle
             03 00 05 00 01 00 04 00
09 07 00 2C  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00 3A 3B 00 00            # 14 (364): flat textured quadrangle
             03 00 05 00 01 00 04 00 02 00 00 00
07 06 01 25  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00 11 12 13 00            # 15 (396): ... light-off triangle
             05 00 01 00 04 00 00 00
09 07 01 2D  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00 3A 3B 00 00            # 16 (424): ... light-off quadrangle
             11 12 13 00 05 00 01 00 04 00 02 00
09 06 00 34  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00                        # 17 (456): gouraud textured triangle
             03 00 05 00 00 00 01 00 02 00 04 00
0C 08 00 3C  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00 3A 3B 00 00            # 18 (484): gouraud textured quadrangle
             03 00 05 00 00 00 01 00 02 00 04 00 01 00 02 00
09 08 01 35  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00 11 12 13 00            # 19 (520): ... light-off triangle,
             21 22 23 00 31 32 33 00 05 00 01 00 04 00 00 00            #    0 left behind colour 0
0C 0A 01 3D  0A 0B C0 7A 1A 1B 1F 00 2A 2B 00 00 3A 3B 00 00            # 20 (556): ... light-off quadrangle
             11 12 13 00 21 22 23 00 31 32 33 00 41 42 43 00 05 00 01 00 04 00 02 00
03 02 01 40  11 12 13 40 05 00 01 00                                    # 21 (600): line
04 03 01 52  11 12 13 52 21 22 23 00 05 00 01 00                        # 22 (612): translucent gradation line
04 02 01 6C  05 00 1F 00 10 20 C0 7A                                    # 23 (628): sprite, 1 x 1
04 02 01 74  05 00 1F 00 10 20 C0 7A                                    # 24 (640): sprite, 8 x 8
05 03 01 64  05 00 1F 00 10 20 C0 7A 40 00 20 01                        # 25 (652): sprite, 64 x 288
04 02 01 7E  05 00 1F 00 10 20 C0 7A                                    # 26 (668): translucent sprite, 16 x 16
06 05 04 20  11 12 13 20 21 22 23 7A 31 32 33 00                        # 27 (680): flat gradation triangle,
             03 00 05 00 01 00 04 00                                    #    after 16 x 16 was left behind
00*48                                                                   # 704: 6 vertices
00 10 00 00 00 00 00 00  00 00 00 10 00 00 00 00                        # 752: 4 normals
00 00 00 00 00 10 00 00  00 F0 00 00 00 00 00 00
)");
}

// Bytes to be replaced: at which offset, by what.
using Patches = std::vector<std::pair<std::size_t, unsigned char>>;

struct Broken {
    Patches patches;
    Complaints complaints;
};

void expectComplaints(const Bytes& sound, const std::vector<Broken>& rows) {
    for (const Broken& row : rows) {
        Bytes bytes = sound;
        for (const auto& [at, value] : row.patches) {
            EXPECT_NE(bytes.at(at), value) << "the patch at " << at << " changes nothing";
            bytes.at(at) = value;
        }
        EXPECT_EQ(readTmd(bytes).complaints, row.complaints) << "patched at " << row.patches.front().first;
    }
}

TEST(ReadTmd, ReadsTheTableAndBothSections) {
    const TmdFile file = readTmd(twoObjects());
    EXPECT_EQ(file.complaints, Complaints{});
    EXPECT_EQ(file.id, 0x41U);
    EXPECT_EQ(file.flags, 0U);
    EXPECT_EQ(file.objectCount, 2U);
    ASSERT_EQ(file.objects.size(), 2U);
    const TmdObject& second = file.objects[1];
    EXPECT_EQ(second.vertTop, 148U);
    EXPECT_EQ(second.nVert, 4U);
    EXPECT_EQ(second.normalTop, 188U);
    EXPECT_EQ(second.nNormal, 1U);
    EXPECT_EQ(second.primitiveTop, 96U);
    EXPECT_EQ(second.nPrimitive, 1U);
    EXPECT_EQ(file.objects[0].scale, 1);
    EXPECT_EQ(second.scale, -2);
    EXPECT_EQ(file.objects[0].packets.size(), 2U);
    EXPECT_EQ(file.objects[0].vertices,
              (std::vector<TmdVector>{{0, 0, 0, 0}, {100, 0, 0, 0}, {0, 100, 0, 0}}));
    EXPECT_EQ(second.vertices,
              (std::vector<TmdVector>{{0, 0, 0, 0}, {1, -1, 256, 0}, {0, 100, 0, 0}, {100, 100, 0, 0}}));
    EXPECT_EQ(file.objects[0].normals, (std::vector<TmdVector>{{0, 0, -4096, 0}}));
    EXPECT_EQ(second.normals, (std::vector<TmdVector>{{4096, 0, 0, 0}}));
}

TEST(ReadTmd, AFileWithoutObjectsIsItsHeader) {
    const TmdFile file = readTmd(bytesOf("41 00 00 00 00 00 00 00 00 00 00 00\n"));
    EXPECT_EQ(file.complaints, Complaints{});
    EXPECT_TRUE(file.objects.empty());
}

TEST(ReadTmd, DecodesEveryKind) {
    struct Row {
        TmdKind kind;
        bool quadrangle;
        Indices vertices;
        Indices normals;
        std::size_t colours;
        std::size_t uv;
        std::vector<std::size_t> stale;
    };
    using enum TmdKind;
    const Indices three = {5, 1, 4};
    const Indices four = {5, 1, 4, 2};
    const std::vector<Row> rows = {
        {sprite, false, {5}, {}, 0, 1, {}},
        {flatGradation, false, three, {3}, 3, 0, {11, 15}},
        {flatGradation, true, four, {3}, 4, 0, {11, 15, 19}},
        {gouraudGradation, false, three, {3, 0, 2}, 3, 0, {11, 15}},
        {gouraudGradation, true, four, {3, 0, 2, 1}, 4, 0, {11, 15, 19}},
        {flat, false, three, {3}, 1, 0, {}},
        {flat, true, four, {3}, 1, 0, {}},
        {flatLightOff, false, three, {}, 1, 0, {}},
        {flatLightOff, true, four, {}, 1, 0, {}},
        {gouraud, false, three, {3, 0, 2}, 1, 0, {}},
        {gouraud, true, four, {3, 0, 2, 1}, 1, 0, {}},
        {gouraudLightOff, false, three, {}, 3, 0, {}},
        {gouraudLightOff, true, four, {}, 4, 0, {}},
        {flatTexture, false, three, {3}, 0, 3, {}},
        {flatTexture, true, four, {3}, 0, 4, {}},
        {flatTextureLightOff, false, three, {}, 1, 3, {}},
        {flatTextureLightOff, true, four, {}, 1, 4, {}},
        {gouraudTexture, false, three, {3, 0, 2}, 0, 3, {}},
        {gouraudTexture, true, four, {3, 0, 2, 1}, 0, 4, {}},
        {gouraudTextureLightOff, false, three, {}, 3, 3, {19}},
        {gouraudTextureLightOff, true, four, {}, 4, 4, {}},
        {flatLine, false, {5, 1}, {}, 1, 0, {}},
        {gouraudLine, false, {5, 1}, {}, 2, 0, {}},
        {sprite, false, {5}, {}, 0, 1, {}},
        {sprite, false, {5}, {}, 0, 1, {}},
        {sprite, false, {5}, {}, 0, 1, {}},
        {sprite, false, {5}, {}, 0, 1, {}},
        {flatGradation, false, three, {3}, 3, 0, {11, 15}},
    };
    const TmdFile file = readTmd(everyKind());
    EXPECT_EQ(file.complaints, Complaints{});
    ASSERT_EQ(file.objects.size(), 1U);
    const std::vector<TmdPacket>& packets = file.objects[0].packets;
    ASSERT_EQ(packets.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(i);
        const Row& row = rows[i];
        const TmdPacket& packet = packets[i];
        EXPECT_EQ(packet.kind, row.kind);
        EXPECT_EQ(packet.quadrangle, row.quadrangle);
        EXPECT_EQ(packet.vertices, row.vertices);
        EXPECT_EQ(packet.normals, row.normals);
        EXPECT_EQ(packet.stale, row.stale);
        ASSERT_EQ(packet.colours.size(), row.colours);
        for (std::size_t c = 0; c < row.colours; ++c) {
            EXPECT_EQ(packet.colours[c][0], 0x11 + 0x10 * c);
            EXPECT_EQ(packet.colours[c][1], 0x12 + 0x10 * c);
            EXPECT_EQ(packet.colours[c][2], 0x13 + 0x10 * c);
        }
        ASSERT_EQ(packet.uv.size(), row.uv);
        for (std::size_t c = 0; row.kind != sprite && c < row.uv; ++c) {
            EXPECT_EQ(packet.uv[c].u, 0x0A + 0x10 * c);
            EXPECT_EQ(packet.uv[c].v, 0x0B + 0x10 * c);
        }
        EXPECT_EQ(packet.cba, row.uv > 0 ? 0x7AC0 : 0);
        EXPECT_EQ(packet.tsb, row.uv > 0 ? 0x001F : 0);
    }
}

TEST(ReadTmd, GivesHeaderPlaceAndBytesOfAPacket) {
    const TmdPacket packet = readTmd(everyKind()).objects.at(0).packets.at(22);
    EXPECT_EQ(packet.offset, 612U);
    EXPECT_EQ(packet.olen, 4);
    EXPECT_EQ(packet.ilen, 3);
    EXPECT_EQ(packet.flag, 1);
    EXPECT_EQ(packet.mode, 0x52);
    EXPECT_EQ(packet.bytes, bytesOf("04 03 01 52 11 12 13 52 21 22 23 00 05 00 01 00\n"));
    EXPECT_EQ(packet.colours.at(0), (TmdColour{0x11, 0x12, 0x13, 0x52}));
}

TEST(ReadTmd, GivesTheSizeOfASprite) {
    const std::vector<TmdPacket> packets = readTmd(everyKind()).objects.at(0).packets;
    using Size = std::pair<int, int>;
    const auto size = [&](std::size_t i) { return Size(packets.at(i).width, packets.at(i).height); };
    EXPECT_EQ(size(0), Size(64, 288));
    EXPECT_EQ(size(23), Size(1, 1));
    EXPECT_EQ(size(24), Size(8, 8));
    EXPECT_EQ(size(26), Size(16, 16));
    EXPECT_EQ(packets.at(0).uv.at(0).u, 0x10);
    EXPECT_EQ(packets.at(0).uv.at(0).v, 0x20);
}

TEST(ReadTmd, ComplainsAboutTheHeader) {
    expectComplaints(twoObjects(), {
                                       {{{0, 0x42}}, {"ID 0x42, expected 0x41"}},
                                       {{{7, 0x01}}, {"flags 0x1000000, expected 0"}},
                                       {{{8, 0xFF}}, {"an object table of 255 lies outside the file"}},
                                   });
}

TEST(ReadTmd, ComplainsAboutOffsetsAndCounts) {
    const std::string noCode = "mode 0x0 has no known code";
    expectComplaints(
        twoObjects(),
        {
            {{{12, 0x7D}},
             {"object 0: vert_top 125 is no multiple of 4", "object 0: vert_top 125, expected 124",
              "object 0: vertices: pad of number 0 is not 0"}},
            {{{40, 0x9C}}, {"object 1: vert_top 156, expected 148"}},
            {{{20, 0xB0}}, {"object 0: normal_top 176, expected 180"}},
            {{{48, 0xC0}},
             {"object 1: normal_top 192, expected 188", "object 1: normals lie outside the file"}},
            // An offset counted from the start of the file.
            {{{28, 0x44}},
             {"object 0: primitive_top 68, expected 56", "object 0: packet 0 at 0x50: " + noCode}},
            {{{56, 0x5C}},
             {"object 1: primitive_top 92, expected 96", "object 1: packet 0 at 0x68: " + noCode}},
            {{{31, 0x01}},
             {"object 0: primitive_top 16777272, expected 56",
              "object 0: packet 0 at 0x1000044: lies outside the file"}},
            {{{32, 0x01}}, {"object 1: primitive_top 96, expected 72"}},
            {{{60, 0x02}}, {"object 1: packet 1 at 0x88: " + noCode}},
            {{{16, 0x02}},
             {"object 0: packet 0 at 0x44: vertex index 2 of 2",
              "object 0: packet 1 at 0x54: vertex index 2 of 2", "object 1: vert_top 148, expected 140",
              "object 0: normal_top 180, expected 172", "object 1: normal_top 188, expected 180",
              "file size 208, expected 200"}},
            {{{52, 0x00}}, {"file size 208, expected 200"}},
            {{{55, 0xFF}}, {"object 1: normals lie outside the file", "file size 208, expected 34225520848"}},
        });
}

TEST(ReadTmd, ComplainsAboutTheFileSize) {
    Bytes longer = twoObjects();
    longer.push_back(0);
    EXPECT_EQ(readTmd(longer).complaints, Complaints{"file size 209, expected 208"});
    Bytes shorter = twoObjects();
    shorter.pop_back();
    EXPECT_EQ(readTmd(shorter).complaints,
              (Complaints{"object 1: normals lie outside the file", "file size 207, expected 208"}));
    EXPECT_EQ(readTmd(Bytes(11)).complaints, Complaints{"the file is shorter than its header"});
}

TEST(ReadTmd, ComplainsAboutPadsOfVerticesAndNormals) {
    expectComplaints(twoObjects(), {
                                       {{{142, 0x01}}, {"object 0: vertices: pad of number 0 is not 0"}},
                                       {{{207, 0x80}}, {"object 1: normals: pad of number 0 is not 0"}},
                                   });
}

TEST(ReadTmd, ComplainsAboutEveryWrongLength) {
    const Bytes sound = everyKind();
    const TmdFile file = readTmd(sound);
    for (const TmdPacket& packet : file.objects.at(0).packets) {
        SCOPED_TRACE(packet.offset);
        Bytes bytes = sound;
        bytes[packet.offset] = static_cast<unsigned char>(packet.olen + 1);
        Complaints complaints = readTmd(bytes).complaints;
        ASSERT_EQ(complaints.size(), 1U);
        EXPECT_NE(complaints[0].find("olen " + std::to_string(packet.olen + 1) + ", expected"),
                  std::string::npos);
        bytes = sound;
        bytes[packet.offset + 1] = static_cast<unsigned char>(packet.ilen - 1);
        complaints = readTmd(bytes).complaints;
        ASSERT_EQ(complaints.size(), 1U);
        EXPECT_NE(complaints[0].find("ilen " + std::to_string(packet.ilen - 1) + ", expected"),
                  std::string::npos);
    }
}

TEST(ReadTmd, ComplainsAboutPolygonBits) {
    const std::string first = "object 0: packet 0 at 0x44: ";
    const std::string second = "object 0: packet 1 at 0x54: ";
    expectComplaints(
        twoObjects(),
        {
            {{{70, 0x02}}, {}},
            {{{70, 0x01}},
             {first + "light off stands in only one of flag 0x1 and mode 0x20",
              first + "bytes 14, 15 are not 0"}},
            {{{71, 0x21}, {75, 0x21}}, {first + "light off stands in only one of flag 0x0 and mode 0x21"}},
            {{{70, 0x08}}, {first + "unknown bits in flag 0x8"}},
            {{{71, 0x00}}, {first + "mode 0x0 has no known code"}},
            {{{71, 0xA0}}, {first + "mode 0xa0 has no known code"}},
            {{{71, 0x28}}, {first + "olen 4, expected 5", first + "ilen 3, expected 4"}},
            {{{86, 0x05}},
             {second + "light off stands in only one of flag 0x5 and mode 0x20",
              second + "gradation flag on a light-off polygon", second + "olen 6, expected 4",
              second + "ilen 5, expected 3"}},
        });
    expectComplaints(everyKind(), {{{{342, 0x04}},
                                    {"object 0: packet 13 at 0x154: gradation flag on a textured polygon"}}});
}

TEST(ReadTmd, ComplainsAboutLineAndSpriteBits) {
    const std::string line = "object 0: packet 21 at 0x258: ";
    const std::string pixel = "object 0: packet 23 at 0x274: ";
    expectComplaints(everyKind(),
                     {
                         {{{602, 0x03}}, {line + "flag 0x3 on a line, expected 0x1"}},
                         {{{603, 0x48}, {607, 0x48}}, {line + "mode 0x48 is that of no line"}},
                         {{{603, 0x44}, {607, 0x44}}, {line + "mode 0x44 is that of no line"}},
                         {{{603, 0x41}, {607, 0x41}}, {line + "mode 0x41 is that of no line"}},
                         {{{603, 0x42}, {607, 0x42}}, {}},
                         {{{630, 0x00}}, {pixel + "flag 0x0 on a sprite, expected 0x1"}},
                         {{{631, 0x68}}, {pixel + "mode 0x68 is that of no sprite"}},
                         {{{631, 0x6D}}, {pixel + "mode 0x6d is that of no sprite"}},
                         {{{664, 0x08}, {666, 0x08}, {667, 0x00}},
                          {"object 0: packet 25 at 0x28c: a sprite of 8 x 8 is written as one of free size"}},
                         {{{664, 0x02}, {666, 0x02}, {667, 0x00}}, {}},
                     });
}

TEST(ReadTmd, ComplainsAboutFixedBytes) {
    expectComplaints(
        twoObjects(),
        {
            {{{75, 0x30}}, {"object 0: packet 0 at 0x44: byte 7 is 0x30, expected the mode 0x20"}},
            {{{119, 0x05}}, {"object 1: packet 0 at 0x6c: byte 11 is 0x5, expected 0"}},
        });
    expectComplaints(everyKind(),
                     {
                         {{{210, 0x01}}, {"object 0: packet 6 at 0xc0: bytes 18, 19 are not 0"}},
                         {{{355, 0x01}}, {"object 0: packet 13 at 0x154: bytes 14, 15 are not 0"}},
                         {{{382, 0x01}}, {"object 0: packet 14 at 0x16c: bytes 18, 19 are not 0"}},
                         {{{623, 0x09}}, {"object 0: packet 22 at 0x264: byte 11 is 0x9, expected 0"}},
                     });
}

TEST(ReadTmd, ComplainsAboutBytesThatNoPacketLeft) {
    expectComplaints(
        twoObjects(),
        {{{{95, 0x01}}, {"object 0: packet 1 at 0x54: byte 11 is 0x1, but the packets before it left 0x0"}}});
    expectComplaints(
        everyKind(),
        {
            {{{67, 0x00}},
             {"object 0: packet 1 at 0x38: byte 11 is 0x0, but the packets before it left 0x7a",
              "object 0: packet 2 at 0x50: byte 11 is 0x7a, but the packets before it left 0x0"}},
            {{{539, 0x01}},
             {"object 0: packet 19 at 0x208: byte 19 is 0x1, but the packets before it left 0x0"}},
            {{{695, 0x01}},
             {"object 0: packet 27 at 0x2a8: byte 15 is 0x1, but the packets before it left 0x0"}},
        });
}

TEST(ReadTmd, ComplainsAboutIndices) {
    expectComplaints(twoObjects(),
                     {
                         {{{76, 0x01}}, {"object 0: packet 0 at 0x44: normal index 1 of 1"}},
                         {{{82, 0x03}}, {"object 0: packet 0 at 0x44: vertex index 3 of 3"}},
                         {{{107, 0x80}}, {"object 0: packet 1 at 0x54: vertex index 32770 of 3"}},
                     });
    expectComplaints(everyKind(), {{{{656, 0x06}}, {"object 0: packet 25 at 0x28c: vertex index 6 of 6"}}});
}

TEST(ReadTmd, EveryTruncatedFileIsRefused) {
    for (const Bytes& sound : {twoObjects(), everyKind()}) {
        for (std::size_t size = 0; size < sound.size(); ++size) {
            const Bytes cut(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_NE(readTmd(cut).complaints, Complaints{}) << size;
        }
    }
}

} // namespace
