// Makes scenes up: small ones for the most part, that are right and use everything that the formats have.
#pragma once

#include "properties/random.hpp"
#include "properties/scene.hpp"

#include <cstdint>

namespace properties {

// Scene `number` of a seed, for the directory `root`: the same whenever and wherever it is made.
[[nodiscard]] Scene makeScene(std::uint64_t seed, std::size_t number, const std::string& root);

// Words of a scene that can stand in an ARG file.
[[nodiscard]] Slice makeSlice(Random& random, const Scene& scene);

// How many of what an object has.
struct ObjectSizes {
    int vertices = 0;
    int normals = 0;
    int polygons = 0;
    int mostPolygons = 0; // of any object of the scene
};

// The parts of makeScene.
[[nodiscard]] ObjectSizes makeSizes(Random& random);
[[nodiscard]] Point makeVertex(Random& random);
void fillGeometry(Random& random, const ObjectSizes& sizes, Object& object);
void fillMaterials(Random& random, const ObjectSizes& sizes, Object& object);
[[nodiscard]] Texture makeTexture(Random& random);

// Names for the files of an object and where they lie. The object has its base name already.
void nameFiles(Random& random, const std::string& root, Object& object);

// The names under which all files are found as they lie, without any search: from their own folders, or
// absolute.
void nameFilesPlainly(Object& object);
void nameFilesAbsolutely(const std::string& root, Object& object);

} // namespace properties
