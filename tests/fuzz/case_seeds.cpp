// Makes inputs for the fuzzers out of the end-to-end cases: case_seeds FOLDER-OF-CASES FOLDER-TO-FILL. Every
// case gives a scene and a command line, and each of its files an input of the reader that its extension
// names.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/scene_text.hpp"
#include "runner/case_file.hpp"

namespace fs = std::filesystem;

namespace {

// The target that reads files of this name, or nothing.
std::string targetOf(const std::string& name) {
    std::string extension = fs::path(name).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    for (const std::string_view target : {"rsd", "ply", "mat", "tim", "prj", "arg"}) {
        if (extension == "." + std::string(target))
            return std::string(target);
    }
    return {};
}

// Whether the target takes a byte that chooses settings in front of the file.
bool takesChoice(std::string_view target) {
    return target == "ply" || target == "mat" || target == "tim";
}

class Seeds {
  public:
    explicit Seeds(fs::path folder) : place(std::move(folder)) {}

    // False, with a message, when the case or its seeds cannot be had.
    bool add(const fs::path& path) {
        const ParsedCase parsed = readCase(path.string());
        std::string error = parsed.error;
        if (error.empty())
            addCase(parsed.file, path.stem().string(), error);
        if (!error.empty())
            std::fprintf(stderr, "%s: %s\n", path.c_str(), error.c_str());
        return error.empty();
    }

  private:
    void addCase(const CaseFile& file, const std::string& name, std::string& error) {
        const CaseNames names{.directory = std::string(startDirectory), .notice = {}, .date = {}};
        const std::vector<std::string> words = splitWords(file.args, names, error);
        std::deque<std::string> contents; // stay where they are
        SceneText scene{.words = {words.begin(), words.end()}, .files = {}};
        for (const CaseSection& input : file.inputs) {
            contents.push_back(decodeSection(input, names, error).bytes);
            scene.files.push_back({.name = input.name, .content = contents.back()});
            addFile(input.name, contents.back(), name + "-" + std::to_string(contents.size()), error);
        }
        for (const std::string& directory : file.directories) {
            contents.push_back(directory + "/");
            scene.files.push_back({.name = contents.back(), .content = {}});
        }
        write("line", name, writeSceneText({.words = scene.words, .files = {}}), error);
        // A scene has no start directory of its own.
        if (file.startDirectory.empty())
            write("scene", name, writeSceneText(scene), error);
    }

    void addFile(const std::string& file, const std::string& content, const std::string& name,
                 std::string& error) {
        const std::string target = targetOf(file);
        if (!target.empty())
            write(target, name, (takesChoice(target) ? "0" : "") + content, error);
    }

    void write(const std::string& target, const std::string& name, const std::string& content,
               std::string& error) {
        fs::create_directories(place / target);
        std::ofstream out(place / target / name, std::ios::binary);
        out << content;
        out.close();
        if (!out)
            error = "cannot write a seed below " + place.string();
    }

    fs::path place;
};

} // namespace

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> words(arguments, arguments + argumentCount);
    if (words.size() != 3) {
        std::fputs("usage: case_seeds FOLDER-OF-CASES FOLDER-TO-FILL\n", stderr);
        return 2;
    }
    Seeds seeds(words[2]);
    bool complete = true;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(words[1])) {
        if (entry.path().extension() == ".case")
            complete = seeds.add(entry.path()) && complete;
    }
    return complete ? 0 : 1;
}
