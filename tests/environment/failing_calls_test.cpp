// The system's own calls fail under the real program: each call of the run in turn, once and from there on.
// strace makes them fail. The run ends as documented; it does not take for done what was not.
#include "faults/judge.hpp"
#include "faults/scenes.hpp"
#include "faults/unfinished.hpp"
#include "runner/run_case.hpp"
#include "support/sanitized.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <ostream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

constexpr int mostCalls = 200; // no run makes as many of one kind

struct FailingCall {
    const char* name;
    const char* call;
    const char* error;
    std::set<int> endings; // statuses that the failures lead to
};

void PrintTo(const FailingCall& call, std::ostream* out) {
    *out << call.name;
}

// A start directory that cannot be returned to keeps the project from being found (30), an object's own one
// its files (30, and 100 while it is listed).
const std::vector<FailingCall> failingCalls = {
    {"Open", "openat", "EMFILE", {0, 1, 30, 100, 200}},
    {"OpenForLackOfMemory", "openat", "ENOMEM", {0, 1, 10, 30, 100, 200}},
    {"Read", "read", "EIO", {0, 33, 40}},
    {"Write", "write", "ENOSPC", {0, 31, 32, 36}},
    {"Seek", "lseek", "EINVAL", {0, 32}},
    {"Close", "close", "EIO", {0, 31}},
    {"WorkingDirectory", "getcwd", "ENOENT", {0, 51}},
    {"ChangeOfDirectory", "chdir", "EACCES", {0, 30, 51, 100}},
};

// Every line of a trace.
std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The words of a run, without those of counts of coverage that could not be written behind its end.
std::string withoutCoverage(const std::string& text) {
    std::string words;
    for (const std::string& line : linesOf(text)) {
        if (!line.starts_with("profiling:"))
            words += line + "\n";
    }
    return words;
}

class FailingCalls : public testing::TestWithParam<FailingCall> {
  protected:
    void SetUp() override {
        if (isSanitized())
            GTEST_SKIP() << "a sanitizer and strace cannot watch a program at the same time";
        program = commandFromEnvironment(VEXBIND_PROGRAM);
        if (!program.prefix.empty())
            GTEST_SKIP() << "the calls of " << program.prefix.front() << " are not the program's";
        // A time zone for which no file is read.
        setenv("TZ", "UTC0", 1);
        directory = makeFreshDirectory();
        streams = makeFreshDirectory();
        fs::create_directory(directory + "/d");
        files = plainFiles();
        for (NamedFile& file : files)
            file.name = (file.name == "p.prj" ? "" : "d/") + file.name;
        files.push_back({"w.arg", "-id p.prj -info\nd/m.rsd"});
        writeFiles(directory, files);

        const Outcome outcome = trace({"-e", "trace=" + std::string(GetParam().call) + ",write"});
        if (!outcome.error.empty())
            GTEST_SKIP() << "strace is missing: " << outcome.error;
        if (errors().find("ptrace") != std::string::npos)
            GTEST_SKIP() << "strace may not watch programs here: " << errors();
        ASSERT_EQ(describeOutcome(outcome), "exit status 0") << errors();
        sound = takeOutputs();
        ASSERT_EQ(sound.size(), 2U);
        soundText = readWholeFile(streams + "/out");
        firstCall = callsBeforeMain() + 1;
        // Counts of coverage that are cut short would spoil those of the other tests.
        setenv("GCOV_PREFIX", streams.c_str(), 1);
    }

    void TearDown() override {
        unsetenv("TZ");
        unsetenv("GCOV_PREFIX");
        removeFreshDirectory(directory);
        removeFreshDirectory(streams);
    }

    // Runs the program under strace with these options.
    Outcome trace(const std::vector<std::string>& options) {
        Command command{
            .prefix = {"strace", "-qq", "-o", streams + "/trace"}, .program = program.program, .limit = {}};
        command.prefix.insert(command.prefix.end(), options.begin(), options.end());
        command.limit = std::chrono::seconds(20);
        return runProgram(command, {"w.arg"}, directory, streams + "/out", streams + "/err");
    }

    [[nodiscard]] std::string errors() const { return readWholeFile(streams + "/err"); }

    std::vector<NamedFile> takeOutputs() {
        std::vector<NamedFile> outputs = takeNewFiles(directory, files);
        for (NamedFile& each : outputs)
            each.content = withoutDate(each.content);
        return outputs;
    }

    // What the trace has of the start of a process, until the program's first words.
    int callsBeforeMain() {
        int count = 0;
        for (const std::string& line : linesOf(readWholeFile(streams + "/trace"))) {
            if (line.starts_with("write(2, \"vexbind"))
                break;
            count += line.starts_with(GetParam().call) ? 1 : 0;
        }
        return count;
    }

    // Whether something could not be written to the standard error.
    static bool hasLostWords(const std::string& traced) {
        const std::vector<std::string> lines = linesOf(traced);
        return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return line.starts_with("write(2, ") && line.ends_with("(INJECTED)");
        });
    }

    // What is wrong with a run; empty when nothing is. Not even its message is left of one that cannot
    // write it.
    std::string findFaultIn(const Outcome& outcome, const std::string& traced) {
        if (!outcome.error.empty() || outcome.timedOut || outcome.signal != 0)
            return "no proper end";
        const std::string fault =
            findFaultInEnding({.status = outcome.status, .signal = 0, .errors = errors()});
        if (!fault.empty() && !hasLostWords(traced))
            return fault;
        const std::vector<NamedFile> outputs = takeOutputs();
        return outcome.status == 0 ? findFaultInSuccess(outputs) : findFaultInFailure(outputs);
    }

    std::string findFaultInSuccess(const std::vector<NamedFile>& outputs) {
        // An object that is not found is left out, and here it is the only one.
        if (outputs.empty() && withoutCoverage(errors()).ends_with("\nCannot open: \"d/m.rsd\"\n"))
            return {};
        const bool isSound = outputs == sound && readWholeFile(streams + "/out") == soundText;
        return isSound ? "" : "a success without the right outputs";
    }

    std::string findFaultInFailure(const std::vector<NamedFile>& outputs) {
        for (const NamedFile& each : outputs) {
            const bool isTmd = each.name == sound[1].name;
            if (isTmd && !findFaultInUnfinished(each.content, sound[1].content).empty())
                return "a TMD that begins with other bytes";
            if (!isTmd && (each.name != sound[0].name || !sound[0].content.starts_with(each.content)))
                return "an ID list that begins with other bytes, or another file";
        }
        return {};
    }

    void failAll(const std::string& onwards) {
        const FailingCall& failing = GetParam();
        const std::string inject =
            "inject=" + std::string(failing.call) + ":error=" + failing.error + ":when=";
        for (int number = firstCall; number < firstCall + mostCalls; ++number) {
            const std::string when = std::to_string(number) + onwards;
            const Outcome outcome = trace({"-e", "trace=" + std::string(failing.call), "-e", inject + when});
            const std::string traced = readWholeFile(streams + "/trace");
            EXPECT_EQ(findFaultIn(outcome, traced), "")
                << failing.call << " " << when << "\nended with: " << describeOutcome(outcome)
                << "\nstandard error:\n"
                << errors() << "\ntrace:\n"
                << traced;
            ++runCount;
            seen.insert(outcome.status);
            if (traced.find("(INJECTED)") == std::string::npos) {
                EXPECT_EQ(describeOutcome(outcome), "exit status 0");
                return;
            }
        }
        ADD_FAILURE() << "there was no end of the calls";
    }

    Command program;
    std::string directory;
    std::string streams;
    std::vector<NamedFile> files;
    std::vector<NamedFile> sound; // the ID list and the TMD
    std::string soundText;
    std::set<int> seen;
    int firstCall = 0;
    int runCount = 0;
};

TEST_P(FailingCalls, EveryCallFails) {
    failAll("");
    failAll("+");
    EXPECT_EQ(seen, GetParam().endings);
    RecordProperty("runs", runCount);
    std::cout << "[     RUNS ] " << runCount << " of " << GetParam().call << std::endl;
}

std::string nameOf(const testing::TestParamInfo<FailingCall>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, FailingCalls, testing::ValuesIn(failingCalls), nameOf);

} // namespace
