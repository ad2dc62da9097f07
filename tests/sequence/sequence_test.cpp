// Every packet is built in one area of 100 bytes, and some packets leave some of its bytes as the packets
// before them made them. So the variants of all packets are put into an order in which each follows each,
// itself too, and the program's primitive section is compared with what a plain model of the area gives.
#include "runner/run_case.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

// A variant: how the input asks for it, and its packet.
struct Variant {
    const char* name;
    unsigned type; // of the PLY line
    unsigned attr; // of the MAT line, and its two letters
    char shading;
    char kind;
    unsigned size; // of the packet, header included
    unsigned olen;
    unsigned flag;
    unsigned mode;
    unsigned rate;      // of translucency, as merged into the texture page word; 0 in an opaque packet
    const char* layout; // what follows the header, see writeToken
    unsigned side = 0;  // width and height of a sprite of fixed size
};

// The layouts in words of their own: c0 colour 0 (three bytes), m the mode, 0 a zero byte, -- a byte that is
// left as it was, n0 v0 a normal and a vertex index, z a 16-bit zero, u0 the two texture coordinates of
// vertex 0, cba tsb the CLUT and the page word, w h the size of a sprite. A sprite of fixed size puts its
// width and height into the area too, behind the end of its packet.
// A light-off gouraud packet has one colour only with a kind letter that is none (X): with C it is flat,
// with G it has gradation.
constexpr std::array<Variant, 41> variants = {{
    {"flat triangle", 0, 0x00, 'F', 'C', 16, 4, 0x00, 0x20, 0, "c0 m n0 v0 v1 v2"},
    {"flat quadrangle", 1, 0x02, 'F', 'C', 20, 5, 0x02, 0x28, 0, "c0 m n0 v0 v1 v2 v3 z"},
    {"flat type 4", 4, 0x00, 'F', 'C', 20, 5, 0x00, 0x20, 0, "c0 m n0 v0 v1 v2 v3 z"},
    {"flat light-off triangle", 0, 0x01, 'F', 'C', 16, 4, 0x01, 0x21, 0, "c0 m v0 v1 v2 z"},
    {"flat light-off quadrangle", 1, 0x05, 'G', 'C', 16, 5, 0x01, 0x2B, 0, "c0 m v0 v1 v2 v3"},
    {"flat light-off type 5", 5, 0x01, 'F', 'C', 16, 5, 0x01, 0x21, 0, "c0 m v0 v1 v2 z"},
    {"flat gradation triangle", 0, 0x00, 'F', 'G', 24, 6, 0x04, 0x20, 0, "c0 m c1 -- c2 -- n0 v0 v1 v2"},
    {"flat gradation quadrangle", 1, 0x04, 'F', 'G', 32, 8, 0x04, 0x2A, 0,
     "c0 m c1 -- c2 -- c3 -- n0 v0 v1 v2 v3 z"},
    {"flat gradation type 6", 6, 0x02, 'F', 'G', 32, 8, 0x06, 0x20, 0,
     "c0 m c1 -- c2 -- c3 -- n0 v0 v1 v2 v3 z"},
    {"gouraud triangle", 0, 0x00, 'G', 'C', 20, 6, 0x00, 0x30, 0, "c0 m n0 v0 n1 v1 n2 v2"},
    {"gouraud quadrangle", 1, 0x0C, 'G', 'C', 24, 8, 0x00, 0x3A, 0, "c0 m n0 v0 n1 v1 n2 v2 n3 v3"},
    {"gouraud type 7", 7, 0x00, 'G', 'C', 24, 8, 0x00, 0x30, 0, "c0 m n0 v0 n1 v1 n2 v2 n3 v3"},
    {"gouraud gradation triangle", 0, 0x00, 'G', 'G', 28, 6, 0x04, 0x30, 0,
     "c0 m c1 -- c2 -- n0 v0 n1 v1 n2 v2"},
    {"gouraud gradation quadrangle", 1, 0x06, 'G', 'G', 36, 8, 0x06, 0x3A, 0,
     "c0 m c1 -- c2 -- c3 -- n0 v0 n1 v1 n2 v2 n3 v3"},
    {"gouraud gradation type 4", 4, 0x00, 'G', 'G', 36, 8, 0x04, 0x30, 0,
     "c0 m c1 -- c2 -- c3 -- n0 v0 n1 v1 n2 v2 n3 v3"},
    {"gouraud light-off gradation triangle", 0, 0x01, 'F', 'G', 24, 6, 0x01, 0x31, 0,
     "c0 m c1 0 c2 0 v0 v1 v2 z"},
    {"gouraud light-off gradation quadrangle", 1, 0x03, 'G', 'G', 28, 8, 0x03, 0x39, 0,
     "c0 m c1 0 c2 0 c3 0 v0 v1 v2 v3"},
    {"gouraud light-off gradation type 5", 5, 0x01, 'G', 'G', 28, 8, 0x01, 0x31, 0,
     "c0 m c1 0 c2 0 c3 0 v0 v1 v2 v3"},
    {"gouraud light-off one-colour triangle", 0, 0x01, 'G', 'X', 24, 6, 0x01, 0x31, 0,
     "c0 m c0 0 c0 0 v0 v1 v2 z"},
    {"gouraud light-off one-colour quadrangle", 1, 0x05, 'G', 'X', 28, 8, 0x01, 0x3B, 0,
     "c0 m c0 0 c0 0 c0 0 v0 v1 v2 v3"},
    {"gouraud light-off one-colour type 6", 6, 0x01, 'G', 'X', 28, 8, 0x01, 0x31, 0,
     "c0 m c0 0 c0 0 c0 0 v0 v1 v2 v3"},

    {"flat textured triangle", 0, 0x18, 'F', 'T', 24, 7, 0x00, 0x24, 0, "u0 cba u1 tsb u2 z n0 v0 v1 v2"},
    {"flat textured quadrangle", 1, 0x0C, 'F', 'D', 32, 9, 0x00, 0x2E, 1,
     "u0 cba u1 tsb u2 z u3 z n0 v0 v1 v2 v3 z"},
    {"flat textured type 4", 4, 0x02, 'F', 'H', 24, 7, 0x02, 0x24, 0, "u0 cba u1 tsb u2 z n0 v0 v1 v2"},
    {"flat textured light-off triangle", 0, 0x01, 'F', 'D', 28, 7, 0x01, 0x25, 0,
     "u0 cba u1 tsb u2 z c0 0 v0 v1 v2 z"},
    {"flat textured light-off quadrangle", 1, 0x03, 'G', 'D', 32, 9, 0x03, 0x2D, 0,
     "u0 cba u1 tsb u2 z u3 z c0 0 v0 v1 v2 v3"},
    {"flat textured light-off type 5", 5, 0x1D, 'G', 'T', 28, 7, 0x01, 0x27, 3,
     "u0 cba u1 tsb u2 z c0 0 v0 v1 v2 z"},
    {"gouraud textured triangle", 0, 0x14, 'G', 'T', 28, 9, 0x00, 0x36, 2,
     "u0 cba u1 tsb u2 z n0 v0 n1 v1 n2 v2"},
    {"gouraud textured quadrangle", 1, 0x1C, 'G', 'H', 36, 12, 0x00, 0x3E, 3,
     "u0 cba u1 tsb u2 z u3 z n0 v0 n1 v1 n2 v2 n3 v3"},
    {"gouraud textured type 6", 6, 0x00, 'G', 'D', 28, 9, 0x00, 0x34, 0,
     "u0 cba u1 tsb u2 z n0 v0 n1 v1 n2 v2"},
    {"gouraud textured light-off triangle", 0, 0x01, 'F', 'H', 36, 9, 0x01, 0x35, 0,
     "u0 cba u1 tsb u2 z c0 -- c1 0 c2 0 v0 v1 v2 z"},
    {"gouraud textured light-off quadrangle", 1, 0x15, 'G', 'H', 44, 12, 0x01, 0x3F, 2,
     "u0 cba u1 tsb u2 z u3 z c0 0 c1 0 c2 0 c3 0 v0 v1 v2 v3"},
    {"gouraud textured light-off type 7", 7, 0x0F, 'G', 'H', 36, 9, 0x03, 0x37, 1,
     "u0 cba u1 tsb u2 z c0 -- c1 0 c2 0 v0 v1 v2 z"},

    {"flat line", 2, 0x00, 'G', 'C', 12, 3, 0x01, 0x40, 0, "c0 m v0 v1"},
    {"gradation line", 2, 0x06, 'F', 'G', 16, 4, 0x01, 0x52, 0, "c0 m c1 0 v0 v1"},
    {"sprite", 3, 0x18, 'F', 'T', 16, 5, 0x01, 0x64, 0, "v0 tsb u0 cba w h"},
    {"translucent sprite", 3, 0x14, 'G', 'D', 16, 5, 0x01, 0x66, 2, "v0 tsb u0 cba w h"},
    {"sprite 1x1", 3, 0x00, 'F', 'T', 12, 4, 0x01, 0x6C, 0, "v0 tsb u0 cba w h", 1},
    {"sprite 8x8", 3, 0x01, 'F', 'H', 12, 4, 0x01, 0x74, 0, "v0 tsb u0 cba w h", 8},
    {"sprite 16x16", 3, 0x02, 'F', 'T', 12, 4, 0x01, 0x7C, 0, "v0 tsb u0 cba w h", 16},
    {"translucent sprite 16x16", 3, 0x1C, 'F', 'D', 12, 4, 0x01, 0x7E, 3, "v0 tsb u0 cba w h", 16},
}};

// The three target layouts: the option, where the texture page words come from, where the rate goes.
enum class Target { standard, optionA, optionB };

// A texture: its TIM file and the codes that follow from it, page words in the order of Target.
struct Texture {
    unsigned pmode;
    bool hasClut;
    unsigned clutX;
    unsigned clutY;
    unsigned imageX;
    unsigned imageY;
    unsigned cba;
    std::array<unsigned, 3> tsb;
    unsigned addToU;
    unsigned addToV;
};

// The last texture stands in no list: a material that names it gets a record of zeros.
constexpr std::array<Texture, 4> textures = {{
    // CLUT 1 + 481 * 64; page 10 + 16, 10 + 32; u (650 mod 64) * 4, v 300 - 256.
    {8, true, 16, 481, 650, 300, 0x7841, {0x001A, 0x002A, 0x001A}, 40, 44},
    // CLUT 63 + 511 * 64; page 15 + 128, 15 + 64 + 512, 15 + 128 + 2048; u (1000 mod 64) * 2, v 600 - 512.
    {9, true, 1008, 511, 1000, 600, 0x7FFF, {0x008F, 0x024F, 0x088F}, 80, 88},
    // No CLUT; page 5 + 16 + 256, 5 + 32 + 1024; u 330 mod 64, v 260 - 256.
    {2, false, 0, 0, 330, 260, 0x0000, {0x0115, 0x0425, 0x0115}, 10, 4},
    {0, false, 0, 0, 0, 0, 0x0000, {0x0000, 0x0000, 0x0000}, 0, 0},
}};

// What a polygon line and its material line hold, in the order of the vertices.
struct Polygon {
    const Variant* variant;
    std::array<unsigned, 4> vertices;
    std::array<unsigned, 4> normals;
    std::array<std::array<unsigned, 3>, 4> colours;
    std::array<std::array<unsigned, 2>, 4> uv;
    std::size_t texture;
};

using Bytes = std::string;
using Polygons = std::vector<Polygon>;

// One object: in which order its polygons come, and whether its files have the old stamp.
struct Object {
    bool backwards = false;
    bool old = false;
};

struct Scene {
    const char* name;
    Target target;
    std::vector<Object> objects;
    std::vector<std::string> options;
};

void PrintTo(const Scene& scene, std::ostream* out) {
    *out << scene.name;
}

// An order in which every ordered pair of variants stands side by side, each pair once.
std::vector<std::size_t> orderOfVariants() {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < variants.size(); ++i) {
        order.push_back(i);
        for (std::size_t j = i + 1; j < variants.size(); ++j)
            order.insert(order.end(), {i, j});
    }
    order.push_back(order.front());
    return order;
}

// Number `serial` of the 16-bit numbers that have no zero byte.
unsigned twoBytes(std::size_t serial) {
    EXPECT_LT(serial, 255U * 255U);
    return static_cast<unsigned>(serial / 255 + 1) << 8U | static_cast<unsigned>(serial % 255 + 1);
}

// Polygons with numbers of their own: no two 16-bit numbers of a whole scene are the same, and the first two
// bytes of a colour and the two texture coordinates count as one. `first` numbers the polygons of a scene.
Polygons makePolygons(const Object& object, std::size_t first) {
    std::vector<std::size_t> order = orderOfVariants();
    if (object.backwards)
        std::reverse(order.begin(), order.end());
    Polygons polygons;
    for (std::size_t k = 0; k < order.size(); ++k) {
        Polygon polygon{};
        polygon.variant = &variants[order[k]];
        polygon.texture = (first + k) * 7 / 5 % textures.size();
        for (std::size_t i = 0; i < 4; ++i) {
            const std::size_t serial = 16 * (first + k) + 4 * i;
            polygon.vertices[i] = twoBytes(serial);
            polygon.normals[i] = twoBytes(serial + 1);
            const unsigned colour = twoBytes(serial + 2);
            polygon.colours[i] = {colour & 0xFFU, colour >> 8U, static_cast<unsigned>(serial * 7 % 255 + 1)};
            polygon.uv[i] = {twoBytes(serial + 3) & 0xFFU, twoBytes(serial + 3) >> 8U};
        }
        if (polygon.variant->side != 0)
            polygon.vertices[1] = polygon.vertices[2] = polygon.variant->side;
        if (polygon.variant->kind == 'T')
            polygon.colours[0] = {128, 128, 128};
        polygons.push_back(polygon);
    }
    return polygons;
}

// The polygons of each object of a scene.
std::vector<Polygons> polygonsOf(const Scene& scene) {
    std::vector<Polygons> objects;
    std::size_t first = 0;
    for (const Object& object : scene.objects) {
        objects.push_back(makePolygons(object, first));
        first += objects.back().size();
    }
    return objects;
}

// The model: the packet area as the packets of a whole scene leave it one after the other.
class PacketArea {
  public:
    explicit PacketArea(Target chosen) : target(chosen) {}

    // Ways to be wrong, so that it is seen that the input tells them apart.
    bool clearedBeforeEachPacket = false;
    bool fixedSizesStayOut = false;

    // Bytes that packets left as they were: variant name and offset.
    using Places = std::set<std::pair<std::string, std::size_t>>;
    Places left;
    Places leftOtherThanZero;

    Bytes build(const Polygon& polygon) {
        const Variant& variant = *polygon.variant;
        if (clearedBeforeEachPacket)
            area.fill(0);
        at = 0;
        for (const unsigned value : {variant.olen, variant.size / 4 - 1, variant.flag, variant.mode})
            put(value);
        std::istringstream tokens(variant.layout);
        for (std::string token; tokens >> token;) {
            if (!fixedSizesStayOut || at < variant.size)
                writeToken(token, polygon);
        }
        return {area.begin(), area.begin() + static_cast<std::ptrdiff_t>(variant.size)};
    }

    // Where the last layout ended.
    [[nodiscard]] std::size_t end() const { return at; }

  private:
    void put(unsigned value) { area[at++] = static_cast<char>(static_cast<unsigned char>(value & 0xFFU)); }

    void put2(unsigned value) {
        put(value);
        put(value >> 8U);
    }

    void writeToken(const std::string& token, const Polygon& polygon) {
        const Texture& texture = textures[polygon.texture];
        const std::size_t number = token.size() == 2 ? static_cast<std::size_t>(token[1] - '0') : 0;
        if (token == "m") {
            put(polygon.variant->mode);
        } else if (token == "0") {
            put(0);
        } else if (token == "z") {
            put2(0);
        } else if (token == "--") {
            leaveByte(polygon.variant->name);
        } else if (token == "w") {
            put2(polygon.vertices[1]);
        } else if (token == "h") {
            put2(polygon.vertices[2]);
        } else if (token == "cba") {
            put2(texture.cba);
        } else if (token == "tsb") {
            put2(texture.tsb[static_cast<std::size_t>(target)] |
                 polygon.variant->rate << (target == Target::optionA ? 7U : 5U));
        } else if (token[0] == 'n') {
            put2(polygon.normals.at(number));
        } else if (token[0] == 'v') {
            put2(polygon.vertices.at(number));
        } else if (token[0] == 'u') {
            put(polygon.uv.at(number)[0] + texture.addToU);
            put(polygon.uv.at(number)[1] + texture.addToV);
        } else if (token[0] == 'c') {
            for (const unsigned part : polygon.colours.at(number))
                put(part);
        } else {
            ADD_FAILURE() << "unknown word in a layout: " << token;
        }
    }

    void leaveByte(const char* name) {
        left.emplace(name, at);
        if (area[at] != 0)
            leftOtherThanZero.emplace(name, at);
        ++at;
    }

    Target target;
    std::array<char, 100> area{};
    std::size_t at = 0;
};

std::string numbersText(const std::vector<unsigned>& numbers) {
    std::string text;
    for (const unsigned number : numbers)
        text.append(" ").append(std::to_string(number));
    return text;
}

// Old files have the second and the third vertex, and what belongs to them, in the opposite order.
std::array<std::size_t, 4> fileOrder(bool old) {
    return old ? std::array<std::size_t, 4>{0, 2, 1, 3} : std::array<std::size_t, 4>{0, 1, 2, 3};
}

std::string plyText(const Polygons& polygons, bool old) {
    unsigned count = 0;
    std::string lines;
    for (const Polygon& polygon : polygons) {
        lines += std::to_string(polygon.variant->type);
        for (const std::array<unsigned, 4>& indices : {polygon.vertices, polygon.normals}) {
            for (const std::size_t i : fileOrder(old)) {
                lines.append(" ").append(std::to_string(indices[i]));
                count = std::max(count, indices[i] + 1);
            }
        }
        lines += "\n";
    }
    std::string text = old ? "@PLY940101\n" : "@PLY940102\n";
    text +=
        std::to_string(count) + " " + std::to_string(count) + " " + std::to_string(polygons.size()) + "\n";
    for (unsigned i = 0; i < 2 * count; ++i)
        text += "0 0 0\n";
    return text + lines;
}

std::string materialNumbers(const Polygon& polygon, bool old) {
    const char kind = polygon.variant->kind;
    std::vector<unsigned> numbers;
    if (kind == 'T' || kind == 'D' || kind == 'H') {
        numbers.push_back(static_cast<unsigned>(polygon.texture));
        for (const std::size_t i : fileOrder(old))
            numbers.insert(numbers.end(), polygon.uv[i].begin(), polygon.uv[i].end());
    }
    if (kind == 'C' || kind == 'D')
        numbers.insert(numbers.end(), polygon.colours[0].begin(), polygon.colours[0].end());
    if (kind == 'G' || kind == 'H') {
        for (const std::size_t i : fileOrder(old))
            numbers.insert(numbers.end(), polygon.colours[i].begin(), polygon.colours[i].end());
    }
    return numbersText(numbers);
}

std::string matText(const Polygons& polygons, bool old) {
    std::size_t count = 0;
    std::string lines;
    for (std::size_t k = 0; k < polygons.size(); ++k) {
        const Variant& variant = *polygons[k].variant;
        std::array<char, 64> head{};
        std::snprintf(head.data(), head.size(), "%zu %x %c %c", k, variant.attr, variant.shading,
                      variant.kind);
        if (variant.kind == 'X') {
            // No numbers of its own: it takes those of the line before, which names no polygon.
            const std::array<unsigned, 3>& colour = polygons[k].colours[0];
            lines += "1-0 0 F C" + numbersText({colour.begin(), colour.end()}) + "\n";
            lines += std::string(head.data()) + " .\n";
            count += 2;
        } else {
            lines += head.data() + materialNumbers(polygons[k], old) + "\n";
            count += 1;
        }
    }
    const std::string stamp = old ? "@MAT940101\n" : "@MAT940102\n";
    return stamp + std::to_string(count) + "\n" + lines;
}

void addNumber(Bytes& bytes, unsigned value, unsigned size) {
    for (unsigned i = 0; i < size; ++i)
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(value >> 8 * i & 0xFFU)));
}

Bytes timBytes(const Texture& texture) {
    Bytes bytes;
    addNumber(bytes, 0x10, 4);
    addNumber(bytes, texture.pmode, 4);
    const auto addBlock = [&](unsigned x, unsigned y) {
        addNumber(bytes, 12 + 8, 4);
        for (const unsigned value : {x, y, 2U, 2U})
            addNumber(bytes, value, 2);
        bytes += "\x01\x02\x03\x04\x05\x06\x07\x08";
    };
    if (texture.hasClut)
        addBlock(texture.clutX, texture.clutY);
    addBlock(texture.imageX, texture.imageY);
    return bytes;
}

void writeFile(const std::string& path, const Bytes& content) {
    std::ofstream out(path, std::ios::binary);
    out << content;
    ASSERT_TRUE(out.flush().good()) << path;
}

// Writes the files of object `name`; its textures are those of the whole scene.
void writeObject(const std::string& directory, const std::string& name, const Polygons& polygons, bool old) {
    std::string rsd = std::string("@RSD94010") + (old ? "1" : "2") + "\nPLY=" + name + ".ply\nMAT=" + name +
                      ".mat\nNTEX=" + std::to_string(textures.size() - 1) + "\n";
    for (std::size_t i = 0; i + 1 < textures.size(); ++i) {
        const std::string texture = std::to_string(i) + ".tim";
        rsd += "TEX[" + std::to_string(i) + "]=" + texture + "\n";
        writeFile(directory + "/" + texture, timBytes(textures[i]));
    }
    writeFile(directory + "/" + name + ".rsd", rsd);
    writeFile(directory + "/" + name + ".ply", plyText(polygons, old));
    writeFile(directory + "/" + name + ".mat", matText(polygons, old));
}

Bytes convert(const Scene& scene, const std::string& directory) {
    std::vector<std::string> words = scene.options;
    if (scene.target != Target::standard)
        words.emplace_back(scene.target == Target::optionA ? "-a" : "-b");
    words.insert(words.end(), {"-o", "out.tmd"});
    const std::vector<Polygons> objects = polygonsOf(scene);
    for (std::size_t k = 0; k < objects.size(); ++k) {
        const std::string name = "object" + std::to_string(k);
        writeObject(directory, name, objects[k], scene.objects[k].old);
        words.push_back(name + ".rsd");
    }
    const Outcome outcome = runProgram(commandFromEnvironment(VEXBIND_PROGRAM), words, directory,
                                       directory + "/stdout", directory + "/stderr");
    EXPECT_EQ(describeOutcome(outcome), "exit status 0") << readWholeFile(directory + "/stderr");
    return readWholeFile(directory + "/out.tmd");
}

std::string hexText(const Bytes& bytes) {
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 8> digits{};
        std::snprintf(digits.data(), digits.size(), " %02X", static_cast<unsigned char>(byte));
        text += digits.data();
    }
    return text;
}

// Compares the section packet by packet; the first one that differs is shown.
void expectSection(const Scene& scene, const Bytes& section) {
    PacketArea area(scene.target);
    std::size_t at = 0;
    std::string before = "nothing";
    for (const Polygons& polygons : polygonsOf(scene)) {
        for (const Polygon& polygon : polygons) {
            const Bytes expected = area.build(polygon);
            const Bytes got = at < section.size() ? section.substr(at, expected.size()) : "";
            ASSERT_EQ(hexText(got), hexText(expected))
                << polygon.variant->name << " after " << before << ", at byte " << at << " of the section";
            before = polygon.variant->name;
            at += expected.size();
        }
    }
    EXPECT_EQ(at, section.size());
}

class Sequence : public testing::TestWithParam<Scene> {};

TEST_P(Sequence, PacketsAreThoseOfTheModel) {
    const std::string directory = makeFreshDirectory();
    ASSERT_NE(directory, "");
    const Bytes tmd = convert(GetParam(), directory);
    removeFreshDirectory(directory);
    const std::size_t start = 12 + 28 * GetParam().objects.size();
    ASSERT_GT(tmd.size(), start);
    // The first vertices follow the packets; vert_top counts from byte 12.
    std::size_t end = 12;
    for (std::size_t i = 0; i < 4; ++i)
        end += static_cast<std::size_t>(static_cast<unsigned char>(tmd[12 + i])) << 8 * i;
    ASSERT_GT(end, start);
    ASSERT_LT(end, tmd.size());
    expectSection(GetParam(), tmd.substr(start, end - start));
}

const std::vector<Scene> scenes = {
    {"Standard", Target::standard, {Object()}, {}},
    {"OptionA", Target::optionA, {Object{.backwards = true}}, {}},
    {"OptionB", Target::optionB, {Object()}, {}},
    {"OldStamp", Target::standard, {Object{.old = true}}, {}},
    {"OldStampBackwards", Target::optionA, {Object{.backwards = true, .old = true}}, {}},
    // The area outlives an object.
    {"OldAfterCurrent", Target::optionB, {Object{.backwards = true}, Object{.old = true}}, {}},
    // A dump only reads the packets.
    {"Dumped", Target::standard, {Object{.old = true}, Object()}, {"-v", "-info"}},
};

std::string sceneName(const testing::TestParamInfo<Scene>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, Sequence, testing::ValuesIn(scenes), sceneName);

TEST(SequenceModel, EveryVariantFollowsEveryVariant) {
    const std::vector<std::size_t> order = orderOfVariants();
    std::set<std::pair<std::size_t, std::size_t>> pairs;
    for (std::size_t k = 1; k < order.size(); ++k)
        pairs.emplace(order[k - 1], order[k]);
    EXPECT_EQ(pairs.size(), variants.size() * variants.size());
    EXPECT_EQ(order.size(), pairs.size() + 1);
}

TEST(SequenceModel, LayoutsFillTheirPackets) {
    for (const Polygon& polygon : makePolygons({}, 0)) {
        PacketArea area(Target::standard);
        const Bytes packet = area.build(polygon);
        EXPECT_EQ(packet.size(), polygon.variant->size);
        // A fixed size lies behind the packet.
        const std::size_t behind = polygon.variant->side == 0 ? 0 : 4;
        EXPECT_EQ(area.end(), polygon.variant->size + behind) << polygon.variant->name;
    }
}

PacketArea::Places leftPlaces() {
    PacketArea::Places places;
    for (const char* name : {"flat gradation triangle", "gouraud gradation triangle"}) {
        places.emplace(name, 11);
        places.emplace(name, 15);
    }
    for (const char* name : {"flat gradation quadrangle", "flat gradation type 6",
                             "gouraud gradation quadrangle", "gouraud gradation type 4"}) {
        places.emplace(name, 11);
        places.emplace(name, 15);
        places.emplace(name, 19);
    }
    for (const char* name : {"gouraud textured light-off triangle", "gouraud textured light-off type 7"})
        places.emplace(name, 19);
    return places;
}

TEST(SequenceModel, EachByteThatIsLeftIsOnceNotZero) {
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.name);
        PacketArea area(scene.target);
        for (const Polygons& polygons : polygonsOf(scene)) {
            for (const Polygon& polygon : polygons)
                area.build(polygon);
        }
        EXPECT_EQ(area.left, leftPlaces());
        EXPECT_EQ(area.leftOtherThanZero, leftPlaces());
    }
}

TEST(SequenceModel, TheOrderTellsWrongAreasApart) {
    PacketArea area(Target::standard);
    PacketArea cleared(Target::standard);
    cleared.clearedBeforeEachPacket = true;
    PacketArea withoutSizes(Target::standard);
    withoutSizes.fixedSizesStayOut = true;
    std::set<std::string> apartFromCleared;
    std::set<std::string> apartFromWithoutSizes;
    for (const Polygon& polygon : makePolygons({}, 0)) {
        const Bytes packet = area.build(polygon);
        if (packet != cleared.build(polygon))
            apartFromCleared.insert(polygon.variant->name);
        if (packet != withoutSizes.build(polygon))
            apartFromWithoutSizes.insert(polygon.variant->name);
    }
    const std::set<std::string> gradation = {
        "flat gradation triangle",    "flat gradation quadrangle",    "flat gradation type 6",
        "gouraud gradation triangle", "gouraud gradation quadrangle", "gouraud gradation type 4",
    };
    EXPECT_EQ(apartFromWithoutSizes, gradation);
    std::set<std::string> withLeftBytes = gradation;
    withLeftBytes.insert({"gouraud textured light-off triangle", "gouraud textured light-off type 7"});
    EXPECT_EQ(apartFromCleared, withLeftBytes);
}

} // namespace
