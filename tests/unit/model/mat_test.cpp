#include "model/mat.hpp"

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "model/params.hpp"
#include "settings/settings.hpp"
#include "utilkit/tracked.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::ExitedWithCode;

namespace {

using Bytes = std::vector<std::uint8_t>;

ParamList listOf(const Bytes& bytes) {
    ParamList list{};
    std::copy(bytes.begin(), bytes.end(), list.begin());
    return list;
}

// Polygon bits that follow from kind, shading and the light: 23 textured, 22 gouraud, 17 light off,
// 16 gradation.
struct KindRow {
    char kind;
    char shading;
    std::uint32_t lit;
    std::uint32_t dark; // bit 0 of the material's attributes set
};

constexpr std::array<KindRow, 34> kindRows = {{
    // A colour is flat in the dark, whatever its shading.
    {'C', 'F', 0x00000000, 0x00020000},
    {'C', 'G', 0x00400000, 0x00020000},
    {'C', 'S', 0x00000000, 0x00020000},
    // A gradation is gouraud in the dark, whatever its shading.
    {'G', 'F', 0x00010000, 0x00430000},
    {'G', 'G', 0x00410000, 0x00430000},
    {'G', 'S', 0x00010000, 0x00430000},
    {'T', 'F', 0x00800000, 0x00820000},
    {'T', 'G', 0x00C00000, 0x00820000},
    {'T', 'S', 0x00800000, 0x00820000},
    {'D', 'F', 0x00800000, 0x00820000},
    {'D', 'G', 0x00C00000, 0x00820000},
    {'D', 'S', 0x00800000, 0x00820000},
    {'H', 'F', 0x00810000, 0x00C30000},
    {'H', 'G', 0x00C10000, 0x00C30000},
    {'H', 'S', 0x00810000, 0x00C30000},
    // Any other kind is untextured, and stays as its shading has it.
    {'X', 'F', 0x00000000, 0x00020000},
    {'X', 'G', 0x00400000, 0x00420000},
    {'X', 'S', 0x00000000, 0x00020000},
    {'F', 'F', 0x00000000, 0x00020000},
    {'F', 'G', 0x00400000, 0x00420000},
    {'\0', 'F', 0x00000000, 0x00020000},
    {'\0', 'G', 0x00400000, 0x00420000},
    // Small letters are other letters.
    {'c', 'G', 0x00400000, 0x00420000},
    {'g', 'F', 0x00000000, 0x00020000},
    {'g', 'G', 0x00400000, 0x00420000},
    {'t', 'F', 0x00000000, 0x00020000},
    {'d', 'F', 0x00000000, 0x00020000},
    {'h', 'F', 0x00000000, 0x00020000},
    {'h', 'G', 0x00400000, 0x00420000},
    {'C', 'g', 0x00000000, 0x00020000},
    {'G', 'g', 0x00010000, 0x00430000},
    {'T', 'g', 0x00800000, 0x00820000},
    {'H', 'g', 0x00810000, 0x00C30000},
    {'X', 'g', 0x00000000, 0x00020000},
}};

// Polygon bits that follow from bits 1 to 4 of the material's attributes, by the number that these make:
// 21 translucent, 20-19 rate, 18 two-sided.
constexpr std::array<std::uint32_t, 16> optionBits = {
    0x00000000, // nothing
    0x00040000, // two-sided
    0x00200000, // translucent
    0x00240000, // translucent, two-sided
    0x00080000, // the same with rate 1
    0x000C0000, //
    0x00280000, //
    0x002C0000, //
    0x00100000, // rate 2
    0x00140000, //
    0x00300000, //
    0x00340000, //
    0x00180000, // rate 3
    0x001C0000, //
    0x00380000, //
    0x003C0000, //
};

constexpr std::array<std::int32_t, 4> corners = {1, 2, 3, 4};
constexpr std::array<std::int32_t, 4> facings = {5, 6, 7, 8};

struct ListRow {
    const char* list;
    std::vector<int> polygons; // those of polygons 0 to 11 that it names
};

// Assigns material 1 to the polygons of a list, in a table of twelve that have none.
std::vector<int> namedBy(const char* list) {
    const ModelTables tables({.polygons = 12, .materials = 2});
    for (int i = 0; i < 12; ++i) {
        polygonAt(i).mat_no = -1;
    }
    get_material_item(list, 1);
    std::vector<int> polygons;
    for (int i = 0; i < 12; ++i) {
        if (polygonAt(i).mat_no == 1) {
            polygons.push_back(i);
        } else {
            EXPECT_EQ(polygonAt(i).mat_no, -1) << list << ": " << i;
        }
    }
    return polygons;
}

const std::vector<int> allTwelve = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};

std::string badIndexText(const char* index, const char* count) {
    return std::string("\nBad index: ") + index + " [0-" + count + "]\n";
}

// Reads description lines into a table of as many materials and of one polygon.
void readLines(const std::string& lines, std::int32_t count, std::uint8_t version) {
    writeFile("lines", lines);
    RSD object = plainObject();
    object.nmat = count;
    object.version = version;
    FileRecord* file = fileOpen("lines", "r");
    get_material_desc(file, &object);
    fileClose(file);
}

struct ParamRow {
    const char* line;
    Bytes current;
    Bytes old;
};

} // namespace

TEST(SetMatNo, GivesPolygonsTheBitsOfEveryKindShadingAndAttribute) {
    const FreshGlobals globals;
    const ModelTables tables({.polygons = 2, .materials = 4});
    for (const KindRow& row : kindRows) {
        for (unsigned attr = 0; attr < 256; ++attr) {
            MaterialRecord& mat = materialAt(4);
            mat.attr = static_cast<std::uint8_t>(attr);
            mat.kind = row.kind;
            mat.shading = row.shading;
            const std::uint32_t type = attr % 8 << 24;
            const std::uint32_t expected =
                type | ((attr & 1) != 0 ? row.dark : row.lit) | optionBits[attr >> 1 & 15];
            // Every bit is set or cleared, whatever the polygon had before.
            for (const std::uint32_t before : {0x00000000U, 0x00FF0000U}) {
                polygonAt(1) = {.attr = type | before, .vert = corners, .norm = facings, .mat_no = -1};
                set_mat_no(1, 3);
                ASSERT_EQ(polygonAt(1).attr, expected)
                    << std::hex << row.kind << " " << row.shading << " " << attr << " over " << before;
            }
        }
    }
    EXPECT_EQ(polygonAt(1).mat_no, 3);
    EXPECT_EQ(polygonAt(1).vert, corners);
    EXPECT_EQ(polygonAt(1).norm, facings);
    EXPECT_EQ(polygonAt(0).attr, 0U);
}

TEST(SetMatNo, TheLastMaterialOfAPolygonStays) {
    const FreshGlobals globals;
    const ModelTables tables({.polygons = 1, .materials = 2});
    materialAt(1) = {.attr = 0x1F, .shading = 'G', .kind = 'H', .paramCount = 0, .param = 0};
    materialAt(2) = {.attr = 0x02, .shading = 'F', .kind = 'C', .paramCount = 0, .param = 0};
    set_mat_no(0, 0);
    EXPECT_EQ(polygonAt(0).attr, 0x00FF0000U);
    set_mat_no(0, 1);
    EXPECT_EQ(polygonAt(0).attr, 0x00040000U);
    EXPECT_EQ(polygonAt(0).mat_no, 1);
}

TEST(SetMatNo, PolygonsOutsideTheTableAreLost) {
    const FreshGlobals globals;
    const ModelTables tables({.polygons = 2, .materials = 1});
    materialAt(1) = {.attr = 0x1F, .shading = 'G', .kind = 'H', .paramCount = 0, .param = 0};
    for (const std::int32_t outside : {2, 3, 1'000'000, 2'147'483'647, -1, -2'147'483'647 - 1}) {
        set_mat_no(outside, 0);
    }
    EXPECT_EQ(polygonAt(0).attr, 0U);
    EXPECT_EQ(polygonAt(1).attr, 0U);
    EXPECT_EQ(polygonAt(2).attr, 0U); // and leave nothing for the next one outside
}

TEST(GetMaterialItem, NamesThePolygonsOfItsList) {
    const FreshGlobals globals;
    const std::vector<ListRow> rows = {
        {"", {}},
        {"3", {3}},
        {"0-3", {0, 1, 2, 3}},
        {"0-3,8,10-11", {0, 1, 2, 3, 8, 10, 11}},
        {"4-4", {4}},
        {"3-1", {}},
        {"11,0", {0, 11}},
        {"5,5,4-6", {4, 5, 6}},
        {"04,0010-011", {4, 10, 11}},
        // Commas
        {",", {}},
        {",3", {}},
        {"7,", {7}},
        {"1,,2", {1}},
        {"1,2,,", {1, 2}},
        // Any other character ends the list.
        {"a1", {}},
        {"2,a", {2}},
        {"1-2x", {1, 2}},
        {"1;2", {1}},
        {"0x3", {0}},
        {"+3", {}},
        {"2,+3", {2}},
        {" 3", {}},
        {"2 ,3", {2}},
        {"3 -5", {3}},
        // The second number is read beyond the end of the item.
        {"3- 5", {3, 4, 5}},
        {"3-+5", {3, 4, 5}},
        {"3-+5,7", {3, 4, 5}},
        // Dashes
        {"5-", {5}},
        {"5--", {5}},
        {"5-,7", {5, 7}},
        {"3--1", {}},
        {"3--1,7", {7}},
        {"1-2-3", {1, 2}},
        {"1-2-3,7", {1, 2, 7}},
        {"1-2--", {1, 2}},
        // Numbers outside
        {"-1", {}},
        {"-1,7", {7}},
        {"-5-2", {0, 1, 2}},
        {"-5--2", {}},
        {"12", {}},
        {"13,7", {7}},
        {"10-20", {10, 11}},
        {"12-20,7", {7}},
        // Numbers that are cut to 32 bits, and the largest of 64 for those beyond: -1
        {"4294967297", {1}},
        {"4294967296-4294967298", {0, 1, 2}},
        {"4294967295", {}},
        {"99999999999", {}},
        {"99999999999999999999", {}},
        {"0-99999999999999999999", {}},
        {"-99999999999999999999", {0}}, // the smallest of 64 bits, cut: 0
    };
    for (const ListRow& row : rows) {
        EXPECT_EQ(namedBy(row.list), row.polygons) << "\"" << row.list << "\"";
    }
}

TEST(GetMaterialItem, RangesBeyondTheTableTakeNoTime) {
    const FreshGlobals globals;
    // One by one, the polygons of this list would take some minutes.
    static constexpr char list[] = "-2147483648-2147483647,0-2147483647,12-2147483647,"
                                   "2147483647-2147483647,-2147483648--1,-2147483648--2147483648";
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(namedBy(list), allTwelve);
    }
    EXPECT_EQ(namedBy("-2147483648-2147483647"), allTwelve);
    EXPECT_EQ(namedBy("0-2147483647"), allTwelve);
    EXPECT_EQ(namedBy("6-99999999999"), (std::vector<int>{6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(namedBy("-2147483648--1"), std::vector<int>{});
    EXPECT_EQ(namedBy("12-2147483647"), std::vector<int>{});
}

TEST(GetMaterialItem, NamesPolygonsOfEveryBlock) {
    const FreshGlobals globals;
    const ModelTables tables({.polygons = 50'001, .materials = 2});
    get_material_item("24998-25001,49999-60000", 1);
    for (const std::int32_t i : {0, 24'997, 25'002, 49'998}) {
        EXPECT_EQ(polygonAt(i).mat_no, 0) << i;
    }
    for (const std::int32_t i : {24'998, 24'999, 25'000, 25'001, 49'999, 50'000}) {
        EXPECT_EQ(polygonAt(i).mat_no, 1) << i;
    }
}

TEST(GetMaterialItem, WithoutAPolygonTableNamesNothing) {
    const FreshGlobals globals;
    const ModelTables tables({.materials = 1});
    get_material_item("0,1,-1,5-2147483647", 0);
    EXPECT_EQ(polygon, nullptr);
}

TEST(GetMaterialItem, VerboseAcceptsTheNumberRightBehindTheTable) {
    const FreshGlobals globals;
    Verbose = 1;
    EXPECT_EQ(namedBy("12"), std::vector<int>{});
    EXPECT_EQ(namedBy("10-12"), (std::vector<int>{10, 11}));
    EXPECT_EQ(namedBy("3-1,20-13,-1--2"), std::vector<int>{}); // empty ranges try no number
}

TEST(GetMaterialItem, VerboseRejectsNumbersOutsideTheTable) {
    const FreshGlobals globals;
    Verbose = 1;
    struct Row {
        const char* list;
        const char* index;
    };
    static constexpr std::array<Row, 8> rows = {{
        {"13", "13"},
        {"2147483647", "2147483647"},
        {"10-20", "13"},
        {"0-2147483647", "13"},
        {"-1", "4294967295"},
        {"-1-5", "4294967295"},
        {"-2147483648-5", "2147483648"},
        {"3,5-6,-7", "4294967289"},
    }};
    for (const Row& row : rows) {
        EXPECT_EXIT(namedBy(row.list), ExitedWithCode(17), testing::Eq(badIndexText(row.index, "12")))
            << row.list;
    }
}

TEST(GetMaterialItem, AnItemWithoutANumberShowsTheRestOfTheList) {
    const FreshGlobals globals;
    struct Row {
        const char* list;
        const char* rest;
    };
    static constexpr std::array<Row, 8> rows = {{
        {"-", "-"},
        {"--", "--"},
        {"--5", "--5"},
        {"-+5", "-+5"},
        {"-,1", "-,1"},
        {"1,--,3", "--,3"},
        {"0-3,8,-", "-"},
        {"1,-x", "-x"},
    }};
    for (const Row& row : rows) {
        EXPECT_EXIT(namedBy(row.list), ExitedWithCode(72),
                    testing::Eq(std::string("\n\nERROR:\tBad MAT Format : ") + row.rest + "\n"))
            << row.list;
    }
}

TEST(GetMaterialDesc, KeepsTheNumbersOfEveryKindInVertexOrder) {
    const TestDirectory directory;
    const std::vector<ParamRow> rows = {
        {"0 0 F C 1 2 3", {1, 2, 3}, {1, 2, 3}},
        {"0 0 F G 1 2 3 4 5 6 7 8 9 10 11 12",
         {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
         {1, 2, 3, 7, 8, 9, 4, 5, 6, 10, 11, 12}},
        {"0 0 F T 1 2 3 4 5 6 7 8 9",
         {1, 2, 3, 4, 5, 6, 7, 8, 9, 128, 128, 128},
         {1, 2, 3, 6, 7, 4, 5, 8, 9, 128, 128, 128}},
        {"0 0 F D 1 2 3 4 5 6 7 8 9 10 11 12",
         {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
         {1, 2, 3, 6, 7, 4, 5, 8, 9, 10, 11, 12}},
        {"0 0 F H 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21",
         {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21},
         {1, 2, 3, 6, 7, 4, 5, 8, 9, 10, 11, 12, 16, 17, 18, 13, 14, 15, 19, 20, 21}},
        // Each number is cut to its low 8 bits.
        {"0 0 F C 256 -1 511", {0, 255, 255}, {0, 255, 255}},
        {"0 0 F C 4294967297 70000 -128", {1, 112, 128}, {1, 112, 128}},
    };
    for (const ParamRow& row : rows) {
        const ModelTables tables({.polygons = 1, .materials = 1});
        readLines(row.line, 1, 1);
        EXPECT_EQ(get_params(materialAt(1)), listOf(row.current)) << row.line;
        EXPECT_EQ(materialAt(1).paramCount, row.current.size()) << row.line;
        readLines(row.line, 1, 0);
        EXPECT_EQ(get_params(materialAt(1)), listOf(row.old)) << row.line;
        EXPECT_EQ(materialAt(1).paramCount, row.old.size()) << row.line;
        EXPECT_EQ(get_params(materialAt(0)), listOf({255, 255, 255}));
    }
}

TEST(GetMaterialDesc, KeepsAttributeShadingAndKindAsWritten) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 3});
    readLines("0 1FF G C 1 2 3\n0 0x1e s q x\n0 -1 FC 1 2 3\n", 3, 1);
    EXPECT_EQ(materialAt(1).attr, 0xFF);
    EXPECT_EQ(materialAt(1).shading, 'G');
    EXPECT_EQ(materialAt(1).kind, 'C');
    EXPECT_EQ(materialAt(2).attr, 0x1E);
    EXPECT_EQ(materialAt(2).shading, 's');
    EXPECT_EQ(materialAt(2).kind, 'q');
    EXPECT_EQ(materialAt(3).attr, 0xFF);
    EXPECT_EQ(materialAt(3).shading, 'F');
    EXPECT_EQ(materialAt(3).kind, 'C');
    EXPECT_EQ(materialAt(0).kind, 'C');
    EXPECT_EQ(materialAt(0).attr, 0);
}

TEST(GetMaterialDesc, UnknownKindsRepeatTheListOfTheLineBefore) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 6});
    readLines("0 0 F X 9 9 9\n"
              "0 0 F T 1 2 3 4 5 6 7 8 9\n"
              "0 0 F X 9 9 9\n"
              "0 0 F C 21 22 23\n"
              "0 0 F X 9 9 9\n"
              "0 0 F Y -\n",
              6, 1);
    EXPECT_EQ(materialAt(1).paramCount, 0);
    EXPECT_EQ(materialAt(1).param, 0U);
    EXPECT_EQ(get_params(materialAt(3)), listOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 128, 128, 128}));
    EXPECT_EQ(materialAt(5).paramCount, 3);
    EXPECT_EQ(get_params(materialAt(5)), listOf({21, 22, 23}));
    EXPECT_EQ(get_params(materialAt(6)), listOf({21, 22, 23}));
}

TEST(GetMaterialDesc, StartsEveryObjectWithoutNumbersToRepeat) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 1});
    readLines("0 0 F C 21 22 23\n", 1, 1);
    readLines("0 0 F X 9 9 9\n", 1, 1);
    EXPECT_EQ(materialAt(1).paramCount, 0);
    EXPECT_EQ(get_params(materialAt(1)), ParamList{});
}

TEST(GetMaterialDesc, CountsTheBytesOfEveryList) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 3});
    writeFile("lines", "0 0 F C 1 2 3\n"
                       "0 0 F H 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21\n"
                       "0 0 F T 1 2 3 4 5 6 7 8 9\n");
    RSD object = plainObject();
    object.nmat = 3;
    FileRecord* file = fileOpen("lines", "r");
    allocTotal = allocCount = freeCount = 0;
    get_material_desc(file, &object);
    EXPECT_EQ(allocCount, 3);
    EXPECT_EQ(allocTotal, 36);
    EXPECT_EQ(freeCount, 0);
    free_materials(&object);
    EXPECT_EQ(freeCount, 3);
    EXPECT_EQ(allocTotal, 36);
    fileClose(file);
}

TEST(GetMaterialDesc, AssignsThePolygonsFromTheLineJustRead) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 3, .materials = 2});
    readLines("0-1 2 G C 1 2 3\n1 5 F G 1 1 1 2 2 2 3 3 3 4 4 4\n", 2, 1);
    EXPECT_EQ(polygonAt(0).attr, 0x00440000U); // gouraud, two-sided
    EXPECT_EQ(polygonAt(0).mat_no, 0);
    EXPECT_EQ(polygonAt(1).attr, 0x00630000U); // gouraud, translucent, light off, gradation
    EXPECT_EQ(polygonAt(1).mat_no, 1);
    EXPECT_EQ(polygonAt(2).attr, 0U);
}

TEST(FreeMaterials, KeepsTheDefaultAndCountsTheListsOfTheObject) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 3});
    readLines("0 0 F C 1 2 3\n0 0 F C 4 5 6\n0 0 F C 7 8 9\n", 3, 1);
    RSD object = plainObject();
    object.nmat = 2;
    const std::int32_t before = freeCount;
    free_materials(&object);
    EXPECT_EQ(freeCount, before + 2);
    EXPECT_EQ(get_params(materialAt(1)), ParamList{});
    EXPECT_EQ(get_params(materialAt(2)), ParamList{});
    EXPECT_EQ(get_params(materialAt(0)), listOf({255, 255, 255}));
}

TEST(FreeMaterials, GivesTheNextObjectTheSamePlaces) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 2});
    RSD object = plainObject();
    object.nmat = 2;
    readLines("0 0 F T 1 2 3 4 5 6 7 8 9\n0 0 F G 1 2 3 4 5 6 7 8 9 10 11 12\n", 2, 1);
    const std::uint32_t first = materialAt(1).param;
    const std::uint32_t second = materialAt(2).param;
    free_materials(&object);
    readLines("0 0 F G 7 8 9 7 8 9 7 8 9 7 8 9\n0 0 F G 4 5 6 4 5 6 4 5 6 4 5 6\n", 2, 1);
    EXPECT_EQ(materialAt(1).param, first);
    EXPECT_EQ(materialAt(2).param, second);
    EXPECT_EQ(get_params(materialAt(1)), listOf({7, 8, 9, 7, 8, 9, 7, 8, 9, 7, 8, 9}));
    EXPECT_EQ(get_params(materialAt(2)), listOf({4, 5, 6, 4, 5, 6, 4, 5, 6, 4, 5, 6}));
    EXPECT_EQ(get_params(materialAt(0)), listOf({255, 255, 255}));
}

TEST(FreeMaterials, DoesNotCountMaterialsWithoutNumbers) {
    const TestDirectory directory;
    const ModelTables tables({.polygons = 1, .materials = 2});
    readLines("0 0 F X 1 2 3\n0 0 F C 4 5 6\n", 2, 1);
    RSD object = plainObject();
    object.nmat = 2;
    const std::int32_t before = freeCount;
    free_materials(&object);
    EXPECT_EQ(freeCount, before + 1);
}
