// Runs a program, and judges a run by a case.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "runner/case_file.hpp"

// How the program under test is started.
struct Command {
    std::vector<std::string> prefix; // words before the program: valgrind, an emulator, ...
    std::string program;             // its path
    std::string volume = {};         // what it puts before the name of a directory: a drive, under Wine
    std::chrono::milliseconds limit = std::chrono::seconds(60);
};

// How a run ended. When `error` is not empty nothing ran, and it says why.
struct Outcome {
    std::string error;
    int status = 0;        // exit status
    int signal = 0;        // the signal that ended it, or 0
    bool timedOut = false; // killed after the limit
};

// The command named by the environment (VEXBIND the program, VEXBIND_PREFIX the words before it,
// split at blanks, VEXBIND_VOLUME the volume); `program` where VEXBIND is not set. Relative paths count
// from here.
[[nodiscard]] Command commandFromEnvironment(const std::string& program);

// Runs the command with `words` in `directory`, standard input empty, the two outputs written to
// the named files (absolute paths). The program's whole process group is killed after the limit.
[[nodiscard]] Outcome runProgram(const Command& command, const std::vector<std::string>& words,
                                 const std::string& directory, const std::string& standardOutput,
                                 const std::string& standardError);

// "exit status 3", "signal 11 (...)": how a run ended, for messages.
[[nodiscard]] std::string describeOutcome(const Outcome& outcome);

// Makes a new directory under TMPDIR or /tmp and gives its real path; empty on failure.
[[nodiscard]] std::string makeFreshDirectory();

// Removes what makeFreshDirectory made, with everything in it.
void removeFreshDirectory(const std::string& directory);

// The whole content of a file; empty when it cannot be read.
[[nodiscard]] std::string readWholeFile(const std::string& path);

// Runs a case in a fresh directory. Gives every difference from what the case expects (in each
// stream and file the first one), ready to be shown; none means that the case passes.
[[nodiscard]] std::vector<std::string> runCase(const CaseFile& file, const Command& command);
