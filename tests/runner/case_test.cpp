// Runs every case file below VEXBIND_CASES as a test of its own: EndToEnd.Case/area_name.
#include "runner/run_case.hpp"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> filesBelow(const fs::path& directory) {
    std::vector<fs::path> files;
    std::error_code failed;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory, failed)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> casePaths() {
    std::vector<std::string> paths;
    for (const fs::path& file : filesBelow(VEXBIND_CASES)) {
        if (file.extension() == ".case")
            paths.push_back(file.string());
    }
    return paths;
}

// area/some-name.case becomes area_some_name.
std::string testName(const testing::TestParamInfo<std::string>& info) {
    const fs::path relative = fs::path(info.param).lexically_relative(VEXBIND_CASES);
    std::string name = fs::path(relative).replace_extension().generic_string();
    for (char& c : name) {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0)
            c = '_';
    }
    return name;
}

class EndToEnd : public testing::TestWithParam<std::string> {};

TEST_P(EndToEnd, Case) {
    const ParsedCase parsed = readCase(GetParam());
    ASSERT_EQ(parsed.error, "");
    if (parsed.file.status != 0) {
        EXPECT_TRUE(fs::path(GetParam()).filename().string().starts_with("bad-"))
            << "the name of a case whose run fails on purpose begins with bad-";
    }
    for (const std::string& difference : runCase(parsed.file, commandFromEnvironment(VEXBIND_PROGRAM))) {
        ADD_FAILURE() << difference;
    }
}

INSTANTIATE_TEST_SUITE_P(, EndToEnd, testing::ValuesIn(casePaths()), testName);

// A misspelt suffix or a wrong folder must not make cases vanish.
TEST(CaseFolder, HoldsCasesAndTheReadmeOnly) {
    EXPECT_FALSE(casePaths().empty()) << "no cases below " << VEXBIND_CASES;
    for (const fs::path& file : filesBelow(VEXBIND_CASES)) {
        EXPECT_TRUE(file.extension() == ".case" || file.filename() == "README.md") << file;
    }
}

} // namespace
