// The readers of geometry and materials as they are defined: every line by getLine and scan, whatever it
// looks like. A reference for the readers of the program.
#pragma once

#include "model/rsd.hpp"
#include "utilkit/fopen.hpp"

#include <string>

// How a reading fails.
struct Failure {
    int status = 0; // 0: it does not
    std::string message;
};

// Reads the vertices, normals, polygons and materials that the object counts, one behind the other, into the
// tables.
Failure read_by_general_road(vexbind::FileRecord* file, vexbind::RSD& object);
