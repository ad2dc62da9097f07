#include "fuzz/targets.hpp"

#include "driver/run.hpp"

#include <algorithm>
#include <array>
#include <vector>

#include "faults/scenes.hpp"
#include "fuzz/readers.hpp"
#include "fuzz/scene_text.hpp"

namespace {

// The words of the next whole run, its program's name first. They outlast it.
std::vector<std::string> wordTexts;
std::vector<char*> words;

void setWords(const std::vector<std::string_view>& input) {
    wordTexts.assign({"vexbind"});
    wordTexts.insert(wordTexts.end(), input.begin(), input.end());
    words.clear();
    for (std::string& word : wordTexts)
        words.push_back(word.data());
}

void runProgram() {
    vexbind::run(static_cast<int>(words.size()), words.data());
}

// The words of a command line, among files of every kind. They are few: what takes time are the objects.
RunResult runLine(std::string_view input) {
    constexpr std::size_t mostWords = 10;
    static const std::vector<NamedFile> inputs = plainFiles();
    std::vector<PlantedFile> files;
    for (const NamedFile& file : inputs)
        files.push_back({.name = file.name, .content = file.content});
    files.push_back({.name = "w.arg", .content = "-s 2 -t 1 2 3 m"});
    files.push_back({.name = "out/", .content = {}});
    std::vector<std::string_view> line = readWords(input);
    line.resize(std::min(line.size(), mostWords));
    setWords(line);
    return runInSandbox(files, runProgram);
}

// A command line and its files.
RunResult runScene(std::string_view input) {
    const SceneText scene = readSceneText(input);
    setWords(scene.words);
    return runInSandbox(scene.files, runProgram);
}

constexpr std::array<FuzzTarget, 8> targets = {{
    {.name = "rsd", .converts = false, .run = runRsd},
    {.name = "ply", .converts = false, .run = runPly},
    {.name = "mat", .converts = false, .run = runMat},
    {.name = "tim", .converts = false, .run = runTim},
    {.name = "prj", .converts = false, .run = runPrj},
    {.name = "arg", .converts = false, .run = runArg},
    {.name = "line", .converts = true, .run = runLine},
    {.name = "scene", .converts = true, .run = runScene},
}};

// How the messages of failures begin that end a run. No text of an input comes to stand at the beginning of
// a line, but for an unknown option, which begins with a dash. That a file cannot be opened is reported for
// an object that is left out, too, but without an empty line before it.
constexpr std::array<std::string_view, 12> failures = {{
    "\n\nCannot open: ",
    "\nAlloc Error: ",
    "\nUnexpected EOF: ",
    "\nFail to read: ",
    "\nFail to write: ",
    "\nFail to Close File : ",
    "\nSeek error ",
    "\nSyntax Error: ",
    "\nBad index: ",
    "\nBad argument: ",
    "\nBad path name: ",
    "\nERROR:\t",
}};

bool reportsFailure(std::string_view errors) {
    return std::any_of(failures.begin(), failures.end(), [errors](std::string_view beginning) {
        return errors.find(beginning) != std::string_view::npos;
    });
}

} // namespace

std::span<const FuzzTarget> fuzzTargets() {
    return targets;
}

const FuzzTarget* findTarget(std::string_view name) {
    const auto* found = std::find_if(targets.begin(), targets.end(),
                                     [name](const FuzzTarget& each) { return each.name == name; });
    return found == targets.end() ? nullptr : found;
}

std::string findFault(const FuzzTarget& target, const RunResult& result) {
    if (!isExplained(result.ending))
        return "a status that is not documented, or without its message";
    if (result.ending.status != 0)
        return {};
    if (reportsFailure(result.ending.errors))
        return "a success after a failure was reported";
    if (result.ignored != 0)
        return "a success with codes on the ignore list";
    if (result.blocks != 0)
        return "a success that leaves " + std::to_string(result.blocks) + " blocks allocated";
    if (result.harvest.openFiles != 0)
        return "a success that leaves " + std::to_string(result.harvest.openFiles) + " files open";
    if (!target.converts || result.harvest.wroteToDevice)
        return {};
    const Allowed allowed{.noTmd = true, .negativeCounts = true, .oddTypes = true, .largeSprites = true};
    return findFaultInSuccess(result.ending, result.harvest.outputs, allowed);
}
