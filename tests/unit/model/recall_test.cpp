// Vertices and normals that are not read again: whatever other objects have been in the tables in between,
// the effects are those of another reading.
#include "model/recall.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "model/ply.hpp"
#include "settings/settings.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

using Vectors = std::vector<std::array<int, 3>>;

// An object of a run of `objects`, whose copy is released at the end.
struct Remembered {
    Remembered() { object = plainObject(); }
    ~Remembered() { release_geometry(&object); }
    Remembered(const Remembered&) = delete;
    Remembered& operator=(const Remembered&) = delete;

    RSD object{};
};

// Makes it a run of so many objects.
struct RunOf {
    explicit RunOf(std::uint32_t objects) : saved(ObjList.nObj) { ObjList.nObj = objects; }
    ~RunOf() { ObjList.nObj = saved; }
    RunOf(const RunOf&) = delete;
    RunOf& operator=(const RunOf&) = delete;

    std::uint32_t saved;
};

Vectors vertices(std::int32_t count) {
    Vectors all;
    for (std::int32_t i = 0; i < count; ++i) {
        all.push_back(xyz(vertexAt(i)));
    }
    return all;
}

Vectors normals(std::int32_t count) {
    Vectors all;
    for (std::int32_t i = 0; i < count; ++i) {
        all.push_back(xyz(normalAt(i)));
    }
    return all;
}

std::array<std::int32_t, 6> box_of(const RSD& object) {
    return {object.minX, object.minY, object.minZ, object.maxX, object.maxY, object.maxZ};
}

// Gives the object counts and the tables contents that differ by `seed`, as a reading does.
void fill_tables(RSD& object, std::int32_t vertexCount, std::int32_t normalCount, int seed) {
    object.nvert = vertexCount;
    object.nnorm = normalCount;
    const auto number = [seed](std::int32_t i) { return static_cast<std::int16_t>(i * 7 + seed); };
    for (std::int32_t i = 0; i < vertexCount; ++i) {
        vertexAt(i) = {.x = number(i), .y = number(i + 1), .z = number(i + 2)};
    }
    for (std::int32_t i = 0; i < normalCount; ++i) {
        normalAt(i) = {.x = number(i + 3), .y = number(i + 4), .z = number(i + 5)};
    }
    remember_geometry(&object);
}

constexpr char firstFile[] = "@PLY940102\n2 1 0\n1 2 3\n4 5 6\n1 0 0\n";
constexpr char otherFile[] = "@PLY940102\n2 1 0\n-1 -2 -3\n-4 -5 -6\n0 -1 0\n"; // the same counts
const Vectors firstVertices = {{1, 2, 3}, {4, 5, 6}};
const Vectors otherVertices = {{-1, -2, -3}, {-4, -5, -6}};
const Vectors firstNormals = {{4096, 0, 0}};
const Vectors otherNormals = {{0, -4096, 0}};

} // namespace

TEST(RememberGeometry, OfTheOnlyObjectLeavesItInTheTables) {
    const TestDirectory directory({{"m.ply", firstFile}});
    const ModelTables tables({.vertices = 2, .normals = 1});
    const RunOf run(1);
    Remembered only;
    read_ply("m.ply", &only.object, PlySections::all);
    EXPECT_EQ(only.object.read.copy, nullptr);
    EXPECT_EQ(box_of(only.object), (std::array{65535, 65535, 65535, 4, 5, 6}));
    ASSERT_TRUE(recall_vertices(&only.object));
    EXPECT_EQ(box_of(only.object), (std::array{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(recall_normals(&only.object));
    EXPECT_EQ(vertices(2), firstVertices);
    EXPECT_EQ(normals(1), firstNormals);
}

TEST(RememberGeometry, BringsObjectsBackInAnyOrder) {
    const TestDirectory directory({{"a.ply", firstFile},
                                   {"b.ply", otherFile},
                                   {"c.ply", "@PLY940102\n0 2 0\n0 0 1\n0 0 2\n"},
                                   {"d.ply", "@PLY940102\n3 0 0\n7 7 7\n9 9 9\n8 8 8\n"}});
    const ModelTables tables({.vertices = 3, .normals = 2});
    const RunOf run(4);
    std::array<Remembered, 4> all;
    static constexpr std::array names = {"a.ply", "b.ply", "c.ply", "d.ply"};
    for (std::size_t i = 0; i < all.size(); ++i) {
        read_ply(names[i], &all[i].object, PlySections::all);
    }
    for (const std::size_t i : {0U, 1U, 2U, 3U, 3U, 1U, 0U, 2U, 0U}) {
        RSD& object = all[i].object;
        ASSERT_TRUE(recall_vertices(&object)) << i;
        const std::array<Vectors, 4> expected = {firstVertices, otherVertices, Vectors{},
                                                 Vectors{{7, 7, 7}, {9, 9, 9}, {8, 8, 8}}};
        EXPECT_EQ(vertices(object.nvert), expected[i]);
    }
    for (const std::size_t i : {0U, 1U, 2U, 3U, 2U, 1U, 1U, 0U}) {
        RSD& object = all[i].object;
        ASSERT_TRUE(recall_normals(&object)) << i;
        const std::array<Vectors, 4> expected = {firstNormals, otherNormals,
                                                 Vectors{{0, 0, 4096}, {0, 0, 8192}}, Vectors{}};
        EXPECT_EQ(normals(object.nnorm), expected[i]);
    }
    EXPECT_EQ(box_of(all[0].object), (std::array{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(box_of(all[1].object), (std::array{-4, -5, -6, -1, -2, -3}));
    EXPECT_EQ(box_of(all[2].object), (std::array{65535, 65535, 65535, -65536, -65536, -65536}));
    EXPECT_EQ(box_of(all[3].object), (std::array{7, 7, 7, 9, 9, 9}));
}

// Two vertices and one normal of 6 bytes each.
TEST(ReleaseGeometry, MakesRoomForOtherCopies) {
    const TestDirectory directory({{"m.ply", firstFile}});
    const ModelTables tables({.vertices = 2, .normals = 1});
    const RunOf run(2);
    Remembered one;
    read_ply("m.ply", &one.object, PlySections::all);
    EXPECT_EQ(copiedGeometry, 18U);
    for (int i = 0; i < 2; ++i) {
        release_geometry(&one.object);
        EXPECT_EQ(one.object.read.copy, nullptr);
        EXPECT_EQ(copiedGeometry, 0U);
    }
}

// A copy is in one piece, the tables are not: a block of theirs holds 166,666 records.
TEST(RememberGeometry, BringsBackEveryBlock) {
    const FreshGlobals globals;
    const ModelTables tables({.vertices = 400'000, .normals = 333'333});
    const RunOf run(2);
    Remembered first;
    Remembered second;
    fill_tables(first.object, 400'000, 333'332, 1);
    const Vectors firstAll = vertices(400'000);
    const Vectors firstFacing = normals(333'332);
    fill_tables(second.object, 166'666, 333'333, 5000);
    const Vectors secondAll = vertices(166'666);
    const Vectors secondFacing = normals(333'333);
    ASSERT_TRUE(recall_vertices(&first.object));
    EXPECT_TRUE(vertices(400'000) == firstAll);
    EXPECT_TRUE(normals(333'333) == secondFacing); // not asked for yet
    ASSERT_TRUE(recall_vertices(&second.object));
    EXPECT_TRUE(vertices(166'666) == secondAll);
    ASSERT_TRUE(recall_normals(&first.object));
    EXPECT_TRUE(normals(333'332) == firstFacing);
    ASSERT_TRUE(recall_normals(&second.object));
    EXPECT_TRUE(normals(333'333) == secondFacing);
}

TEST(RememberGeometry, WithoutMemoryForTheCopyTheObjectIsReadAgain) {
    const TestDirectory directory({{"a.ply", firstFile}, {"b.ply", otherFile}});
    const ModelTables tables({.vertices = 2, .normals = 1});
    const RunOf run(2);
    Remembered first;
    Remembered second;
    first.object.nvert = 2;
    first.object.nnorm = 1;
    {
        const FailingAllocation failing(1);
        remember_geometry(&first.object);
        EXPECT_TRUE(hasFailedAllocation());
    }
    EXPECT_EQ(first.object.read.copy, nullptr);
    read_ply("b.ply", &second.object, PlySections::all);
    EXPECT_FALSE(recall_vertices(&first.object));
    EXPECT_FALSE(recall_normals(&first.object));
    EXPECT_EQ(vertices(2), otherVertices);
    read_ply("a.ply", &first.object, PlySections::vertices);
    read_ply("a.ply", &first.object, PlySections::normals);
    EXPECT_EQ(vertices(2), firstVertices);
    EXPECT_EQ(normals(1), firstNormals);
}

// So many objects that not all of them are kept. Those that are not get read again, which shows when their
// file has changed meanwhile, and nothing of theirs is in the way of the others.
TEST(RememberGeometry, KeepsObjectsUntilThereAreTooMany) {
    const TestDirectory directory;
    static constexpr std::int32_t count = 500'000;
    static constexpr std::size_t objects = 16; // of 3,000,000 bytes
    const ModelTables tables({.vertices = count, .normals = 1});
    const RunOf run(objects + 1);
    scale = 1.0;
    std::array<Remembered, objects> large;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < objects; ++i) {
        fill_tables(large[i].object, count, 0, static_cast<int>(i));
        kept += large[i].object.read.copy != nullptr ? 1 : 0;
    }
    EXPECT_GT(kept, 4U);
    ASSERT_LT(kept, objects);
    for (std::size_t i = 0; i < objects; ++i) {
        const bool isLast = i + 1 == objects; // still in the table when the first round begins
        EXPECT_EQ(large[i].object.read.copy != nullptr, i < kept) << i;
        EXPECT_EQ(recall_vertices(&large[i].object), i < kept || (isLast && kept == 0)) << i;
        if (i < kept) {
            EXPECT_EQ(vertexAt(0).x, static_cast<int>(i));
            EXPECT_EQ(vertexAt(count - 1).y, static_cast<std::int16_t>(count * 7 + static_cast<int>(i)));
        }
    }
    // What one object gives back is room for another.
    release_geometry(&large[0].object);
    fill_tables(large[kept].object, count, 0, 77);
    EXPECT_NE(large[kept].object.read.copy, nullptr);
    // A small one has to wait its turn like the others.
    std::string text = "@PLY940102\n499999 0 0\n";
    for (std::int32_t i = 0; i < count - 1; ++i) {
        text += i % 2 == 0 ? "5 6 7\n" : "8 9 -10\n";
    }
    writeFile("m.ply", text);
    Remembered another;
    read_ply("m.ply", &another.object, PlySections::all);
    ASSERT_EQ(another.object.read.copy, nullptr);
    const Vectors read = vertices(count - 1);
    ASSERT_TRUE(recall_vertices(&large[1].object));
    read_ply("m.ply", &another.object, PlySections::vertices);
    EXPECT_TRUE(vertices(count - 1) == read);
    EXPECT_EQ(box_of(another.object), (std::array{5, 6, -10, 8, 9, 7}));
    text.replace(text.find("5 6 7"), 5, "1 2 3");
    writeFile("m.ply", text);
    ASSERT_TRUE(recall_vertices(&large[1].object));
    read_ply("m.ply", &another.object, PlySections::vertices);
    EXPECT_EQ(xyz(vertexAt(0)), (std::array{1, 2, 3}));
    EXPECT_EQ(xyz(vertexAt(1)), (std::array{8, 9, -10}));
}

TEST(RecallVertices, OfAnotherScaleAreReadAgain) {
    const TestDirectory directory({{"a.ply", firstFile}, {"b.ply", otherFile}});
    const ModelTables tables({.vertices = 2, .normals = 1});
    const RunOf run(2);
    Remembered first;
    Remembered second;
    first.object.scaleFactor = -200; // the factor is 0, which is none for the next object
    second.object.scaleFactor = 1;
    scale = 0.0;
    read_ply("a.ply", &first.object, PlySections::all);
    EXPECT_EQ(scale, 0.0);
    EXPECT_EQ(vertices(2), (Vectors{{0, 0, 0}, {0, 0, 0}}));
    EXPECT_EQ(box_of(first.object), (std::array{0, 0, 0, 0, 0, 0}));
    read_ply("b.ply", &second.object, PlySections::all);
    EXPECT_EQ(scale, 2.0);
    read_ply("a.ply", &first.object, PlySections::vertices);
    EXPECT_EQ(vertices(2), (Vectors{{2, 4, 6}, {8, 10, 12}}));
    // Both vertices raise the largest, so neither is compared with the smallest.
    EXPECT_EQ(box_of(first.object), (std::array{0, 0, 0, 8, 10, 12}));
    read_ply("b.ply", &second.object, PlySections::vertices);
    EXPECT_EQ(vertices(2), (Vectors{{-2, -4, -6}, {-8, -10, -12}}));
    read_ply("a.ply", &first.object, PlySections::normals);
    EXPECT_EQ(normals(1), firstNormals);
    read_ply("b.ply", &second.object, PlySections::normals);
    EXPECT_EQ(normals(1), otherNormals);
}

TEST(RecallVertices, OfCountsThatHaveChangedAreReadAgain) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 3, .normals = 2});
    const RunOf run(2);
    for (const std::string change : {"@PLY940102\n3 1 0\n7 7 7\n8 8 8\n9 9 9\n0 0 1\n",
                                     "@PLY940102\n2 2 0\n7 7 7\n8 8 8\n0 0 1\n0 0 2\n"}) {
        writeFile("m.ply", firstFile);
        Remembered changed;
        RSD& object = changed.object;
        read_ply("m.ply", &object, PlySections::all);
        writeFile("m.ply", change);
        read_ply("m.ply", &object, PlySections::vertices);
        read_ply("m.ply", &object, PlySections::normals);
        const Vectors seven = {{7, 7, 7}, {8, 8, 8}, {9, 9, 9}};
        const Vectors facing = {{0, 0, 4096}, {0, 0, 8192}};
        EXPECT_EQ(vertices(object.nvert), Vectors(seven.begin(), seven.begin() + object.nvert)) << change;
        EXPECT_EQ(normals(object.nnorm), Vectors(facing.begin(), facing.begin() + object.nnorm)) << change;
    }
}

TEST(RecallVertices, OfNegativeCountsAreNone) {
    const TestDirectory directory({{"a.ply", firstFile}, {"n.ply", "@PLY940102\n-5 -7 -1\n"}});
    const ModelTables tables({.vertices = 2, .normals = 1});
    const RunOf run(2);
    Remembered negative;
    Remembered first;
    read_ply("n.ply", &negative.object, PlySections::all);
    read_ply("a.ply", &first.object, PlySections::all);
    read_ply("n.ply", &negative.object, PlySections::vertices);
    read_ply("n.ply", &negative.object, PlySections::normals);
    EXPECT_EQ(negative.object.nvert, -5);
    EXPECT_EQ(box_of(negative.object), (std::array{65535, 65535, 65535, -65536, -65536, -65536}));
    EXPECT_EQ(vertices(2), firstVertices);
    EXPECT_EQ(normals(1), firstNormals);
}

TEST(ForgetTables, MakesTheObjectComeFromItsCopy) {
    const TestDirectory directory({{"a.ply", firstFile}});
    const ModelTables tables({.vertices = 2, .normals = 1});
    for (const std::uint32_t objects : {1U, 2U}) {
        const RunOf run(objects);
        Remembered first;
        read_ply("a.ply", &first.object, PlySections::all);
        vertexAt(0).x = 99;
        normalAt(0).x = 99;
        forget_vertex_table();
        forget_normal_table();
        EXPECT_EQ(recall_vertices(&first.object), objects == 2);
        EXPECT_EQ(recall_normals(&first.object), objects == 2);
        EXPECT_EQ(vertexAt(0).x, objects == 2 ? 1 : 99);
        EXPECT_EQ(normalAt(0).x, objects == 2 ? 4096 : 99);
    }
}
