// The sandbox against the end-to-end cases: what a run in it comes to is what the program itself has to come
// to.
#include "fuzz/sandbox.hpp"

#include "driver/run.hpp"
#include "settings/version.hpp"

#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "fuzz/held_blocks.hpp"
#include "fuzz/scene_text.hpp"
#include "runner/case_file.hpp"

namespace fs = std::filesystem;

namespace {

std::vector<std::string> words;

void runWords() {
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    vexbind::run(static_cast<int>(arguments.size()), arguments.data());
}

// The time of every run in the sandbox, as an ID list writes it.
std::string dateOfRuns() {
    const std::tm date = *std::localtime(&runTime);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d %02d/%02d/%02d", date.tm_hour, date.tm_min,
                  date.tm_mon + 1, date.tm_mday, date.tm_year);
    return text.data();
}

std::string decode(const CaseSection& section, const CaseNames& names) {
    std::string error;
    std::string bytes = decodeSection(section, names, error).bytes;
    EXPECT_EQ(error, "");
    return bytes;
}

// A case, with the bytes of its inputs. Not every case fits the sandbox: there is one start directory, and a
// run has little memory.
struct Fitted {
    CaseFile file;
    std::map<std::string, std::string> inputs;
    bool fits = false;
};

Fitted fit(const fs::path& path, const CaseNames& names) {
    const ParsedCase parsed = readCase(path.string());
    EXPECT_EQ(parsed.error, "");
    Fitted fitted{.file = parsed.file, .inputs = {}, .fits = parsed.file.startDirectory.empty()};
    for (const CaseSection& input : fitted.file.inputs) {
        fitted.inputs[input.name] = decode(input, names);
        fitted.fits = fitted.fits && fitted.inputs[input.name].size() < mostHeldBytes / 8;
    }
    for (const std::string& directory : fitted.file.directories)
        fitted.inputs[directory + "/"] = "";
    return fitted;
}

RunResult runFitted(const Fitted& fitted, const CaseNames& names) {
    std::string error;
    words = splitWords(fitted.file.args, names, error);
    words.insert(words.begin(), "vexbind");
    std::vector<PlantedFile> files;
    for (const auto& [name, content] : fitted.inputs)
        files.push_back({.name = name, .content = content});
    return runInSandbox(files, runWords);
}

void compare(const Fitted& fitted, const RunResult& result, const CaseNames& names) {
    EXPECT_EQ(result.ending.status, fitted.file.status);
    EXPECT_EQ(result.ending.errors, decode(fitted.file.standardError, names));
    EXPECT_EQ(result.printed, decode(fitted.file.standardOutput, names));
    // The last content under each name; names in the tree are those in their directories.
    std::map<std::string, std::string> outputs;
    for (const NamedFile& output : result.harvest.outputs)
        outputs[output.name] = output.content;
    EXPECT_EQ(outputs.size(), fitted.file.outputs.size());
    for (const CaseSection& output : fitted.file.outputs)
        EXPECT_EQ(outputs[fs::path(output.name).filename().string()], decode(output, names)) << output.name;
}

TEST(Sandbox, EndsCasesAsTheProgramDoes) {
    const std::string notice = vexbind::startNotice;
    const CaseNames names{.directory = std::string(startDirectory),
                          .notice = notice.substr(0, notice.find('\n')),
                          .date = dateOfRuns()};
    std::size_t cases = 0;
    std::size_t unfit = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(VEXBIND_CASES)) {
        if (entry.path().extension() != ".case")
            continue;
        SCOPED_TRACE(entry.path().string());
        const Fitted fitted = fit(entry.path(), names);
        ++cases;
        unfit += fitted.fits ? 0 : 1;
        if (fitted.fits)
            compare(fitted, runFitted(fitted, names), names);
    }
    EXPECT_GT(cases, 0U);
    EXPECT_LT(unfit, cases / 20);
}

TEST(SceneText, ComesBackAsWritten) {
    const std::string text = "-v\nm\n--- a.tim!\n\n1\n--- d/\n\n--- m.rsd\n@RSD";
    const SceneText scene = readSceneText(text);
    EXPECT_EQ(scene.words, (std::vector<std::string_view>{"-v", "m"}));
    ASSERT_EQ(scene.files.size(), 3U);
    EXPECT_EQ(scene.files[0].name, "a.tim");
    EXPECT_EQ(scene.files[0].content, "\n1");
    EXPECT_TRUE(scene.files[0].breaks);
    EXPECT_EQ(scene.files[1].name, "d/");
    EXPECT_EQ(scene.files[2].name, "m.rsd");
    EXPECT_EQ(scene.files[2].content, "@RSD");
    EXPECT_EQ(writeSceneText(scene), text);
}

} // namespace
