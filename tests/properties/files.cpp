#include "properties/files.hpp"

#include <algorithm>
#include <array>

namespace properties {

namespace {

using Order = std::array<std::size_t, 4>;

// Old files list the second and the third corner, and what belongs to them, the other way round.
Order fileOrder(const Object& object) {
    return object.matStamp == Stamp::old ? Order{0, 2, 1, 3} : Order{0, 1, 2, 3};
}

std::string stamp(const char* format, Stamp date, TextWriter& writer) {
    return std::string("@") + format + writer.integer(static_cast<long>(date));
}

std::string listText(const Material& material, Spelling& spelling, TextWriter& writer) {
    std::string text;
    // A sign would end the list.
    const auto number = [&](int value) {
        const std::string spelled = writer.integer(value);
        return spelled.front() == '+' ? spelled.substr(1) : spelled;
    };
    for (const Range& range : material.list) {
        text += text.empty() ? "" : ",";
        text += number(range.first);
        if (range.first != range.last || (spelling.numbers && spelling.random.oneIn(3)))
            text.append("-").append(number(range.last));
    }
    return text + material.listEnd;
}

// Only the low eight bits of a number count.
std::string byteText(int value, Spelling& spelling, TextWriter& writer) {
    if (spelling.numbers && spelling.random.oneIn(6))
        value += 256 * spelling.random.between(-2, 2);
    return writer.integer(value);
}

Words numbersOf(const Material& material, const Order& order, Spelling& spelling, TextWriter& writer) {
    Words words;
    const auto add = [&](int value) { words.push_back(byteText(value, spelling, writer)); };
    if (isTexturedKind(material.kind)) {
        add(material.texture);
        for (const std::size_t i : order)
            std::for_each(material.uv[i].begin(), material.uv[i].end(), add);
    }
    if (material.kind == 'C' || material.kind == 'D')
        std::for_each(material.colours[0].begin(), material.colours[0].end(), add);
    if (material.kind == 'G' || material.kind == 'H') {
        for (const std::size_t i : order)
            std::for_each(material.colours[i].begin(), material.colours[i].end(), add);
    }
    // A line of a kind without numbers needs a character behind the kind all the same.
    if (words.empty())
        words.emplace_back(".");
    return words;
}

void addNumber(std::string& bytes, std::size_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i)
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(value >> 8 * i & 0xFFU)));
}

void addBlock(std::string& bytes, const TimBlock& block) {
    addNumber(bytes, 12 + block.dataBytes, 4);
    for (const std::uint16_t value : {block.x, block.y, block.width, block.height})
        addNumber(bytes, value, 2);
    for (std::size_t i = 0; i < block.dataBytes; ++i)
        addNumber(bytes, 37 * i + 11, 1);
}

// What the program may meet between the lines that name textures.
void addSurplusLine(Spelling& spelling, TextWriter& writer) {
    constexpr std::array<const char*, 4> lines = {"TEX[]=no.tim", "tex[0]=no.tim", " NTEX=3",
                                                  "TEX[0] =no.tim"};
    if (spelling.surplus && spelling.random.oneIn(4))
        writer.line(spelling.random.pick(lines));
}

std::string argText(const Words& words) {
    std::string text;
    for (const std::string& word : words)
        text += word + "\n";
    return text;
}

Words slice(const Words& words, const Slice& part) {
    const auto first = words.begin() + static_cast<std::ptrdiff_t>(part.first);
    return {first, first + static_cast<std::ptrdiff_t>(part.count)};
}

void append(Words& words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
}

} // namespace

std::string rsdText(const Object& object, Spelling& spelling) {
    TextWriter writer(spelling);
    writer.fieldsAtOnce({stamp("RSD", object.rsdStamp, writer)});
    writer.fieldsAtOnce({"PLY=" + object.ply.written});
    writer.fieldsAtOnce({"MAT=" + object.mat.written});
    if (object.group)
        writer.fieldsAtOnce({"GRP=" + *object.group});
    const std::size_t names = object.textures.size();
    writer.fieldsAtOnce({"NTEX=" + writer.integer(static_cast<long>(names) + object.surplusTextures)});
    for (std::size_t i = 0; i < names; ++i) {
        addSurplusLine(spelling, writer);
        // The number in the brackets is not used.
        const long number = spelling.surplus ? spelling.random.between(-5, 50) : static_cast<long>(i);
        writer.fieldsAtOnce({"TEX[" + writer.integer(number) + "]=" + object.textures[i].name.written});
    }
    return writer.text();
}

std::string plyText(const Object& object, Spelling& spelling) {
    TextWriter writer(spelling);
    writer.fieldsAtOnce({stamp("PLY", object.plyStamp, writer)});
    Words counts;
    for (const std::size_t count : {object.vertices.size(), object.normals.size(), object.polygons.size()})
        counts.push_back(writer.integer(static_cast<long>(count)));
    writer.fields(counts);
    for (const std::vector<Point>* points : {&object.vertices, &object.normals}) {
        for (const Point& point : *points)
            writer.fields({writer.real(point[0]), writer.real(point[1]), writer.real(point[2])});
    }
    for (const Polygon& polygon : object.polygons) {
        Words words = {writer.hexadecimal(polygon.typeWord)};
        for (const std::array<int, 4>& indices : {polygon.vertices, polygon.normals}) {
            for (const std::size_t i : fileOrder(object))
                words.push_back(writer.integer(indices[i]));
        }
        writer.fields(words);
    }
    return writer.text();
}

std::string matText(const Object& object, Spelling& spelling) {
    TextWriter writer(spelling);
    writer.fieldsAtOnce({stamp("MAT", object.matStamp, writer)});
    writer.fields({writer.integer(static_cast<long>(object.materials.size()))});
    for (const Material& material : object.materials) {
        const std::string list = listText(material, spelling, writer);
        Words words = {list, writer.hexadecimal(material.attr)};
        const Words numbers = numbersOf(material, fileOrder(object), spelling, writer);
        // Single letters need no blank behind them.
        const std::size_t glued = spelling.blanks ? spelling.random.below(4) : 0;
        const std::string shading(1, material.shading);
        const std::string kind(1, material.kind);
        if (glued == 1) {
            append(words, {shading + kind});
            append(words, numbers);
        } else if (glued == 2) {
            append(words, {shading, kind + numbers.front()});
            words.insert(words.end(), numbers.begin() + 1, numbers.end());
        } else {
            append(words, {shading, kind});
            append(words, numbers);
        }
        writer.fields(words);
    }
    return writer.text();
}

std::string timBytes(const Texture& texture) {
    std::string bytes;
    addNumber(bytes, texture.id, 4);
    addNumber(bytes, texture.flags, 4);
    if (hasClut(texture.flags))
        addBlock(bytes, texture.clut);
    addBlock(bytes, texture.image);
    return bytes;
}

std::string projectText(const Project& project) {
    std::string text = "@PRJ" + std::to_string(project.version) + "\n1 second.rsd\n";
    for (const ProjectLine& line : project.lines)
        text += (line.id ? std::to_string(*line.id) + " " : "") + line.text + "\n";
    return text;
}

std::vector<File> filesOf(const Scene& scene, Spelling& spelling) {
    std::vector<File> files;
    for (const Object& object : scene.objects) {
        files.push_back({object.disk, rsdText(object, spelling)});
        files.push_back({object.ply.disk, plyText(object, spelling)});
        files.push_back({object.mat.disk, matText(object, spelling)});
        for (const Texture& texture : object.textures)
            files.push_back({texture.name.disk, timBytes(texture)});
        for (const std::string& decoy : object.decoys)
            files.push_back({decoy, "decoy\n"});
    }
    if (scene.project)
        files.push_back({projectName, projectText(*scene.project)});
    if (scene.inArgFile)
        files.push_back({argName, argText(slice(plainWordsOf(scene), *scene.inArgFile))});
    return files;
}

std::vector<File> filesOf(const Scene& scene) {
    Spelling plain;
    return filesOf(scene, plain);
}

Words plainWordsOf(const Scene& scene) {
    Words words;
    for (const Option& option : scene.options)
        append(words, wordsOf(option));
    std::size_t inProject = 0;
    if (scene.project && scene.project->namesInputs) {
        words.emplace_back(projectName);
        for (const ProjectLine& line : scene.project->lines)
            inProject += line.id ? 1 : 0;
    }
    for (std::size_t i = inProject; i < scene.inputs.size(); ++i) {
        const Input& input = scene.inputs[i];
        for (const Option& option : input.before)
            append(words, wordsOf(option));
        words.push_back(input.object ? scene.objects[*input.object].word : input.missing);
    }
    return words;
}

Words wordsOf(const Scene& scene) {
    Words words = plainWordsOf(scene);
    if (!scene.inArgFile)
        return words;
    const auto first = words.begin() + static_cast<std::ptrdiff_t>(scene.inArgFile->first);
    const auto after = words.erase(first, first + static_cast<std::ptrdiff_t>(scene.inArgFile->count));
    words.insert(after, argName);
    return words;
}

Words wordsOf(const Option& option) {
    Words words = {option.name};
    append(words, option.values);
    return words;
}

} // namespace properties
