// The passes over the listed objects that write the TMD's sections, in the order of the file. Each opens
// the objects' files anew, from their own directories. What a pass has put of an object is written before
// the next object is begun.
#pragma once

#include "utilkit/fopen.hpp"

namespace vexbind {

/// Writes the object table with counts and scales, to keep its place.
void write_placeholder_table(FileRecord* file);

/// Writes the packets of all objects and enters where they begin.
void write_primitives(FileRecord* file);

/// Writes the vertices; warns of objects that leave the 16-bit coordinates.
void write_vertices(FileRecord* file);

/// Writes the normals and returns to the start directory.
void write_normals(FileRecord* file);

/// Prints the summary when asked, and writes the object table again with its offsets.
void finish_table(FileRecord* file);

} // namespace vexbind
