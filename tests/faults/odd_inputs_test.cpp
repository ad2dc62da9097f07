// Inputs out of all measure: empty, no text, very long, or with numbers that nothing can follow up.
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"

#include <filesystem>
#include <ostream>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t longLine = 1'000'000;
constexpr std::size_t manyLines = 100'000;
constexpr Allowed nothingFound = {.noTmd = true};
constexpr Allowed negativeCounts = {.negativeCounts = true};
constexpr Allowed oddTypes = {.oddTypes = true};

// The smallest model with one file in another form, or one more file.
struct OddInput {
    const char* name;
    const char* file;
    std::string (*content)(); // null for a directory
    int status;
    int verboseStatus; // with -v -info
    Allowed allowed = {};
};

void PrintTo(const OddInput& input, std::ostream* out) {
    *out << input.name;
}

std::string nothing() {
    return {};
}

std::string nullBytes() {
    return std::string(65536, '\0');
}

std::string endMarks() {
    return std::string(65536, '\x1A');
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string rsdWith(const std::string& ply, const std::string& textures) {
    return "@RSD940102\nPLY=" + ply + "\nMAT=m.mat\n" + textures;
}

// Three vertices, a normal, a polygon.
std::string plyWith(const std::string& counts, const std::string& firstVertex, const std::string& polygon) {
    return "@PLY940102\n" + counts + "\n" + firstVertex + "\n1 0 0\n0 1 0\n0 0 1\n" + polygon + "\n";
}

std::string plyWithCounts(const std::string& counts) {
    return plyWith(counts, "0 0 0", "0 0 1 2 0 0 0 0 0");
}

std::string plyWithVertex(const std::string& vertex) {
    return plyWith("3 1 1", vertex, "0 0 1 2 0 0 0 0 0");
}

std::string matWith(const std::string& count, const std::string& list, const std::string& numbers) {
    return "@MAT940102\n" + count + "\n" + list + " 0 F C " + numbers + "\n";
}

std::string matWithList(const std::string& list) {
    return matWith("1", list, "1 2 3");
}

const std::vector<OddInput> emptyInputs = {
    {"Rsd", "m.rsd", nothing, 34, 34},
    {"Ply", "m.ply", nothing, 34, 34},
    {"Mat", "m.mat", nothing, 34, 34},
    {"Arg", "w.arg", nothing, 0, 0, nothingFound},
};

const std::vector<OddInput> directories = {
    {"Rsd", "m.rsd", nullptr, 33, 33},    {"Ply", "m.ply", nullptr, 33, 33},
    {"Mat", "m.mat", nullptr, 33, 33},    {"Arg", "w.arg", nullptr, 33, 33},
    {"Output", "a.tmd", nullptr, 30, 30},
};

const std::vector<OddInput> noTexts = {
    {"NullsInRsd", "m.rsd", nullBytes, 70, 70},   {"NullsInPly", "m.ply", nullBytes, 70, 70},
    {"NullsInMat", "m.mat", nullBytes, 70, 70},   {"NullsInArg", "w.arg", nullBytes, 0, 0, nothingFound},
    {"EndMarksInRsd", "m.rsd", endMarks, 34, 34}, {"EndMarksInPly", "m.ply", endMarks, 34, 34},
    {"EndMarksInMat", "m.mat", endMarks, 34, 34}, {"EndMarksInArg", "w.arg", endMarks, 0, 0, nothingFound},
};

std::string rsdOfOneLine() {
    return std::string(longLine, '@');
}

std::string rsdWithLongName() {
    return rsdWith(std::string(longLine, 'x'), "NTEX=0\n");
}

std::string rsdWithLongComment() {
    std::string text = "#";
    text.append(longLine, 'x');
    return text + "\n" + rsdWith("m.ply", "NTEX=0\n");
}

std::string plyWithLongStamp() {
    std::string text = plyWithCounts("3 1 1");
    return text.insert(text.find('\n'), std::string(longLine, ' '));
}

std::string plyWithManyBlanks() {
    return plyWithVertex("0 0" + std::string(longLine, ' ') + "0");
}

std::string plyWithManyDigits() {
    return plyWithVertex("0 0 ." + std::string(longLine, '1'));
}

std::string plyWithLongWord() {
    return plyWithVertex(std::string(longLine, 'x'));
}

std::string matWithLongList() {
    return matWithList(repeated("0,", longLine / 2));
}

std::string matWithOneLongRange() {
    return matWithList(repeated("0-", longLine / 2) + "0");
}

std::string matWithManySigns() {
    return matWithList(std::string(longLine, '-'));
}

std::string matWithMoreNumbers() {
    return matWith("1", "0", "1 2 3" + repeated(" 4", longLine / 2));
}

std::string argWithLongWord() {
    return std::string(longLine, 'x');
}

std::string argWithLongOutput() {
    return "-o " + std::string(longLine, 'x') + " m.rsd";
}

const std::vector<OddInput> longLines = {
    {"NoRsd", "m.rsd", rsdOfOneLine, 70, 70},
    {"PlyName", "m.rsd", rsdWithLongName, 100, 100},
    {"RsdComment", "m.rsd", rsdWithLongComment, 0, 0},
    {"PlyStamp", "m.ply", plyWithLongStamp, 0, 0},
    {"PlyBlanks", "m.ply", plyWithManyBlanks, 0, 0},
    {"PlyDigits", "m.ply", plyWithManyDigits, 0, 0},
    {"PlyWord", "m.ply", plyWithLongWord, 95, 95},
    {"MatList", "m.mat", matWithLongList, 0, 0},
    {"MatRange", "m.mat", matWithOneLongRange, 0, 0},
    {"MatSigns", "m.mat", matWithManySigns, 72, 72},
    {"MatNumbers", "m.mat", matWithMoreNumbers, 0, 0},
    {"ArgWord", "w.arg", argWithLongWord, 0, 0, nothingFound},
    {"ArgOutput", "w.arg", argWithLongOutput, 30, 30},
};

std::string rsdWithManyComments() {
    return rsdWith("m.ply", repeated("# a\n", manyLines) + "NTEX=0\n");
}

std::string rsdWithManyOtherLines() {
    return rsdWith("m.ply", "NTEX=1\n" + repeated("TEX0\n", manyLines) + "TEX[0]=a\n");
}

std::string plyWithManyComments() {
    return plyWithVertex(repeated("# a\n", manyLines) + "0 0 0");
}

std::string matWithManyComments() {
    return matWithList(repeated("# a\n", manyLines) + "0");
}

std::string argWithManyWords() {
    return repeated("-v\n", manyLines) + "m.rsd\n";
}

const std::vector<OddInput> manyLinesInputs = {
    {"RsdComments", "m.rsd", rsdWithManyComments, 0, 0}, {"RsdOthers", "m.rsd", rsdWithManyOtherLines, 0, 0},
    {"PlyComments", "m.ply", plyWithManyComments, 0, 0}, {"MatComments", "m.mat", matWithManyComments, 0, 0},
    {"ArgWords", "w.arg", argWithManyWords, 0, 0},
};

// A count that no memory holds ends the run where the table is made; one that the file does not hold
// ends it with the file.
const std::vector<OddInput> counts = {
    {"Vertices", "m.ply", [] { return plyWithCounts("2147483647 1 1"); }, 15, 15},
    {"Normals", "m.ply", [] { return plyWithCounts("3 2147483647 1"); }, 15, 15},
    {"Polygons", "m.ply", [] { return plyWithCounts("3 1 2147483647"); }, 15, 15},
    {"AllOfPly", "m.ply", [] { return plyWithCounts("2147483647 2147483647 2147483647"); }, 15, 15},
    {"MoreThanLines", "m.ply", [] { return plyWithCounts("3 1 100000"); }, 34, 34},
    {"Negative", "m.ply", [] { return plyWithCounts("-1 -1 -1"); }, 0, 0, negativeCounts},
    {"Wrapped", "m.ply", [] { return plyWithCounts("2147483648 2147483648 4294967295"); }, 0, 0,
     negativeCounts},
    {"Materials", "m.mat", [] { return matWith("2147483647", "0", "1 2 3"); }, 15, 15},
    {"NegativeMaterials", "m.mat", [] { return matWith("-1", "0", "1 2 3"); }, 0, 0},
    {"Textures", "m.rsd", [] { return rsdWith("m.ply", "NTEX=2147483647\n"); }, 10, 10},
    {"NegativeTextures", "m.rsd", [] { return rsdWith("m.ply", "NTEX=-2147483648\n"); }, 0, 0},
};

// Polygon numbers above the table are dropped, but raised while -v is on.
const std::vector<OddInput> numbers = {
    {"ListToTheEnd", "m.mat", [] { return matWithList("0-2147483647"); }, 0, 17},
    {"ListOfAll", "m.mat", [] { return matWithList("-2147483648-2147483647"); }, 0, 17},
    {"ListBackwards", "m.mat", [] { return matWithList("2147483647-0"); }, 0, 0},
    {"ListWrapped", "m.mat", [] { return matWithList("99999999999"); }, 0, 17},
    {"Indices", "m.ply",
     [] { return plyWith("3 1 1", "0 0 0", "0 2147483647 -2147483648 99999999999 -1 65536 0 0 0"); }, 0, 0},
    {"Type", "m.ply", [] { return plyWith("3 1 1", "0 0 0", "fffffffffff 0 1 2 0 0 0 0 0"); }, 0, 0,
     oddTypes},
    {"Reals", "m.ply", [] { return plyWithVertex("1e999999999 -1e999999999 1e-999999999"); }, 0, 0},
    {"PlyIsRsd", "m.rsd", [] { return rsdWith("m.rsd", "NTEX=0\n"); }, 70, 70},
    {"PlyIsHere", "m.rsd", [] { return rsdWith(".", "NTEX=0\n"); }, 33, 33},
};

class Odd : public testing::TestWithParam<OddInput> {
  protected:
    void SetUp() override {
        ASSERT_NE(runs.directory(), "");
        const OddInput& input = GetParam();
        const std::string path = runs.directory() + "/" + input.file;
        files = plainFiles();
        writeFiles(runs.directory(), files);
        fs::remove(path);
        if (input.content == nullptr) {
            fs::create_directory(path);
            return;
        }
        files.push_back({input.file, input.content()});
        writeFiles(runs.directory(), {files.back()});
    }

    void expect(std::vector<std::string> words, int status) {
        words.emplace_back(GetParam().file == std::string("w.arg") ? "w.arg" : "m.rsd");
        const Ending ending = runs.run(words);
        const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
        EXPECT_EQ(describeEnding(ending), "exit status " + std::to_string(status));
        EXPECT_EQ(findFault(ending, outputs, GetParam().allowed), "") << testing::PrintToString(words) << "\n"
                                                                      << ending.errors.substr(0, 4000);
    }

    ForkedRuns runs;
    std::vector<NamedFile> files;
};

TEST_P(Odd, EndsAsDocumented) {
    expect({}, GetParam().status);
    expect({"-v", "-info"}, GetParam().verboseStatus);
}

std::string nameOf(const testing::TestParamInfo<OddInput>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Empty, Odd, testing::ValuesIn(emptyInputs), nameOf);
INSTANTIATE_TEST_SUITE_P(Directory, Odd, testing::ValuesIn(directories), nameOf);
INSTANTIATE_TEST_SUITE_P(NoText, Odd, testing::ValuesIn(noTexts), nameOf);
INSTANTIATE_TEST_SUITE_P(LongLine, Odd, testing::ValuesIn(longLines), nameOf);
INSTANTIATE_TEST_SUITE_P(ManyLines, Odd, testing::ValuesIn(manyLinesInputs), nameOf);
INSTANTIATE_TEST_SUITE_P(Count, Odd, testing::ValuesIn(counts), nameOf);
INSTANTIATE_TEST_SUITE_P(Number, Odd, testing::ValuesIn(numbers), nameOf);

} // namespace
