// The text that a run writes.
#include "properties/expect.hpp"

#include "properties/files.hpp"
#include "properties/format.hpp"

#include <algorithm>

namespace properties {

namespace {

using enum TmdKind;

// The polygons' lines of the summary, in fours: triangles and quadrangles, and both translucent.
struct PolygonLines {
    TmdKind kind;
    const char* shading;
    const char* colour;
    const char* end;
};

constexpr std::array<PolygonLines, 10> polygonLines = {{
    {flat, "Flat ", "Colored ", ""},
    {flatLightOff, "Flat ", "Colored ", " (Light OFF)"},
    {gouraud, "Gouraud ", "Colored ", ""},
    {gouraudLightOff, "Gouraud ", "Colored ", " (Light OFF)"},
    {flatGradation, "Flat ", "Gradation ", ""},
    {gouraudGradation, "Gouraud ", "Gradation ", ""},
    {flatTexture, "Flat ", "Textured ", ""},
    {flatTextureLightOff, "Flat ", "Textured ", " (Light OFF)"},
    {gouraudTexture, "Gouraud ", "Textured ", ""},
    {gouraudTextureLightOff, "Gouraud ", "Textured ", " (Light OFF)"},
}};

constexpr std::array<const char*, 4> spriteSizes = {"(Free)", "(1x1)", "(8x8)", "(16x16)"};

// Counts the packets for which `counts` holds, in a line; no line for none.
template <typename Counts>
std::string counterLine(const Expected& expected, const std::string& label, Counts counts) {
    std::ptrdiff_t count = 0;
    for (const ExpectedObject& object : expected.objects)
        count += std::count_if(object.packets.begin(), object.packets.end(), counts);
    return count == 0 ? "" : format("%22d\t... ", static_cast<int>(count)) + label + "\n";
}

std::size_t sum(const Expected& expected, std::size_t (*of)(const ExpectedObject&)) {
    std::size_t total = 0;
    for (const ExpectedObject& object : expected.objects)
        total += of(object);
    return total;
}

std::size_t packetCount(const ExpectedObject& object) {
    return object.packets.size();
}

std::size_t packetBytes(const ExpectedObject& object) {
    return object.packetBytes();
}

std::size_t vertexCount(const ExpectedObject& object) {
    return object.vertices.size();
}

std::size_t normalCount(const ExpectedObject& object) {
    return object.normals.size();
}

std::string objectList(const Expected& expected) {
    std::string text = format("\tInput RSDs      : %zu object(s)\n", expected.objects.size());
    for (std::size_t i = 0; i < expected.objects.size(); ++i)
        text += format("\t\tRSD[%2zu] = \"%s\"\n", i, expected.objects[i].name.c_str());
    text += format("\tTotal primitives: %5zu\n", sum(expected, packetCount));
    text += format("\tTotal vertices  : %5zu\n", sum(expected, vertexCount));
    return text + format("\tTotal normals   : %5zu\n", sum(expected, normalCount));
}

std::string objectReport(const Scene& scene, const ExpectedObject& expected) {
    const Object& object = *expected.object;
    const std::string directory = joinPath(scene.root, folderOf(object.disk));
    std::string text = "=============== RSD ==============\n";
    text += "   RSD files   : " + directory + "/" + object.ply.shown + ", " + object.mat.shown + ", " +
            object.group.value_or("") + "\n";
    for (std::size_t i = 0; i < object.textures.size(); ++i)
        text += format("\tTEX[%zu] = %s\n", i, object.textures[i].name.shown.c_str());
    text += format("   POLYGON     : %5zu\n", object.polygons.size());
    text += format("   VERTEX      : %5zu\n", object.vertices.size());
    text += format("   NORMAL      : %5zu\n", object.normals.size());
    text += format("   MATERIAL    : %5zu\n", object.materials.size());
    if (expected.exponent != 0) {
        const double power = expected.exponent < 0 ? 1.0 / (1 << -expected.exponent) : 1 << expected.exponent;
        text += format("   Scale       : %5g\n", power);
    }
    const std::array<int, 3>& moved = expected.translation;
    if (moved != std::array<int, 3>{})
        text += format("   Translation : (%d, %d, %d)\n", moved[0], moved[1], moved[2]);
    const std::array<int, 3>& low = expected.smallest;
    const std::array<int, 3>& high = expected.largest;
    return text + format("   Range       : (%d, %d, %d)-(%d, %d, %d)\n", low[0], low[1], low[2], high[0],
                         high[1], high[2]);
}

std::string summary(const Expected& expected) {
    const std::size_t objects = 28 * expected.objects.size();
    const std::size_t packets = sum(expected, packetBytes);
    const std::size_t vertices = sum(expected, vertexCount);
    const std::size_t normals = sum(expected, normalCount);
    std::string text = "================= TMD ==================\n";
    text += "   Output TMD  : " + expected.settings.output + "\n";
    text += "   TMD header  :       (    12 bytes)\n";
    text += format("   Objects     : %5zu (%6zu bytes)\n", expected.objects.size(), objects);
    text += format("   Primitives  : %5zu (%6zu bytes)\n", sum(expected, packetCount), packets);
    text += expectedCounters(expected);
    text += format("   Vertices    : %5zu (%6zu bytes)\n", vertices, 8 * vertices);
    text += format("   Normals     : %5zu (%6zu bytes)\n", normals, 8 * normals);
    text += "----------------------------------------\n";
    return text + format("Total file size:        %6zu bytes\n",
                         12 + objects + packets + 8 * vertices + 8 * normals);
}

// What is wrong with the place of a CLUT or an image, in the words of the warning.
std::string placeWarnings(const Texture& texture, int target) {
    const auto number = [](std::uint16_t value) {
        return static_cast<int>(static_cast<std::int16_t>(value));
    };
    // Numbers below zero are beyond any limit.
    const auto within = [&](const TimBlock& block, int mostX, int mostY) {
        return number(block.x) >= 0 && number(block.x) <= mostX && number(block.y) >= 0 &&
               number(block.y) <= mostY;
    };
    std::string text;
    const TimBlock& clut = texture.clut;
    const bool aligned = clut.x % 16 == 0;
    if (hasClut(texture.flags) && !(aligned && within(clut, 1023, target == 0 ? 511 : 1023))) {
        text += format("WARNING: Bad CLUT address! : (%d %d)", number(clut.x), number(clut.y));
        text += aligned ? "\n" : " (x should be 16*n)\n";
    }
    const TimBlock& image = texture.image;
    if (!within(image, target == 1 ? 2047 : 1023, target == 0 ? 511 : 1023))
        text += format("WARNING: Bad Texture address! : (%d %d)\n", number(image.x), number(image.y));
    return text;
}

// The lines of an RSD file that are read before its end is met.
std::size_t rsdLines(const Object& object) {
    return 4 + (object.group ? 1 : 0) + object.textures.size();
}

std::string listingErrors(const Object& object) {
    std::string text;
    if (object.surplusTextures > 0) {
        const std::size_t slash = object.disk.rfind('/');
        const std::string file = slash == std::string::npos ? object.disk : object.disk.substr(slash + 1);
        text += format("WARNING: \"NTEX=%zu\" may be wrong in \"%s\" line=%zu\n",
                       object.textures.size() + static_cast<std::size_t>(object.surplusTextures),
                       file.c_str(), rsdLines(object));
    }
    if (object.plyStamp == Stamp::old)
        text += "WARNING: \"" + object.ply.shown + "\" has old version: @PLY940101\n";
    if (object.matStamp == Stamp::old)
        text += "WARNING: \"" + object.mat.shown + "\" has old version: @MAT940101\n";
    return text;
}

std::string packetErrors(const ExpectedObject& expected, const Settings& settings) {
    const Object& object = *expected.object;
    std::string text;
    if (settings.verbose) {
        text += "(Reading " + object.ply.shown + "...)        \r";
        text += "\r(Reading " + object.mat.shown + "...)      \r";
    }
    for (const Texture& texture : object.textures)
        text += placeWarnings(texture, settings.target);
    if (settings.verbose)
        text += "(Writing PRIMITIVES...)\r";
    if (expected.usesWhite)
        text += "WARNING: Some primitives have no material (WHITE is assigned.)\n";
    return text;
}

bool isOutOfRange(const ExpectedObject& object) {
    return std::any_of(object.largest.begin(), object.largest.end(),
                       [](int value) { return value > 32767; }) ||
           std::any_of(object.smallest.begin(), object.smallest.end(),
                       [](int value) { return value < -32768; });
}

// How often a project is looked into while words are collected: twice where it names inputs, when they are
// counted and when they are taken; behind an -id when words are counted, unless both are in an ARG file.
int collectingLooks(const Scene& scene) {
    if (scene.project->namesInputs)
        return 2;
    const Words words = wordsOf(scene);
    return std::count(words.begin(), words.end(), "-id") > 0 ? 1 : 0;
}

std::string versionWarnings(const Project& project, int times) {
    std::string text;
    for (int i = 0; i < times && project.version < 940401; ++i)
        text += format("WARNING: \"%s\" has a bad version: @PRJ%d\n", projectName, project.version);
    return text;
}

} // namespace

std::string expectedCounters(const Expected& expected) {
    std::string text;
    for (const PolygonLines& lines : polygonLines) {
        for (const bool translucent : {false, true}) {
            for (const bool quadrangle : {false, true}) {
                const std::string label = std::string(lines.shading) + (translucent ? "Trans-" : "") +
                                          lines.colour + (quadrangle ? "Quadrangles" : "Triangles") +
                                          lines.end;
                text += counterLine(expected, label, [&](const ExpectedPacket& packet) {
                    return packet.kind == lines.kind && packet.quadrangle == quadrangle &&
                           packet.attributes.translucent == translucent;
                });
            }
        }
    }
    for (const bool translucent : {false, true}) {
        for (const TmdKind kind : {flatLine, gouraudLine}) {
            const std::string label = std::string(kind == flatLine ? "Flat " : "Gradation ") +
                                      (translucent ? "Trans-" : "") + "Lines";
            text += counterLine(expected, label, [&](const ExpectedPacket& packet) {
                return packet.kind == kind && packet.attributes.translucent == translucent;
            });
        }
    }
    for (const bool translucent : {false, true}) {
        for (std::size_t size = 0; size < spriteSizes.size(); ++size) {
            const std::string label =
                std::string(translucent ? "Trans-" : "") + "3D Sprites" + spriteSizes[size];
            text += counterLine(expected, label, [&](const ExpectedPacket& packet) {
                return packet.kind == sprite && packet.attributes.translucent == translucent &&
                       (packet.mode >> 3U & 3U) == size;
            });
        }
    }
    return text;
}

std::string expectedOutput(const Scene& scene, const Expected& expected) {
    const Settings& settings = expected.settings;
    std::string text;
    if (settings.info)
        text += objectList(expected);
    if (expected.objects.empty())
        return text;
    const std::string rule(20, '-');
    for (const ExpectedObject& object : expected.objects) {
        if (settings.info) {
            text += " " + rule + "< " + object.name + " >" + rule + "\n";
            text += expectedDump(object, settings.target);
        }
    }
    for (std::size_t i = 0; settings.verbose && i < expected.objects.size(); ++i)
        text += format("[%zu] ", i) + objectReport(scene, expected.objects[i]);
    if (settings.verbose)
        text += summary(expected);
    if (settings.verbose && settings.idList)
        text += "\n   ID file     : \"" + idListName(expected) + "\" is created.\n";
    return text;
}

std::string expectedErrors(const Scene& scene, const Expected& expected, const std::string& notice) {
    const Settings& settings = expected.settings;
    std::string text = notice;
    if (scene.project)
        text += versionWarnings(*scene.project, collectingLooks(scene));
    if (settings.verbose)
        text += "vexbind Version 3.72 Oct  1 1996\n";
    for (const Input& input : scene.inputs) {
        const std::string& word = input.object ? scene.objects[*input.object].word : input.missing;
        if (settings.verbose)
            text += "(Reading " + word + "...)             \r";
        text += input.object ? listingErrors(scene.objects[*input.object])
                             : "Cannot open: \"" + word + ".rsd\"\n";
    }
    if (expected.objects.empty())
        return text;
    for (const ExpectedObject& object : expected.objects)
        text += packetErrors(object, settings);
    for (const ExpectedObject& object : expected.objects) {
        text += settings.verbose ? "(Writing VERTICES...)  \r" : "";
        if (isOutOfRange(object))
            text += "WARNING: \"" + object.name + "\" is out of the Tavix coordinate!\n";
    }
    for (std::size_t i = 0; settings.verbose && i < expected.objects.size(); ++i)
        text += "(Writing NORMALS...)   \r";
    return text + (scene.project ? versionWarnings(*scene.project, 1) : "");
}

std::string idListName(const Expected& expected) {
    return baseOf(expected.settings.output) + ".h";
}

std::string expectedIdList(const Expected& expected, const std::string& notice) {
    const std::string& output = expected.settings.output;
    std::string text = "/*\n *\tTMD ID List for \"" + output + "\"\n *\n";
    text += " *\t\t Created by vexbind(v3.72) at {time}\n *\n";
    text += " *\t" + notice + " */\n\n";
    text += "int " + baseOf(output) + "_list[] = {\n";
    for (const ExpectedObject& object : expected.objects) {
        text += object.id < 0 ? format("\t-1,\t/* %s has no ID */\n", object.name.c_str())
                              : format("\t%d,\t/* %s */\n", object.id, object.name.c_str());
    }
    return text + "};\n";
}

} // namespace properties
