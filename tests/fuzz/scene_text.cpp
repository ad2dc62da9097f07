#include "fuzz/scene_text.hpp"

#include <algorithm>

namespace {

constexpr std::string_view marker = "\n--- ";
constexpr char breakMark = '!';
constexpr std::size_t mostFiles = 32;

// Cuts `input` up to `end` off its front; `end` goes, too.
std::string_view cutOff(std::string_view& input, std::string_view end) {
    const std::size_t length = std::min(input.find(end), input.size());
    const std::string_view piece = input.substr(0, length);
    input.remove_prefix(std::min(length + end.size(), input.size()));
    return piece;
}

PlantedFile readFile(std::string_view section) {
    PlantedFile file{.name = cutOff(section, "\n"), .content = section};
    file.breaks = file.name.ends_with(breakMark);
    file.name.remove_suffix(file.breaks ? 1 : 0);
    return file;
}

} // namespace

std::vector<std::string_view> readWords(std::string_view input) {
    std::vector<std::string_view> words;
    while (!input.empty()) {
        const std::string_view line = cutOff(input, "\n");
        words.push_back(line.substr(0, line.find('\0')));
    }
    return words;
}

SceneText readSceneText(std::string_view input) {
    SceneText scene;
    scene.words = readWords(cutOff(input, marker));
    while (!input.empty() && scene.files.size() < mostFiles)
        scene.files.push_back(readFile(cutOff(input, marker)));
    return scene;
}

std::string writeSceneText(const SceneText& scene) {
    std::string text;
    for (const std::string_view word : scene.words)
        text += (text.empty() ? "" : "\n") + std::string(word);
    for (const PlantedFile& file : scene.files) {
        text += marker;
        text += file.name;
        text += file.breaks ? "!\n" : "\n";
        text += file.content;
    }
    return text;
}
