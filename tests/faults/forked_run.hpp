// Runs the program in children of the test process. A run costs a fork and no more, or not even that,
// so that a test can afford thousands of them.
#pragma once

#include "faults/failing_memory.hpp"

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

// What a run finds besides its words and files.
struct Surroundings {
    int failingAllocation = 0;       // the number of the allocation that fails, from 1; 0: none
    bool failsOnwards = false;       // and so do all after it
    std::int64_t fileLimit = -1;     // bytes that a file can have; -1: more than is ever needed
    std::int64_t openLimit = -1;     // files that can be open at a time; -1: as many as here
    bool unprivileged = false;       // as a user who is not root
    std::string startDirectory = {}; // below the directory of the runs; that itself when empty
    std::string standardOutput = {}; // a file below that; /dev/null when empty
    bool keepsOutput = false;        // the standard output is kept for the test instead
};

// How a run ended.
struct Ending {
    int status = 0;          // exit status
    int signal = 0;          // the signal that ended it, or 0; -1 when there was no run
    std::string output = {}; // what it wrote to its standard output, when that is kept
    std::string errors = {}; // and to its standard error
    unsigned failed = 0;     // bits of Allocator: whose allocations were made to fail
};

// "exit status 3", "signal 11 (Segmentation fault)".
[[nodiscard]] std::string describeEnding(const Ending& ending);

struct RunNotes;

// A fresh directory, in memory where there is one, and the runs that take place in it. Lasts as long
// as the object.
//
// The runs fork off a helper process, which is itself forked off at the beginning and never allocates
// anything: every run starts from the same, small memory, whatever the test has come to hold. That is
// why the tests share one: with the address sanitizer the memory of a process only grows.
class ForkedRuns {
  public:
    ForkedRuns();
    ~ForkedRuns();
    ForkedRuns(const ForkedRuns&) = delete;
    ForkedRuns& operator=(const ForkedRuns&) = delete;

    // Removes everything from the directory.
    void clear();

    // Empty when the directory could not be made.
    [[nodiscard]] const std::string& directory() const { return place; }

    // Runs the program with `words` in the directory, standard input and output being /dev/null. Its
    // time, its memory and the size of its files are limited.
    [[nodiscard]] Ending run(const std::vector<std::string>& words, const Surroundings& around = {});

    // The same in a process that makes some dozens of runs, with all global variables set back before
    // each of them. Costs a third; what a run leaves in the heap stays there for the next ones.
    [[nodiscard]] Ending runInTurn(const std::vector<std::string>& words);

  private:
    [[nodiscard]] Ending request(const std::vector<std::string>& words, const Surroundings& around,
                                 bool inTurn);
    [[nodiscard]] std::string takeErrors() const;

    std::string place;
    RunNotes* notes = nullptr; // shared with the runs
    int output = -1;           // this and the next are unnamed files
    int errors = -1;
    int errorPipe = -1; // the reading end of a pipe
    int line = -1;      // to the helper
    pid_t helper = -1;
};

// The one of this process, its directory empty.
[[nodiscard]] ForkedRuns& freshRuns();
