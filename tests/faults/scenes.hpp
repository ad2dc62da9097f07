// One small scene for each input format, and what becomes of it when the file of that format is
// damaged. The command line counts as one of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

#include "faults/judge.hpp"

struct Scene {
    std::string format;
    std::string faulty;           // the file to be damaged; empty when it is the command line
    std::vector<NamedFile> files; // all that a run needs
    std::string line;             // the command line behind the program's name
    bool namesInputs = false;     // what is damaged names inputs, of which none may be left then
    std::size_t outputs = 1;      // files that the sound scene leads to
    std::set<int> whenCut;        // statuses that some shorter form of what is damaged must lead to
    std::set<int> whenReplaced;   // and some form with another byte in one place
};

void PrintTo(const Scene& scene, std::ostream* out);

// RSD, PLY, MAT, TIM with and without a CLUT, PRJ, ARG, command line.
[[nodiscard]] const std::vector<Scene>& scenes();

// The files of the smallest model: m.rsd, m.ply, m.mat, a.tim, a textured triangle; and p.prj, a
// project of it.
[[nodiscard]] std::vector<NamedFile> plainFiles();

// These with another content for one of them.
[[nodiscard]] std::vector<NamedFile> plainWith(const std::string& name, const std::string& content);

// A TIM file in 4-bit mode with a CLUT, whatever the lengths that its blocks say they have: both have
// 20 bytes.
[[nodiscard]] std::string timWithClut(std::uint32_t clutLength, std::uint32_t pixelLength);

// A TIM file in 16-bit mode; its image says to have `pixelLength` bytes and has `dataBytes` behind the
// header of 12.
[[nodiscard]] std::string timWithoutClut(std::uint32_t pixelLength, std::size_t dataBytes);

// The scene's files with another content for what is damaged.
[[nodiscard]] std::vector<NamedFile> filesWith(const Scene& scene, const std::string& content);

// The words of the scene's command line, which `content` replaces when that is what is damaged.
[[nodiscard]] std::vector<std::string> wordsWith(const Scene& scene, const std::string& content);

// What is damaged as it is when it is sound.
[[nodiscard]] const std::string& soundContent(const Scene& scene);

// The words of a command line: what stands between any two blanks, even if it is nothing. No word can
// have a null byte, so that it ends one too.
[[nodiscard]] std::vector<std::string> splitWords(const std::string& line);
