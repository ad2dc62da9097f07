// A scene as files and as words of a command line.
#pragma once

#include "properties/scene.hpp"
#include "properties/spelling.hpp"

#include <string>
#include <vector>

namespace properties {

struct File {
    std::string name; // from the directory of the scene
    std::string content;

    bool operator==(const File&) const = default;
};

[[nodiscard]] std::string rsdText(const Object& object, Spelling& spelling);
[[nodiscard]] std::string plyText(const Object& object, Spelling& spelling);
[[nodiscard]] std::string matText(const Object& object, Spelling& spelling);
[[nodiscard]] std::string timBytes(const Texture& texture);
[[nodiscard]] std::string projectText(const Project& project);

// All input files; the texts of the objects are spelled in the given way.
[[nodiscard]] std::vector<File> filesOf(const Scene& scene, Spelling& spelling);
[[nodiscard]] std::vector<File> filesOf(const Scene& scene);

// The words, without any ARG file; a project that names inputs is one word.
[[nodiscard]] Words plainWordsOf(const Scene& scene);

// The same with the words of the ARG file, if there is one, behind its name.
[[nodiscard]] Words wordsOf(const Scene& scene);

// The words that an option and its values are.
[[nodiscard]] Words wordsOf(const Option& option);

} // namespace properties
