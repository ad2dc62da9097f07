// PLY files: the geometry of one object.
#pragma once

#include "model/rsd.hpp"
#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// What a reading pass wants of the file; the sections before are stepped over, those behind not read.
enum class PlySections { all, vertices, normals };

/// The listing pass: settles the PLY name and takes the version and the counts into the object. Returns
/// 1. A file that does not open is raised as OPEN_ERR at plyNotFound.
std::int32_t read_ply_info(RSD* object);

/// A reading pass: fills the tables from index 0 and widens the object's bounding box. `name` is opened
/// in the working directory; failure is raised as OPEN_ERR at openFailed.
void read_ply(const char* name, RSD* object, PlySections wanted);

/// Reads the count line into the object; SYN_ERR at plyCountSyntax.
void get_ply_length(FileRecord* file, RSD* object);

/// Reads as many vertex lines as the object counts into `vertex`, scaled and translated; SYN_ERR at
/// plyVertexSyntax. Fixes `scale` when it is not known yet.
void get_ply_vertex(FileRecord* file, RSD* object);

/// Reads the normal lines into `normal`; SYN_ERR at plyNormalSyntax.
void get_ply_normal(FileRecord* file, const RSD* object);

/// Reads the polygon lines into `polygon`, without materials; SYN_ERR at plyPolygonSyntax.
void get_ply_polygon(FileRecord* file, const RSD* object);

} // namespace vexbind
