#include "faults/scenes.hpp"

#include <algorithm>
#include <ostream>

namespace {

void replaceFile(std::vector<NamedFile>& files, const std::string& name, const std::string& content) {
    for (NamedFile& file : files) {
        if (file.name == name)
            file.content = content;
    }
}

void appendHalf(std::string& bytes, std::uint32_t value) {
    bytes += static_cast<char>(value & 0xFFU);
    bytes += static_cast<char>(value >> 8U & 0xFFU);
}

void appendWord(std::string& bytes, std::uint32_t value) {
    appendHalf(bytes, value & 0xFFFFU);
    appendHalf(bytes, value >> 16U);
}

struct Area {
    std::uint32_t x;
    std::uint32_t y;
    std::uint32_t w;
    std::uint32_t h;
};

void appendBlock(std::string& bytes, std::uint32_t length, const Area& area, std::size_t dataBytes) {
    appendWord(bytes, length);
    for (const std::uint32_t value : {area.x, area.y, area.w, area.h})
        appendHalf(bytes, value);
    bytes.append(dataBytes, '\0');
}

// A group, two textures, one named without its extension, comments, and a line end of each kind.
Scene rsdScene() {
    return {
        .format = "RSD",
        .faulty = "m.rsd",
        .files = plainWith("m.rsd", "#\n"
                                    "@RSD940102\n"
                                    "PLY=m.ply\r\n"
                                    "MAT=m.mat\r"
                                    "GRP=g\n"
                                    "\n"
                                    "NTEX=2\n"
                                    "TEX[0]=a.tim\n"
                                    "#\n"
                                    "TEX[1]=a\n"),
        .line = "m.rsd",
        .whenCut = {0, 1, 34, 70, 71, 90, 91, 92},
        .whenReplaced = {0, 1, 70, 71, 90, 91, 92, 100, 200},
    };
}

// Reals in every spelling, a textured triangle, and a quadrangle with more than that in its type word, a
// line and a sprite, all three without a material.
Scene plyScene() {
    return {
        .format = "PLY",
        .faulty = "m.ply",
        .files = plainWith("m.ply", "@PLY940801\r\n"
                                    "#\n"
                                    "\n"
                                    "3 1 4\n"
                                    "0 0 -0\n"
                                    "1.5 -2e1 +3\n"
                                    "nan 0x1p3 inf\r\n"
                                    ".6 0 -.8\n"
                                    "0 0 1 2 0 0 0 0 0\n"
                                    "11 0 1 2 1 0 0 0 0\n"
                                    "2 0 1 0 0 0 0 0 0\n"
                                    "3 2 8 8 0 0 0 0 0"),
        .line = "m.rsd",
        .whenCut = {0, 34, 70, 71, 94, 95, 96, 97},
        .whenReplaced = {0, 34, 70, 71, 94, 95, 96, 97},
    };
}

// Each kind, and a letter that is no kind; single numbers, ranges, lists, an empty range and lists that
// are none; the old stamp; light off.
Scene matScene() {
    std::vector<NamedFile> files = plainFiles();
    replaceFile(files, "m.ply",
                "@PLY940102\n"
                "3 1 4\n"
                "0 0 0\n"
                "1 0 0\n"
                "0 1 0\n"
                "0 0 1\n"
                "0 0 1 2 0 0 0 0 0\n"
                "0 0 1 2 0 0 0 0 0\n"
                "1 0 1 2 0 0 0 0 0\n"
                "1 0 1 2 0 0 0 0 0\n");
    replaceFile(files, "m.mat",
                "@MAT940101\r\n"
                "#\n"
                "6\n"
                "0-1,3 7 G C 1 2 -3\n"
                "2,0 0 F G 1 2 3 4 5 6 7 8 9 1 2 3\r\n"
                "2-1 1c F T 0 1 2 3 4 5 6 7 8\n"
                "3 0 G D 0 1 2 3 4 5 6 7 8 1 2 3\n"
                "1,x 1 F H 0 1 2 3 4 5 6 7 8 1 2 3 4 5 6 7 8 9 1 2 3\n"
                "x 0 G X 0\n");
    return {
        .format = "MAT",
        .faulty = "m.mat",
        .files = files,
        .line = "m.rsd",
        .whenCut = {0, 34, 70, 71, 99, 100, 101, 102, 103, 104},
        .whenReplaced = {0, 17, 34, 70, 71, 72, 98, 99, 100, 101, 102, 103, 104},
    };
}

// A quadrangle with one texture and a sprite with the other. a.tim has a CLUT and b.tim has none.
std::vector<NamedFile> texturedFiles() {
    std::vector<NamedFile> files = plainWith("m.rsd", "@RSD940102\n"
                                                      "PLY=m.ply\n"
                                                      "MAT=m.mat\n"
                                                      "NTEX=2\n"
                                                      "TEX[0]=a.tim\n"
                                                      "TEX[1]=b.tim\n");
    replaceFile(files, "m.ply",
                "@PLY940102\n"
                "4 1 2\n"
                "0 0 0\n"
                "1 0 0\n"
                "0 1 0\n"
                "1 1 0\n"
                "0 0 1\n"
                "1 0 1 2 3 0 0 0 0\n"
                "3 0 2 2 0 0 0 0 0\n");
    replaceFile(files, "m.mat",
                "@MAT940102\n"
                "2\n"
                "0 0 F T 0 0 0 7 0 0 1 7 1\n"
                "1 4 F T 1 0 0 1 0 0 1 1 1\n");
    replaceFile(files, "a.tim", timWithClut(20, 20));
    files.push_back({"b.tim", timWithoutClut(20, 8)});
    return files;
}

Scene clutScene() {
    return {
        .format = "TimWithClut",
        .faulty = "a.tim",
        .files = texturedFiles(),
        .line = "m.rsd",
        .whenCut = {0, 39, 41, 73, 75},
        .whenReplaced = {0, 1, 39, 73, 75},
    };
}

Scene imageScene() {
    return {
        .format = "TimWithoutClut",
        .faulty = "b.tim",
        .files = texturedFiles(),
        .line = "m.rsd",
        .whenCut = {0, 39, 41, 75},
        .whenReplaced = {0, 1, 41, 75},
    };
}

// Two objects, one of them in a directory and named in another letter case; an ID that is none; lines
// that are no entries.
Scene prjScene() {
    std::vector<NamedFile> files = plainWith("p.prj", "#\n"
                                                      "@PRJ940401\n"
                                                      "\n"
                                                      "2 m.rsd\n"
                                                      "7 m.rsd\r\n"
                                                      "x\n"
                                                      "\t32767  d/N\n"
                                                      "-1 ./d/n.rsd x");
    files.push_back({"d/n.rsd", "@RSD940102\nPLY=../m.ply\nMAT=../m.mat\nNTEX=1\nTEX[0]=../a.tim\n"});
    return {
        .format = "PRJ",
        .faulty = "p.prj",
        .files = files,
        .line = "p.prj",
        .namesInputs = true,
        .outputs = 2,
        .whenCut = {0, 3, 34},
        .whenReplaced = {0, 1, 3},
    };
}

// Options with and without values, between the names too, one of them not known there; an ID list; one
// object twice.
Scene argScene() {
    std::vector<NamedFile> files = plainFiles();
    files.push_back({"w.arg", "-o a -s 2\n-id p.prj m.rsd\r\n-t 1 2 3 -sa 1 -b\tm"});
    return {
        .format = "ARG",
        .faulty = "w.arg",
        .files = files,
        .line = "w.arg",
        .namesInputs = true,
        .outputs = 2,
        .whenCut = {0, 1, 2},
        .whenReplaced = {0, 1, 2, 30, 70},
    };
}

// The same without the file and with one between: its name is examined, that behind -id is not.
Scene lineScene() {
    std::vector<NamedFile> files = plainFiles();
    files.push_back({"w.arg", "-t 1 2 3\nm"});
    return {
        .format = "CommandLine",
        .faulty = "",
        .files = files,
        .line = "-o a.tmd -ID p.prj -sc .5 -a m.rsd -s 2 w.arg -sa 1 -b M",
        .namesInputs = true,
        .outputs = 2,
        .whenCut = {0, 1, 2},
        .whenReplaced = {0, 1, 2, 30, 70},
    };
}

} // namespace

void PrintTo(const Scene& scene, std::ostream* out) {
    *out << scene.format;
}

const std::vector<Scene>& scenes() {
    static const std::vector<Scene> all = {rsdScene(),   plyScene(), matScene(), clutScene(),
                                           imageScene(), prjScene(), argScene(), lineScene()};
    return all;
}

std::vector<NamedFile> plainFiles() {
    return {{"m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=1\nTEX[0]=a.tim\n"},
            {"m.ply", "@PLY940102\n3 1 1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n0 0 1 2 0 0 0 0 0\n"},
            {"m.mat", "@MAT940102\n1\n0 0 F T 0 0 0 1 0 0 1 1 1\n"},
            {"a.tim", timWithoutClut(20, 8)},
            {"p.prj", "@PRJ940401\n1\n7 m.rsd\n"}};
}

std::vector<NamedFile> plainWith(const std::string& name, const std::string& content) {
    std::vector<NamedFile> files = plainFiles();
    replaceFile(files, name, content);
    return files;
}

std::string timWithClut(std::uint32_t clutLength, std::uint32_t pixelLength) {
    std::string bytes;
    appendWord(bytes, 0x10);
    appendWord(bytes, 0x8);
    appendBlock(bytes, clutLength, {.x = 0, .y = 480, .w = 4, .h = 1}, 8);
    appendBlock(bytes, pixelLength, {.x = 640, .y = 0, .w = 2, .h = 2}, 8);
    return bytes;
}

std::string timWithoutClut(std::uint32_t pixelLength, std::size_t dataBytes) {
    std::string bytes;
    appendWord(bytes, 0x10);
    appendWord(bytes, 0x2);
    appendBlock(bytes, pixelLength, {.x = 320, .y = 256, .w = 2, .h = 2}, dataBytes);
    return bytes;
}

std::vector<NamedFile> filesWith(const Scene& scene, const std::string& content) {
    std::vector<NamedFile> files = scene.files;
    replaceFile(files, scene.faulty, content);
    return files;
}

std::vector<std::string> wordsWith(const Scene& scene, const std::string& content) {
    return splitWords(scene.faulty.empty() ? content : scene.line);
}

const std::string& soundContent(const Scene& scene) {
    for (const NamedFile& file : scene.files) {
        if (file.name == scene.faulty)
            return file.content;
    }
    return scene.line;
}

std::vector<std::string> splitWords(const std::string& line) {
    using namespace std::string_literals;
    std::vector<std::string> words;
    if (line.empty())
        return words;
    std::size_t start = 0;
    while (start <= line.size()) {
        const std::size_t end = std::min(line.find_first_of(" \0"s, start), line.size());
        words.push_back(line.substr(start, end - start));
        start = end + 1;
    }
    return words;
}
