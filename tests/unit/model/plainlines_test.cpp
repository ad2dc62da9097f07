// Geometry and materials read from whole files. Whatever the lines and their ends, the tables, the failures
// and what is left of the file have to be the same as when every line goes by the general road.
#include "model/mat.hpp"
#include "model/ply.hpp"

#include "unit/model/general_road.hpp"
#include "unit/model_tables.hpp"
#include "unit/random.hpp"
#include "unit/support.hpp"
#include "unit/volume.hpp"

#include "model/params.hpp"
#include "settings/settings.hpp"
#include "utilkit/getline.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using namespace std::string_view_literals;
using testing::ExitedWithCode;

namespace {

constexpr std::uint64_t smallFiles = atVolume(1600, 160);
constexpr std::uint64_t largeFiles = atVolume(16, 2);
constexpr int mostFailures = atVolume(60, 5); // a run that fails takes a process of its own
constexpr std::size_t cutStep = atVolume(1, 17);
constexpr std::size_t shiftStep = atVolume(1, 8);

using Strings = std::vector<std::string_view>;

// How the lines of a file are written.
struct Style {
    Strings ends;      // one of them behind every line
    std::uint32_t odd; // one number, blank or line in so many is an odd one; 0: none is
    bool broken;       // lines may be too short
};

const std::vector<Style> styles = {
    {{"\n"}, 0, false},
    {{"\n"}, 40, false},
    {{"\n", "\n", "\n", "\r\n"}, 40, false},
    {{"\r\n"}, 40, false},
    {{"\r"}, 40, false},
    {{"\n", "\r", "\r\n", "\n\n", "\n\r", "\r\r\n", "\x1A\n", "\n\x1A", "\r\x1A\n", " \r\n"}, 10, false},
    {{"\n", "\n", "\r\n"}, 10, true},
    {{"\n", "\r", "\r\n", "\n\n", "\n\r", "\x1A\n", "\n\x1A", "\n#\n"}, 4, true},
};

const Strings oddNumbers = {"+1",         "+0",        "-0",         "007",         "-000000007",
                            "4294967297", "123456789", "1234567890", "-2147483649", "99999999999999999999"};
const Strings oddReals = {"5.",
                          ".5",
                          "-.5",
                          "1e2",
                          "1E-7",
                          "1e+02",
                          "1e005",
                          "1e400",
                          "-1e-400",
                          "inf",
                          "-nan",
                          "0x1p3",
                          "1-2",
                          "1.5.5",
                          "1e-45",
                          "16777217",
                          "0.1234567890123456789",
                          "123456789012345",
                          "8388608.5",
                          "1\x1A"
                          "2"};
const Strings oddTypes = {"12", "1F", "0x1", "0X2", "ffffffff", "100000001", "-1", "00000003", "+3"};
const Strings oddBlanks = {"  ", "\t", " \t ", "\v", "\f", " \x1A", "\x1A "};
const Strings oddFronts = {" ", "\t ", "\v", "\x1A", " \x1A"};
const Strings oddBehind = {" ",      "\t",      " 4",   " x", " # 5", "\x1A",
                           " \x1A ", " \0 5"sv, "\0"sv, "_",  "\v",   " 1 2 3"};
const Strings oddShadings = {"f", "X", "\xC4", "F,"};
const Strings oddKinds = {"X", "c", "\xC4", ":"};
const Strings betweenLetters = {"", "\t", " \v"};
const Strings betweenLines = {"# 1 2 3", "#", "\x1A", "#\x1A#", "#0 1 2 3 4 5 6 7 8", ""};
const Strings oddLists = {"0,2",   "0-1,3", "3-1",           "2-", "4,",  ",1",
                          "1-2-3", "a1",    "0-99999999999", "-1", "0;1", "7,,1"};

// Makes the text of a file.
class FileMaker {
  public:
    FileMaker(std::uint64_t seed, Style fileStyle) : random(seed), style(std::move(fileStyle)) {}

    std::string vertices(std::int32_t count) {
        return lines(count, [this] { putReals(true); });
    }
    std::string normals(std::int32_t count) {
        return lines(count, [this] { putReals(false); });
    }
    std::string polygons(std::int32_t count) {
        return lines(count, [this] { putPolygon(); });
    }
    std::string materials(std::int32_t count) {
        return lines(count, [this] { putMaterial(); });
    }

  private:
    bool odd() { return style.odd != 0 && random.oneIn(style.odd); }

    // Puts `plain`, or an odd one of a list.
    void put(std::string_view plain, const Strings& others) { text += odd() ? random.pick(others) : plain; }

    void putInteger(std::uint32_t limit) { put(std::to_string(random.below(limit)), oddNumbers); }

    void putReals(bool large) {
        const std::uint32_t count = style.broken && random.oneIn(60) ? 2 : 3;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (i > 0) {
                put(" ", oddBlanks);
            }
            std::string number = random.oneIn(2) ? "-" : "";
            number += std::to_string(random.below(large ? 40'000 : 2));
            if (!random.oneIn(4)) {
                number += '.';
                number += std::to_string(random.bits()).substr(0, 1 + random.below(9));
            }
            put(number, oddReals);
        }
    }

    void putPolygon() {
        put(std::to_string(random.below(4)), oddTypes);
        const std::uint32_t count = style.broken && random.oneIn(60) ? 7 : 8;
        for (std::uint32_t i = 0; i < count; ++i) {
            put(" ", oddBlanks);
            putInteger(100'000);
        }
    }

    void putMaterial() {
        std::string list = std::to_string(random.below(10));
        if (random.oneIn(2)) {
            list += '-';
            list += std::to_string(random.below(14));
        }
        put(list, oddLists);
        put(" ", oddBlanks);
        put(std::string(1, "0123456789abcdefABCDEF"[random.below(22)]), oddTypes);
        put(" ", oddBlanks);
        put(random.oneIn(2) ? "F" : "G", oddShadings);
        put(" ", betweenLetters);
        const char kind = "CGTDH"[random.below(5)];
        put(std::string(1, kind), oddKinds);
        const int count = kind == 'C' ? 3 : kind == 'T' ? 9 : kind == 'H' ? 21 : 12;
        const int missing = style.broken && random.oneIn(60) ? 1 : 0;
        for (int i = missing; i < count; ++i) {
            put(" ", oddBlanks);
            putInteger(random.oneIn(8) ? 1000 : 256);
        }
    }

    void putLineBetween() {
        text += random.pick(betweenLines);
        text += random.pick(style.ends);
    }

    template <class PutLine> std::string lines(std::int32_t count, const PutLine& putLine) {
        text.clear();
        for (std::int32_t i = 0; i < count; ++i) {
            if (odd()) {
                putLineBetween();
            }
            put("", oddFronts);
            putLine();
            put("", oddBehind);
            text += random.pick(style.ends);
        }
        return text;
    }

    Random random;
    Style style;
    std::string text;
};

// A line behind what was read, and the count of lines when it was read; at the end of the file without text.
struct Rest {
    std::string text;
    std::int32_t line;

    bool operator==(const Rest&) const = default;
};

// All that a reading leaves behind.
struct Outcome {
    std::vector<std::array<int, 3>> vertices;
    std::vector<std::array<int, 3>> normals;
    std::vector<std::array<std::int64_t, 10>> polygons;
    std::vector<std::array<int, 4>> materials;
    std::vector<ParamList> params;
    std::array<std::int32_t, 6> box;
    std::vector<Rest> rest;

    bool operator==(const Outcome&) const = default;
};

Outcome outcome_of(FileRecord* file, const RSD& object) {
    Outcome outcome{};
    for (std::int32_t i = 0; i < maxVert; ++i) {
        outcome.vertices.push_back(xyz(vertexAt(i)));
    }
    for (std::int32_t i = 0; i < maxNorm; ++i) {
        outcome.normals.push_back(xyz(normalAt(i)));
    }
    for (std::int32_t i = 0; i < maxPoly; ++i) {
        const PolygonRecord& p = polygonAt(i);
        outcome.polygons.push_back({p.attr, p.vert[0], p.vert[1], p.vert[2], p.vert[3], p.norm[0], p.norm[1],
                                    p.norm[2], p.norm[3], p.mat_no});
    }
    for (std::int32_t i = 1; i <= maxMat; ++i) {
        const MaterialRecord& m = materialAt(i);
        outcome.materials.push_back({m.attr, m.shading, m.kind, m.paramCount});
        outcome.params.push_back(get_params(m));
    }
    outcome.box = {object.minX, object.minY, object.minZ, object.maxX, object.maxY, object.maxZ};
    pushIgnore(EOT_ERR);
    for (Line line = getLine(file); line.text != nullptr; line = getLine(file)) {
        outcome.rest.push_back({std::string(line.text, line.length), file->line});
    }
    popIgnore();
    outcome.rest.push_back({"", file->line});
    return outcome;
}

// Counts of lines to read, in the fields of an object.
RSD object_of(TableSizes sizes, std::uint8_t version) {
    RSD object = plainObject();
    object.nvert = sizes.vertices;
    object.nnorm = sizes.normals;
    object.npoly = sizes.polygons;
    object.nmat = sizes.materials;
    object.version = version;
    object.offsetX = 10;
    object.offsetZ = -3;
    scale = 1.25;
    return object;
}

void read_as_the_program(FileRecord* file, RSD& object) {
    get_ply_vertex(file, &object);
    get_ply_normal(file, &object);
    get_ply_polygon(file, &object);
    get_material_desc(file, &object);
}

// What became of comparisons so far.
struct Comparisons {
    int sound = 0;
    int failed = 0;
};

// Reads the file "in" both ways. Failures beyond mostFailures are not compared.
void compare_roads(TableSizes sizes, std::uint8_t version, Comparisons& comparisons) {
    Failure failure;
    Outcome expected{};
    {
        const ModelTables tables(sizes);
        RSD object = object_of(sizes, version);
        FileRecord* file = fileOpen("in", "r");
        failure = read_by_general_road(file, object);
        expected = outcome_of(file, object);
        fileClose(file);
        free_materials(&object);
    }
    const ModelTables tables(sizes);
    RSD object = object_of(sizes, version);
    if (failure.status != 0) {
        if (comparisons.failed < mostFailures) {
            EXPECT_EXIT(read_as_the_program(fileOpen("in", "r"), object), ExitedWithCode(failure.status),
                        testing::Eq(failure.message));
        }
        ++comparisons.failed;
        return;
    }
    FileRecord* file = fileOpen("in", "r");
    read_as_the_program(file, object);
    const Outcome read = outcome_of(file, object);
    fileClose(file);
    free_materials(&object);
    EXPECT_EQ(read.vertices, expected.vertices);
    EXPECT_EQ(read.normals, expected.normals);
    EXPECT_EQ(read.polygons, expected.polygons);
    EXPECT_EQ(read.materials, expected.materials);
    EXPECT_EQ(read.box, expected.box);
    EXPECT_TRUE(read.rest == expected.rest) << "lines behind, and their numbers";
    EXPECT_TRUE(read == expected);
    ++comparisons.sound;
}

std::uint8_t some_version(std::uint64_t seed) {
    return seed / 8 % 3 == 0 ? oldVersion : currentVersion;
}

std::string file_of(TableSizes sizes, std::uint64_t seed, const Style& style) {
    FileMaker maker(seed, style);
    std::string text = maker.vertices(sizes.vertices);
    text += maker.normals(sizes.normals);
    text += maker.polygons(sizes.polygons);
    text += maker.materials(sizes.materials);
    return text + maker.vertices(3); // more than is read
}

} // namespace

TEST(PlainLines, OfSmallFilesAreReadAsByTheGeneralRoad) {
    const TestDirectory directory;
    static constexpr TableSizes sizes{.vertices = 12, .normals = 6, .polygons = 10, .materials = 14};
    Comparisons comparisons;
    for (std::uint64_t seed = 0; seed < smallFiles; ++seed) {
        const std::size_t style = seed % styles.size();
        const std::string text = file_of(sizes, seed, styles[style]);
        writeFile("in", text);
        compare_roads(sizes, some_version(seed), comparisons);
        ASSERT_FALSE(HasFailure()) << "style " << style << ", file " << testing::PrintToString(text);
    }
    EXPECT_GT(comparisons.sound, static_cast<int>(smallFiles / 2));
    EXPECT_GT(comparisons.failed, static_cast<int>(smallFiles / 50));
}

TEST(PlainLines, OfLargeFilesAreReadAsByTheGeneralRoad) {
    const TestDirectory directory;
    static constexpr TableSizes sizes{.vertices = 6000, .normals = 3000, .polygons = 4000, .materials = 3000};
    Comparisons comparisons;
    for (std::uint64_t seed = 0; seed < largeFiles; ++seed) {
        const std::size_t style = seed % 6; // the sound ones
        writeFile("in", file_of(sizes, 1'000'000 + seed, styles[style]));
        compare_roads(sizes, some_version(seed), comparisons);
        ASSERT_FALSE(HasFailure()) << "style " << style;
    }
    EXPECT_GT(comparisons.sound, static_cast<int>(largeFiles / 2));
}

// The read-ahead has a small block first and large ones behind it: every character of a line comes to stand
// right before and right behind the ends of the first two, in lines of every kind.
TEST(PlainLines, AcrossTheEndsOfBlocksAreReadAsByTheGeneralRoad) {
    const TestDirectory directory;
    static constexpr std::array<TableSizes, 2> layouts = {{
        {.vertices = 300, .normals = 10, .polygons = 4000, .materials = 10},
        {.vertices = 60, .normals = 600, .polygons = 10, .materials = 4000},
    }};
    Comparisons comparisons;
    for (const TableSizes& sizes : layouts) {
        const std::string text = file_of(sizes, 7, styles[2]);
        ASSERT_GT(text.size(), 140'000U);
        for (std::size_t shift = 0; shift < 64; shift += shiftStep) {
            std::string shifted(shift + 1, '#');
            shifted += '\n';
            shifted += text;
            writeFile("in", shifted);
            compare_roads(sizes, currentVersion, comparisons);
            ASSERT_FALSE(HasFailure()) << "shifted by " << shift;
        }
    }
    EXPECT_EQ(comparisons.failed, 0);
}

TEST(PlainLines, OfAFileThatIsCutAnywhereAreReadAsByTheGeneralRoad) {
    const TestDirectory directory;
    static constexpr TableSizes sizes{.vertices = 3, .normals = 2, .polygons = 2, .materials = 2};
    static constexpr std::string_view whole = "1 2.5 -3\n4 5e1 6\r\n#7 7 7\n7 8 9\r"
                                              "0 0 1\n\n.5 -.5 0\r\n"
                                              "0 0 1 2 0 0 0 1 0\n1 10 11 12 13 0 1 0 1\r\n"
                                              "0 0 F C 255 128 0\n1 1f G T 0 1 2 3 4 5 6 7 8\r\n";
    Comparisons comparisons;
    for (std::size_t length = 0; length <= whole.size(); length += cutStep) {
        comparisons.failed = 0;
        writeFile("in", whole.substr(0, length));
        compare_roads(sizes, currentVersion, comparisons);
        ASSERT_FALSE(HasFailure()) << "cut behind " << length << " characters";
    }
}
