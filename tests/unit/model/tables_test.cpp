#include "model/tables.hpp"

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "model/params.hpp"
#include "utilkit/tracked.hpp"

#include <cstddef>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

struct BlockRow {
    const ChunkedArray* table;
    std::uint32_t count;
    std::uint32_t size;
    std::uint32_t perBlock; // 1,000,000 / size
    std::uint32_t blocks;
    std::uint32_t inLast;
};

void expectBlocks(const BlockRow& row) {
    ASSERT_NE(row.table, nullptr);
    EXPECT_EQ(row.table->elementCount, row.count);
    EXPECT_EQ(row.table->elementSize, row.size);
    EXPECT_EQ(row.table->elementsPerBlock, row.perBlock);
    EXPECT_EQ(row.table->blockCount, row.blocks);
    EXPECT_EQ(row.table->lastBlockElements, row.inLast);
}

ParamList listOf(std::initializer_list<std::uint8_t> bytes) {
    ParamList list{};
    std::copy(bytes.begin(), bytes.end(), list.begin());
    return list;
}

} // namespace

TEST(Records, AreAsLargeAsTheirTablesCount) {
    EXPECT_EQ(sizeof(Coordinates), 6U);
    EXPECT_EQ(offsetof(Coordinates, x), 0U);
    EXPECT_EQ(offsetof(Coordinates, y), 2U);
    EXPECT_EQ(offsetof(Coordinates, z), 4U);
    EXPECT_EQ(sizeof(PolygonRecord), 40U);
    EXPECT_EQ(offsetof(PolygonRecord, attr), 0U);
    EXPECT_EQ(offsetof(PolygonRecord, vert), 4U);
    EXPECT_EQ(offsetof(PolygonRecord, norm), 20U);
    EXPECT_EQ(offsetof(PolygonRecord, mat_no), 36U);
    EXPECT_EQ(sizeof(MaterialRecord), 8U);
    EXPECT_EQ(offsetof(MaterialRecord, attr), 0U);
    EXPECT_EQ(offsetof(MaterialRecord, shading), 1U);
    EXPECT_EQ(offsetof(MaterialRecord, kind), 2U);
}

TEST(Records, HoldSixteenBitCoordinates) {
    Coordinates record{};
    record.x = static_cast<std::int16_t>(0x8000);
    EXPECT_EQ(record.x, -32768);
}

TEST(CreateTables, OfNothingLeavesOnlyTheDefaultMaterial) {
    const FreshGlobals globals;
    const ModelTables tables({});
    EXPECT_EQ(vertex, nullptr);
    EXPECT_EQ(normal, nullptr);
    EXPECT_EQ(polygon, nullptr);
    expectBlocks({.table = material, .count = 1, .size = 8, .perBlock = 125'000, .blocks = 1, .inLast = 1});
    // The material table: header 28, block table 4, one block of 8; the white: 3.
    EXPECT_EQ(allocCount, 4);
    EXPECT_EQ(allocTotal, 43);
    EXPECT_EQ(freeCount, 0);
}

TEST(CreateTables, LeavesOutEachTableOfNothing) {
    const FreshGlobals globals;
    {
        const ModelTables tables({.vertices = 3});
        EXPECT_NE(vertex, nullptr);
        EXPECT_EQ(normal, nullptr);
        EXPECT_EQ(polygon, nullptr);
    }
    {
        const ModelTables tables({.normals = 1});
        EXPECT_EQ(vertex, nullptr);
        EXPECT_NE(normal, nullptr);
        EXPECT_EQ(polygon, nullptr);
    }
    {
        const ModelTables tables({.polygons = 2});
        EXPECT_EQ(vertex, nullptr);
        EXPECT_EQ(normal, nullptr);
        EXPECT_NE(polygon, nullptr);
    }
}

TEST(CreateTables, MakesMaterialZeroFlatWhite) {
    const FreshGlobals globals;
    const ModelTables tables({.materials = 2});
    const MaterialRecord& white = materialAt(0);
    EXPECT_EQ(white.attr, 0);
    EXPECT_EQ(white.shading, 'F');
    EXPECT_EQ(white.kind, 'C');
    EXPECT_EQ(get_params(white), listOf({255, 255, 255}));
    EXPECT_EQ(get_params(materialAt(1)), ParamList{});
}

TEST(CreateTables, SizesEachTableByItsLargestCount) {
    const FreshGlobals globals;
    const ModelTables tables({.vertices = 166'667, .normals = 333'332, .polygons = 25'001, .materials = 7});
    expectBlocks(
        {.table = vertex, .count = 166'667, .size = 6, .perBlock = 166'666, .blocks = 2, .inLast = 1});
    expectBlocks(
        {.table = normal, .count = 333'332, .size = 6, .perBlock = 166'666, .blocks = 2, .inLast = 0});
    expectBlocks(
        {.table = polygon, .count = 25'001, .size = 40, .perBlock = 25'000, .blocks = 2, .inLast = 1});
    expectBlocks({.table = material, .count = 8, .size = 8, .perBlock = 125'000, .blocks = 1, .inLast = 8});
    // Four headers of 28, block tables of 2, 2, 2 and 1 pointers of 4, the elements, and the white's 3.
    EXPECT_EQ(allocTotal, 4 * 28 + 7 * 4 + 6 * 166'667 + 6 * 333'332 + 40 * 25'001 + 8 * 8 + 3);
    // Four headers, four block tables, seven blocks, the white.
    EXPECT_EQ(allocCount, 16);
}

TEST(CreateTables, ClearsItsBlocks) {
    const FreshGlobals globals;
    const ModelTables tables({.vertices = 1, .normals = 1, .polygons = 25'001, .materials = 1});
    EXPECT_EQ(xyz(vertexAt(0)), (std::array{0, 0, 0}));
    EXPECT_EQ(xyz(normalAt(0)), (std::array{0, 0, 0}));
    for (const std::int32_t i : {0, 24'999, 25'000}) {
        EXPECT_EQ(polygonAt(i).attr, 0U) << i;
        EXPECT_EQ(polygonAt(i).mat_no, 0) << i;
    }
    EXPECT_EQ(materialAt(1).attr, 0);
    EXPECT_EQ(materialAt(1).shading, '\0');
}

TEST(CreateTables, KeepsRecordsOfTwoBlocksApart) {
    const FreshGlobals globals;
    const ModelTables tables({.polygons = 50'001});
    for (const std::int32_t i : {0, 24'999, 25'000, 49'999, 50'000}) {
        polygonAt(i).mat_no = i + 1;
    }
    for (const std::int32_t i : {0, 24'999, 25'000, 49'999, 50'000}) {
        EXPECT_EQ(polygonAt(i).mat_no, i + 1);
    }
    EXPECT_EQ(polygonAt(1).mat_no, 0);
    EXPECT_EQ(polygonAt(25'001).mat_no, 0);
}

TEST(FreeTables, ReleasesEveryBlockAndTheWhite) {
    const FreshGlobals globals;
    { const ModelTables tables({.vertices = 1, .normals = 1, .polygons = 25'001, .materials = 1}); }
    // Every array: its blocks (1, 1, 2, 1), block table and header; then the white's list, whose 3 bytes
    // stay in the total.
    EXPECT_EQ(freeCount, 5 + 4 * 2 + 1);
    EXPECT_EQ(allocCount, freeCount);
    EXPECT_EQ(allocTotal, 3);
}

TEST(FreeTables, OfNothingReleasesTheMaterialTableOnly) {
    const FreshGlobals globals;
    { const ModelTables tables({}); }
    EXPECT_EQ(freeCount, 4);
    EXPECT_EQ(allocTotal, 3);
}

TEST(FreeTables, AcceptsThatThereAreNone) {
    const FreshGlobals globals;
    ASSERT_EQ(material, nullptr);
    free_tables();
    EXPECT_EQ(freeCount, 0);
    EXPECT_EQ(allocTotal, 0);
}
