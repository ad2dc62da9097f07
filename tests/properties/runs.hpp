// Runs scenes and reports what is wrong with them.
//
// In the environment, VEXBIND_SEED sets the seed of the scenes, VEXBIND_SCENES their number and VEXBIND_SCENE
// a single one to be run; a failure names its seed and its scene in this form.
#pragma once

#include "faults/forked_run.hpp"
#include "properties/files.hpp"
#include "properties/generate.hpp"
#include "support/tmd_reader.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace properties {

// What a run left.
struct Result {
    Ending ending;
    std::optional<std::string> tmd;
    std::optional<std::string> idList;
};

[[nodiscard]] TmdFile readResult(const Result& result);

// One scene, as a test meets it.
class SceneTest {
  public:
    SceneTest(ForkedRuns& in, std::uint64_t seed, std::size_t number);

    Scene scene;
    Random random; // for what the test itself does with the scene

    // A run in a directory with these files, or below it in `start`. Of the runs of one scene, the first
    // finds nothing else there, the later ones at most directories.
    [[nodiscard]] Result convert(const Scene& other);
    [[nodiscard]] Result convert(const std::vector<File>& files, const Words& words,
                                 const std::string& start = "");

    // A run in the directory as it is, and a file for it.
    [[nodiscard]] Result convertAgain(const Words& words, const std::string& start = "");
    void write(const File& file);

    // The files that are there and were not made for the last run.
    [[nodiscard]] Words newFiles() const;

    // The run ended well and left a TMD.
    bool expectSuccess(const Result& result);

    // Both ended well with the same TMD and the same entries in the list of IDs.
    void expectSame(const Result& result, const Result& other);

    void expectText(const std::string& what, const std::string& got, const std::string& wanted);

    void fail(const std::string& fault);
    [[nodiscard]] bool failed() const { return hasFailed; }

  private:
    void makeFiles(const std::vector<File>& files);

    ForkedRuns& runs;
    std::string label;
    std::vector<File> lastFiles;
    Words lastWords;
    Words lastOutputs; // absolute names
    bool hasFailed = false;
};

using Test = std::function<void(SceneTest&)>;

void forAllScenes(const Test& test);

// Every 16th scene, or 32nd where runs take long, not the same ones in all tests. Gives their number.
std::size_t forSomeScenes(const Test& test);

// Of all scenes that a test ran, some have to tell something; one in ten unless they are few.
void expectTelling(std::size_t telling, std::size_t scenes);

} // namespace properties
