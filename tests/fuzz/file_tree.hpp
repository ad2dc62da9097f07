// The files of a run, held in memory: opening, reading and writing them takes no system call, so that a
// second has room for thousands of runs.
//
// The linker sends the sources' calls of fopen, chdir, getcwd and time here (--wrap). Between plantTree and
// fellTree they are answered from the tree, otherwise by the library.
#pragma once

#include <cstddef>
#include <ctime>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "faults/judge.hpp"

// A file, or with a name that ends in "/" a directory. Names are relative to the start directory, may lead
// above it, and bring the directories on their way with them.
struct PlantedFile {
    std::string_view name;
    std::string_view content;
    bool breaks = false; // reading fails where the file would end
};

// The name of the directory in which every run starts.
inline constexpr std::string_view startDirectory = "/w";

// The time at which every run takes place.
inline constexpr std::time_t runTime = 844'000'000;

// What a run leaves.
struct Harvest {
    std::vector<NamedFile>
        outputs;                // every file as it was written, in order, even if it is written over later
    bool wroteToDevice = false; // /dev/null or /dev/full was opened for writing
    std::size_t openFiles = 0;  // streams that the run has not closed, but for those of devices
};

// Makes a new tree of the start directory, some devices in /dev, and `files`, and enters the start directory.
// A name that cannot be had, such as that of a file used as a directory, is left out.
void plantTree(std::span<const PlantedFile> files);

// Closes what the run has left open, which writes what waits there, and gives up the tree.
[[nodiscard]] Harvest fellTree();
