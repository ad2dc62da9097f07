// Sets of exit statuses agree: those of src/utilkit/status.hpp, those that README.md and man/vexbind.1
// document, and those that the end-to-end cases see, but for the few that no case file can bring about.
#include "docs/mdoc.hpp"
#include "runner/case_file.hpp"
#include "runner/run_case.hpp"
#include "utilkit/status.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Numbers = std::set<int>;

struct Unreachable {
    int status;
    const char* reason;
};

constexpr const char* memory = "memory does not run out at the same place on every machine";

// The statuses that no case file can bring about. One that occurs in a case does not belong here.
constexpr std::array<Unreachable, 11> unreachable = {{
    {10, memory},
    {11, memory},
    {12, memory},
    {13, memory},
    {14, memory},
    {15, memory},
    {16, memory},
    {31, "closing fails only after a write failed; where a case can make writing fail, the first one of four "
         "bytes has reported it"},
    {38, "needs a texture that can be read for twelve bytes and no further"},
    {74, "needs a texture that can be read up to its CLUT data and no further"},
    {76, "needs a texture that can be read up to its image data and no further"},
}};

#pragma GCC diagnostic push
#pragma GCC diagnostic error "-Wswitch"

// Whether the program has the status. An enumerator that is missing here does not compile; those whose
// number stands here already under another name are illegalOption's: badScaleFactor, noOutput,
// noTexture; and plyNotFound's: matGradationSyntax.
constexpr bool isStatus(int number) {
    using namespace vexbind;
    switch (static_cast<Status>(number)) {
    case normalEnd:
    case illegalOption:
    case badArgument:
    case notAProject:
    case plyNotFound:
    case matNotFound:
    case allocFailed:
    case fileRecordAllocFailed:
    case strAllocFailed:
    case strCopyFailed:
    case arrayHeaderAllocFailed:
    case fullBlockAllocFailed:
    case lastBlockAllocFailed:
    case badIndex:
    case openFailed:
    case closeFailed:
    case seekFailed:
    case lineReadFailed:
    case lineAtEnd:
    case writeFailed:
    case read2Failed:
    case read2AtEnd:
    case read4Failed:
    case read4AtEnd:
    case noWorkingDirectory:
    case badPathName:
    case wrongFormat:
    case wrongVersion:
    case badPolygonList:
    case clutAtEnd:
    case clutReadFailed:
    case pixelsAtEnd:
    case pixelsReadFailed:
    case rsdPlySyntax:
    case rsdMatSyntax:
    case rsdNtexSyntax:
    case plyCountSyntax:
    case plyVertexSyntax:
    case plyNormalSyntax:
    case plyPolygonSyntax:
    case matCountSyntax:
    case matLineSyntax:
    case matColourSyntax:
    case matTextureSyntax:
    case matTextureColourSyntax:
    case matTextureGradationSyntax:
        return true;
    }
    return false;
}

#pragma GCC diagnostic pop

static_assert(vexbind::badScaleFactor == vexbind::illegalOption);
static_assert(vexbind::noOutput == vexbind::illegalOption);
static_assert(vexbind::noTexture == vexbind::illegalOption);
static_assert(vexbind::matGradationSyntax == vexbind::plyNotFound);

Numbers statusesOfTheCode() {
    Numbers numbers;
    for (int number = 0; number <= 255; ++number) {
        if (isStatus(number))
            numbers.insert(number);
    }
    return numbers;
}

std::optional<int> toNumber(std::string_view text) {
    int number = 0;
    const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || failed != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

// The numbers of a table's first cell: "7", "10-16", "30, 31, 32" or a mixture; empty for anything else.
std::vector<int> numbersOfCell(const std::string& cell) {
    std::vector<int> numbers;
    std::istringstream items(cell);
    for (std::string item; std::getline(items >> std::ws, item, ',');) {
        const std::size_t dash = item.find('-');
        const std::optional<int> first = toNumber(item.substr(0, dash));
        const std::optional<int> last = dash == std::string::npos ? first : toNumber(item.substr(dash + 1));
        if (!first || !last || *first > *last)
            return {};
        for (int number = *first; number <= *last; ++number)
            numbers.push_back(number);
    }
    return numbers;
}

// The first cells of the table in a document's section, without its two heading rows.
std::vector<std::string> firstCells(const std::string& document, const std::string& section) {
    std::vector<std::string> cells;
    std::istringstream lines(document);
    bool inSection = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("#"))
            inSection = line == "## " + section;
        if (!inSection || !line.starts_with("| "))
            continue;
        const std::string cell = line.substr(2, line.find(" |", 1) - 2);
        if (cell != "Status")
            cells.push_back(cell);
    }
    return cells;
}

Numbers documentedStatuses() {
    Numbers numbers;
    for (const std::string& cell : firstCells(readWholeFile(VEXBIND_README), "Exit statuses")) {
        const std::vector<int> ofCell = numbersOfCell(cell);
        EXPECT_FALSE(ofCell.empty()) << "README.md: \"" << cell << "\" names no statuses";
        for (const int number : ofCell)
            EXPECT_TRUE(numbers.insert(number).second) << "README.md documents " << number << " twice";
    }
    return numbers;
}

// Those of the manual. Every item says what the status means and what to do: two sentences at least, but
// for the good end.
Numbers statusesOfTheManual() {
    Numbers numbers;
    for (const Item& item : itemsOf(readWholeFile(VEXBIND_MAN "/vexbind.1"), "EXIT STATUS")) {
        std::string cell;
        for (const std::string& word : wordsOf(item.head))
            cell += word == "," ? ", " : word;
        const std::vector<int> ofCell = numbersOfCell(cell);
        EXPECT_FALSE(ofCell.empty()) << "vexbind(1): \"" << cell << "\" names no statuses";
        for (const int number : ofCell)
            EXPECT_TRUE(numbers.insert(number).second) << "vexbind(1) documents " << number << " twice";
        const auto sentences =
            std::count_if(item.lines.begin(), item.lines.end(), [](const std::string& line) {
                return line.ends_with(".") || line.ends_with(" .");
            });
        EXPECT_GE(sentences, 2) << "vexbind(1): " << cell;
    }
    return numbers;
}

// The statuses of all cases; every case counts, also one that stands in a folder of its own.
Numbers statusesOfTheCases() {
    Numbers numbers;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(VEXBIND_CASES)) {
        if (entry.path().extension() != ".case")
            continue;
        const ParsedCase parsed = readCase(entry.path().string());
        EXPECT_EQ(parsed.error, "");
        numbers.insert(parsed.file.status);
    }
    return numbers;
}

Numbers difference(const Numbers& from, const Numbers& without) {
    Numbers rest;
    std::set_difference(from.begin(), from.end(), without.begin(), without.end(),
                        std::inserter(rest, rest.end()));
    return rest;
}

TEST(ExitStatuses, TheTableOfTheDocumentIsRead) {
    const std::string document = "## Other\n\n| 1 | a |\n\n## Mine\n\n| Status | Meaning |\n|---|---|\n"
                                 "| 2 | b; 9 |\n| 10-12 | c |\n| 30, 32-33, 40 | d |\n\n# Next\n| 5 | e |\n";
    EXPECT_EQ(firstCells(document, "Mine"), (std::vector<std::string>{"2", "10-12", "30, 32-33, 40"}));
    EXPECT_EQ(numbersOfCell("2"), std::vector<int>{2});
    EXPECT_EQ(numbersOfCell("10-12"), (std::vector<int>{10, 11, 12}));
    EXPECT_EQ(numbersOfCell("30, 32-33, 40"), (std::vector<int>{30, 32, 33, 40}));
    for (const char* wrong : {"", "x", "3x", "1, x", "4-", "-4", "5-4", "1 2"})
        EXPECT_EQ(numbersOfCell(wrong), std::vector<int>{}) << wrong;
}

TEST(ExitStatuses, AllAreDocumentedAndNoOthers) {
    const Numbers documented = documentedStatuses();
    EXPECT_EQ(difference(statusesOfTheCode(), documented), Numbers{}) << "README.md does not document these";
    EXPECT_EQ(difference(documented, statusesOfTheCode()), Numbers{}) << "README.md documents what is none";
}

TEST(ExitStatuses, TheManualHasThemAllAndNoOthers) {
    const Numbers documented = statusesOfTheManual();
    EXPECT_EQ(difference(statusesOfTheCode(), documented), Numbers{}) << "vexbind(1) lacks these";
    EXPECT_EQ(difference(documented, statusesOfTheCode()), Numbers{}) << "vexbind(1) has what is none";
}

TEST(ExitStatuses, EachOccursInACaseOrCannot) {
    const Numbers seen = statusesOfTheCases();
    Numbers unseen = difference(statusesOfTheCode(), seen);
    EXPECT_EQ(difference(seen, statusesOfTheCode()), Numbers{}) << "a case expects what is no status";
    for (const auto& [status, reason] : unreachable) {
        EXPECT_TRUE(isStatus(status)) << status;
        EXPECT_FALSE(seen.contains(status))
            << "a case has status " << status << " although it is said that no case can: " << reason;
        unseen.erase(status);
    }
    EXPECT_EQ(unseen, Numbers{}) << "these statuses occur in no case";
}

} // namespace
