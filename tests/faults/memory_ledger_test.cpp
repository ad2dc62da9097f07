// The messages of allocations that fail, to the last figure. The figures are worked out by hand, in the
// sizes of the format's reference machine: a pointer or number takes 4 bytes, a record of an open file 20,
// of an object 84, of a texture 60, the header of a table 28.
#include "faults/alloc_message.hpp"
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t directoryLength = 200; // of the start directory; it enters into some sizes
constexpr int mostAllocations = 3000;

class Ledger : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(runs.directory(), "");
        ASSERT_LT(runs.directory().size() + 1, directoryLength);
        start = std::string(directoryLength - runs.directory().size() - 1, 'd');
    }

    // Lets every single allocation of a run fail, or those up to the one that leads to the last of `wanted`
    // messages. All of them are kept, the start directory in them being {dir}.
    void failUntil(const std::vector<AllocMessage>& wanted, std::vector<NamedFile> files,
                   const std::string& line) {
        for (NamedFile& file : files)
            file.name = start + "/" + file.name;
        writeFiles(runs.directory(), files);
        Surroundings around{.startDirectory = start};
        for (around.failingAllocation = 1; around.failingAllocation <= mostAllocations;
             ++around.failingAllocation) {
            const Ending ending = runs.run(splitWords(line), around);
            if (ending.failed == 0)
                break;
            keepMessage(ending);
            if (!messages.empty() && messages.back() == wanted.back())
                break;
        }
        for (const AllocMessage& message : wanted) {
            const bool isThere = std::find(messages.begin(), messages.end(), message) != messages.end();
            EXPECT_TRUE(isThere) << describe(message);
        }
    }

    void keepMessage(const Ending& ending) {
        std::optional<AllocMessage> message = findAllocMessage(ending.errors, ending.status);
        const std::string directory = runs.directory() + "/" + start;
        if (!message)
            return;
        if (message->name.starts_with(directory))
            message->name.replace(0, directory.size(), "{dir}");
        messages.push_back(*message);
    }

    ForkedRuns& runs = freshRuns();
    std::string start;
    std::vector<AllocMessage> messages;
};

// Of one object with a group and a texture, and the ID list of a project: every allocation of the run, in
// order. Those of the lines of text (by getLine), of the streams and of the library's strings (main) are
// not counted and not here.
const std::vector<AllocMessage> wholeRun = {
    // The words are counted: the project behind -id is looked into. Closing it releases 3.
    {11, "fileOpen", 1, 20, 1, 0, 20},
    {13, "p.prj", 6, 1, 2, 0, 26},
    {12, "p.prj", 255, 1, 3, 0, 281},
    // Room for "-o", "o.tmd", "-id", the project as such (2, and 1 entry) and "m"; counted once it is had.
    {10, "char*", 8, 4, 3, 3, 281},
    {13, "-o", 3, 1, 5, 3, 316},
    {13, "o.tmd", 6, 1, 6, 3, 322},
    {13, "-id", 4, 1, 7, 3, 326},
    {13, "p.prj", 6, 1, 8, 3, 332},
    {13, "m", 2, 1, 9, 3, 334},
    // The settings.
    {13, "o.tmd", 6, 1, 10, 3, 340},
    {13, "p.prj", 6, 1, 11, 3, 346},
    // The object list, for 5 words.
    {10, "NAME", 5, 4, 11, 3, 346},
    {10, "RSD*", 5, 4, 12, 3, 366},
    // The object: "m" gets its extension and is made absolute; its record, and its directory of 200 bytes.
    {12, "m", 6, 1, 14, 3, 392},
    {12, "m.rsd", 255, 1, 15, 3, 647},
    {13, "m", 2, 1, 16, 3, 649},
    {10, "RSD", 1, 84, 16, 3, 649},
    {12, "{dir}/m.rsd", 201, 1, 18, 3, 934},
    // The RSD file, by its full name of 206 bytes.
    {11, "fileOpen", 1, 20, 19, 3, 954},
    {13, "{dir}/m.rsd", 207, 1, 20, 3, 1161},
    {12, "{dir}/m.rsd", 255, 1, 21, 3, 1416},
    {13, "m.ply", 6, 1, 22, 3, 1422},
    {13, "m.mat", 6, 1, 23, 3, 1428},
    {13, "g", 2, 1, 24, 3, 1430},
    {13, "a.tim", 6, 1, 25, 3, 1436},
    {10, "NAME", 1, 4, 25, 3, 1436},
    // Its files are listed: the name to look for, released again; then the file.
    {13, "m.ply", 6, 1, 27, 6, 1446},
    {11, "fileOpen", 1, 20, 28, 7, 1466},
    {13, "m.ply", 6, 1, 29, 7, 1472},
    {12, "m.ply", 255, 1, 30, 7, 1727},
    {13, "m.mat", 6, 1, 31, 10, 1733},
    {11, "fileOpen", 1, 20, 32, 11, 1753},
    {13, "m.mat", 6, 1, 33, 11, 1759},
    {12, "m.mat", 255, 1, 34, 11, 2014},
    // Released are then the two names of the object (16), the 5 words and their list (22). The TMD: the
    // object table, of which the header and the block count before they are had, and the file.
    {14, "TmdData.objtbl", 1, 28, 35, 22, 2042},
    {10, "void*", 1, 4, 35, 22, 2042},
    {16, "TmdData.objtbl", 28, 1, 37, 22, 2074},
    {11, "fileOpen", 1, 20, 38, 22, 2094},
    {13, "o.tmd", 6, 1, 39, 22, 2100},
    {12, "o.tmd", 255, 1, 40, 22, 2355},
    // The model tables.
    {14, "vertex", 1, 28, 41, 22, 2383},
    {10, "void*", 1, 4, 41, 22, 2383},
    {16, "vertex", 6, 3, 43, 22, 2405},
    {14, "normal", 1, 28, 44, 22, 2433},
    {10, "void*", 1, 4, 44, 22, 2433},
    {16, "normal", 6, 1, 46, 22, 2443},
    {14, "polygon", 1, 28, 47, 22, 2471},
    {10, "void*", 1, 4, 47, 22, 2471},
    {16, "polygon", 40, 1, 49, 22, 2515},
    {14, "material", 1, 28, 50, 22, 2543},
    {10, "void*", 1, 4, 50, 22, 2543},
    {16, "material", 8, 2, 52, 22, 2563},
    // The numbers of white, which lie in its record, are counted. The packets: the PLY file, the MAT file and
    // its 12 numbers, the texture.
    {11, "fileOpen", 1, 20, 54, 22, 2586},
    {13, "m.ply", 6, 1, 55, 22, 2592},
    {12, "m.ply", 255, 1, 56, 22, 2847},
    {11, "fileOpen", 1, 20, 57, 25, 2867},
    {13, "m.mat", 6, 1, 58, 25, 2873},
    {12, "m.mat", 255, 1, 59, 25, 3128},
    {10, "UCHAR", 12, 1, 59, 25, 3128},
    {10, "TIM", 1, 60, 60, 28, 3140},
    {13, "a.tim", 6, 1, 62, 28, 3206},
    {11, "fileOpen", 1, 20, 63, 29, 3226},
    {13, "a.tim", 6, 1, 64, 29, 3232},
    {12, "a.tim", 255, 1, 65, 29, 3487},
    // The file closed (32), the numbers of the material (33) and the textures (34) released: the vertices,
    // and then the normals.
    {11, "fileOpen", 1, 20, 66, 34, 3507},
    {13, "m.ply", 6, 1, 67, 34, 3513},
    {12, "m.ply", 255, 1, 68, 34, 3768},
    {11, "fileOpen", 1, 20, 69, 37, 3788},
    {13, "m.ply", 6, 1, 70, 37, 3794},
    {12, "m.ply", 255, 1, 71, 37, 4049},
    // The IDs: the file, and the name of its entry.
    {11, "fileOpen", 1, 20, 72, 40, 4069},
    {13, "p.prj", 6, 1, 73, 40, 4075},
    {12, "p.prj", 255, 1, 74, 40, 4330},
    {13, "m.rsd", 6, 1, 75, 40, 4336},
    // That name (41) and the file (44) released, the ID list: the TMD's name without its extension and with
    // another one; the file.
    {13, "o.tmd", 6, 1, 76, 44, 4342},
    {12, "o", 4, 1, 77, 44, 4346},
    {11, "fileOpen", 1, 20, 78, 44, 4366},
    {13, "o.h", 4, 1, 79, 44, 4370},
    {12, "o.h", 255, 1, 80, 44, 4625},
};

// Not counted, so that the ledger has nothing to say about it.
bool isUncounted(const AllocMessage& message) {
    return message.name == "getLine" || message.name == "main" || message.otherFactor == sizeof(std::FILE);
}

TEST_F(Ledger, WholeRun) {
    const std::string rsd = "@RSD940102\nPLY=m.ply\nMAT=m.mat\nGRP=g\nNTEX=1\nTEX[0]=a.tim\n";
    failUntil(wholeRun, plainWith("m.rsd", rsd), "-o o.tmd -id p.prj m");
    for (const AllocMessage& message : messages) {
        const bool isKnown = std::find(wholeRun.begin(), wholeRun.end(), message) != wholeRun.end();
        EXPECT_TRUE(isKnown || isUncounted(message)) << describe(message);
    }
}

// "m.sd": the extension is the end of "rsd" and becomes it.
TEST_F(Ledger, CompletedExtension) {
    // Table 12, words 3, 2 and 5, the output's name 2, tables 12 and 12: 7 allocations of 48 bytes.
    failUntil({{12, "mkFileName", 6, 1, 8, 0, 54}, {12, "m.rsd", 255, 1, 9, 0, 309}}, plainFiles(),
              "-o o m.sd");
}

// A block of 1,000,000 bytes holds 25,000 polygons; 25,001 take another for the last one.
TEST_F(Ledger, FullBlock) {
    // Words: table 4 and "m.rsd" 6; lists 4 and 4; "a.tmd" 6 (5 allocations, 24 bytes). The object: names 6,
    // 255, 2 + 4 = 6, record 84, directory 201 (10; 576). RSD file: 20, 207, 255, names 6 and 6 (15; 1070),
    // 3 released. PLY and MAT: 6, 20, 6, 255 each (23; 1644), 4 released each. Released: two names, the word
    // and its table (15). Object table: 28, 4, 28 (26; 1704). Output: 20, 6, 255 (29; 1985).
    // Polygons: header 28, two blocks in a table of 8 (31; 2021).
    failUntil({{14, "polygon", 1, 28, 30, 15, 2013},
               {10, "void*", 2, 4, 30, 15, 2013},
               {15, "polygon", 40, 25'000, 32, 15, 1'002'021},
               {16, "polygon", 40, 1, 33, 15, 1'002'061}},
              {{"m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=0\n"},
               {"m.ply", "@PLY940102\n0 0 25001\n"},
               {"m.mat", "@MAT940102\n0\n"}},
              "m.rsd");
}

// The upper-case form of a file's name, when only that exists, replaces the name; so does that of a texture
// found in one of the usual directories.
TEST_F(Ledger, OtherNames) {
    // As above, but for the name of the texture 6 and its table 4 (17 allocations of 1080 bytes before the
    // PLY file); "m.ply" is released for "M.PLY".
    //
    // MAT: 6, 20, 6, 255 (25; 1654), 4 released besides the 3 of the PLY file (11), and then two names, the
    // word and its table (15). Object table 28, 4, 28 (28; 1714), output 20, 6, 255 (31; 1995), materials
    // 28, 4, 8 (34; 2035), white 3 (35; 2038). PLY and MAT again, 281 each (41; 2600), 3 released each (21).
    // The texture's record 60 (42; 2660), its name as it is, then in the directory: as given and in upper
    // case.
    failUntil({{13, "m.ply", 6, 1, 18, 3, 1086},
               {11, "fileOpen", 1, 20, 19, 4, 1106},
               {13, "M.PLY", 6, 1, 20, 4, 1112},
               {12, "M.PLY", 255, 1, 21, 4, 1367},
               {13, "b.tim", 6, 1, 43, 21, 2666},
               {13, "../TIM/b.tim", 13, 1, 44, 21, 2679},
               {13, "../TIM/B.TIM", 13, 1, 45, 22, 2692},
               {11, "fileOpen", 1, 20, 46, 24, 2712},
               {13, "../TIM/B.TIM", 13, 1, 47, 24, 2725}},
              {{"m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=1\nTEX[0]=b.tim\n"},
               {"M.PLY", "@PLY940102\n0 0 0\n"},
               {"m.mat", "@MAT940102\n0\n"},
               {"../TIM/B.TIM", timWithoutClut(20, 8)}},
              "m.rsd");
}

// The names of 21 textures and more go where they stay; fewer are copied there (WholeRun).
TEST_F(Ledger, ManyTextures) {
    // 15 allocations of 1070 bytes before, as above.
    failUntil({{10, "NAME", 21, 4, 15, 0, 1070}, {13, "a.tim", 6, 1, 17, 0, 1160}},
              plainWith("m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=21\nTEX[0]=a.tim\n"), "m.rsd");
}

// Words of a file.
TEST_F(Ledger, WordsOfFile) {
    std::vector<NamedFile> files = plainFiles();
    files.push_back({"w.arg", "-v m.rsd"});
    failUntil({{10, "char*", 2, 4, 0, 0, 0}, {13, "-v", 3, 1, 2, 0, 11}, {13, "m.rsd", 6, 1, 3, 0, 17}},
              files, "w.arg");
}

} // namespace
