// Runs that may not have as much memory as they want.
#include "runner/run_case.hpp"
#include "support/sanitized.hpp"

#include <cstddef>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t wordLength = 8'000'000; // of the one name, beside which all else is small
constexpr int leastMegabytes = 16;            // too few for the name
constexpr int mostMegabytes = 56;             // enough for all that is made of it

} // namespace

// The name is kept, searched for and put together anew, each time with a block of its own. Whichever of them
// cannot be had, the run says so; the strings of the C++ library are among them.
TEST(Memory, EveryCopyOfALongNameMayBeTheOneTooMany) {
    if (isSanitized())
        GTEST_SKIP() << "the sanitizer takes more addresses than a limit would leave";
    const std::string directory = makeFreshDirectory();
    const std::string outputs = makeFreshDirectory();
    std::ofstream(directory + "/w.arg") << std::string(wordLength, 'x');
    int completed = 0;
    int textFailed = 0;
    int stringFailed = 0;
    for (int megabytes = leastMegabytes; megabytes <= mostMegabytes; megabytes += 8) {
        const std::string limit = "ulimit -v " + std::to_string(megabytes * 1024) + " && ";
        const Outcome outcome = runProgram({.prefix = {}, .program = "/bin/sh"},
                                           {"-c", limit + "exec '" VEXBIND_PROGRAM "' w.arg"}, directory,
                                           outputs + "/out", outputs + "/err");
        ASSERT_EQ(outcome.error, "");
        const std::string errors = readWholeFile(outputs + "/err");
        SCOPED_TRACE(std::to_string(megabytes) + " MB, " + describeOutcome(outcome) + "\n" +
                     errors.substr(0, 200));
        EXPECT_EQ(outcome.signal, 0);
        if (outcome.status == 0) {
            EXPECT_NE(errors.find("\nCannot open: \"xxx"), std::string::npos);
            ++completed;
            continue;
        }
        EXPECT_NE(errors.find("\n\nAlloc Error: \""), std::string::npos);
        if (errors.find("\n\nAlloc Error: \"main\" 0 x 0(+") != std::string::npos) {
            EXPECT_EQ(outcome.status, 10);
            ++stringFailed;
        } else {
            EXPECT_TRUE(outcome.status == 12 || outcome.status == 13);
            ++textFailed;
        }
    }
    EXPECT_GT(textFailed, 0);
    EXPECT_GT(stringFailed, 0);
    EXPECT_GT(completed, 0);
    removeFreshDirectory(directory);
    removeFreshDirectory(outputs);
}
