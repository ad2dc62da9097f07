// The model tables: one object at a time, in memory, with indices local to the object.
//
// The PLY reader fills `vertex`, `normal` and `polygon`, the MAT reader `material` and the polygons'
// attributes; the TMD writer reads them all.
#pragma once

#include "utilkit/mymem.hpp"

#include <array>
#include <cstdint>

namespace vexbind {

/// A vertex in model units after scaling and translation, or a normal in 4.12 fixed point.
struct Coordinates {
    std::int16_t x;
    std::int16_t y;
    std::int16_t z;
};
static_assert(sizeof(Coordinates) == 6, "the tables' blocks are sized by it");

struct PolygonRecord {
    std::uint32_t attr;               // bits of model/attributes.hpp
    std::array<std::int32_t, 4> vert; // indices into `vertex`, as the PLY line gave them
    std::array<std::int32_t, 4> norm; // indices into `normal`
    std::int32_t mat_no;              // the MAT line that claimed the polygon, from 0; noMaterial: none
};
static_assert(sizeof(PolygonRecord) == 40, "the tables' blocks are sized by it");

inline constexpr std::int32_t noMaterial = -1;

struct MaterialRecord {
    std::uint8_t attr;       // low 8 bits of the MAT line's attribute word
    char shading;            // as written: "F", "G" or another letter, which counts as flat
    char kind;               // as written: "C", "G", "T", "D", "H" or another letter
    std::uint8_t paramCount; // of the line's numbers: 0 to maxParams
    std::uint32_t param;     // up to four numbers and zeros behind them, or the place of more in the pool
};
static_assert(sizeof(MaterialRecord) == 8, "the tables' blocks are sized by it");

extern ChunkedArray* vertex;   // of Coordinates, maxVert
extern ChunkedArray* normal;   // of Coordinates, maxNorm
extern ChunkedArray* polygon;  // of PolygonRecord, maxPoly
extern ChunkedArray* material; // of MaterialRecord, maxMat + 1; element 0 is the default material

// The largest counts of any one object; raised while the RSD files are listed, read by create_tables.
extern std::int32_t maxVert;
extern std::int32_t maxNorm;
extern std::int32_t maxPoly;
extern std::int32_t maxMat;

/// Allocates the tables (null for a maximum of 0) and makes material 0 flat white.
void create_tables();

/// Releases the tables and the default material.
void free_tables();

} // namespace vexbind
