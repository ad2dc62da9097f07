// Owns ObjList and the RSD records in it.
#include "model/rsd.hpp"

#include "model/mat.hpp"
#include "model/ply.hpp"
#include "model/recall.hpp"
#include "model/rsdfile.hpp"
#include "model/search.hpp"
#include "model/tables.hpp"
#include "model/tim.hpp"
#include "settings/settings.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/fname.hpp"
#include "utilkit/getfull0.hpp"
#include "utilkit/isfile.hpp"
#include "utilkit/mkfname.hpp"
#include "utilkit/mkpname.hpp"
#include "utilkit/platform.hpp"
#include "utilkit/status.hpp"
#include "utilkit/stralloc.hpp"

#include <algorithm>
#include <cstdio>
#include <string>

namespace vexbind {

ObjectList ObjList{};

std::int32_t initObjList(std::uint32_t capacity) {
    ObjList = ObjectList{};
    if (capacity != 0) {
        ObjList.name = trackedTable<char*>(capacity, countedPointer, "NAME");
        ObjList.rsd = trackedTable<RSD*>(capacity, countedPointer, "RSD*");
    }
    return 1;
}

void freeObjList() {
    trackedFree(ObjList.name);
    trackedFree(ObjList.rsd);
    ObjList.name = nullptr;
    ObjList.rsd = nullptr;
}

RSD* newRSD(const char* word) {
    static constexpr std::int32_t lowestStart = 65535;
    static constexpr std::int32_t highestStart = -65536;

    const std::uint32_t number = ObjList.nObj;
    ObjList.name[number] = getName(word).release();
    RSD* object = trackedTable<RSD>(1, countedRSD, "RSD");
    ObjList.rsd[number] = object;
    ++ObjList.nObj;

    object->scaleFactor = scaleFactor;
    object->offsetX = offsetX;
    object->offsetY = offsetY;
    object->offsetZ = offsetZ;
    object->version = currentVersion;
    object->id = noId;
    object->maxX = object->maxY = object->maxZ = highestStart;
    object->minX = object->minY = object->minZ = lowestStart;
    object->number = number;
    return object;
}

/// The name of the RSD file that `word` means; null, after a message, when there is none.
static Text find_rsd(const char* word) {
    Text name = mkFileName(word, "rsd", RSD_EXT);
    if (isFile(name.get()) || find_other_case(name.get())) {
        return name;
    }
    Text found = find_in_directories(name.get(), RSD_EXT);
    if (!found) {
        std::fprintf(stderr, OPEN_ERR, name.get());
    }
    return found;
}

/// Raises the maxima and the totals by the object's counts.
static void count_object(const RSD* object) {
    maxVert = std::max(maxVert, object->nvert);
    maxNorm = std::max(maxNorm, object->nnorm);
    maxPoly = std::max(maxPoly, object->npoly);
    maxMat = std::max(maxMat, object->nmat);
    ObjList.nVert += static_cast<std::uint32_t>(object->nvert);
    ObjList.nNorm += static_cast<std::uint32_t>(object->nnorm);
    ObjList.nPrim += static_cast<std::uint32_t>(object->npoly);
}

void enter_directory(const RSD* object) {
    // A file directly below the root has an empty directory, to which nothing could be changed.
    if (isBareRoot(object->dir)) {
        std::string root;
        chDir(mkPathName0(object->dir, "", root));
    } else {
        chDir(object->dir);
    }
}

void return_to_start() {
    if (chDir(cwd.data()) != 0) {
        raiseError(noWorkingDirectory, GETCWD_ERR, cwd.data());
    }
}

RSD* get_rsd_info(const char* word) {
    const Text name = find_rsd(word);
    if (!name) {
        return nullptr;
    }
    const Text fullPath = getFullPath(name.get());
    RSD* object = newRSD(word);
    object->dir = getDir(fullPath.get()).release();

    PathBuffer here{};
    if (!getCwd0(here)) {
        raiseError(noWorkingDirectory, GETCWD_ERR, word);
    }
    enter_directory(object);
    read_rsd_files(fullPath.get(), object);
    read_ply_info(object);
    read_mat_info(object);
    chDir(here.data());
    count_object(object);
    return object;
}

void freeRSD(RSD* /*object*/) {
    free_textures();
}

void deleteRSD(RSD* object) {
    const std::uint32_t number = object->number;
    if (number >= ObjList.nObj || ObjList.rsd[number] != object) {
        return;
    }
    trackedFree(ObjList.name[number]);
    ObjList.name[number] = nullptr;
    ObjList.rsd[number] = nullptr;
    trackedFree(object->ply);
    trackedFree(object->mat);
    trackedFree(object->grp);
    trackedFree(object->dir);
    for (std::int32_t i = 0; i < object->ntex; ++i) {
        trackedFree(object->tex[i]);
    }
    trackedFree(object->tex);
    freeRSD(object);
    release_geometry(object);
    trackedFree(object);
}

} // namespace vexbind
