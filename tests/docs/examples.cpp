#include "docs/examples.hpp"

#include "runner/run_case.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

void takeExamples(const std::vector<std::string>& block, std::vector<Example>& examples) {
    bool begun = false;
    for (const std::string& line : block) {
        if (line.starts_with("$ ")) {
            examples.push_back({.command = line.substr(2), .printed = ""});
            begun = true;
        } else if (begun) {
            examples.back().printed += line + "\n";
        } else {
            ADD_FAILURE() << "this stands in front of the first command: " << line;
        }
    }
}

static std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

void expectExamples(const std::vector<Example>& examples) {
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
