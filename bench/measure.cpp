// Runs programs in turns and prints what each takes, one line for each: the medians of its wall clock time
// and of its CPU time in seconds, the most memory that it held at once in MiB, and its times relative to
// those of the first program. The relations are medians too, each of two runs that follow each other, so that
// a machine that slows down for a while slows both.
//
//   measure ROUNDS OUT PROGRAM [ARGUMENT ...] [+ PROGRAM [ARGUMENT ...]] ...
//
// What the programs print goes to OUT.1, OUT.2 and so on.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Command {
    std::vector<char*> words; // with the null pointer behind them
    std::string printed;      // the file that it prints to
    std::vector<double> wall; // seconds, of each round
    std::vector<double> cpu;  // seconds, of the program and of the system for it
    double memory = 0.0;      // MiB
};

double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

[[noreturn]] void become(const Command& command) {
    constexpr int mode = 0666;
    const int printed = open(command.printed.c_str(), O_WRONLY | O_CREAT | O_TRUNC, mode);
    if (printed < 0 || dup2(printed, STDOUT_FILENO) < 0) {
        std::perror(command.printed.c_str());
        _exit(127);
    }
    close(printed);
    execvp(command.words[0], command.words.data());
    std::perror(command.words[0]);
    _exit(127);
}

/// Runs the program to its end; a run that fails ends the measurement.
void run_once(Command& command) {
    const double start = now();
    const pid_t child = fork();
    if (child == 0) {
        become(command);
    }
    int status = 0;
    rusage used{};
    if (child < 0 || wait4(child, &status, 0, &used) != child) {
        std::perror("measure");
        std::exit(1);
    }
    command.wall.push_back(now() - start);
    if (status != 0) {
        std::fprintf(stderr, "measure: %s failed, wait status 0x%x\n", command.words[0],
                     static_cast<unsigned int>(status));
        std::exit(1);
    }
    constexpr double kilobytes = 1024.0; // in a MiB
    command.cpu.push_back(seconds(used.ru_utime) + seconds(used.ru_stime));
    command.memory = std::max(command.memory, static_cast<double>(used.ru_maxrss) / kilobytes);
}

/// The middle of an odd number of values, else the mean of the two in the middle.
double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

/// The median of the quotients, round by round.
double relation(const std::vector<double>& times, const std::vector<double>& base) {
    std::vector<double> quotients;
    for (std::size_t i = 0; i < times.size(); ++i) {
        quotients.push_back(times[i] / base[i]);
    }
    return median(quotients);
}

/// The commands of the words, which "+" separates; none where one of them is empty.
std::vector<Command> list_commands(char** first, char** last, const std::string& out) {
    std::vector<Command> commands(1);
    for (char** word = first; word != last; ++word) {
        if (std::string_view(*word) == "+") {
            commands.emplace_back();
        } else {
            commands.back().words.push_back(*word);
        }
    }
    for (std::size_t i = 0; i < commands.size(); ++i) {
        if (commands[i].words.empty()) {
            return {};
        }
        commands[i].words.push_back(nullptr);
        commands[i].printed = out + "." + std::to_string(i + 1);
    }
    return commands;
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 3 ? std::atoi(argv[1]) : 0;
    std::vector<Command> commands;
    if (rounds > 0) {
        commands = list_commands(argv + 3, argv + argc, argv[2]);
    }
    if (commands.empty()) {
        std::fprintf(stderr, "usage: measure ROUNDS OUT PROGRAM [ARGUMENT ...] [+ PROGRAM ...] ...\n");
        return 2;
    }
    for (int i = 0; i < rounds; ++i) {
        for (Command& command : commands) {
            run_once(command);
        }
    }
    for (const Command& command : commands) {
        std::printf("%.6f %.6f %.2f %.4f %.4f\n", median(command.wall), median(command.cpu), command.memory,
                    relation(command.wall, commands[0].wall), relation(command.cpu, commands[0].cpu));
    }
    return 0;
}
