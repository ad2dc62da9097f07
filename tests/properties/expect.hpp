// What the program has to make of a scene, worked out from its description and the rules of the formats
// alone.
#pragma once

#include "properties/scene.hpp"
#include "support/tmd_reader.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace properties {

// What the options say.
struct Settings {
    int exponent = 0;
    double scale = 0; // 0: the exponent of the first object counts
    std::array<int, 3> translation{};
    int target = 0; // 1 with -a, 2 with -b
    bool verbose = false;
    bool info = false;
    std::string output = "a.tmd";
    bool idList = false;
};

void apply(const Option& option, Settings& settings);

// A polygon's attributes as its last MAT line leaves them.
struct Attributes {
    bool textured = false;
    bool gouraud = false;
    bool translucent = false;
    unsigned rate = 0;
    bool twoSided = false;
    bool lightOff = false;
    bool gradation = false;
};

using Colour = std::array<int, 3>;

struct ExpectedPacket {
    TmdKind kind = TmdKind::unknown;
    unsigned type = 0;
    bool quadrangle = false;
    Attributes attributes;
    unsigned olen = 0;
    unsigned size = 0; // in bytes
    unsigned flag = 0;
    unsigned mode = 0;
    std::vector<Colour> colours;
    bool openColours = false; // only the first is known
    std::vector<int> vertices;
    std::vector<int> normals;
    std::vector<std::array<int, 2>> uv;
    unsigned cba = 0;
    unsigned tsb = 0;
    int width = 0;
    int height = 0;
    int texture = 0;

    // The first four bytes as a number.
    [[nodiscard]] std::uint32_t header() const {
        return mode << 24U | flag << 16U | (size / 4 - 1) << 8U | olen;
    }
};

struct ExpectedObject {
    const Object* object = nullptr;
    std::string name;
    int exponent = 0;
    std::array<int, 3> translation{};
    std::vector<std::array<int, 3>> vertices;
    std::vector<std::array<int, 3>> normals;
    std::array<int, 3> smallest{}; // of the coordinates, as far as they are looked at
    std::array<int, 3> largest{};
    std::vector<ExpectedPacket> packets;
    bool usesWhite = false;         // some polygon has no material
    bool inheritsGradation = false; // some polygon without one has it from an object before
    int id = -1;

    [[nodiscard]] std::size_t packetBytes() const;
};

struct Expected {
    Settings settings; // after all options
    double scale = 0;  // the factor of all coordinates
    std::vector<ExpectedObject> objects;

    // Whether every byte is known.
    [[nodiscard]] bool isClosed() const;
};

[[nodiscard]] Expected expect(const Scene& scene);

// Parts of it.
void fillVectors(double scale, ExpectedObject& object);
void fillPackets(int target, std::vector<bool>& gradation, ExpectedObject& object);
void fillIds(const Project& project, Expected& expected);

// The place of a texture in the frame buffer, as the files of a target code it.
[[nodiscard]] unsigned clutCode(const Texture& texture);
[[nodiscard]] unsigned pageCode(const Texture& texture, int target);

// What is left of a number in 16 bits with a sign.
[[nodiscard]] int wrapped(int value);

// The texts of a run. The first line of the errors, the start notice, can be any.
[[nodiscard]] std::string expectedOutput(const Scene& scene, const Expected& expected);
[[nodiscard]] std::string expectedErrors(const Scene& scene, const Expected& expected,
                                         const std::string& notice);
// With "{time}" for the time.
[[nodiscard]] std::string expectedIdList(const Expected& expected, const std::string& notice);
[[nodiscard]] std::string idListName(const Expected& expected);

// The lines of the summary that count packets.
[[nodiscard]] std::string expectedCounters(const Expected& expected);
// The lines about every packet of an object.
[[nodiscard]] std::string expectedDump(const ExpectedObject& object, int target);

// The first difference between a file and what it should be; empty when there is none.
[[nodiscard]] std::string findDifference(const TmdFile& file, const Expected& expected);

} // namespace properties
