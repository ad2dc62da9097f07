// The readers, each called as the driver calls it.
#include "fuzz/readers.hpp"

#include "driver/idtable.hpp"
#include "driver/options.hpp"
#include "driver/project.hpp"
#include "driver/words.hpp"
#include "model/attributes.hpp"
#include "model/mat.hpp"
#include "model/ply.hpp"
#include "model/rsd.hpp"
#include "model/rsdprint.hpp"
#include "model/tables.hpp"
#include "model/tim.hpp"
#include "settings/settings.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/stralloc.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

using namespace vexbind;

namespace {

constexpr std::string_view smallPly = "@PLY940102\n3 1 1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n0 0 1 2 0 0 0 0 0\n";
constexpr std::string_view smallMat = "@MAT940102\n1\n0 0 F C 1 2 3\n";

// The first byte of some inputs chooses settings; the text that is read stands behind it.
unsigned choice = 0;

std::string_view takeChoice(std::string_view input) {
    choice = input.empty() ? 0 : static_cast<unsigned char>(input.front());
    return input.substr(input.empty() ? 0 : 1);
}

void rememberStart() {
    static_cast<void>(getCwd0(cwd));
    _cwd = cwd;
}

// An object of the list, in the start directory.
RSD* addObject(const char* word) {
    RSD* object = newRSD(word);
    object->dir = strCopy(cwd.data()).release();
    object->ply = strCopy("m.ply").release();
    object->mat = strCopy("m.mat").release();
    return object;
}

void readRsd() {
    rememberStart();
    initObjList(1);
    RSD* object = get_rsd_info("m");
    if (object != nullptr) {
        printObjList(dout);
        printRSD(vout, object);
        deleteRSD(object);
    }
    freeObjList();
}

void readPly() {
    static constexpr std::array<std::int32_t, 4> exponents = {0, 1, -3, 40};
    static constexpr std::array<std::int32_t, 4> translations = {0, 10, -40000, INT32_MAX};
    rememberStart();
    scaleFactor = exponents[choice % 4];
    offsetX = offsetY = offsetZ = translations[choice / 4 % 4];
    initObjList(1);
    RSD* object = addObject("m");
    read_ply_info(object);
    object->version = choice / 16 % 2 == 0 ? currentVersion : oldVersion;
    maxVert = std::max(object->nvert, 0);
    maxNorm = std::max(object->nnorm, 0);
    maxPoly = std::max(object->npoly, 0);
    create_tables();
    for (const PlySections wanted : {PlySections::all, PlySections::vertices, PlySections::normals})
        read_ply(object->ply, object, wanted);
    printRSD(vout, object);
    free_tables();
    deleteRSD(object);
    freeObjList();
}

// The polygons of the object to which the materials are assigned, of all types.
void makePolygons(RSD* object, std::int32_t count) {
    object->npoly = count;
    for (std::int32_t i = 0; i < count; ++i) {
        auto& record = elementAt<PolygonRecord>(i, polygon);
        record.attr = static_cast<std::uint32_t>(i % 8) << typeShift;
        record.mat_no = noMaterial;
    }
}

void readMat() {
    static constexpr std::int32_t polygons = 20;
    static constexpr std::int32_t polygonsBeyond = 1; // of a larger object, in the same table
    rememberStart();
    Verbose = static_cast<std::int32_t>(choice % 2);
    initObjList(1);
    RSD* object = addObject("m");
    read_mat_info(object);
    maxMat = std::max(object->nmat, 0);
    maxPoly = polygons + polygonsBeyond;
    create_tables();
    makePolygons(object, polygons);
    read_mat(object->mat, object);
    free_materials(object);
    free_tables();
    deleteRSD(object);
    freeObjList();
}

// Where a texture can lie, and how the RSD file names it.
struct TexturePlace {
    const char* file;
    const char* name;
};

constexpr std::array<TexturePlace, 8> texturePlaces = {{
    {"a.tim", "a.tim"},
    {"a.tim", "a"},
    {"A.TIM", "a.tim"},
    {"a.tim", "A"},
    {"../TIM/a.tim", "a.tim"},
    {"../tim/A.TIM", "a"},
    {"../tim/a.tim", "A.TIM"},
    {"b.tim", "a.tim"},
}};

const TexturePlace& texturePlace() {
    return texturePlaces[choice / 4 % texturePlaces.size()];
}

void lookUpTexture() {
    static constexpr std::array<std::int32_t, 4> layouts = {homeLayout, arcadeLayoutA, arcadeLayoutB,
                                                            homeLayout};
    rememberStart();
    arcade = layouts[choice % 4];
    initObjList(1);
    RSD* object = addObject("m");
    object->ntex = 1;
    object->tex = trackedTable<char*>(1, countedPointer, "NAME");
    object->tex[0] = strCopy(texturePlace().name).release();
    read_tim_files(object);
    freeRSD(object);
    deleteRSD(object);
    freeObjList();
}

// The words of the program's name and one more.
WordList wordsOf(const char* word) {
    std::array<char, 8> program = {"vexbind"};
    const Text copy = strCopy(word);
    std::array<char*, 2> words = {program.data(), copy.get()};
    return collect_words(static_cast<int>(words.size()), words.data());
}

void readPrj() {
    static constexpr std::array<const char*, 6> objects = {"cube", "CUBE", "d/Crate.rsd", "lamp", "a.b", "9"};
    rememberStart();
    WordList list = wordsOf("p.prj");
    free_words(list);
    initObjList(objects.size());
    for (const char* object : objects)
        addObject(object);
    read_prj("p.prj");
    write_idtable("out/scene.tmd");
    for (std::uint32_t i = 0; i < objects.size(); ++i)
        deleteRSD(ObjList.rsd[i]);
    freeObjList();
}

void readArg() {
    rememberStart();
    WordList list = wordsOf("w.arg");
    for (std::uint32_t i = option(list); i < list.count;)
        i += list.words[i][0] == '-' ? option_between(list, i) : 1;
    for (std::uint32_t i = 0; i < list.count; ++i)
        std::fprintf(vout, "%s\n", list.words[i]);
    free_words(list);
    trackedFree(Tmdfile);
    trackedFree(Prjfile);
}

} // namespace

RunResult runRsd(std::string_view input) {
    const std::array<PlantedFile, 3> files = {{{.name = "m.rsd", .content = input},
                                               {.name = "m.ply", .content = smallPly},
                                               {.name = "m.mat", .content = smallMat}}};
    return runInSandbox(files, readRsd);
}

RunResult runPly(std::string_view input) {
    const std::array<PlantedFile, 1> files = {{{.name = "m.ply", .content = takeChoice(input)}}};
    return runInSandbox(files, readPly);
}

RunResult runMat(std::string_view input) {
    const std::array<PlantedFile, 1> files = {{{.name = "m.mat", .content = takeChoice(input)}}};
    return runInSandbox(files, readMat);
}

RunResult runTim(std::string_view input) {
    const std::string_view content = takeChoice(input);
    const std::array<PlantedFile, 2> files = {
        {{.name = texturePlace().file, .content = content, .breaks = choice / 32 % 2 != 0},
         {.name = "../tim/", .content = {}}}};
    return runInSandbox(files, lookUpTexture);
}

RunResult runPrj(std::string_view input) {
    const std::array<PlantedFile, 1> files = {{{.name = "p.prj", .content = input}}};
    return runInSandbox(files, readPrj);
}

RunResult runArg(std::string_view input) {
    const std::array<PlantedFile, 1> files = {{{.name = "w.arg", .content = input}}};
    return runInSandbox(files, readArg);
}
