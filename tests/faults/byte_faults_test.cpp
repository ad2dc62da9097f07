// Damages one file of a scene, or its command line, cut short or at one byte: whatever that then holds,
// the run ends as documented.
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"

#include <array>
#include <cstdio>

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

// Ends of texts and lines, blanks, what is special in some format, a digit and letters (as hex digits
// too), and what is no text at all.
constexpr std::array<unsigned char, 14> tellingValues = {0x00, '\n', '\r', 0x1A, ' ', '#',  '-',
                                                         '9',  ',',  'A',  'e',  '.', 0x7F, 0xFF};

const std::vector<Words> optionSets = {{}, {"-v", "-info"}};

constexpr int mostFaults = 5; // after them a test makes no more runs

std::string hex(unsigned char value) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%02X", value);
    return text.data();
}

class Damaged : public testing::TestWithParam<Scene> {
  protected:
    void SetUp() override { ASSERT_NE(runs.directory(), ""); }

    // One run with `content` as what is damaged; `damage` says how it came about. How many files it left.
    std::size_t judge(const std::string& content, const Words& options, const Allowed& allowed,
                      const std::string& damage) {
        if (faults == mostFaults)
            return 0;
        const std::vector<NamedFile> files = filesWith(GetParam(), content);
        writeFiles(runs.directory(), files);
        Words words = options;
        const Words scenes = wordsWith(GetParam(), content);
        words.insert(words.end(), scenes.begin(), scenes.end());
        const Ending ending = runs.run(words);
        const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
        if (ending.signal == 0)
            seen.insert(ending.status);
        const std::string fault = findFault(ending, outputs, allowed);
        if (fault.empty())
            return outputs.size();
        ++faults;
        ADD_FAILURE() << fault << "\nscene: " << GetParam().format << ", damaged: " << GetParam().faulty
                      << ", " << damage << "\nwords: " << testing::PrintToString(words)
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
    std::set<int> seen;
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
    const bool inPly = GetParam().format == "PLY";
    for (const Words& options : optionSets) {
        for (std::size_t offset = 0; offset < sound.size(); ++offset) {
            for (const unsigned char value : tellingValues) {
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
    expectSeen(GetParam().whenReplaced);
}

std::string formatOf(const testing::TestParamInfo<Scene>& info) {
    return info.param.format;
}

INSTANTIATE_TEST_SUITE_P(, Damaged, testing::ValuesIn(scenes()), formatOf);

} // namespace
