// Runs of the program through the shell, in surroundings that a case file cannot set up.
#pragma once

#include "runner/run_case.hpp"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

inline const std::string startNotice = "vexbind: RSD to TMD model converter\n";

// A fresh directory with the samples in it, and the runs that start there.
class ShellRuns : public testing::Test {
  protected:
    void SetUp() override {
        namespace fs = std::filesystem;
        directory = makeFreshDirectory();
        outputs = makeFreshDirectory();
        fs::copy(VEXBIND_SAMPLES, directory + "/samples", fs::copy_options::recursive);
    }

    void TearDown() override {
        removeFreshDirectory(directory);
        removeFreshDirectory(outputs);
    }

    // Runs a shell script in which "vexbind" is the program; its exit status.
    int run(const std::string& script) {
        namespace fs = std::filesystem;
        const fs::path program = commandFromEnvironment(VEXBIND_PROGRAM).program;
        const std::string path = "PATH='" + program.parent_path().string() + "':$PATH\n";
        const Outcome outcome = runProgram({.prefix = {}, .program = "/bin/sh"}, {"-c", path + script},
                                           directory, outputs + "/out", outputs + "/err");
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(outcome.signal, 0);
        return outcome.status;
    }

    [[nodiscard]] std::string printed() const { return readWholeFile(outputs + "/out"); }
    [[nodiscard]] std::string complained() const { return readWholeFile(outputs + "/err"); }
    [[nodiscard]] std::string left(const std::string& name) const {
        return readWholeFile(directory + "/" + name);
    }

    std::string directory;
    std::string outputs;
};
