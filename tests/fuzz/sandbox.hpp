// One run of the sources in this process, shut off from everything around it: its files, its standard streams
// and its memory are its own, and nothing of it is left behind.
#pragma once

#include "tmd/counters.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "fuzz/file_tree.hpp"

// What a run came to.
struct RunResult {
    Ending ending;           // status 0 when the run came to its end without Exit
    std::string printed;     // what it wrote to its standard output
    Harvest harvest;         // its files
    std::size_t blocks = 0;  // allocated and not released, when the status is 0
    std::size_t ignored = 0; // codes left on the ignore list, when the status is 0
    std::array<std::uint32_t, vexbind::counterTotal> packets{}; // how many of each kind were built

    // All of it that must be the same whenever the run is repeated.
    [[nodiscard]] std::string digest() const;
};

// Calls `body` with everything as at the program's start, among `files`. It may end by returning or through
// Exit.
[[nodiscard]] RunResult runInSandbox(std::span<const PlantedFile> files, void (*body)());
