// Follows docs/TUTORIAL.md in a fresh directory, as its reader does, all of it in one shell: a name in
// "**`...`**" heads the text of a file, every "$ command" of the console blocks has to print what stands
// below it, both streams together, and pictures/NAME.svg has to be what draw_tmd draws of NAME.tmd with all
// textures, at this place on the page. Pictures as they should be are left in VEXBIND_DRAWN. The reader's
// folder is /home/me/house.
#include "runner/run_case.hpp"

#include <cstddef>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

enum class StepKind { file, command, picture };

struct Step {
    StepKind kind;
    std::string name; // of the file or picture; the command
    std::string text; // of the file; what the command prints
};

// What stands in `line` between `before` and `after`; empty when it does not.
std::string between(const std::string& line, const std::string& before, const std::string& after) {
    const std::size_t begin = line.find(before);
    const std::size_t end = line.rfind(after);
    if (begin == std::string::npos || end == std::string::npos || end < begin + before.size()) {
        return "";
    }
    return line.substr(begin + before.size(), end - begin - before.size());
}

std::vector<Step> readSteps(const std::string& page) {
    std::vector<Step> steps;
    std::istringstream lines(page);
    std::string block; // the kind of the block that is open
    bool isFile = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            isFile = isFile && block.empty();
            block = line.substr(3);
        } else if (block == "text" && isFile) {
            steps.back().text += line + "\n";
        } else if (block == "console" && line.starts_with("$ ")) {
            steps.push_back({.kind = StepKind::command, .name = line.substr(2), .text = ""});
        } else if (block == "console") {
            steps.back().text += line + "\n";
        } else if (line.starts_with("**`")) {
            steps.push_back({.kind = StepKind::file, .name = between(line, "**`", "`**"), .text = ""});
            isFile = true;
        } else if (line.starts_with("![")) {
            steps.push_back(
                {.kind = StepKind::picture, .name = between(line, "(pictures/", ".svg)"), .text = ""});
        }
    }
    return steps;
}

// The steps as a script. Each ends in the byte 1, so that their outputs can be told apart.
std::string scriptOf(const std::vector<Step>& steps) {
    std::string script = "PATH='" + fs::path(VEXBIND_PROGRAM).parent_path().string() + "':$PATH\nexec 2>&1\n";
    for (const Step& step : steps) {
        if (step.kind == StepKind::file) {
            script += "cat >" + step.name + " <<'END OF FILE'\n" + step.text + "END OF FILE\n";
        } else if (step.kind == StepKind::command) {
            script += step.name + "\n";
        } else {
            script += "set -- *.tim; [ -e \"$1\" ] || set --\n'" VEXBIND_DRAW "' " + step.name +
                      ".tmd \"$@\" >'" VEXBIND_DRAWN "'/" + step.name + ".svg\n";
        }
        script += "printf '\\001'\n";
    }
    return script;
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> pieces;
    std::istringstream rest(text);
    for (std::string piece; std::getline(rest, piece, '\001');) {
        pieces.push_back(piece);
    }
    return pieces;
}

TEST(Tutorial, EveryStepDoesWhatThePageShows) {
    const std::vector<Step> steps = readSteps(readWholeFile(VEXBIND_TUTORIAL));
    const std::string directory = makeFreshDirectory();
    const std::string outputs = makeFreshDirectory();
    fs::create_directories(VEXBIND_DRAWN);
    const Outcome outcome = runProgram({.prefix = {}, .program = "/bin/sh"}, {"-c", scriptOf(steps)},
                                       directory, outputs + "/out", outputs + "/err");
    EXPECT_EQ(outcome.error, "");
    const std::vector<std::string> printed =
        split(replaceAll(readWholeFile(outputs + "/out"), directory, "/home/me/house"));
    removeFreshDirectory(directory);
    removeFreshDirectory(outputs);

    ASSERT_EQ(printed.size(), steps.size()) << "not every step was run";
    std::set<std::string> pictures;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const Step& step = steps[i];
        EXPECT_EQ(printed[i], step.kind == StepKind::command ? step.text : "") << step.name;
        if (step.kind == StepKind::picture) {
            const std::string file = step.name + ".svg";
            pictures.insert(file);
            EXPECT_TRUE(readWholeFile(VEXBIND_PICTURES "/" + file) == readWholeFile(VEXBIND_DRAWN "/" + file))
                << file << " is not what is drawn of " << step.name << ".tmd: see " VEXBIND_DRAWN;
        }
    }
    EXPECT_GE(pictures.size(), 5U);
    for (const fs::directory_entry& entry : fs::directory_iterator(VEXBIND_PICTURES)) {
        EXPECT_TRUE(entry.path().extension() != ".svg" || pictures.contains(entry.path().filename().string()))
            << entry.path() << " is on no page";
    }
}

} // namespace
