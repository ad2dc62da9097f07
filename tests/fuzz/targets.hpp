// What is fuzzed: the readers one by one, the command line, and whole runs. Each target makes a run out of
// any bytes whatever.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "fuzz/sandbox.hpp"

struct FuzzTarget {
    std::string_view name;
    bool converts; // a whole run: a success leaves a TMD
    RunResult (*run)(std::string_view input);
};

// rsd, ply, mat, tim, prj, arg, line, scene.
[[nodiscard]] std::span<const FuzzTarget> fuzzTargets();

// The target of that name, or null.
[[nodiscard]] const FuzzTarget* findTarget(std::string_view name);

// What no run may come to, whatever its input; empty when there is nothing of the kind. Wrong are a status
// that is not documented or comes without its message; and with a success: a failure that was reported,
// memory or files that were not released, an ignore list that is not empty, and outputs that are not sound.
[[nodiscard]] std::string findFault(const FuzzTarget& target, const RunResult& result);
