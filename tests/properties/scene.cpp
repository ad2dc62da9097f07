#include "properties/scene.hpp"

#include <algorithm>
#include <string_view>

namespace properties {

namespace {

constexpr std::string_view smallLetters = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::string translate(std::string text, std::string_view from, std::string_view to) {
    for (char& letter : text) {
        const std::size_t at = from.find(letter);
        if (at != std::string_view::npos)
            letter = to[at];
    }
    return text;
}

} // namespace

Scene withoutArgFile(Scene scene) {
    scene.inArgFile.reset();
    return scene;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

std::string joinPath(const std::string& folder, const std::string& name) {
    return folder.empty() || name.empty() ? folder + name : folder + "/" + name;
}

std::string baseOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    return name.substr(0, std::min(name.rfind('.'), name.size()));
}

bool hasClut(std::uint32_t flags) {
    const std::uint32_t mode = flags & 0xFFU;
    return (mode & 8U) != 0 || mode < 2;
}

bool isTexturedKind(char kind) {
    return kind == 'T' || kind == 'D' || kind == 'H';
}

bool hasNumbers(char kind) {
    return kind == 'C' || kind == 'G' || isTexturedKind(kind);
}

std::string toUpper(std::string text) {
    return translate(std::move(text), smallLetters, capitals);
}

std::string toLower(std::string text) {
    return translate(std::move(text), capitals, smallLetters);
}

} // namespace properties
