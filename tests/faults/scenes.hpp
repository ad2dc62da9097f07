// One small scene for each text format, and what becomes of it when the file of that format is
// damaged.
#pragma once

#include <iosfwd>
#include <set>
#include <string>
#include <vector>

#include "faults/judge.hpp"

struct Scene {
    std::string format;
    std::string faulty;           // the file to be damaged
    std::vector<NamedFile> files; // all that a run needs
    std::vector<std::string> words;
    std::set<int> whenCut;      // statuses that some shorter form of the file must lead to
    std::set<int> whenReplaced; // and some form with another byte in one place
};

void PrintTo(const Scene& scene, std::ostream* out);

// RSD, PLY, MAT, ARG.
[[nodiscard]] const std::vector<Scene>& scenes();

// The files of the smallest model: m.rsd, m.ply, m.mat, a triangle in one colour.
[[nodiscard]] std::vector<NamedFile> plainFiles();

// These with another content for one of them.
[[nodiscard]] std::vector<NamedFile> plainWith(const std::string& name, const std::string& content);

// The scene's files with another content for the damaged one.
[[nodiscard]] std::vector<NamedFile> filesWith(const Scene& scene, const std::string& content);

// The damaged file as it is when it is sound.
[[nodiscard]] const std::string& soundContent(const Scene& scene);
