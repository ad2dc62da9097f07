// The form in which one fuzzing input holds a command line and the files of a run:
//
//   word of the command line
//   another one
//   --- name of a file
//   its content, without the last line end
//   --- name of a file, reading which fails at its end!
//   --- name of a directory/
//
// Every text whatever has a meaning in this form.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fuzz/file_tree.hpp"

struct SceneText {
    std::vector<std::string_view> words; // behind the program's name
    std::vector<PlantedFile> files;
};

// The views lead into `input`.
[[nodiscard]] SceneText readSceneText(std::string_view input);

// The lines of `input`, as words: a word ends at a null byte.
[[nodiscard]] std::vector<std::string_view> readWords(std::string_view input);

// The input that readSceneText reads as `scene`.
[[nodiscard]] std::string writeSceneText(const SceneText& scene);
