// What the listings say of the objects.
#pragma once

#include "model/rsd.hpp"

#include <cstdio>

namespace vexbind {

/// Prints one object: files, counts, scale, translation and bounding box.
void printRSD(std::FILE* stream, const RSD* object);

/// Prints the object list with its totals.
void printObjList(std::FILE* stream);

} // namespace vexbind
