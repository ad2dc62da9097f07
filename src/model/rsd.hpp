// The objects of the run: one RSD record per input object, in command-line order, which is the order
// of the objects in the TMD.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vexbind {

/// What the full reading pass made of an object's vertices and normals, for model/recall.hpp.
struct ReadGeometry {
    bool complete;      // all of it has been read, and fits the tables
    std::int32_t nvert; // counts and scale of that reading
    std::int32_t nnorm;
    double scale;
    std::int32_t lowestX; // the smallest coordinates; those of the bounding box may be larger
    std::int32_t lowestY;
    std::int32_t lowestZ;
    std::byte* copy; // owned; the vertices and behind them the normals, as in the tables, or null
};

/// One input object. Texts are owned and tracked; the record lives from the listing to deleteRSD.
struct RSD {
    char* dir; // directory of the RSD file, the working directory of this object's readers
    char* ply; // PLY file name
    char* mat; // MAT file name
    char* grp; // GRP file name, never read; may be null
    std::int32_t ntex;
    char** tex;         // `ntex` texture file names in file order; null when there are none
    std::int32_t nvert; // counts, set by the listing passes of the PLY and MAT readers
    std::int32_t nnorm;
    std::int32_t npoly;
    std::int32_t nmat;
    std::int32_t scaleFactor; // the settings as they stood when the record was made
    std::int32_t offsetX;
    std::int32_t offsetY;
    std::int32_t offsetZ;
    std::uint8_t version; // a RsdVersion, settled by the MAT file's stamp
    std::int16_t id;      // from the project file; noId: none
    std::int32_t maxX;    // bounding box, widened by the PLY reader
    std::int32_t maxY;
    std::int32_t maxZ;
    std::int32_t minX;
    std::int32_t minY;
    std::int32_t minZ;
    std::uint32_t number; // position in ObjList
    ReadGeometry read;
};

inline constexpr std::uint32_t countedRSD = 84; // bytes of the fields before `number`, in the accounting
inline constexpr std::int16_t noId = -1;

enum RsdVersion : std::uint8_t { oldVersion = 0, currentVersion = 1 };

/// The object list. The arrays hold as many entries as initObjList was asked for.
struct ObjectList {
    std::uint32_t nObj;
    std::uint32_t nVert; // totals over all objects
    std::uint32_t nNorm;
    std::uint32_t nPrim;
    char** name; // per object: its argument without directory and extension; owned
    RSD** rsd;   // per object: its record; owned
};

extern ObjectList ObjList;

/// Clears ObjList and sizes its arrays for `capacity` objects (0 leaves them null). Returns 1. Failures
/// are raised as ALC_ERR, named "NAME" and "RSD*", at allocFailed.
std::int32_t initObjList(std::uint32_t capacity);

/// Finds and reads the object that `word` names, takes its sizes and enters it in ObjList. Null, after
/// a message, when there is no such file; every other failure is raised.
RSD* get_rsd_info(const char* word);

/// Makes the record of the next object, with the settings as they stand.
RSD* newRSD(const char* word);

/// Releases what one pass over the object has made: its texture table, if any.
void freeRSD(RSD* object);

/// Takes the object out of ObjList and releases all it owns; a record that is not listed is left alone.
void deleteRSD(RSD* object);

/// Makes the object's directory the working directory.
void enter_directory(const RSD* object);

/// Changes back to the start directory, to which the outputs belong. Where that is not possible GETCWD_ERR is
/// raised at noWorkingDirectory.
void return_to_start();

/// Releases the arrays of ObjList.
void freeObjList();

} // namespace vexbind
