// Runs the examples of README.md: every "$ command" of its console blocks, in order, in one fresh
// directory that holds the samples, with the program on the path. What follows a command is what it prints,
// both streams together; {dir} stands for the directory.
#include "runner/run_case.hpp"

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

struct Example {
    std::string command;
    std::string printed;
};

std::vector<Example> readExamples(const std::string& text) {
    std::vector<Example> examples;
    std::istringstream lines(text);
    bool inConsole = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            inConsole = line == "```console";
        } else if (inConsole && line.starts_with("$ ")) {
            examples.push_back({.command = line.substr(2), .printed = ""});
        } else if (inConsole && !examples.empty()) {
            examples.back().printed += line + "\n";
        }
    }
    return examples;
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

TEST(Readme, ExamplesPrintWhatIsShown) {
    const std::vector<Example> examples = readExamples(readWholeFile(VEXBIND_README));
    ASSERT_GE(examples.size(), 6U);
    const std::string directory = makeFreshDirectory();
    const std::string outputs = makeFreshDirectory();
    fs::copy(VEXBIND_SAMPLES, directory + "/samples", fs::copy_options::recursive);
    const std::string path = "PATH='" + fs::path(VEXBIND_PROGRAM).parent_path().string() + "':$PATH\n";
    std::string place; // the changes of directory so far: each command has a shell of its own
    for (const Example& example : examples) {
        const std::string script = path + "exec 2>&1\n" + place + example.command;
        if (example.command.starts_with("cd ")) {
            place += example.command + " && ";
        }
        const Outcome outcome = runProgram({.prefix = {}, .program = "/bin/sh"}, {"-c", script}, directory,
                                           outputs + "/out", outputs + "/err");
        EXPECT_EQ(outcome.error, "") << example.command;
        EXPECT_EQ(replaceAll(readWholeFile(outputs + "/out"), directory, "{dir}"), example.printed)
            << example.command;
        EXPECT_EQ(readWholeFile(outputs + "/err"), "") << example.command;
    }
    removeFreshDirectory(directory);
    removeFreshDirectory(outputs);
}

} // namespace
