// Runs of single readers. Each makes its input, any bytes whatever, the file that is read.
#pragma once

#include <string_view>

#include "fuzz/sandbox.hpp"

// An RSD file, listed with a PLY and a MAT file beside it.
[[nodiscard]] RunResult runRsd(std::string_view input);

// A PLY file behind a byte that chooses scale, translation and version: listed, then read in all three ways.
[[nodiscard]] RunResult runPly(std::string_view input);

// A MAT file behind a byte that chooses whether indices are checked: listed, then read onto 20 polygons.
[[nodiscard]] RunResult runMat(std::string_view input);

// A TIM file behind a byte that chooses the target, the place and the name of the file, and whether it can be
// read to its end.
[[nodiscard]] RunResult runTim(std::string_view input);

// A PRJ file: its words collected, its IDs given to six objects, and their list written.
[[nodiscard]] RunResult runPrj(std::string_view input);

// An ARG file: its words collected, and taken as options where they are some.
[[nodiscard]] RunResult runArg(std::string_view input);
