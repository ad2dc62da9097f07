#include "tmd/tmdux.hpp"

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "settings/settings.hpp"
#include "utilkit/tracked.hpp"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::ExitedWithCode;

namespace {

ObjectEntry& entryAt(std::int32_t index) {
    return elementAt<ObjectEntry>(index, TmdData.objtbl);
}

} // namespace

TEST(NewTMD, WritesTheHeader) {
    const TestDirectory directory;
    FileRecord* file = newTMD("a.tmd", 60);
    EXPECT_EQ(file->position, 12);
    EXPECT_EQ(bytesOf("a.tmd"), fromHex("41 00 00 00  00 00 00 00  3C 00 00 00"));
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").size(), 12U);
}

TEST(NewTMD, StartsAllFiguresAnew) {
    const TestDirectory directory;
    TmdData.nObj = TmdData.objtblBytes = TmdData.primitiveBytes = 99;
    TmdData.vertexBytes = TmdData.normalBytes = 99;
    FileRecord* file = newTMD("a.tmd", 3);
    EXPECT_EQ(TmdData.nObj, 3U);
    EXPECT_EQ(TmdData.objtblBytes, 0U);
    EXPECT_EQ(TmdData.primitiveBytes, 0U);
    EXPECT_EQ(TmdData.vertexBytes, 0U);
    EXPECT_EQ(TmdData.normalBytes, 0U);
    ASSERT_NE(TmdData.objtbl, nullptr);
    EXPECT_EQ(TmdData.objtbl->elementCount, 3U);
    EXPECT_EQ(TmdData.objtbl->elementSize, 28U);
    deleteTMD(file);
}

TEST(NewTMD, OfNoObjectsHasNoTable) {
    const TestDirectory directory;
    FileRecord* file = newTMD("a.tmd", 0);
    EXPECT_EQ(TmdData.objtbl, nullptr);
    EXPECT_EQ(bytesOf("a.tmd"), fromHex("41 00 00 00  00 00 00 00  00 00 00 00"));
    deleteTMD(file);
}

TEST(NewTMD, ReplacesALongerFile) {
    const TestDirectory directory({{"a.tmd", std::string(100, 'x')}});
    deleteTMD(newTMD("a.tmd", 0));
    EXPECT_EQ(bytesOf("a.tmd").size(), 12U);
}

TEST(NewTMD, EndsTheRunWhenItCannotOpen) {
    const TestDirectory directory;
    EXPECT_EXIT(newTMD("none/a.tmd", 1), ExitedWithCode(30), testing::Eq("\nCannot open: \"none/a.tmd\"\n"));
    pushIgnore(OPEN_ERR);
    EXPECT_EXIT(newTMD("none/a.tmd", 1), ExitedWithCode(1), testing::Eq(""));
}

TEST(NewTMD, CountsItsTable) {
    const TestDirectory directory;
    FileRecord* file = newTMD("a.tmd", 2);
    // Header 28, block table 4, two entries of 28; the file's record 20, its name 6, its path 255.
    EXPECT_EQ(allocTotal, 28 + 4 + 56 + 20 + 6 + 255);
    EXPECT_EQ(allocCount, 6);
    deleteTMD(file);
    EXPECT_EQ(allocTotal, 20 + 6 + 255);
    EXPECT_EQ(freeCount, 6);
    EXPECT_EQ(TmdData.objtbl, nullptr);
}

TEST(SetObjtbl, FillsCountsAndScaleAndNoOffsets) {
    const TestDirectory directory;
    FileRecord* file = newTMD("a.tmd", 2);
    RSD object = plainObject();
    object.nvert = 0x01020304;
    object.nnorm = 5;
    object.npoly = 6;
    object.nmat = 7;
    object.scaleFactor = -2;
    entryAt(0) = {9, 9, 9, 9, 9, 9, 9};
    set_objtbl(&object, entryAt(0));
    EXPECT_EQ(TmdData.objtblBytes, 28U);
    object.scaleFactor = 3;
    set_objtbl(&object, entryAt(1));
    EXPECT_EQ(TmdData.objtblBytes, 56U);
    EXPECT_EQ(putMyMem(TmdData.objtbl, file), 56);
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").substr(12), fromHex("00 00 00 00  04 03 02 01"
                                                   "00 00 00 00  05 00 00 00"
                                                   "00 00 00 00  06 00 00 00  FE FF FF FF"
                                                   "00 00 00 00  04 03 02 01"
                                                   "00 00 00 00  05 00 00 00"
                                                   "00 00 00 00  06 00 00 00  03 00 00 00"));
}

TEST(SetObjtbl, WritesItsFieldsInTheOrderOfTheFile) {
    const TestDirectory directory;
    FileRecord* file = newTMD("a.tmd", 1);
    entryAt(0) = {.vert_top = 0x11,
                  .n_vert = 0x22,
                  .normal_top = 0x33,
                  .n_normal = 0x44,
                  .primitive_top = 0x55,
                  .n_primitive = 0x66,
                  .scale = 0x77};
    putMyMem(TmdData.objtbl, file);
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").substr(12),
              fromHex("11 00 00 00  22 00 00 00  33 00 00 00  44 00 00 00  55 00 00 00  66 00 00 00"
                      "77 00 00 00"));
}

TEST(ObjectTable, LeavesOutALastBlockThatIsFull) {
    const TestDirectory directory;
    struct Row {
        std::uint32_t objects;
        std::int32_t lastBlock;  // bytes
        std::size_t tableInFile; // bytes
    };
    // A block takes 35,714 entries of 28 bytes: 999,992 bytes.
    static constexpr std::array<Row, 5> rows = {{
        {35'713, 999'964, 999'964},
        {35'714, 0, 0},
        {35'715, 28, 1'000'020},
        {71'428, 0, 999'992},
        {71'429, 28, 2'000'012},
    }};
    for (const Row& row : rows) {
        FileRecord* file = newTMD("a.tmd", row.objects);
        for (std::uint32_t i = 0; i < row.objects; ++i) {
            entryAt(static_cast<std::int32_t>(i)).n_vert = i + 1;
        }
        EXPECT_EQ(putMyMem(TmdData.objtbl, file), row.lastBlock) << row.objects;
        EXPECT_EQ(static_cast<std::size_t>(file->position), 12 + row.tableInFile) << row.objects;
        deleteTMD(file);
        const std::string bytes = bytesOf("a.tmd");
        ASSERT_EQ(bytes.size(), 12 + row.tableInFile) << row.objects;
        for (std::size_t i = 0; i < row.tableInFile / 28; ++i) {
            const auto byte = [&](std::size_t k) {
                return static_cast<unsigned char>(bytes[12 + i * 28 + 4 + k]);
            };
            ASSERT_EQ(byte(0) + byte(1) * 256U + byte(2) * 65536U, i + 1) << row.objects;
        }
    }
}

TEST(OutVertex, WritesCoordinatesAndAZero) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 3});
    vertexAt(0) = {.x = 1, .y = -1, .z = 256};
    vertexAt(1) = {.x = 0x1234, .y = -32768, .z = 32767};
    vertexAt(2) = {.x = -2, .y = 2, .z = -3};
    RSD object = plainObject();
    object.nvert = 3;
    FileRecord* file = newTMD("a.tmd", 0);
    EXPECT_EQ(out_vertex(file, &object), 3);
    EXPECT_EQ(file->position, 12 + 24);
    object.nvert = 1; // as many as the object has, whatever the table holds
    EXPECT_EQ(out_vertex(file, &object), 1);
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").substr(12), fromHex("01 00 FF FF 00 01 00 00"
                                                   "34 12 00 80 FF 7F 00 00"
                                                   "FE FF 02 00 FD FF 00 00"
                                                   "01 00 FF FF 00 01 00 00"));
    EXPECT_EQ(TmdData.vertexBytes, 0U); // the driver's to add
}

TEST(OutNormal, WritesTheNormalsOfTheObject) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1, .normals = 2});
    vertexAt(0) = {.x = 9, .y = 9, .z = 9};
    normalAt(0) = {.x = 4096, .y = -4096, .z = 0};
    normalAt(1) = {.x = 1, .y = 2, .z = 3};
    RSD object = plainObject();
    object.nvert = 1;
    object.nnorm = 2;
    FileRecord* file = newTMD("a.tmd", 0);
    EXPECT_EQ(out_normal(file, &object), 2);
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").substr(12), fromHex("00 10 00 F0 00 00 00 00  01 00 02 00 03 00 00 00"));
}

TEST(OutVertex, OfNothingWritesNothing) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1, .normals = 1});
    const RSD object = plainObject();
    FileRecord* file = newTMD("a.tmd", 0);
    EXPECT_EQ(out_vertex(file, &object), 0);
    EXPECT_EQ(out_normal(file, &object), 0);
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").size(), 12U);
}

TEST(OutVertex, WritesTablesOfAnyLength) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 166'670});
    for (std::int32_t i = 0; i < 166'670; ++i) {
        vertexAt(i) = {
            .x = static_cast<std::int16_t>(i % 256), .y = 0, .z = static_cast<std::int16_t>(i / 256)};
    }
    // Around powers of two, where a writer may gather entries, and across the end of a block.
    for (const std::int32_t count :
         {1, 255, 256, 257, 511, 512, 513, 1023, 1024, 1025, 4096, 4097, 166'666, 166'667, 166'670}) {
        RSD object = plainObject();
        object.nvert = count;
        FileRecord* file = newTMD("a.tmd", 0);
        EXPECT_EQ(out_vertex(file, &object), count);
        EXPECT_EQ(file->position, 12 + 8 * count);
        deleteTMD(file);
        const std::string bytes = bytesOf("a.tmd");
        ASSERT_EQ(bytes.size(), 12 + 8 * static_cast<std::size_t>(count));
        std::string expected;
        for (std::int32_t i = 0; i < count; ++i) {
            expected += static_cast<char>(i % 256);
            expected += std::string(3, '\0');
            expected += static_cast<char>(i / 256 % 256);
            expected += static_cast<char>(i / 65536);
            expected += std::string(2, '\0');
        }
        ASSERT_TRUE(bytes.substr(12) == expected) << count;
    }
}

TEST(OutVertex, VerticesOutsideTheTableAreZeros) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1});
    vertexAt(0) = {.x = 1, .y = 1, .z = 1};
    RSD object = plainObject();
    object.nvert = 3;
    FileRecord* file = newTMD("a.tmd", 0);
    EXPECT_EQ(out_vertex(file, &object), 3);
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").substr(12), fromHex("01 00 01 00 01 00 00 00") + std::string(16, '\0'));
}

TEST(OutVertex, VerboseRejectsVerticesOutsideTheTable) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1});
    Verbose = 1;
    RSD object = plainObject();
    FileRecord* file = newTMD("a.tmd", 0);
    object.nvert = 3;
    EXPECT_EXIT(out_vertex(file, &object), ExitedWithCode(17), testing::Eq("\nBad index: 2 [0-1]\n"));
    object.nvert = 2; // the index right behind the table passes
    EXPECT_EQ(out_vertex(file, &object), 2);
    deleteTMD(file);
    EXPECT_EQ(bytesOf("a.tmd").substr(12), std::string(16, '\0'));
}

TEST(DeleteTMD, KeepsTheFiguresOfTheFile) {
    const TestDirectory directory;
    FileRecord* file = newTMD("a.tmd", 2);
    TmdData.primitiveBytes = 40;
    deleteTMD(file);
    EXPECT_EQ(TmdData.nObj, 2U);
    EXPECT_EQ(TmdData.primitiveBytes, 40U);
    EXPECT_EQ(TmdData.objtbl, nullptr);
}
