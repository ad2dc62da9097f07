// Converts real models, each alone and all in one file, and lets the TMD reader judge the result.
// The models are no part of this project: they stand in the folder named by the environment
// (VEXBIND_MODELS) or by the build, and without it these tests are skipped.
#include "runner/run_case.hpp"
#include "support/tmd_reader.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

// The models without textures.
const Words models = {"spotold", "spothi", "boat"};

// The options under which the same TMD has to come out.
const std::vector<Words> variants = {{}, {"-v"}, {"-info"}, {"-v", "-info"}};

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

std::string modelsFolder() {
    const char* named = std::getenv("VEXBIND_MODELS");
    return named == nullptr ? VEXBIND_MODELS_DIR : named;
}

std::string modelFile(const std::string& model, const std::string& extension) {
    return (fs::absolute(modelsFolder()) / model / (model + extension)).lexically_normal().string();
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

// The second line of a PLY file.
Counts plyCounts(const std::string& model) {
    const Words lines = countingLines(modelFile(model, ".ply"));
    Counts counts;
    std::istringstream(lines.size() < 2 ? "" : lines[1]) >> counts.vertices >> counts.normals >>
        counts.polygons;
    return counts;
}

// Whether every material is a colour (C) or a gradation (G), so that no texture is needed.
bool isUntextured(const std::string& model) {
    const Words lines = countingLines(modelFile(model, ".mat"));
    for (std::size_t i = 2; i < lines.size(); ++i) {
        std::istringstream words(lines[i]);
        std::string list;
        std::string attribute;
        std::string shading;
        std::string kind;
        words >> list >> attribute >> shading >> kind;
        if (kind != "C" && kind != "G")
            return false;
    }
    return lines.size() > 2;
}

std::string modelName(const testing::TestParamInfo<std::string>& info) {
    return info.param;
}

class RealModels : public testing::Test {
  protected:
    void SetUp() override {
        if (!fs::is_directory(modelsFolder())) {
            GTEST_SKIP() << "no folder of models: " << modelsFolder() << " (set VEXBIND_MODELS to one)";
        }
        directory = makeFreshDirectory();
        ASSERT_NE(directory, "");
    }

    void TearDown() override {
        if (!directory.empty())
            removeFreshDirectory(directory);
    }

    std::string directory;
};

class RealModel : public RealModels, public testing::WithParamInterface<std::string> {};

// Converts the models into one TMD in `directory` and gives its bytes; empty after a failed run.
std::string convert(const std::string& directory, const Words& names, const Words& options) {
    Words words = options;
    words.insert(words.end(), {"-o", directory + "/out.tmd"});
    for (const std::string& name : names)
        words.push_back(modelFile(name, ".rsd"));
    Command command = commandFromEnvironment(VEXBIND_PROGRAM);
    command.limit = std::chrono::seconds(300);
    fs::remove(directory + "/out.tmd");
    const Outcome outcome =
        runProgram(command, words, directory, directory + "/stdout", directory + "/stderr");
    const std::string errors = readWholeFile(directory + "/stderr");
    EXPECT_EQ(describeOutcome(outcome), "exit status 0") << errors.substr(0, 2000);
    const bool quiet = options.empty();
    EXPECT_EQ(fs::file_size(directory + "/stdout") == 0, quiet) << "text on stdout with -v or -info only";
    return outcome.status == 0 ? readWholeFile(directory + "/out.tmd") : "";
}

TmdFile readText(const std::string& bytes) {
    return readTmd({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
}

// The TMD of a conversion, the same under every variant of the options and without a complaint.
TmdFile convertInEveryWay(const std::string& directory, const Words& names) {
    const std::string plain = convert(directory, names, {});
    for (const Words& options : variants) {
        // Not EXPECT_EQ, which would print both files.
        EXPECT_TRUE(plain == convert(directory, names, options)) << testing::PrintToString(options);
    }
    TmdFile file = readText(plain);
    const std::size_t shown = std::min<std::size_t>(file.complaints.size(), 20);
    for (std::size_t i = 0; i < shown; ++i)
        ADD_FAILURE() << file.complaints[i];
    EXPECT_EQ(file.complaints.size(), 0U);
    EXPECT_EQ(file.objects.size(), names.size());
    return file;
}

void expectCounts(const TmdObject& object, const std::string& model) {
    EXPECT_GT(object.nPrimitive, 0U);
    EXPECT_EQ((Counts{object.nVert, object.nNormal, object.nPrimitive}), plyCounts(model));
    EXPECT_EQ(object.packets.size(), object.nPrimitive);
    EXPECT_EQ(object.vertices.size(), object.nVert);
    EXPECT_EQ(object.normals.size(), object.nNormal);
    EXPECT_EQ(object.scale, 0);
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

TEST_P(RealModel, ConvertsAlone) {
    ASSERT_TRUE(isUntextured(GetParam()));
    const TmdFile file = convertInEveryWay(directory, {GetParam()});
    ASSERT_EQ(file.objects.size(), 1U);
    expectCounts(file.objects[0], GetParam());
}

INSTANTIATE_TEST_SUITE_P(, RealModel, testing::ValuesIn(models), modelName);

TEST_F(RealModels, ConvertTogether) {
    const TmdFile together = convertInEveryWay(directory, models);
    ASSERT_EQ(together.objects.size(), models.size());
    for (std::size_t k = 0; k < models.size(); ++k) {
        SCOPED_TRACE(models[k]);
        expectCounts(together.objects[k], models[k]);
        const TmdFile alone = readText(convert(directory, {models[k]}, {}));
        ASSERT_EQ(alone.objects.size(), 1U);
        expectSameObject(alone.objects[0], together.objects[k]);
    }
}

// In this order each model follows another one, so that bytes left from its packets are met.
TEST_F(RealModels, ConvertTogetherInReverse) {
    const Words reversed(models.rbegin(), models.rend());
    const TmdFile together = convertInEveryWay(directory, reversed);
    ASSERT_EQ(together.objects.size(), reversed.size());
    for (std::size_t k = 0; k < reversed.size(); ++k)
        expectCounts(together.objects[k], reversed[k]);
}

} // namespace
