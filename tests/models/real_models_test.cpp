// Converts real models, each alone, all in one file and a whole project, in every target layout. The TMD
// reader judges the result; the mode, the flag and the texture codes of every packet are worked out here
// from the model's own files.
// The models are no part of this project: VEXBIND_MODELS in the environment names their folder, and without
// it these tests are skipped. A folder NAME in it is a model when it holds NAME.rsd, and a project when
// NAME.prj; the objects of a project stand in its folder rsd.
#include "runner/run_case.hpp"
#include "support/tmd_reader.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

// The options under which the same TMD has to come out.
const std::vector<Words> variants = {{}, {"-v"}, {"-info"}, {"-v", "-info"}};

enum class Layout { standard, optionA, optionB };

const std::array<Layout, 3> layouts = {Layout::standard, Layout::optionA, Layout::optionB};

Words layoutOption(Layout layout) {
    if (layout == Layout::standard)
        return {};
    return {layout == Layout::optionA ? "-a" : "-b"};
}

std::string layoutName(Layout layout) {
    return layout == Layout::standard ? "standard" : layoutOption(layout)[0].substr(1);
}

struct Counts {
    std::uint32_t vertices = 0;
    std::uint32_t normals = 0;
    std::uint32_t polygons = 0;

    bool operator==(const Counts&) const = default;
};

void PrintTo(const Counts& counts, std::ostream* out) {
    *out << counts.vertices << " vertices, " << counts.normals << " normals, " << counts.polygons
         << " polygons";
}

// The header of a TIM file, as far as a place in the frame buffer follows from it.
struct Tim {
    unsigned pmode = 0;
    unsigned clutX = 0;
    unsigned clutY = 0;
    unsigned imageX = 0;
    unsigned imageY = 0;
};

// What the files say of one polygon. One that no MAT line names is white: these are its values.
struct Polygon {
    unsigned type = 0;
    unsigned attr = 0;
    char shading = 'F';
    char kind = 'C';
    std::size_t texture = 0;
};

// A model as this test reads it.
struct Model {
    std::string base; // its files without their extensions
    Counts counts;
    std::vector<Polygon> polygons;
    std::vector<Tim> textures;
};

std::string modelsFolder() {
    const char* named = std::getenv("VEXBIND_MODELS");
    std::error_code none; // an empty name is no folder
    return fs::absolute(named == nullptr ? "" : named, none).lexically_normal().string();
}

// The folders of models that hold a file of their own name with this extension, in order.
Words foldersWith(const std::string& extension) {
    Words names;
    std::error_code none;
    for (const fs::directory_entry& entry : fs::directory_iterator(modelsFolder(), none)) {
        const std::string name = entry.path().filename().string();
        if (fs::exists(entry.path() / (name + extension)))
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

// The lines of a text input that count: no empty lines, no comments.
Words countingLines(const std::string& path) {
    Words lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.front() != '#')
            lines.push_back(line);
    }
    return lines;
}

unsigned numberAt(const std::string& bytes, std::size_t at, std::size_t size) {
    unsigned number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number |= static_cast<unsigned>(static_cast<unsigned char>(bytes.at(at + i))) << 8 * i;
    return number;
}

// The header words, then the block of the CLUT if there is one, then that of the image: a length with itself
// counted, x, y, width, height, data.
Tim readTim(const std::string& path) {
    const std::string bytes = readWholeFile(path);
    Tim tim;
    EXPECT_EQ(numberAt(bytes, 0, 4) & 0x10U, 0x10U) << path;
    tim.pmode = numberAt(bytes, 4, 4) & 0xFFU;
    std::size_t at = 8;
    if ((tim.pmode & 8U) != 0 || tim.pmode < 2) {
        tim.clutX = numberAt(bytes, at + 4, 2);
        tim.clutY = numberAt(bytes, at + 6, 2);
        at += numberAt(bytes, at, 4);
    }
    tim.imageX = numberAt(bytes, at + 4, 2);
    tim.imageY = numberAt(bytes, at + 6, 2);
    EXPECT_EQ(at + numberAt(bytes, at, 4), bytes.size()) << path;
    return tim;
}

unsigned clutCode(const Tim& tim) {
    return tim.clutX / 16 % 64 + tim.clutY * 64;
}

unsigned pageCode(const Tim& tim, Layout layout) {
    const unsigned x = tim.imageX / 64;
    const unsigned y = tim.imageY / 256;
    if (layout == Layout::optionA)
        return x % 32 + y % 4 * 32 + tim.pmode % 4 * 512;
    const unsigned code = x % 16 + y % 2 * 16 + tim.pmode % 4 * 128;
    return layout == Layout::optionB ? code + y / 2 % 2 * 2048 : code;
}

// The second line has the counts; the type of a polygon is the first word of its line.
void readPly(const std::string& path, Model& model) {
    const Words lines = countingLines(path);
    ASSERT_GE(lines.size(), 2U) << path;
    Counts& counts = model.counts;
    std::istringstream(lines[1]) >> counts.vertices >> counts.normals >> counts.polygons;
    const std::size_t first = 2U + counts.vertices + counts.normals;
    ASSERT_EQ(lines.size(), first + counts.polygons) << path;
    for (std::size_t i = first; i < lines.size(); ++i) {
        Polygon polygon;
        std::istringstream(lines[i]) >> std::hex >> polygon.type;
        model.polygons.push_back(polygon);
    }
}

// Gives the polygons of a list such as "0-3,8" the values of their MAT line; their types stay.
void assign(const std::string& list, const Polygon& values, Model& model) {
    std::istringstream items(list);
    for (std::string item; std::getline(items, item, ',');) {
        const std::size_t dash = item.find('-');
        const std::size_t from = std::stoul(item);
        const std::size_t to = dash == std::string::npos ? from : std::stoul(item.substr(dash + 1));
        for (std::size_t k = from; k <= to; ++k) {
            const unsigned type = model.polygons.at(k).type;
            model.polygons[k] = values;
            model.polygons[k].type = type;
        }
    }
}

void readMat(const std::string& path, Model& model) {
    const Words lines = countingLines(path);
    ASSERT_GE(lines.size(), 2U) << path;
    ASSERT_EQ(lines.size(), 2U + std::stoul(lines[1])) << path;
    for (std::size_t i = 2; i < lines.size(); ++i) {
        std::string list;
        Polygon values;
        std::istringstream words(lines[i]);
        words >> list >> std::hex >> values.attr >> std::dec >> values.shading >> values.kind >>
            values.texture;
        ASSERT_TRUE(words) << path << ": " << lines[i];
        assign(list, values, model);
    }
}

// A texture stands beside the RSD file or in the folder tim next to it.
void readTextures(const std::string& rsd, Model& model) {
    for (const std::string& line : countingLines(rsd)) {
        if (!line.starts_with("TEX["))
            continue;
        const fs::path folder = fs::path(rsd).parent_path();
        const std::string name = line.substr(line.find('=') + 1);
        const bool beside = fs::exists(folder / name);
        model.textures.push_back(readTim((beside ? folder / name : folder / "../tim" / name).string()));
    }
}

Model readModel(const std::string& base) {
    Model model;
    model.base = base;
    readPly(base + ".ply", model);
    readMat(base + ".mat", model);
    readTextures(base + ".rsd", model);
    return model;
}

Model readModelNamed(const std::string& name) {
    return readModel(modelsFolder() + "/" + name + "/" + name);
}

std::vector<Model> readAllModels() {
    std::vector<Model> all;
    for (const std::string& name : foldersWith(".rsd"))
        all.push_back(readModelNamed(name));
    return all;
}

bool isTextured(const Polygon& polygon) {
    return polygon.kind == 'T' || polygon.kind == 'D' || polygon.kind == 'H';
}

// Without light the kind decides, not the letter of the shading.
bool isGouraud(const Polygon& polygon) {
    if ((polygon.attr & 1U) == 0)
        return polygon.shading == 'G';
    return polygon.kind == 'G' || polygon.kind == 'H';
}

unsigned expectedMode(const Polygon& polygon) {
    return 0x20U | (isGouraud(polygon) ? 0x10U : 0U) | (polygon.type == 1 ? 0x08U : 0U) |
           (isTextured(polygon) ? 0x04U : 0U) | ((polygon.attr & 4U) != 0 ? 0x02U : 0U) | (polygon.attr & 1U);
}

unsigned expectedFlag(const Polygon& polygon) {
    const bool gradation = polygon.kind == 'G' && (polygon.attr & 1U) == 0;
    return (polygon.attr & 3U) | (gradation ? 4U : 0U);
}

// The two codes of a textured packet.
std::pair<unsigned, unsigned> expectedCodes(const Polygon& polygon, const Model& model, Layout layout) {
    const Tim& tim = model.textures.at(polygon.texture);
    const bool translucent = (polygon.attr & 4U) != 0;
    const unsigned rate = translucent ? polygon.attr >> 3U & 3U : 0U;
    const unsigned merged = rate << (layout == Layout::optionA ? 7U : 5U);
    return {clutCode(tim), pageCode(tim, layout) | merged};
}

void expectObject(const TmdObject& object, const Model& model, Layout layout) {
    SCOPED_TRACE(model.base);
    EXPECT_EQ((Counts{object.nVert, object.nNormal, object.nPrimitive}), model.counts);
    EXPECT_EQ(object.vertices.size(), object.nVert);
    EXPECT_EQ(object.normals.size(), object.nNormal);
    EXPECT_EQ(object.scale, 0);
    EXPECT_FALSE(model.polygons.empty());
    ASSERT_EQ(object.packets.size(), model.polygons.size());
    for (std::size_t i = 0; i < object.packets.size(); ++i) {
        const TmdPacket& packet = object.packets[i];
        const Polygon& polygon = model.polygons[i];
        ASSERT_EQ(packet.mode, expectedMode(polygon)) << "packet " << i;
        ASSERT_EQ(packet.flag, expectedFlag(polygon)) << "packet " << i;
        if (isTextured(polygon)) {
            ASSERT_EQ(std::make_pair(unsigned{packet.cba}, unsigned{packet.tsb}),
                      expectedCodes(polygon, model, layout))
                << "packet " << i;
        }
    }
}

void expectFile(const TmdFile& file, const std::vector<Model>& expected, Layout layout) {
    const std::size_t shown = std::min<std::size_t>(file.complaints.size(), 20);
    for (std::size_t i = 0; i < shown; ++i)
        ADD_FAILURE() << file.complaints[i];
    EXPECT_EQ(file.complaints.size(), 0U);
    ASSERT_EQ(file.objects.size(), expected.size());
    for (std::size_t k = 0; k < expected.size(); ++k)
        expectObject(file.objects[k], expected[k], layout);
}

// Equal in every byte that is not left from packets before.
bool equalButStale(TmdPacket a, TmdPacket b) {
    if (a.stale != b.stale)
        return false;
    for (const std::size_t at : a.stale)
        a.bytes[at] = b.bytes[at];
    return a.bytes == b.bytes;
}

void expectSameObject(const TmdObject& alone, const TmdObject& together) {
    EXPECT_EQ(alone.scale, together.scale);
    EXPECT_TRUE(alone.vertices == together.vertices);
    EXPECT_TRUE(alone.normals == together.normals);
    ASSERT_EQ(alone.packets.size(), together.packets.size());
    for (std::size_t i = 0; i < alone.packets.size(); ++i) {
        ASSERT_TRUE(equalButStale(alone.packets[i], together.packets[i])) << "packet " << i;
    }
}

std::size_t occurrences(const std::string& text, const std::string& wanted) {
    std::size_t count = 0;
    for (std::size_t at = text.find(wanted); at != std::string::npos; at = text.find(wanted, at + 1))
        ++count;
    return count;
}

Words joined(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

Words rsdNames(const std::vector<Model>& chosen) {
    Words names;
    for (const Model& model : chosen)
        names.push_back(model.base + ".rsd");
    return names;
}

// Every stamp of 940101 is warned about once; nothing else in the models is.
std::size_t expectedWarnings(const std::vector<Model>& chosen) {
    std::size_t warnings = 0;
    for (const Model& model : chosen) {
        warnings += countingLines(model.base + ".ply").at(0) == "@PLY940101" ? 1 : 0;
        warnings += countingLines(model.base + ".mat").at(0) == "@MAT940101" ? 1 : 0;
    }
    return warnings;
}

// Into new directories, which can be written to even where those of the originals cannot.
void copyFiles(const fs::path& from, const fs::path& to) {
    fs::create_directory(to);
    for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
        const fs::path copy = to / entry.path().filename();
        if (entry.is_directory()) {
            copyFiles(entry.path(), copy);
        } else {
            fs::copy_file(entry.path(), copy);
        }
    }
}

class RealModels : public testing::Test {
  protected:
    void SetUp() override {
        if (foldersWith(".rsd").empty()) {
            GTEST_SKIP() << "VEXBIND_MODELS names no folder of models";
        }
        directory = makeFreshDirectory();
        ASSERT_NE(directory, "");
        start = directory;
    }

    void TearDown() override {
        if (!directory.empty())
            removeFreshDirectory(directory);
    }

    // Converts in the start directory and gives the bytes of the TMD; empty after a failed run.
    [[nodiscard]] std::string convert(const Words& inputs, const Words& options) const {
        const std::string output = directory + "/out.tmd";
        const Words words = joined(joined(options, {"-o", output}), inputs);
        Command command = commandFromEnvironment(VEXBIND_PROGRAM);
        command.limit = std::chrono::seconds(300);
        fs::remove(output);
        const Outcome outcome = runProgram(command, words, start, standardOutput(), standardError());
        EXPECT_EQ(describeOutcome(outcome), "exit status 0")
            << readWholeFile(standardError()).substr(0, 2000);
        return outcome.status == 0 ? readWholeFile(output) : "";
    }

    // The TMD of a conversion, the same under every variant of the options.
    [[nodiscard]] TmdFile convertInEveryWay(const Words& inputs, Layout layout, std::size_t warnings) const {
        std::string first;
        for (const Words& variant : variants) {
            SCOPED_TRACE(testing::PrintToString(variant));
            const std::string bytes = convert(inputs, joined(layoutOption(layout), variant));
            if (variant.empty())
                first = bytes;
            // Not EXPECT_EQ, which would print both files.
            EXPECT_TRUE(bytes == first);
            EXPECT_EQ(fs::file_size(standardOutput()) == 0, variant.empty());
            EXPECT_EQ(occurrences(readWholeFile(standardError()), "WARNING: "), warnings);
        }
        return readTmd({reinterpret_cast<const unsigned char*>(first.data()), first.size()});
    }

    [[nodiscard]] TmdFile convertModels(const std::vector<Model>& chosen, Layout layout) const {
        TmdFile file = convertInEveryWay(rsdNames(chosen), layout, expectedWarnings(chosen));
        expectFile(file, chosen, layout);
        return file;
    }

    [[nodiscard]] std::string standardOutput() const { return directory + "/stdout"; }
    [[nodiscard]] std::string standardError() const { return directory + "/stderr"; }

    std::string directory;
    std::string start; // where the program starts
};

using ModelAndLayout = std::tuple<std::string, Layout>;

class RealModel : public RealModels, public testing::WithParamInterface<ModelAndLayout> {};
class RealModelsIn : public RealModels, public testing::WithParamInterface<Layout> {
  protected:
    void convertProject(const std::string& project);
};

TEST_P(RealModel, ConvertsAlone) {
    const auto& [name, layout] = GetParam();
    static_cast<void>(convertModels({readModelNamed(name)}, layout));
}

TEST_P(RealModelsIn, ConvertTogether) {
    const std::vector<Model> all = readAllModels();
    const TmdFile together = convertModels(all, GetParam());
    ASSERT_EQ(together.objects.size(), all.size());
    for (std::size_t k = 0; k < all.size(); ++k) {
        SCOPED_TRACE(all[k].base);
        const std::string bytes = convert(rsdNames({all[k]}), layoutOption(GetParam()));
        const TmdFile alone = readTmd({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
        ASSERT_EQ(alone.objects.size(), 1U);
        expectSameObject(alone.objects[0], together.objects[k]);
    }
}

// In this order each model follows another one, so that bytes left from its packets are met.
TEST_P(RealModelsIn, ConvertTogetherInReverse) {
    std::vector<Model> all = readAllModels();
    std::reverse(all.begin(), all.end());
    static_cast<void>(convertModels(all, GetParam()));
}

// Each project in a directory of its own, since the ID list is written there.
TEST_P(RealModelsIn, ConvertAsProject) {
    for (const std::string& project : foldersWith(".prj"))
        convertProject(project);
}

void RealModelsIn::convertProject(const std::string& project) {
    start = directory + "/" + project;
    copyFiles(modelsFolder() + "/" + project, start);
    std::vector<Model> objects;
    std::string list = "int out_list[] = {\n";
    const Words lines = countingLines(start + "/" + project + ".prj");
    for (std::size_t i = 2; i < lines.size(); ++i) {
        int id = 0;
        std::string rsd;
        std::istringstream(lines[i]) >> id >> rsd;
        const std::string name = fs::path(rsd).stem().string();
        objects.push_back(readModel(start + "/rsd/" + name));
        list.append("\t").append(std::to_string(id)).append(",\t/* " + name + " */\n");
    }
    list += "};\n";
    EXPECT_FALSE(objects.empty());
    const TmdFile file = convertInEveryWay({project + ".prj"}, GetParam(), expectedWarnings(objects));
    expectFile(file, objects, GetParam());
    const std::string written = readWholeFile(start + "/out.h");
    EXPECT_EQ(written.substr(written.size() - std::min(written.size(), list.size())), list);
}

std::string modelName(const testing::TestParamInfo<ModelAndLayout>& info) {
    return std::get<0>(info.param) + "_" + layoutName(std::get<1>(info.param));
}

std::string nameOfLayout(const testing::TestParamInfo<Layout>& info) {
    return layoutName(info.param);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RealModel);
INSTANTIATE_TEST_SUITE_P(, RealModel,
                         testing::Combine(testing::ValuesIn(foldersWith(".rsd")), testing::ValuesIn(layouts)),
                         modelName);
INSTANTIATE_TEST_SUITE_P(, RealModelsIn, testing::ValuesIn(layouts), nameOfLayout);

} // namespace
