// The processes behind ForkedRuns: the helper, and those in which the runs take place.
#pragma once

#include "faults/failing_memory.hpp"

#include <array>
#include <cstddef>
#include <cstdint>

// A run as it is asked for. Travels as it is.
struct RunRequest {
    bool inTurn = false;
    bool unprivileged = false;
    bool keepsOutput = false;
    FailingMemory memory;
    std::int64_t fileLimit = -1;
    std::int64_t openLimit = -1;
    std::size_t words = 0;
    // Each with its terminator: the start directory, the file for the standard output, and the words.
    std::array<char, 4096> text{};
};

// What the runs tell the test, in memory that they share with it.
struct RunNotes {
    FailingMemory memory;
    bool running = false; // a run in turn is under way
};

// What a process of runs in turn needs from outside.
struct RunPlace {
    const char* directory; // where all runs start
    int output;            // a file for their standard output, when it is kept
    int errors;            // a file for their standard error
    int errorPipe;         // a pipe for it, which no limit of files holds for
    int line;              // requests come here, and answers go: how the process of the run ended
    RunNotes* notes;
};

// Turns this process into the helper, which serves requests until the other end of the line is closed.
[[noreturn]] void becomeHelper(const RunPlace& place) noexcept;
