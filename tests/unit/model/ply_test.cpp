#include "model/ply.hpp"

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "settings/settings.hpp"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

using Box = std::array<std::int32_t, 6>;

Box boxOf(const RSD& object) {
    return {object.minX, object.minY, object.minZ, object.maxX, object.maxY, object.maxZ};
}

// Reads vertex lines for the object, as one pass does.
void readVertices(const std::string& lines, RSD& object) {
    writeFile("lines", lines);
    FileRecord* file = fileOpen("lines", "r");
    get_ply_vertex(file, &object);
    fileClose(file);
}

void readNormals(const std::string& lines, const RSD& object) {
    writeFile("lines", lines);
    FileRecord* file = fileOpen("lines", "r");
    get_ply_normal(file, &object);
    fileClose(file);
}

void readPolygons(const std::string& lines, const RSD& object) {
    writeFile("lines", lines);
    FileRecord* file = fileOpen("lines", "r");
    get_ply_polygon(file, &object);
    fileClose(file);
}

struct PlaceRow {
    const char* coordinate;
    double factor;
    std::int32_t translation;
    std::int32_t placed; // before it is cut to 16 bits
};

constexpr double almostHalf = 0.49999999999999994; // the number right below one half
constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

constexpr std::array<PlaceRow, 68> placeRows = {{
    // Halves go away from zero.
    {"0.4", 1.0, 0, 0},
    {"0.5", 1.0, 0, 1},
    {"0.6", 1.0, 0, 1},
    {"1.49", 1.0, 0, 1},
    {"1.5", 1.0, 0, 2},
    {"2.5", 1.0, 0, 3},
    {"-0.4", 1.0, 0, 0},
    {"-0.5", 1.0, 0, -1},
    {"-0.6", 1.0, 0, -1},
    {"-1.49", 1.0, 0, -1},
    {"-1.5", 1.0, 0, -2},
    {"-2.5", 1.0, 0, -3},
    {"0", 1.0, 0, 0},
    {"-0", 1.0, 0, 0},
    // Coordinates are single: the nearest one to the first is one half itself.
    {"0.49999999", 1.0, 0, 1},
    {"0.49999997", 1.0, 0, 0},
    {"16777217", 1.0, 0, 16777216},
    {"0.1", 10.0, 0, 1},
    // Zero counts as negative.
    {"0", 1.0, 10, 9},
    {"0", 1.0, 1, 0},
    {"0", 1.0, -10, -10},
    {"-0", 1.0, 10, 9},
    {"0", 1000.0, 10, 9},
    // The half goes by the coordinate, not by where it ends.
    {"-0.4", 1.0, 10, 9},  // -0.5 - 0.4 + 10 =  9.1
    {"-0.6", 1.0, 10, 8},  // -0.5 - 0.6 + 10 =  8.9
    {"-1.5", 1.0, 10, 8},  // -0.5 - 1.5 + 10 =  8
    {"-10", 1.0, 10, 0},   // -0.5 - 10 + 10  = -0.5
    {"0.4", 1.0, -10, -9}, //  0.5 + 0.4 - 10 = -9.1
    {"0.6", 1.0, -10, -8}, //  0.5 + 0.6 - 10 = -8.9
    {"1.5", 1.0, -10, -8}, //  0.5 + 1.5 - 10 = -8
    {"10", 1.0, -10, 0},   //  0.5 + 10 - 10  =  0.5
    {"-10.4", 1.0, 10, 0}, // -0.5 - 10.4 + 10 = -0.9
    {"0.4", 1.0, 10, 10},
    {"-0.4", 1.0, -10, -10},
    // ... nor by the factor.
    {"1", -1.0, 0, 0},     //  0.5 - 1
    {"2", -1.0, 0, -1},    //  0.5 - 2
    {"2.5", -1.0, 0, -2},  //  0.5 - 2.5
    {"-1", -1.0, 0, 0},    // -0.5 + 1
    {"-2", -1.0, 0, 1},    // -0.5 + 2
    {"-2.5", -1.0, 0, 2},  // -0.5 + 2.5
    {"3", -1.0, 10, 7},    //  0.5 - 3 + 10 =  7.5
    {"-3", -1.0, -10, -7}, // -0.5 + 3 - 10 = -7.5
    // The translation is not scaled, and is added before the fraction goes.
    {"1", 0.5, 7, 8},
    {"1.2", 1000.0, 7, 1207},
    {"0.49999997", 1.0, 1 << 30, (1 << 30) + 1}, // 0.99999997 is lost beside such a number
    // Double precision, every operation rounded by itself.
    {"1", almostHalf, 0, 1}, // 0.5 + almost 0.5 gives 1
    {"-1", almostHalf, 0, -1},
    {"50", -2.57, 0, -128}, // the product gives -128.5, although 2.57 is a little less
    {"-50", -2.57, 0, 128},
    {"3", 0.1, 0, 0},
    {"12345678", 0.3, 0, 3703703}, // 3703703.4 + 0.5; in single precision it would be 3703703.5
    {"16777215", 0.9, 0, 15099494},
    {"0.333", 3000.0, 0, 999},
    {"100", 0.01, 0, 1},
    // The limits of 32 bits, and what lies beyond.
    {"2147483520", 1.0, 0, 2147483520},
    {"2147483647", 1.0, 0, smallest},    // the nearest single is 2147483648
    {"2147483647", 1.0, -1, 2147483647}, // 2147483648.5 - 1
    {"-2147483648", 1.0, 0, smallest},   // -2147483648.5, cut
    {"-2147483904", 1.0, 0, smallest},
    {"3e9", 1.0, 0, smallest},
    {"-3e9", 1.0, 0, smallest},
    {"3e9", 1.0, -1000000000, 2000000000},
    {"1e38", 10.0, 0, smallest},
    {"1e39", 1.0, 0, smallest}, // infinite
    {"nan", 1.0, 5, smallest},
    {"inf", 1.0, 0, smallest},
    {"-inf", 1.0, 0, smallest},
    {"0", std::numeric_limits<double>::infinity(), 0, smallest}, // not a number
}};

} // namespace

TEST(GetPlyVertex, PlacesCoordinates) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1});
    for (const PlaceRow& row : placeRows) {
        RSD object = plainObject();
        object.nvert = 1;
        object.maxX = smallest;
        object.minX = smallest;
        object.offsetX = row.translation;
        scale = row.factor;
        readVertices(std::string(row.coordinate) + " 0 0", object);
        EXPECT_EQ(object.maxX, row.placed) << row.coordinate << " " << row.factor << " " << row.translation;
        // The low 16 bits, as a signed number.
        const std::int64_t low = ((row.placed % 65536LL) + 65536) % 65536;
        EXPECT_EQ(vertexAt(0).x, low < 32768 ? low : low - 65536) << row.coordinate;
    }
}

TEST(GetPlyVertex, CutsToSixteenBitsWithoutACheck) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 3});
    RSD object = plainObject();
    object.nvert = 3;
    readVertices("32767 32768 65535\n-32768 -32769 -65536\n65536 98304 100000\n", object);
    EXPECT_EQ(xyz(vertexAt(0)), (std::array{32767, -32768, -1}));
    EXPECT_EQ(xyz(vertexAt(1)), (std::array{-32768, 32767, 0}));
    EXPECT_EQ(xyz(vertexAt(2)), (std::array{0, -32768, -31072}));
}

TEST(GetPlyVertex, TranslatesEveryAxisByItsOwn) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 2});
    RSD object = plainObject();
    object.nvert = 2;
    object.offsetX = 100;
    object.offsetY = -200;
    object.offsetZ = 3000;
    scale = 2.0;
    readVertices("1 2 3\n-4 5 -6\n", object);
    EXPECT_EQ(xyz(vertexAt(0)), (std::array{102, -195, 3006})); // 2.5 + 100, 4.5 - 200, 6.5 + 3000
    EXPECT_EQ(xyz(vertexAt(1)), (std::array{91, -189, 2987}));  // -8.5 + 100, 10.5 - 200, -12.5 + 3000
}

TEST(GetPlyVertex, FixesTheFactorFromTheExponent) {
    const TestDirectory directory;
    struct Row {
        std::int32_t exponent;
        double factor;
    };
    static constexpr double infinite = std::numeric_limits<double>::infinity();
    static constexpr std::array<Row, 16> rows = {{
        {0, 1.0},
        {1, 2.0},
        {2, 4.0},
        {10, 1024.0},
        {31, 2147483648.0},
        {127, 0x1p127},
        {128, infinite}, // beyond single precision
        {2147483647, infinite},
        {-1, 0.5},
        {-2, 0.25},
        {-10, 0x1p-10},
        {-126, 0x1p-126},
        {-127, 0x1p-127}, // 1 by the largest power, still more than nothing
        {-128, 0.0},
        {-2147483647, 0.0},
        {smallest, 0.0},
    }};
    for (const Row& row : rows) {
        RSD object = plainObject();
        object.scaleFactor = row.exponent;
        scale = 0.0;
        readVertices("", object);
        EXPECT_EQ(scale, row.factor) << row.exponent;
    }
}

TEST(GetPlyVertex, KeepsTheFactorOfTheFirstObject) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1});
    RSD first = plainObject();
    first.nvert = 1;
    first.scaleFactor = 3;
    RSD second = first;
    second.scaleFactor = -1;
    second.offsetX = 50;
    readVertices("2 0 0", first);
    EXPECT_EQ(vertexAt(0).x, 16);
    readVertices("2 0 0", second);
    EXPECT_EQ(vertexAt(0).x, 66);
    EXPECT_EQ(scale, 8.0);
}

TEST(GetPlyVertex, LeavesAnAbsoluteFactorAlone) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1});
    RSD object = plainObject();
    object.nvert = 1;
    object.scaleFactor = 3;
    scale = -0.25;
    readVertices("8 0 0", object);
    EXPECT_EQ(scale, -0.25);
    EXPECT_EQ(vertexAt(0).x, -1); // 0.5 - 2
}

TEST(GetPlyVertex, OnePassNeverComparesAMaximumWithTheMinimum) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 3});
    struct Row {
        const char* lines;
        Box box; // smallest X Y Z, largest X Y Z
    };
    static constexpr std::array<Row, 6> rows = {{
        // The first vertex sets the largest only; rising values never set the smallest.
        {"5 -7 1\n5 -7 2\n5 -7 3\n", {5, -7, 65535, 5, -7, 3}},
        {"1 3 2\n2 2 1\n3 1 3\n", {65535, 1, 1, 3, 3, 3}},
        {"-9 -9 -9\n-8 -10 -9\n-7 -11 -9\n", {65535, -11, -9, -7, -9, -9}},
        // Both start values are numbers like any other.
        {"-65536 -65537 -65535\n-65536 -65537 -65535\n-65536 -65537 -65535\n",
         {-65536, -65537, -65535, -65536, -65536, -65535}},
        {"65535 65536 70000\n65535 65535 65535\n65534 65535 65534\n",
         {65534, 65535, 65534, 65535, 65536, 70000}},
        {"3e9 nan -3e9\n3e9 nan -3e9\n3e9 nan -3e9\n",
         {smallest, smallest, smallest, -65536, -65536, -65536}},
    }};
    for (const Row& row : rows) {
        RSD object = plainObject();
        object.nvert = 3;
        readVertices(row.lines, object);
        EXPECT_EQ(boxOf(object), row.box) << row.lines;
    }
}

TEST(GetPlyVertex, ASecondPassComparesAllWithTheMinimum) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 3});
    RSD object = plainObject();
    object.nvert = 3;
    const std::string lines = "1 3 2\n2 2 1\n3 1 3\n";
    readVertices(lines, object);
    EXPECT_EQ(boxOf(object), (Box{65535, 1, 1, 3, 3, 3}));
    readVertices(lines, object);
    EXPECT_EQ(boxOf(object), (Box{1, 1, 1, 3, 3, 3}));
    readVertices(lines, object);
    EXPECT_EQ(boxOf(object), (Box{1, 1, 1, 3, 3, 3}));
}

TEST(GetPlyVertex, ASecondPassFindsASingleVertex) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 1});
    RSD object = plainObject();
    object.nvert = 1;
    readVertices("5 -7 0", object);
    EXPECT_EQ(boxOf(object), (Box{65535, 65535, 65535, 5, -7, 0}));
    readVertices("5 -7 0", object);
    EXPECT_EQ(boxOf(object), (Box{5, -7, 0, 5, -7, 0}));
}

TEST(GetPlyVertex, BoundsWhatIsPlacedBeforeItIsCut) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 2});
    RSD object = plainObject();
    object.nvert = 2;
    object.offsetX = 1000;
    scale = 100.0;
    readVertices("1000 -1000 0\n0 0 1\n", object);
    EXPECT_EQ(boxOf(object), (Box{999, -100000, 65535, 101000, 0, 100}));
    readVertices("1000 -1000 0\n0 0 1\n", object);
    EXPECT_EQ(boxOf(object), (Box{999, -100000, 0, 101000, 0, 100}));
}

TEST(GetPlyVertex, OfNothingReadsAndBoundsNothing) {
    const TestDirectory directory;
    RSD object = plainObject();
    readVertices("", object);
    object.nvert = -1;
    readVertices("", object);
    EXPECT_EQ(boxOf(object), (Box{65535, 65535, 65535, -65536, -65536, -65536}));
}

TEST(GetPlyVertex, GoesOnInTheNextBlock) {
    const TestDirectory directory;
    const ModelTables tables({.vertices = 166'668});
    std::string lines;
    for (int i = 0; i < 166'668; ++i) {
        lines += std::to_string(i % 30'000) + " 0 0\n";
    }
    RSD object = plainObject();
    object.nvert = 166'668;
    readVertices(lines, object);
    EXPECT_EQ(vertexAt(0).x, 0);
    EXPECT_EQ(vertexAt(166'665).x, 16'665);
    EXPECT_EQ(vertexAt(166'666).x, 16'666);
    EXPECT_EQ(vertexAt(166'667).x, 16'667);
}

TEST(GetPlyNormal, GivesTwelveBitsOfFraction) {
    const TestDirectory directory;
    const ModelTables tables({.normals = 1});
    struct Row {
        const char* component;
        int fixed;
    };
    static constexpr std::array<Row, 22> rows = {{
        {"1.0", 4096},
        {"-1.0", -4096},
        {"0.5", 2048},
        {"-0.5", -2048},
        {"0", 0},
        {"-0", 0},
        {"0.0001", 0}, //  0.4096 + 0.5
        {"0.0002", 1}, //  0.8192 + 0.5
        {"-0.0001", 0},
        {"-0.0002", -1},
        {"0.0001220703125", 1}, // half a step
        {"-0.0001220703125", -1},
        {"0.70710678", 2896}, // 2896.309...
        {"7.9998", 32767},    // 32767.18 + 0.5
        {"7.9999", -32768},   // 32767.59 + 0.5
        {"8", -32768},
        {"16", 0},
        {"-8", -32768},
        {"-8.0002", 32767}, // -32768.82 - 0.5
        {"1e30", 0},        // beyond 32 bits: the smallest number, cut
        {"-1e30", 0},
        {"nan", 0},
    }};
    scale = 3.0;
    for (const Row& row : rows) {
        RSD object = plainObject();
        object.nnorm = 1;
        object.offsetX = object.offsetY = object.offsetZ = 5;
        readNormals(std::string(row.component) + " 2 " + row.component, object);
        // Neither scaled nor translated.
        EXPECT_EQ(xyz(normalAt(0)), (std::array{row.fixed, 8192, row.fixed})) << row.component;
    }
}

TEST(GetPlyPolygon, ClearsAllBitsButTypeAndGradation) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 3});
    RSD object = plainObject();
    object.npoly = 3;
    polygonAt(0).attr = 0x01FF0000; // as a quadrangle with everything left it
    polygonAt(1).attr = 0x01FE0000;
    polygonAt(2).attr = 0x00010000;
    readPolygons("0 0 0 0 0 0 0 0 0\n0 0 0 0 0 0 0 0 0\n3 0 0 0 0 0 0 0 0\n", object);
    EXPECT_EQ(polygonAt(0).attr, 0x00010000U);
    EXPECT_EQ(polygonAt(1).attr, 0x00000000U);
    EXPECT_EQ(polygonAt(2).attr, 0x03010000U);
}

TEST(GetPlyPolygon, KeepsTheLowThreeBitsOfTheType) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1});
    struct Row {
        const char* word;
        std::uint32_t type;
    };
    static constexpr std::array<Row, 14> rows = {{
        {"0", 0},
        {"1", 1},
        {"2", 2},
        {"3", 3},
        {"4", 4},
        {"7", 7},
        {"8", 0},
        {"12", 2},
        {"f", 7},
        {"0xA", 2},
        {"FFFFFFFD", 5},
        {"-1", 7},
        {"100000006", 6},
        {"FFFFFFFFFFFFFFFFFFFF", 7},
    }};
    for (const Row& row : rows) {
        RSD object = plainObject();
        object.npoly = 1;
        readPolygons(std::string(row.word) + " 0 0 0 0 0 0 0 0", object);
        EXPECT_EQ(polygonAt(0).attr, row.type << 24) << row.word;
    }
}

TEST(GetPlyPolygon, KeepsIndicesAsTheyAreRead) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1});
    RSD object = plainObject();
    object.npoly = 1;
    polygonAt(0).mat_no = 77;
    readPolygons("1 10 -20 3000000 40 50 60 70 4294967295", object);
    EXPECT_EQ(polygonAt(0).vert, (std::array<std::int32_t, 4>{10, -20, 3000000, 40}));
    EXPECT_EQ(polygonAt(0).norm, (std::array<std::int32_t, 4>{50, 60, 70, -1}));
    EXPECT_EQ(polygonAt(0).mat_no, -1);
}

TEST(GetPlyPolygon, OldFilesSwapTheMiddleIndices) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 2});
    RSD object = plainObject();
    object.npoly = 2;
    object.version = oldVersion;
    readPolygons("1 10 20 30 40 50 60 70 80\n0 1 2 3 4 5 6 7 8\n", object);
    EXPECT_EQ(polygonAt(0).vert, (std::array<std::int32_t, 4>{10, 30, 20, 40}));
    EXPECT_EQ(polygonAt(0).norm, (std::array<std::int32_t, 4>{50, 70, 60, 80}));
    EXPECT_EQ(polygonAt(1).vert, (std::array<std::int32_t, 4>{1, 3, 2, 4}));
    EXPECT_EQ(polygonAt(1).norm, (std::array<std::int32_t, 4>{5, 7, 6, 8}));
}

TEST(ReadPly, StepsOverWhatItDoesNotWant) {
    const TestDirectory directory({{"m.ply", "@PLY940102\n1 1 1\n1 2 3\n1 0 0\n0 1 2 3 4 5 6 7 8\n"}});
    struct Row {
        PlySections wanted;
        int vertex;
        int normal;
        int polygon;
    };
    static constexpr std::array<Row, 3> rows = {{
        {PlySections::all, 1, 4096, 1},
        {PlySections::vertices, 1, 0, 0},
        {PlySections::normals, 0, 4096, 0},
    }};
    for (const Row& row : rows) {
        const ModelTables tables({.vertices = 1, .normals = 1, .polygons = 1});
        RSD object = plainObject();
        read_ply("m.ply", &object, row.wanted);
        EXPECT_EQ(vertexAt(0).x, row.vertex);
        EXPECT_EQ(normalAt(0).x, row.normal);
        EXPECT_EQ(polygonAt(0).vert[0], row.polygon);
        EXPECT_EQ(object.nvert, 1);
        EXPECT_EQ(object.nnorm, 1);
        EXPECT_EQ(object.npoly, 1);
    }
}
