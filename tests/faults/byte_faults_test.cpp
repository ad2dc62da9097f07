// Damages one file of a scene, or its command line, cut short or at one byte: whatever that then holds,
// the run ends as documented.
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"
#include "support/sanitized.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string_view>

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

// Ends of texts and lines, blanks, what is special in some format or to the library, digits and letters
// (as hex digits too), and what is no text at all.
constexpr std::array<unsigned char, 17> tellingValues = {0x00, '\n', '\r', 0x1A, ' ', '\t', '#',  '-', '%',
                                                         '0',  '9',  ',',  'A',  'e', '.',  0x7F, 0xFF};

const std::vector<Words> optionSets = {{}, {"-v", "-info"}};

// How many of the values each byte takes. All of them where a sanitizer watches; else, where no more than
// the way that a run ends would be seen, a few, in turn.
std::size_t valuesPerByte() {
    return isSanitized() ? tellingValues.size() : 3;
}

constexpr int mostFaults = 5; // after them a test makes no more runs

std::string hex(unsigned char value) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%02X", value);
    return text.data();
}

class Damaged : public testing::TestWithParam<Scene> {
  protected:
    void SetUp() override {
        ASSERT_NE(runs.directory(), "");
        writeFiles(runs.directory(), GetParam().files);
    }

    void TearDown() override {
        if (runs.directory().empty())
            return;
        EXPECT_TRUE(readFiles(runs.directory(), GetParam().files) == filesWith(GetParam(), lastContent))
            << "a run has changed its inputs";
        RecordProperty("runs", runCount);
        std::cout << "[     RUNS ] " << runCount << " of " << GetParam().format << std::endl;
    }

    // One run with `content` as what is damaged; `damage` says how it came about. How many files it left.
    std::size_t judge(const std::string& content, const Words& options, const Allowed& allowed,
                      const std::string& damage) {
        if (faults == mostFaults)
            return 0;
        const Scene& scene = GetParam();
        if (!scene.faulty.empty())
            writeFiles(runs.directory(), {{scene.faulty, content}});
        lastContent = content;
        Words words = options;
        const Words inputs = wordsWith(scene, content);
        words.insert(words.end(), inputs.begin(), inputs.end());
        const Ending ending = runs.runInTurn(words);
        ++runCount;
        const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), scene.files);
        if (ending.signal == 0)
            seen.insert(ending.status);
        // No count in these scenes gets so large that its table would not fit.
        const bool lacksMemory = ending.status >= 10 && ending.status <= 16;
        const std::string fault = lacksMemory ? "out of memory" : findFault(ending, outputs, allowed);
        if (fault.empty())
            return outputs.size();
        ++faults;
        ADD_FAILURE() << fault << "\nscene: " << scene.format << ", damaged: " << scene.faulty << ", "
                      << damage << "\nwords: " << testing::PrintToString(words)
                      << "\nended with: " << describeEnding(ending) << "\nstandard error:\n"
                      << ending.errors.substr(0, 4000);
        return outputs.size();
    }

    void expectSeen(const std::set<int>& wanted) const {
        if (faults > 0)
            return; // not all runs were made
        for (const int status : wanted)
            EXPECT_EQ(seen.count(status), 1U) << "no run ended with status " << status;
    }

    ForkedRuns& runs = freshRuns();
    std::string lastContent = soundContent(GetParam());
    std::set<int> seen;
    int runCount = 0;
    int faults = 0;
};

// Undamaged, so that the damage is all that the other runs differ by.
TEST_P(Damaged, Sound) {
    const Scene& scene = GetParam();
    for (const Words& options : optionSets) {
        EXPECT_EQ(judge(soundContent(scene), options, {}, "undamaged"), scene.outputs);
    }
    EXPECT_EQ(seen, std::set<int>{0});
}

TEST_P(Damaged, CutAtEveryLength) {
    const std::string& sound = soundContent(GetParam());
    for (const Words& options : optionSets) {
        for (std::size_t length = 0; length <= sound.size(); ++length) {
            const Allowed allowed{.noTmd = GetParam().namesInputs};
            judge(sound.substr(0, length), options, allowed, "cut to " + std::to_string(length) + " bytes");
        }
    }
    expectSeen(GetParam().whenCut);
}

TEST_P(Damaged, EveryByteReplaced) {
    const std::string& sound = soundContent(GetParam());
    const std::size_t values = valuesPerByte();
    const bool inPly = GetParam().format == "PLY";
    for (const Words& options : optionSets) {
        for (std::size_t offset = 0; offset < sound.size(); ++offset) {
            for (std::size_t i = 0; i < values; ++i) {
                const unsigned char value = tellingValues[(offset * values + i) % tellingValues.size()];
                // "9" and "A" make the type of a polygon a quadrangle's and a line's; only "e" and "-" (-1
                // in hexadecimal) make it one above sprites.
                const Allowed allowed{.noTmd = GetParam().namesInputs,
                                      .negativeCounts = inPly && value == '-',
                                      .oddTypes = inPly && (value == 'e' || value == '-')};
                std::string content = sound;
                content[offset] = static_cast<char>(value);
                judge(content, options, allowed, "byte " + std::to_string(offset) + " is " + hex(value));
            }
        }
    }
    if (values == tellingValues.size())
        expectSeen(GetParam().whenReplaced);
}

std::string formatOf(const testing::TestParamInfo<Scene>& info) {
    return info.param.format;
}

INSTANTIATE_TEST_SUITE_P(, Damaged, testing::ValuesIn(scenes()), formatOf);

// The same with every other value for each byte, which takes minutes: these tests are there only when the
// environment has VEXBIND_GRID.
class Grid : public Damaged {};

// Whether the value makes the type of a polygon, a number in hexadecimal of which the lowest three bits
// count, one above sprites. A "-" makes it -1.
bool isOddType(unsigned char value) {
    return std::string_view("4567cdefCDEF-").find(static_cast<char>(value)) != std::string_view::npos;
}

// Whether `content` names an output that lies elsewhere, or that is one of the inputs. Such a run would do as
// it is told; it is not made.
bool spoilsFiles(const Scene& scene, const std::string& content) {
    std::istringstream words(scene.namesInputs ? content : "");
    std::string before;
    for (std::string word; words >> word; before = word) {
        const auto isWord = [&](const NamedFile& file) { return file.name == word; };
        const bool isOutput = before == "-o" || before == "-O";
        if (isOutput &&
            (word.starts_with('/') || std::any_of(scene.files.begin(), scene.files.end(), isWord)))
            return true;
    }
    return false;
}

TEST_P(Grid, EveryByteTakesEveryValue) {
    const std::string& sound = soundContent(GetParam());
    const bool inPly = GetParam().format == "PLY";
    std::size_t gridRuns = 0;
    std::size_t leftOut = 0;
    for (std::size_t offset = 0; offset < sound.size(); ++offset) {
        for (unsigned step = 1; step < 256; ++step) {
            const auto value = static_cast<unsigned char>(static_cast<unsigned char>(sound[offset]) + step);
            const Allowed allowed{.noTmd = GetParam().namesInputs,
                                  .negativeCounts = inPly && value == '-',
                                  .oddTypes = inPly && isOddType(value)};
            std::string content = sound;
            content[offset] = static_cast<char>(value);
            if (spoilsFiles(GetParam(), content)) {
                ++leftOut;
                continue;
            }
            gridRuns += faults < mostFaults ? 1 : 0;
            judge(content, optionSets[(offset + value) % optionSets.size()], allowed,
                  "byte " + std::to_string(offset) + " is " + hex(value));
        }
    }
    expectSeen(GetParam().whenReplaced);
    std::printf("grid of %s: %zu runs, %zu left out, %d faults\n", GetParam().format.c_str(), gridRuns,
                leftOut, faults);
}

const std::vector<Scene> noScenes;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Grid);
INSTANTIATE_TEST_SUITE_P(, Grid,
                         testing::ValuesIn(std::getenv("VEXBIND_GRID") == nullptr ? noScenes : scenes()),
                         formatOf);

} // namespace
