// What the fuzzers have found, run again: corpus/<target> holds one input per file.
#include "fuzz/targets.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

// What the environment leaves open. The tests fork.
extern "C" const char* __asan_default_options() {
    return "exitcode=66:allocator_may_return_null=1:detect_leaks=0";
}

void PrintTo(const FuzzTarget& target, std::ostream* out) {
    *out << target.name;
}

namespace {

struct Input {
    std::string name;
    std::string bytes;
};

std::vector<Input> corpusOf(const FuzzTarget& target) {
    std::vector<Input> inputs;
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(VEXBIND_CORPUS) / target.name)) {
        std::ifstream stream(entry.path(), std::ios::binary);
        inputs.push_back({entry.path().filename().string(),
                          {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()}});
    }
    std::sort(inputs.begin(), inputs.end(), [](const Input& a, const Input& b) { return a.name < b.name; });
    return inputs;
}

// What runs of single inputs come to, by the inputs' names.
using Report = std::map<std::string, std::string>;

void send(int line, const std::string& text) {
    if (write(line, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        _exit(1);
}

std::string receiveAll(int line) {
    std::string text;
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count = read(line, piece.data(), piece.size());
        if (count <= 0)
            return text;
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

// In a child of this process: what `judge` says to each input. This process itself never makes a run, so that
// every child's first run is a process's first run.
Report inChild(const std::vector<Input>& inputs, const std::function<std::string(const Input&)>& judge) {
    std::array<int, 2> ends = {-1, -1};
    if (pipe(ends.data()) != 0)
        return {{"", "no pipe"}};
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        for (const Input& input : inputs) {
            send(ends[1], input.name + '\t');
            send(ends[1], judge(input) + '\n');
        }
        std::exit(0);
    }
    close(ends[1]);
    std::istringstream lines(receiveAll(ends[0]));
    close(ends[0]);
    int how = 0;
    waitpid(child, &how, 0);
    Report report;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t tab = line.find('\t');
        report[line.substr(0, tab)] += lines.eof() ? "ended the process" : line.substr(tab + 1);
    }
    if (how != 0)
        report[""] = "the process did not end well";
    return report;
}

class Replay : public testing::TestWithParam<FuzzTarget> {
  protected:
    const std::vector<Input> inputs = corpusOf(GetParam());

    // All of a run that must not change, in short.
    static std::string digestOf(const Input& input) {
        const RunResult result = GetParam().run(input.bytes);
        return "status " + std::to_string(result.ending.status) + " digest " +
               std::to_string(std::hash<std::string>{}(result.digest()));
    }
};

TEST_P(Replay, EveryInputEndsAsDocumented) {
    ASSERT_FALSE(inputs.empty());
    const Report report = inChild(
        inputs, [](const Input& input) { return findFault(GetParam(), GetParam().run(input.bytes)); });
    EXPECT_EQ(report.size(), inputs.size());
    for (const auto& [name, fault] : report)
        EXPECT_EQ(fault, "") << name;
}

// A run that changes all that it can, and then fails: options of every kind, a packet of ones only, and a
// second object that cannot be read after the first one is written.
constexpr std::string_view untidyScene =
    "-v\n-info\n-a\n-s\n4\n-t\n1\n2\n3\n-o\nx\n-id\np.prj\nm\nn\n"
    "--- p.prj\n@PRJ940401\n1\n7 m\n"
    "--- m.rsd\n@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=0\n"
    "--- n.rsd\n@RSD940102\nPLY=m.ply\nMAT=n.mat\nNTEX=0\n"
    "--- m.ply\n@PLY940102\n1 1 1\n9 9 9\n9 9 9\n1 -1 -1 -1 -1 -1 -1 -1 -1\n"
    "--- m.mat\n@MAT940102\n1\n0 1c G C 255 255 255\n"
    "--- n.mat\n@MAT940102\n1\n0 1c G\n";

// An input does the same whether it is the first that a process runs, or comes after any other: between runs
// everything is set back.
TEST_P(Replay, RunsLeaveNoTrace) {
    constexpr std::size_t freshRuns = 12;
    const Report report = inChild(inputs, digestOf);
    ASSERT_EQ(report.size(), inputs.size());
    const std::vector<Input> backwards(inputs.rbegin(), inputs.rend());
    EXPECT_EQ(inChild(backwards, digestOf), report);
    const auto afterItself = [](const Input& input) {
        static_cast<void>(GetParam().run(input.bytes));
        return digestOf(input);
    };
    EXPECT_EQ(inChild(inputs, afterItself), report);
    const auto afterUntidyScene = [](const Input& input) {
        const RunResult untidy = findTarget("scene")->run(untidyScene);
        return untidy.ending.status == 99 ? digestOf(input) : untidy.digest();
    };
    EXPECT_EQ(inChild(inputs, afterUntidyScene), report);
    for (std::size_t i = 0; i < inputs.size(); i += inputs.size() / freshRuns + 1) {
        const Report fresh = inChild({inputs[i]}, digestOf);
        EXPECT_EQ(fresh.at(inputs[i].name), report.at(inputs[i].name)) << inputs[i].name;
    }
}

std::string nameOf(const testing::TestParamInfo<FuzzTarget>& info) {
    return std::string(info.param.name);
}

INSTANTIATE_TEST_SUITE_P(, Replay, testing::ValuesIn(fuzzTargets().begin(), fuzzTargets().end()), nameOf);

} // namespace
