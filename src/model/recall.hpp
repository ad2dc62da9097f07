// The vertices and normals of objects that have been read once, so that the passes which need them again
// do not have to convert the same text a second time. Their effects are those of another reading.
#pragma once

#include "model/rsd.hpp"

#include <cstddef>

namespace vexbind {

extern std::size_t copiedGeometry; // bytes of the copies that are kept

/// Notes that the tables hold the vertices and normals of `object`, and, when other objects will follow
/// it there, keeps a copy as long as not too much is kept.
void remember_geometry(RSD* object);

/// Notes that the vertices in the table are others now, or the normals.
void forget_vertex_table();
void forget_normal_table();

/// Makes the table hold the object's vertices again and widens its bounding box by them; false when they
/// have to be read.
[[nodiscard]] bool recall_vertices(RSD* object);

/// Makes the table hold the object's normals again; false when they have to be read.
[[nodiscard]] bool recall_normals(const RSD* object);

/// Releases the copy of the object, if there is one.
void release_geometry(RSD* object);

} // namespace vexbind
