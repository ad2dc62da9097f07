// Runs the program in children of the test process. A run costs a fork and no more, so that a test
// can afford thousands of them.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

// How a run ended.
struct Ending {
    int status = 0;     // exit status
    int signal = 0;     // the signal that ended it, or 0; -1 when there was no run
    std::string errors; // what it wrote to its standard error
};

// "exit status 3", "signal 11 (Segmentation fault)".
[[nodiscard]] std::string describeEnding(const Ending& ending);

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
    [[nodiscard]] Ending run(const std::vector<std::string>& words);

  private:
    [[nodiscard]] std::string takeErrors() const;

    std::string place;
    int errors = -1; // an unnamed file
    int line = -1;   // to the helper
    pid_t helper = -1;
};

// The one of this process, its directory empty.
[[nodiscard]] ForkedRuns& freshRuns();
