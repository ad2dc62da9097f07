// Runs a program several times and prints what it took, on one line: the median of its wall clock time
// and of its CPU time in seconds, and the most memory that it held at once in megabytes.
//
//   measure RUNS PROGRAM [ARGUMENT ...]
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Usage {
    double wall;   // seconds
    double cpu;    // seconds, of the program and of the system for it
    double memory; // megabytes
};

double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs the program to its end; a run that fails ends the measurement.
Usage run_once(char** words) {
    const double start = now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(words[0], words);
        std::perror(words[0]);
        _exit(127);
    }
    int status = 0;
    rusage used{};
    if (child < 0 || wait4(child, &status, 0, &used) != child) {
        std::perror("measure");
        std::exit(1);
    }
    const double end = now();
    if (status != 0) {
        std::fprintf(stderr, "measure: %s failed, wait status 0x%x\n", words[0],
                     static_cast<unsigned int>(status));
        std::exit(1);
    }
    constexpr double kilobyte = 1024.0;
    return {.wall = end - start,
            .cpu = seconds(used.ru_utime) + seconds(used.ru_stime),
            .memory = static_cast<double>(used.ru_maxrss) * kilobyte / 1e6};
}

/// The middle of an odd number of values, else the mean of the two in the middle.
double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

} // namespace

int main(int argc, char** argv) {
    const int runs = argc > 2 ? std::atoi(argv[1]) : 0;
    if (runs < 1) {
        std::fprintf(stderr, "usage: measure RUNS PROGRAM [ARGUMENT ...]\n");
        return 2;
    }
    std::vector<double> wall;
    std::vector<double> cpu;
    double memory = 0.0;
    for (int i = 0; i < runs; ++i) {
        const Usage used = run_once(argv + 2);
        wall.push_back(used.wall);
        cpu.push_back(used.cpu);
        memory = std::max(memory, used.memory);
    }
    std::printf("%.3f %.3f %.1f\n", median(wall), median(cpu), memory);
    return 0;
}
