#include "faults/scenes.hpp"

#include <ostream>

namespace {

void replaceFile(std::vector<NamedFile>& files, const std::string& name, const std::string& content) {
    for (NamedFile& file : files) {
        if (file.name == name)
            file.content = content;
    }
}

// A group, two textures (no polygon has one), comments, and a line end of each kind.
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
                                    "TEX[0]=a\n"
                                    "#\n"
                                    "TEX[1]=b\n"),
        .words = {"m.rsd"},
        .whenCut = {0, 34, 70, 71, 90, 91, 92},
        .whenReplaced = {0, 70, 71, 90, 91, 92, 100, 200},
    };
}

// Reals in every spelling, a triangle, and a quadrangle with more than that in its type word.
Scene plyScene() {
    return {
        .format = "PLY",
        .faulty = "m.ply",
        .files = plainWith("m.ply", "@PLY940801\r\n"
                                    "#\n"
                                    "\n"
                                    "3 1 2\n"
                                    "0 0 -0\n"
                                    "1.5 -2e1 +3\n"
                                    "nan 0x1p3 inf\r\n"
                                    ".6 0 -.8\n"
                                    "0 0 1 2 0 0 0 0 0\n"
                                    "11 0 1 2 1 0 0 0 0"),
        .words = {"m.rsd"},
        .whenCut = {0, 34, 70, 71, 94, 95, 96, 97},
        .whenReplaced = {0, 34, 70, 71, 94, 95, 96, 97},
    };
}

// Each kind (the textured ones for no polygon), and a letter that is no kind; single numbers, ranges,
// lists, an empty range and a list that is none; the old stamp; light off. One texture.
Scene matScene() {
    std::vector<NamedFile> files = plainWith("m.rsd", "@RSD940102\n"
                                                      "PLY=m.ply\n"
                                                      "MAT=m.mat\n"
                                                      "NTEX=1\n"
                                                      "TEX[0]=a.tim\n");
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
                "x 0 G D 0 1 2 3 4 5 6 7 8 1 2 3\n"
                "x 1 F H 0 1 2 3 4 5 6 7 8 1 2 3 4 5 6 7 8 9 1 2 3\n"
                "3 0 G X 0\n");
    return {
        .format = "MAT",
        .faulty = "m.mat",
        .files = files,
        .words = {"m.rsd"},
        .whenCut = {0, 34, 70, 71, 99, 100, 101, 102, 103, 104},
        .whenReplaced = {0, 17, 34, 70, 71, 72, 98, 99, 100, 101, 102, 103, 104},
    };
}

// Options with and without values, between the names too, one of them not known there; one object
// twice.
Scene argScene() {
    std::vector<NamedFile> files = plainFiles();
    files.push_back({"w.arg", "-o a -s 2\nm.rsd\r\n-t 1 2 3 -sa 1 -b\tm"});
    return {
        .format = "ARG",
        .faulty = "w.arg",
        .files = files,
        .words = {"w.arg"},
        .whenCut = {0, 1, 2},
        .whenReplaced = {0, 1, 2, 30},
    };
}

} // namespace

void PrintTo(const Scene& scene, std::ostream* out) {
    *out << scene.format;
}

const std::vector<Scene>& scenes() {
    static const std::vector<Scene> all = {rsdScene(), plyScene(), matScene(), argScene()};
    return all;
}

std::vector<NamedFile> plainFiles() {
    return {{"m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=0\n"},
            {"m.ply", "@PLY940102\n3 1 1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n0 0 1 2 0 0 0 0 0\n"},
            {"m.mat", "@MAT940102\n1\n0 0 F C 1 2 3\n"}};
}

std::vector<NamedFile> plainWith(const std::string& name, const std::string& content) {
    std::vector<NamedFile> files = plainFiles();
    replaceFile(files, name, content);
    return files;
}

std::vector<NamedFile> filesWith(const Scene& scene, const std::string& content) {
    std::vector<NamedFile> files = scene.files;
    replaceFile(files, scene.faulty, content);
    return files;
}

const std::string& soundContent(const Scene& scene) {
    for (const NamedFile& file : scene.files) {
        if (file.name == scene.faulty)
            return file.content;
    }
    return scene.faulty;
}
