// What is being built: set by set_primitive, read by the builders' dumps.
#pragma once

#include "model/rsd.hpp"

#include <cstdint>

namespace vexbind {

extern const RSD* currentObject;     // the object whose packets are written
extern std::uint32_t currentPolygon; // the running number of its polygon

} // namespace vexbind
