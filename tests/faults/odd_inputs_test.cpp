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
constexpr const char* withIds = "-id p.prj m.rsd";
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
    const char* line = nullptr; // the command line when it is not just the file
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

// The rest of the first line, and what follows the second.
std::string prjWith(const std::string& version, const std::string& entries) {
    return "@PRJ" + version + "\n1\n" + entries + "\n";
}

std::string matWith(const std::string& count, const std::string& list, const std::string& numbers,
                    const std::string& kind = "C") {
    return "@MAT940102\n" + count + "\n" + list + " 0 F " + kind + " " + numbers + "\n";
}

std::string matWithList(const std::string& list) {
    return matWith("1", list, "1 2 3");
}

const std::vector<OddInput> emptyInputs = {
    {"Rsd", "m.rsd", nothing, 34, 34},
    {"Ply", "m.ply", nothing, 34, 34},
    {"Mat", "m.mat", nothing, 34, 34},
    {"Tim", "a.tim", nothing, 41, 41},
    {"Prj", "p.prj", nothing, 34, 34},
    {"PrjOfIds", "p.prj", nothing, 34, 34, {}, withIds},
    {"Arg", "w.arg", nothing, 0, 0, nothingFound},
};

const std::vector<OddInput> directories = {
    {"Rsd", "m.rsd", nullptr, 33, 33},    {"Ply", "m.ply", nullptr, 33, 33},
    {"Mat", "m.mat", nullptr, 33, 33},    {"Arg", "w.arg", nullptr, 33, 33},
    {"Tim", "a.tim", nullptr, 40, 40},    {"Prj", "p.prj", nullptr, 33, 33},
    {"Output", "a.tmd", nullptr, 30, 30}, {"IdList", "a.h", nullptr, 30, 30, {}, withIds},
};

const std::vector<OddInput> noTexts = {
    {"NullsInRsd", "m.rsd", nullBytes, 70, 70},   {"NullsInPly", "m.ply", nullBytes, 70, 70},
    {"NullsInMat", "m.mat", nullBytes, 70, 70},   {"NullsInArg", "w.arg", nullBytes, 0, 0, nothingFound},
    {"NullsInTim", "a.tim", nullBytes, 1, 1},     {"NullsInPrj", "p.prj", nullBytes, 3, 3},
    {"EndMarksInTim", "a.tim", endMarks, 73, 73}, {"EndMarksInPrj", "p.prj", endMarks, 34, 34},
    {"EndMarksInRsd", "m.rsd", endMarks, 34, 34}, {"EndMarksInPly", "m.ply", endMarks, 34, 34},
    {"EndMarksInMat", "m.mat", endMarks, 34, 34}, {"EndMarksInArg", "w.arg", endMarks, 0, 0, nothingFound},
};

std::string rsdOfOneLine() {
    return std::string(longLine, '@');
}

std::string rsdWithLongName() {
    return rsdWith(std::string(longLine, 'x'), "NTEX=0\n");
}

std::string rsdWithLongTexture() {
    return rsdWith("m.ply", "NTEX=1\nTEX[0]=" + std::string(longLine, 'x') + "\n");
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

std::string prjWithLongStamp() {
    return prjWith("940401" + std::string(longLine, ' '), "7 m.rsd");
}

std::string prjWithLongVersion() {
    return prjWith(std::string(longLine, '9'), "7 m.rsd");
}

std::string prjWithLongSecondLine() {
    return prjWith("940401\n" + std::string(longLine, 'x'), "7 m.rsd");
}

std::string prjWithLongName() {
    return prjWith("940401", "7 " + std::string(longLine, 'x'));
}

// Lines are read in pieces of 255 bytes, of which the last has both fields.
std::string prjWithLongNumber() {
    return prjWith("940401", std::string(longLine, '0') + "7 m.rsd");
}

std::string prjWithManyBlanks() {
    return prjWith("940401", "7 m.rsd" + std::string(longLine, ' '));
}

const std::vector<OddInput> longLines = {
    {"NoRsd", "m.rsd", rsdOfOneLine, 70, 70},
    {"PlyName", "m.rsd", rsdWithLongName, 100, 100},
    {"TextureName", "m.rsd", rsdWithLongTexture, 1, 1},
    {"RsdComment", "m.rsd", rsdWithLongComment, 0, 0},
    {"PlyStamp", "m.ply", plyWithLongStamp, 0, 0},
    {"PlyBlanks", "m.ply", plyWithManyBlanks, 0, 0},
    {"PlyDigits", "m.ply", plyWithManyDigits, 0, 0},
    {"PlyWord", "m.ply", plyWithLongWord, 95, 95},
    {"MatList", "m.mat", matWithLongList, 0, 0},
    {"MatRange", "m.mat", matWithOneLongRange, 0, 0},
    {"MatSigns", "m.mat", matWithManySigns, 72, 72},
    {"MatNumbers", "m.mat", matWithMoreNumbers, 0, 0},
    {"PrjStamp", "p.prj", prjWithLongStamp, 0, 0},
    {"PrjVersion", "p.prj", prjWithLongVersion, 0, 0},
    {"PrjSecondLine", "p.prj", prjWithLongSecondLine, 0, 0},
    {"PrjName", "p.prj", prjWithLongName, 0, 0, nothingFound},
    {"PrjNumber", "p.prj", prjWithLongNumber, 0, 0},
    {"PrjBlanks", "p.prj", prjWithManyBlanks, 0, 0},
    {"NameOfIds", "p.prj", prjWithLongName, 0, 0, {}, withIds},
    {"NumberOfIds", "p.prj", prjWithLongNumber, 0, 0, {}, withIds},
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

std::string rsdWithManyTextures() {
    return rsdWith("m.ply", "NTEX=1000\n" + repeated("TEX[0]=a.tim\n", 1000));
}

std::string prjWithManyOtherEntries() {
    return prjWith("940401", repeated("7 x\n", manyLines) + "7 m.rsd");
}

// Each of them is looked for under several names.
std::string prjNamingManyOthers() {
    return prjWith("940401", repeated("7 x\n", manyLines / 10) + "7 m.rsd");
}

std::string prjWithManyEntries() {
    return prjWith("940401", repeated("7 m\n", 500));
}

const std::vector<OddInput> manyLinesInputs = {
    {"RsdComments", "m.rsd", rsdWithManyComments, 0, 0},
    {"RsdOthers", "m.rsd", rsdWithManyOtherLines, 0, 0},
    {"PlyComments", "m.ply", plyWithManyComments, 0, 0},
    {"MatComments", "m.mat", matWithManyComments, 0, 0},
    {"ArgWords", "w.arg", argWithManyWords, 0, 0},
    {"RsdTextures", "m.rsd", rsdWithManyTextures, 0, 0},
    {"PrjOthers", "p.prj", prjNamingManyOthers, 0, 0},
    {"PrjObjects", "p.prj", prjWithManyEntries, 0, 0},
    {"OtherIds", "p.prj", prjWithManyOtherEntries, 0, 0, {}, withIds},
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
    {"OtherTexture", "m.mat", [] { return matWith("1", "0", "255 0 0 1 0 0 1 1 1", "T"); }, 0, 0},
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
    {"TimIsRsd", "m.rsd", [] { return rsdWith("m.ply", "NTEX=1\nTEX[0]=m.rsd\n"); }, 1, 1},
    {"TimIsHere", "m.rsd", [] { return rsdWith("m.ply", "NTEX=1\nTEX[0]=.\n"); }, 40, 40},
    {"TimIsDevice", "m.rsd", [] { return rsdWith("m.ply", "NTEX=1\nTEX[0]=/dev/zero\n"); }, 1, 1},
    {"PlyIsHere", "m.rsd", [] { return rsdWith(".", "NTEX=0\n"); }, 33, 33},
};

// Of the blocks of a TIM file. What a CLUT is too short for is taken for the image block: it has no length.
const std::vector<OddInput> timLengths = {
    {"NoClutLength", "a.tim", [] { return timWithClut(0, 20); }, 73, 73},
    {"ClutBelowHeader", "a.tim", [] { return timWithClut(11, 20); }, 73, 73},
    {"ClutOfNothing", "a.tim", [] { return timWithClut(12, 20); }, 75, 75},
    {"LargestClut", "a.tim", [] { return timWithClut(0xFFFFFFFF, 20); }, 73, 73},
    {"LargestSignedClut", "a.tim", [] { return timWithClut(0x7FFFFFFF, 20); }, 73, 73},
    {"ClutIsAll", "a.tim", [] { return timWithClut(40, 20); }, 41, 41},
    {"NoImageLength", "a.tim", [] { return timWithClut(20, 0); }, 75, 75},
    {"ImageBelowHeader", "a.tim", [] { return timWithClut(20, 11); }, 75, 75},
    {"ImageOfNothing", "a.tim", [] { return timWithClut(20, 12); }, 0, 0},
    {"LargestImage", "a.tim", [] { return timWithClut(20, 0xFFFFFFFF); }, 75, 75},
    {"LargestSignedImage", "a.tim", [] { return timWithClut(20, 0x7FFFFFFF); }, 75, 75},
    {"LongImage", "a.tim", [] { return timWithoutClut(longLine + 12, longLine); }, 0, 0},
    {"LongImageCutShort", "a.tim", [] { return timWithoutClut(longLine + 13, longLine); }, 75, 75},
};

// Numbers of a project are no more than warned about, whatever they are.
const std::vector<OddInput> prjNumbers = {
    {"Version", "p.prj", [] { return prjWith("99999999999999999999", "7 m.rsd"); }, 0, 0},
    {"NegativeVersion", "p.prj", [] { return prjWith("-99999999999999999999", "7 m.rsd"); }, 0, 0},
    {"NoVersion", "p.prj", [] { return prjWith("", "7 m.rsd"); }, 0, 0},
    {"NoSecondLine", "p.prj", [] { return std::string("@PRJ940401\n"); }, 34, 34},
    {"Above16Bits", "p.prj", [] { return prjWith("940401", "32768 m.rsd\n65535 m.rsd"); }, 0, 0},
    {"Above32Bits", "p.prj", [] { return prjWith("940401", "2147483648 m.rsd\n4294967295 m.rsd"); }, 0, 0},
    {"Above64Bits", "p.prj", [] { return prjWith("940401", "99999999999999999999 m.rsd"); }, 0, 0},
    {"FarBelowZero", "p.prj", [] { return prjWith("940401", "-99999999999999999999 m.rsd"); }, 0, 0},
};

std::string lineFor(const OddInput& input) {
    const std::string file = input.file;
    if (input.line != nullptr)
        return input.line;
    return file == "w.arg" || file == "p.prj" ? file : "m.rsd";
}

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
        const std::vector<std::string> inputs = splitWords(lineFor(GetParam()));
        words.insert(words.end(), inputs.begin(), inputs.end());
        const Ending ending = runs.run(words);
        const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
        EXPECT_EQ(describeEnding(ending), "exit status " + std::to_string(status));
        EXPECT_EQ(findFault(ending, outputs, GetParam().allowed), "") << testing::PrintToString(words) << "\n"
                                                                      << ending.errors.substr(0, 4000);
    }

    ForkedRuns& runs = freshRuns();
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
INSTANTIATE_TEST_SUITE_P(TimLength, Odd, testing::ValuesIn(timLengths), nameOf);
INSTANTIATE_TEST_SUITE_P(PrjNumber, Odd, testing::ValuesIn(prjNumbers), nameOf);
INSTANTIATE_TEST_SUITE_P(Number, Odd, testing::ValuesIn(numbers), nameOf);

} // namespace
