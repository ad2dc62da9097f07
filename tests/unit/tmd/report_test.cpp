#include "tmd/report.hpp"

#include "unit/model_tables.hpp"
#include "unit/printed.hpp"
#include "unit/support.hpp"
#include "unit/tmd/all_counters.hpp"

#include "model/params.hpp"
#include "settings/settings.hpp"
#include "tmd/current.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::ExitedWithCode;

namespace {

struct PrintedLine {
    std::int32_t result;
    std::string text;
};

PrintedLine vertexLine(std::int32_t index, std::int32_t position) {
    std::int32_t result = -1;
    const std::string text = printed([&](std::FILE* stream) { result = printVert(stream, index, position); });
    return {result, text};
}

PrintedLine normalLine(std::int32_t index, std::int32_t position) {
    std::int32_t result = -1;
    const std::string text = printed([&](std::FILE* stream) { result = printNorm(stream, index, position); });
    return {result, text};
}

// An object that is the current one, until the end of a scope.
struct CurrentObject {
    CurrentObject(std::int32_t vertices, std::int32_t normals) : object(plainObject()) {
        object.nvert = vertices;
        object.nnorm = normals;
        currentObject = &object;
    }
    ~CurrentObject() { currentObject = nullptr; }
    CurrentObject(const CurrentObject&) = delete;
    CurrentObject& operator=(const CurrentObject&) = delete;

    RSD object;
};

// All counters, zero until the end of a scope.
struct CountersOfZero {
    CountersOfZero() {
        for (std::size_t i = 0; i < allCounters.size(); ++i) {
            before[i] = *allCounters[i].counter;
            *allCounters[i].counter = 0;
        }
    }
    ~CountersOfZero() {
        for (std::size_t i = 0; i < allCounters.size(); ++i) {
            *allCounters[i].counter = before[i];
        }
    }
    CountersOfZero(const CountersOfZero&) = delete;
    CountersOfZero& operator=(const CountersOfZero&) = delete;

    std::array<Counter, 53> before{};
};

// What the summary says of a file, with totals of 7 primitives, 123456 vertices and 0 normals.
std::string summaryOf(const TmdBuild& tmd) {
    std::string name = "out.tmd";
    Tmdfile = name.data();
    ObjList.nPrim = 7;
    ObjList.nVert = 123456;
    ObjList.nNorm = 0;
    const std::string text = printed([&](std::FILE* stream) { printTMD(stream, tmd); });
    ObjList = {};
    Tmdfile = nullptr;
    return text;
}

// A material of kind "T" for texture `number`.
MaterialRecord materialOfTexture(std::uint8_t number) {
    MaterialRecord mat{.attr = 0, .shading = 'F', .kind = 'T', .paramCount = 0, .param = 0};
    set_params(mat, std::array<std::uint8_t, 9>{number, 77, 77, 77, 77, 77, 77, 77, 77});
    return mat;
}

// What printEtc prints of a polygon with this header word.
std::string texturedLines(std::uint32_t header, std::uint32_t clut, std::uint32_t tsb,
                          const MaterialRecord& mat) {
    PacketArea area{};
    area.fill(0xEEEEEEEE);
    area[0] = header;
    area[1] = clut << 16 | 0x5A5A;
    area[2] = tsb << 16 | 0x5A5A;
    return printed([&](std::FILE* stream) { printEtc(stream, area, mat); });
}

// And of a sprite, which has the two codes the other way round.
std::string spriteLines(std::uint32_t header, std::uint32_t clut, std::uint32_t tsb,
                        const MaterialRecord& mat) {
    return texturedLines(header, tsb, clut, mat);
}

constexpr char summaryHead[] = "================= TMD ==================\n"
                               "   Output TMD  : out.tmd\n"
                               "   TMD header  :       (    12 bytes)\n";

} // namespace

TEST(PrintVert, ShowsTheVertexWithItsPosition) {
    const FreshGlobals globals;
    const ModelTables tables({.vertices = 3});
    const CurrentObject current(3, 0);
    vertexAt(0) = {.x = 1, .y = -2, .z = 0};
    vertexAt(2) = {.x = -32768, .y = 32767, .z = -1};
    EXPECT_EQ(vertexLine(0, 0).text, "\tVert-0: (     1,     -2,      0) (#0)\n");
    // The whole range of 16 bits overflows nothing.
    EXPECT_EQ(vertexLine(2, 3).text, "\tVert-3: (-32768,  32767,     -1) (#2)\n");
    EXPECT_EQ(vertexLine(2, 3).result, 1);
}

TEST(PrintVert, RejectsWhatTheCurrentObjectDoesNotHave) {
    const FreshGlobals globals;
    const ModelTables tables({.vertices = 5});
    const CurrentObject current(3, 0);
    for (const std::int32_t verbose : {0, 1}) {
        Verbose = verbose;
        EXPECT_EQ(vertexLine(2, 0).result, 1);
        // Vertices of an earlier object are still in the table.
        EXPECT_EQ(vertexLine(3, 1).result, 0);
        EXPECT_EQ(vertexLine(3, 1).text, "\tVert-1: Bad vertex: 3\n");
        EXPECT_EQ(vertexLine(65535, 2).result, 0);
        EXPECT_EQ(vertexLine(65535, 2).text, "\tVert-2: Bad vertex: 65535\n");
        EXPECT_EQ(vertexLine(2'147'483'647, 0).text, "\tVert-0: Bad vertex: 2147483647\n");
    }
}

TEST(PrintVert, DoesNotNoticeNegativeIndices) {
    const FreshGlobals globals;
    const ModelTables tables({.vertices = 3});
    const CurrentObject current(3, 0);
    vertexAt(0) = {.x = 1, .y = 1, .z = 1};
    EXPECT_EQ(vertexLine(-1, 2).result, 1);
    EXPECT_EQ(vertexLine(-1, 2).text, "\tVert-2: (     0,      0,      0) (#4294967295)\n");
    EXPECT_EQ(vertexLine(-2'147'483'647 - 1, 0).text, "\tVert-0: (     0,      0,      0) (#2147483648)\n");
    Verbose = 1;
    EXPECT_EXIT(vertexLine(-1, 0), ExitedWithCode(17), testing::Eq("\nBad index: 4294967295 [0-3]\n"));
}

TEST(PrintVert, OfAnObjectWithoutVerticesFindsAllBad) {
    const FreshGlobals globals;
    const CurrentObject current(0, 0);
    EXPECT_EQ(vertexLine(0, 0).result, 0);
    EXPECT_EQ(vertexLine(0, 0).text, "\tVert-0: Bad vertex: 0\n");
}

TEST(PrintNorm, ShowsTheNormalWithItsPosition) {
    const FreshGlobals globals;
    const ModelTables tables({.normals = 2});
    const CurrentObject current(0, 2);
    normalAt(1) = {.x = 4096, .y = -4096, .z = 0};
    EXPECT_EQ(normalLine(1, 3).result, 1);
    EXPECT_EQ(normalLine(1, 3).text, "\tNorm-3: (  4096,  -4096,      0) (#1)\n");
}

TEST(PrintNorm, RejectsWhatTheCurrentObjectDoesNotHave) {
    const FreshGlobals globals;
    const ModelTables tables({.vertices = 9, .normals = 5});
    const CurrentObject current(9, 2);
    for (const std::int32_t verbose : {0, 1}) {
        Verbose = verbose;
        EXPECT_EQ(normalLine(1, 0).result, 1);
        EXPECT_EQ(normalLine(2, 1).result, 0);
        EXPECT_EQ(normalLine(2, 1).text, "\tNorm-1: Bad normal: 2\n");
        EXPECT_EQ(normalLine(65535, 0).text, "\tNorm-0: Bad normal: 65535\n");
    }
}

TEST(PrintNorm, DoesNotNoticeNegativeIndices) {
    const FreshGlobals globals;
    const ModelTables tables({.normals = 2});
    const CurrentObject current(0, 2);
    EXPECT_EQ(normalLine(-3, 1).result, 1);
    EXPECT_EQ(normalLine(-3, 1).text, "\tNorm-1: (     0,      0,      0) (#4294967293)\n");
    Verbose = 1;
    EXPECT_EXIT(normalLine(-3, 0), ExitedWithCode(17), testing::Eq("\nBad index: 4294967293 [0-2]\n"));
}

TEST(PrintColors, ShowsAsManyColourWordsAsAsked) {
    PacketArea area{};
    area[0] = 0xEEEEEEEE;
    area[1] = 0x20030201; // red 1, green 2, blue 3, and a byte that is not shown
    area[2] = 0xEE0A64FF;
    area[3] = 0x00000000;
    area[4] = 0xFFFFFFFF;
    const auto lineOf = [&area](std::size_t offset, std::uint32_t count) {
        return printed([&](std::FILE* stream) { printColors(stream, area, offset, count); });
    };
    EXPECT_EQ(lineOf(4, 0), "\tColor : \n");
    EXPECT_EQ(lineOf(4, 1), "\tColor : (  1   2   3) \n");
    EXPECT_EQ(lineOf(4, 2), "\tColors: (  1   2   3) (255 100  10) \n");
    EXPECT_EQ(lineOf(4, 3), "\tColors: (  1   2   3) (255 100  10) (  0   0   0) \n");
    EXPECT_EQ(lineOf(4, 4), "\tColors: (  1   2   3) (255 100  10) (  0   0   0) (255 255 255) \n");
    EXPECT_EQ(lineOf(8, 1), "\tColor : (255 100  10) \n");
}

TEST(PrintEtc, ShowsTheCodesInTheLayout) {
    const FreshGlobals globals;
    struct Row {
        std::int32_t layout;
        std::uint32_t clut;
        std::uint32_t tsb;
        const char* text; // behind "Pixel mode  : "
    };
    const std::vector<Row> rows = {
        {0, 0x7801, 0x0000, "4bit CLUT : (x y)=( 16 480)\n\tTexture Page:  0"},
        {0, 0x0000, 0x000A, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page: 10"},
        {0, 0xFFFF, 0x001F, "4bit CLUT : (x y)=(1008 511)\n\tTexture Page: 31"},
        {0, 0x8000, 0x0080, "8bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {0, 0x0040, 0x0091, "8bit CLUT : (x y)=(  0   1)\n\tTexture Page: 17"},
        {0, 0xFFFF, 0x0105, "16bit\n\tTexture Page:  5"},
        {0, 0xFFFF, 0x0180, "50% back + 50% polygon\n\tTexture Page:  0"},
        {0, 0xFFFF, 0xFFFF, "50% back + 50% polygon\n\tTexture Page: 31"},
        // Bits of the other layouts.
        {0, 0x0000, 0x0200, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {0, 0x0000, 0x0400, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {0, 0x0000, 0x0800, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {0, 0x0000, 0x0060, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {1, 0x7801, 0x0000, "4bit CLUT : (x y)=( 16 480)\n\tTexture Page:  0"},
        {1, 0xFFFF, 0x007F, "4bit CLUT : (x y)=(1008 1023)\n\tTexture Page: 127"},
        {1, 0x8000, 0x0200, "8bit CLUT : (x y)=(  0 512)\n\tTexture Page:  0"},
        {1, 0x8000, 0x0400, "16bit\n\tTexture Page:  0"},
        {1, 0x8000, 0x0600, "50% back + 50% polygon\n\tTexture Page:  0"},
        {1, 0x8000, 0xFFFF, "50% back + 50% polygon\n\tTexture Page: 127"},
        {1, 0x0000, 0x0060, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page: 96"},
        {1, 0x0000, 0x0080, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {1, 0x0000, 0x0180, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {1, 0x0000, 0x0800, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {2, 0xFFFF, 0x0000, "4bit CLUT : (x y)=(1008 1023)\n\tTexture Page:  0"},
        {2, 0x8000, 0x0080, "8bit CLUT : (x y)=(  0 512)\n\tTexture Page:  0"},
        {2, 0x8000, 0x0100, "16bit\n\tTexture Page:  0"},
        {2, 0x8000, 0x0180, "50% back + 50% polygon\n\tTexture Page:  0"},
        {2, 0x0000, 0x0200, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {2, 0x0000, 0x0800, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page: 32"},
        {2, 0x0000, 0x081F, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page: 63"},
        {2, 0x0000, 0x0060, "4bit CLUT : (x y)=(  0   0)\n\tTexture Page:  0"},
        {2, 0x0000, 0xFFFF, "50% back + 50% polygon\n\tTexture Page: 63"},
        // Any other layout has the long CLUT rows, and else the codes of the first.
        {3, 0xFFFF, 0x0000, "4bit CLUT : (x y)=(1008 1023)\n\tTexture Page:  0"},
        {3, 0xFFFF, 0x0865, "4bit CLUT : (x y)=(1008 1023)\n\tTexture Page:  5"},
        {3, 0xFFFF, 0x0201, "4bit CLUT : (x y)=(1008 1023)\n\tTexture Page:  1"},
    };
    const MaterialRecord mat = materialOfTexture(5);
    for (const Row& row : rows) {
        arcade = row.layout;
        const std::string expected = std::string("\tPixel mode  : ") + row.text + "   Texture No. :  5\n";
        EXPECT_EQ(texturedLines(0x24000507, row.clut, row.tsb, mat), expected)
            << "layout " << row.layout << std::hex << ", " << row.tsb;
        EXPECT_EQ(spriteLines(0x64010305, row.clut, row.tsb, mat), expected)
            << "layout " << row.layout << std::hex << ", " << row.tsb;
    }
}

TEST(PrintEtc, ShowsTheRateOfTranslucentPackets) {
    const FreshGlobals globals;
    struct Row {
        std::int32_t layout;
        std::uint32_t tsb;
        const char* name;
    };
    const std::vector<Row> rows = {
        {0, 0x0100, "50% back + 50% polygon"},   {0, 0x0120, "100% back + 100% polygon"},
        {0, 0x0140, "100% back - 100% polygon"}, {0, 0x0160, "100% back + 25% polygon"},
        {0, 0x0F00, "50% back + 50% polygon"},   {2, 0x0120, "100% back + 100% polygon"},
        {2, 0x0140, "100% back - 100% polygon"}, {2, 0x0160, "100% back + 25% polygon"},
        {2, 0x0900, "50% back + 50% polygon"},   {1, 0x0400, "50% back + 50% polygon"},
        {1, 0x0480, "100% back + 100% polygon"}, {1, 0x0500, "100% back - 100% polygon"},
        {1, 0x0580, "100% back + 25% polygon"},  {1, 0x0460, "50% back + 50% polygon"},
    };
    const MaterialRecord mat = materialOfTexture(5);
    for (const Row& row : rows) {
        arcade = row.layout;
        const std::string opaque = texturedLines(0x24000507, 0, row.tsb, mat);
        const std::string expected = opaque + "\tTranslucency: " + row.name + "\n";
        EXPECT_EQ(opaque.find("Translucency"), std::string::npos);
        EXPECT_EQ(texturedLines(0x26000507, 0, row.tsb, mat), expected) << row.layout << " " << row.tsb;
        EXPECT_EQ(texturedLines(0x3F030A0C, 0, row.tsb, mat), expected) << row.layout << " " << row.tsb;
        EXPECT_EQ(spriteLines(0x66010305, 0, row.tsb, mat), expected) << row.layout << " " << row.tsb;
        EXPECT_EQ(spriteLines(0x7E010204, 0, row.tsb, mat), expected) << row.layout << " " << row.tsb;
    }
}

TEST(PrintEtc, ShowsTheTextureNumberOfTheMaterial) {
    const FreshGlobals globals;
    const std::string front = "\tPixel mode  : 16bit\n\tTexture Page:  0   Texture No. : ";
    EXPECT_EQ(texturedLines(0x24000507, 0, 0x0100, materialOfTexture(0)), front + " 0\n");
    EXPECT_EQ(texturedLines(0x24000507, 0, 0x0100, materialOfTexture(42)), front + "42\n");
    EXPECT_EQ(texturedLines(0x24000507, 0, 0x0100, materialOfTexture(255)), front + "255\n");
    // A material without numbers.
    EXPECT_EQ(texturedLines(0x24000507, 0, 0x0100, MaterialRecord{}), front + " 0\n");
}

TEST(PrintTMD, LeavesOutCountersOfZero) {
    const FreshGlobals globals;
    const CountersOfZero counters;
    TmdBuild tmd{};
    tmd.nObj = 2;
    tmd.objtblBytes = 56;
    tmd.primitiveBytes = 112;
    tmd.vertexBytes = 987648;
    const std::string expected = summaryHead + std::string("   Objects     :     2 (    56 bytes)\n"
                                                           "   Primitives  :     7 (   112 bytes)\n"
                                                           "   Vertices    : 123456 (987648 bytes)\n"
                                                           "   Normals     :     0 (     0 bytes)\n"
                                                           "----------------------------------------\n"
                                                           "Total file size:        987828 bytes\n");
    EXPECT_EQ(summaryOf(tmd), expected);
}

TEST(PrintTMD, ListsTheCountersInTheirOrder) {
    const FreshGlobals globals;
    const CountersOfZero counters;
    TmdBuild tmd{};
    tmd.nObj = 1;
    tmd.objtblBytes = 28;
    tmd.primitiveBytes = 1'000'000;
    tmd.vertexBytes = 8;
    tmd.normalBytes = 16;
    std::string expected = summaryHead + std::string("   Objects     :     1 (    28 bytes)\n"
                                                     "   Primitives  :     7 (1000000 bytes)\n");
    for (std::size_t i = 0; i < allCounters.size(); ++i) {
        *allCounters[i].counter = static_cast<Counter>(101 + i);
        expected += "                   " + std::to_string(101 + i) + "\t... " + allCounters[i].words + "\n";
    }
    expected += "   Vertices    : 123456 (     8 bytes)\n"
                "   Normals     :     0 (    16 bytes)\n"
                "----------------------------------------\n"
                "Total file size:        1000064 bytes\n";
    EXPECT_EQ(summaryOf(tmd), expected);
}

TEST(PrintTMD, AlignsCountsInTwentyTwoColumns) {
    const FreshGlobals globals;
    const CountersOfZero counters;
    nFlat3 = 2;
    nGradGouraudTrans4 = 4'294'967'295;
    const std::string text = summaryOf(TmdBuild{});
    EXPECT_NE(text.find("(     0 bytes)\n"
                        "                     2\t... Flat Colored Triangles\n"
                        "            4294967295\t... Gouraud Trans-Gradation Quadrangles\n"
                        "   Vertices    :"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("Total file size:            12 bytes\n"), std::string::npos) << text;
}
