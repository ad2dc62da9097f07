// Runs the examples of README.md: those of its console blocks.
#include "docs/examples.hpp"
#include "runner/run_case.hpp"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::vector<Example> readExamples(const std::string& text) {
    std::vector<Example> examples;
    std::vector<std::string> block;
    std::istringstream lines(text);
    bool inConsole = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            inConsole = line == "```console";
            takeExamples(block, examples);
            block.clear();
        } else if (inConsole) {
            block.push_back(line);
        }
    }
    return examples;
}

TEST(Readme, ExamplesPrintWhatIsShown) {
    const std::vector<Example> examples = readExamples(readWholeFile(VEXBIND_README));
    ASSERT_GE(examples.size(), 6U);
    expectExamples(examples);
}

} // namespace
