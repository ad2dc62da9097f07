// The tests' own machinery: runs that share a process come out like runs that have one for themselves.
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

struct WholeOutcome {
    std::string ending;
    std::string errors;
    std::vector<NamedFile> outputs;

    bool operator==(const WholeOutcome&) const = default;
};

class RunsInTurn : public testing::Test {
  protected:
    WholeOutcome outcomeOf(const Ending& ending, const Scene& scene) {
        WholeOutcome outcome{.ending = describeEnding(ending),
                             .errors = ending.errors,
                             .outputs = takeNewFiles(runs.directory(), scene.files)};
        for (NamedFile& each : outcome.outputs)
            each.content = withoutDate(each.content);
        return outcome;
    }

    void compare(const Scene& scene, const std::string& content, const std::vector<std::string>& options) {
        writeFiles(runs.directory(), filesWith(scene, content));
        std::vector<std::string> words = wordsWith(scene, content);
        words.insert(words.begin(), options.begin(), options.end());
        const WholeOutcome alone = outcomeOf(runs.run(words), scene);
        const WholeOutcome inTurn = outcomeOf(runs.runInTurn(words), scene);
        EXPECT_EQ(inTurn.ending, alone.ending);
        EXPECT_EQ(inTurn.errors, alone.errors);
        EXPECT_TRUE(inTurn == alone) << scene.format << ", cut to " << content.size() << " bytes";
    }

    ForkedRuns& runs = freshRuns();
};

// The inputs are cut at some places, so that the runs leave all kinds of things behind for the next one:
// half-read files, tables, settings and directories.
TEST_F(RunsInTurn, EndLikeRunsAlone) {
    ASSERT_NE(runs.directory(), "");
    for (const Scene& scene : scenes()) {
        runs.clear();
        const std::string& sound = soundContent(scene);
        constexpr std::size_t places = 30;
        for (std::size_t i = 0; i <= places; ++i) {
            const std::string content = sound.substr(0, sound.size() * i / places);
            compare(scene, content,
                    i % 2 == 0 ? std::vector<std::string>{"-v", "-info"} : std::vector<std::string>{});
        }
    }
}

} // namespace
