// The TMD file around its packets: header, object table, vertex and normal sections.
#pragma once

#include "model/rsd.hpp"
#include "tmd/packetarea.hpp"
#include "utilkit/fopen.hpp"
#include "utilkit/mymem.hpp"

#include <cstdint>

namespace vexbind {

inline constexpr std::uint32_t tmdId = 0x41;
inline constexpr std::uint32_t tmdHeaderBytes = 12; // ID, flags, number of objects
inline constexpr std::uint32_t vectorBytes = 8;     // a vertex or normal in the file: x, y, z and a 0

/// One entry of the object table, word for word as in the file. Offsets are bytes from the start of the
/// table.
struct ObjectEntry {
    std::uint32_t vert_top;
    std::uint32_t n_vert;
    std::uint32_t normal_top;
    std::uint32_t n_normal;
    std::uint32_t primitive_top;
    std::uint32_t n_primitive;
    std::int32_t scale; // power-of-two exponent
};
inline constexpr std::uint32_t objectEntryBytes = 28;
static_assert(sizeof(ObjectEntry) == objectEntryBytes, "the table is written as it stands");

/// The TMD being built.
struct TmdBuild {
    ChunkedArray* objtbl;         // of ObjectEntry; null without objects
    PacketArea packet;            // reused for every packet, never cleared in between
    std::uint32_t nObj;           // objects in the file
    std::uint32_t objtblBytes;    // entries filled so far
    std::uint32_t primitiveBytes; // sections written so far
    std::uint32_t vertexBytes;
    std::uint32_t normalBytes;
};

extern TmdBuild TmdData; // set by newTMD and the phases of the driver, read by printTMD

/// Starts the TMD `name` of `count` objects: resets TmdData, opens the file and writes its header. The
/// caller gives the file to deleteTMD. An ignored open failure ends the run at noOutput.
FileRecord* newTMD(const char* name, std::uint32_t count);

/// Fills one entry with the object's counts and scale; the offsets come later.
void set_objtbl(const RSD* object, ObjectEntry& entry);

/// Writes the object's vertices from the table `vertex`; their number.
std::int32_t out_vertex(FileRecord* file, const RSD* object);

/// Writes the object's normals from the table `normal`; their number.
std::int32_t out_normal(FileRecord* file, const RSD* object);

/// Releases the object table and closes the file.
void deleteTMD(FileRecord* file);

} // namespace vexbind
