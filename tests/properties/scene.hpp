// The description of a scene: everything that its files and its command line say, in numbers and names
// instead of text. Files are written from it, and what the program has to make of them is worked out from
// it, each without the other.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace properties {

using Words = std::vector<std::string>;

// A number as a text gives it: digits / 10^places.
struct Decimal {
    std::int64_t digits = 0;
    int places = 0;
};

using Point = std::array<Decimal, 3>;

// A file that a text names.
struct FileName {
    std::string written; // in the text
    std::string disk;    // where the file lies, from the directory of the scene
    std::string shown;   // under which name the program goes on
};

// The stamps of files; the first is the old one.
enum class Stamp { old = 940101, current = 940102, later = 940801 };

// Corners stand in the order of the packets, whatever the stamp of the files: the second and the third of a
// line and of a sprite too.
struct Polygon {
    unsigned typeWord = 0; // its low three bits count
    std::array<int, 4> vertices{};
    std::array<int, 4> normals{};
};

// Polygons `first` to `last`; none when `last` is below `first`.
struct Range {
    int first = 0;
    int last = 0;
};

// A line of a MAT file. All numbers are there, whatever the kind needs.
struct Material {
    std::vector<Range> list;
    std::string listEnd; // text behind the list that ends it
    unsigned attr = 0;
    char shading = 'F';
    char kind = 'C';
    int texture = 0;
    std::array<std::array<int, 2>, 4> uv{};
    std::array<std::array<int, 3>, 4> colours{};
};

// A block of a TIM file.
struct TimBlock {
    std::uint16_t x = 0;
    std::uint16_t y = 0;
    std::uint16_t width = 0;
    std::uint16_t height = 0;
    std::size_t dataBytes = 0;
};

struct Texture {
    FileName name;
    std::uint32_t id = 0x10;
    std::uint32_t flags = 0;
    TimBlock clut; // written when the flags call for one
    TimBlock image;
};

struct Object {
    std::string base; // of the names of its files
    std::string word; // what names it on the command line
    std::string disk; // where its RSD file lies, from the directory of the scene
    Words decoys;     // files with names like those of its own that are not read
    Stamp rsdStamp = Stamp::current;
    Stamp plyStamp = Stamp::current;
    Stamp matStamp = Stamp::current; // decides about the order of corners
    FileName ply;
    FileName mat;
    std::optional<std::string> group;
    int surplusTextures = 0; // by how much its texture count is above the number of names
    std::vector<Point> vertices;
    std::vector<Point> normals;
    std::vector<Polygon> polygons;
    std::vector<Material> materials;
    std::vector<Texture> textures;
};

// An option with its values, as on the command line.
struct Option {
    std::string name;
    Words values;
};

// A name on the command line and the options right before it.
struct Input {
    std::vector<Option> before;
    std::optional<std::size_t> object; // one that is there
    std::string missing;               // otherwise the name of none
};

// A line of a PRJ file: an entry, or a text that is none.
struct ProjectLine {
    std::optional<int> id;
    std::string text; // the name of an entry
};

struct Project {
    int version = 940401;
    std::vector<ProjectLine> lines;
    bool namesInputs = false; // its entries are the first inputs; otherwise it stands behind -id
};

// Words that stand in an ARG file.
struct Slice {
    std::size_t first = 0;
    std::size_t count = 0;
};

struct Scene {
    std::string root; // its directory, absolute
    std::vector<Object> objects;
    std::vector<Option> options; // in front of all names
    std::vector<Input> inputs;
    std::optional<Project> project;
    std::optional<Slice> inArgFile;
};

// The same with all words on the command line.
[[nodiscard]] Scene withoutArgFile(Scene scene);

inline constexpr char projectName[] = "scene.prj";
inline constexpr char argName[] = "words.arg";

// The directory of a file: all before its last "/", without it.
[[nodiscard]] std::string folderOf(const std::string& path);

// Folder and name; one alone when the other is empty.
[[nodiscard]] std::string joinPath(const std::string& folder, const std::string& name);

// The name of a file without its folder and its extension.
[[nodiscard]] std::string baseOf(const std::string& path);

// Whether a TIM file with these flags has a CLUT.
[[nodiscard]] bool hasClut(std::uint32_t flags);

[[nodiscard]] bool isTexturedKind(char kind);

// Whether a MAT line of this kind has numbers of its own.
[[nodiscard]] bool hasNumbers(char kind);

[[nodiscard]] std::string toUpper(std::string text);
[[nodiscard]] std::string toLower(std::string text);

} // namespace properties
