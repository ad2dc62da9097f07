// Runs in surroundings that a case file cannot set up, through the shell: standard streams that are closed
// or full, and a start directory that is gone.
#include "runner/run_case.hpp"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

const std::string notice = "vexbind: RSD to TMD model converter\n";

class Environment : public testing::Test {
  protected:
    void SetUp() override {
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
        const std::string path = "PATH='" + fs::path(VEXBIND_PROGRAM).parent_path().string() + "':$PATH\n";
        const Outcome outcome = runProgram({.prefix = {}, .program = "/bin/sh"}, {"-c", path + script},
                                           directory, outputs + "/out", outputs + "/err");
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(outcome.signal, 0);
        return outcome.status;
    }

    [[nodiscard]] std::string printed() const { return readWholeFile(outputs + "/out"); }
    [[nodiscard]] std::string complained() const { return readWholeFile(outputs + "/err"); }

    std::string directory;
    std::string outputs;
};

TEST_F(Environment, ClosedStandardErrorDoesNotReachTheOutput) {
    ASSERT_EQ(run("vexbind -o whole.tmd samples/cube.rsd"), 0);
    EXPECT_EQ(run("vexbind -v -o out.tmd samples/cube.rsd 2>&-"), 0);
    EXPECT_EQ(readWholeFile(directory + "/out.tmd"), readWholeFile(directory + "/whole.tmd"));
}

TEST_F(Environment, ClosedStandardOutputIsReportedAndDoesNotReachTheOutput) {
    ASSERT_EQ(run("vexbind -o whole.tmd samples/cube.rsd"), 0);
    EXPECT_EQ(run("vexbind -info -o out.tmd samples/cube.rsd >&-"), 31);
    EXPECT_EQ(complained(), notice + "\nFail to Close File : standard output\n");
    EXPECT_EQ(readWholeFile(directory + "/out.tmd"), readWholeFile(directory + "/whole.tmd"));
}

TEST_F(Environment, ClosedStandardOutputDoesNotMatterWhenNothingIsPrinted) {
    EXPECT_EQ(run("vexbind -o out.tmd samples/cube.rsd >&-"), 0);
    EXPECT_EQ(complained(), notice);
}

TEST_F(Environment, AllStandardStreamsMayBeClosed) {
    ASSERT_EQ(run("vexbind -o whole.tmd samples/cube.rsd"), 0);
    EXPECT_EQ(run("vexbind -o out.tmd samples/cube.rsd <&- >&- 2>&-"), 0);
    EXPECT_EQ(readWholeFile(directory + "/out.tmd"), readWholeFile(directory + "/whole.tmd"));
}

TEST_F(Environment, FullStandardOutputIsReported) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    EXPECT_EQ(run("vexbind -info -o out.tmd samples/cube.rsd >/dev/full"), 31);
    EXPECT_EQ(complained(), notice + "\nFail to Close File : standard output\n");
}

TEST_F(Environment, MissingStartDirectoryEndsTheRun) {
    EXPECT_EQ(run("mkdir gone; cd gone; rmdir ../gone; exec vexbind " + directory + "/samples/cube.rsd"), 51);
    EXPECT_EQ(complained(), notice + "\nCannot getcwd: \".\"\n");
    EXPECT_FALSE(fs::exists(directory + "/samples/a.tmd"));
}

TEST_F(Environment, HelpNeedsNoStartDirectory) {
    EXPECT_EQ(run("mkdir gone; cd gone; rmdir ../gone; exec vexbind"), 0);
    EXPECT_TRUE(complained().starts_with(notice + "Version 3.72 Oct  1 1996\nUsage : vexbind"))
        << complained();
    EXPECT_EQ(printed(), "");
}

} // namespace
