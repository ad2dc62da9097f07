// Every scene is converted, and the TMD, all texts and the list of IDs are what its description says.
#include "properties/expect.hpp"
#include "properties/format.hpp"
#include "properties/runs.hpp"

#include <algorithm>
#include <array>
#include <ctime>
#include <set>

#include <gtest/gtest.h>

namespace properties {
namespace {

std::string noticeOf(const Ending& ending) {
    return ending.errors.substr(0, ending.errors.find('\n') + 1);
}

std::string localTime(std::time_t time) {
    const std::tm* parts = std::localtime(&time);
    return format("%02d:%02d %02d/%02d/%02d", parts->tm_hour, parts->tm_min, parts->tm_mon + 1,
                  parts->tm_mday, parts->tm_year);
}

// The list with "{time}" in the place of its time, when that is one of the two.
std::string withoutTime(const std::string& list, std::time_t start, std::time_t end) {
    for (const std::string& time : {localTime(start), localTime(end)}) {
        const std::size_t at = list.find(") at " + time + "\n");
        if (at != std::string::npos)
            return std::string(list).replace(at + 5, time.size(), "{time}");
    }
    return list;
}

// The names of the outputs as a listing of the directory has them.
Words outputsOf(const Expected& expected) {
    const std::string& output = expected.settings.output;
    std::set<std::string> names = {output.starts_with("./") ? output.substr(2) : output};
    if (expected.settings.idList)
        names.insert(idListName(expected));
    return {names.begin(), names.end()};
}

TEST(Loop, FilesAndTextsAreAsDescribed) {
    forAllScenes([](SceneTest& test) {
        const std::time_t start = std::time(nullptr);
        const Result result = test.convert(test.scene);
        const std::time_t end = std::time(nullptr);
        if (!test.expectSuccess(result))
            return;
        const Expected expected = expect(test.scene);
        const std::string difference = findDifference(readResult(result), expected);
        if (!difference.empty())
            test.fail(difference);
        const std::string notice = noticeOf(result.ending);
        test.expectText("the standard error", result.ending.errors,
                        expectedErrors(test.scene, expected, notice));
        if (!expected.settings.info || expected.isClosed())
            test.expectText("the standard output", result.ending.output,
                            expectedOutput(test.scene, expected));
        if (expected.settings.idList)
            test.expectText("the ID list", withoutTime(result.idList.value_or(""), start, end),
                            expectedIdList(expected, notice));
        if (test.newFiles() != outputsOf(expected))
            test.fail("the files left are " + testing::PrintToString(test.newFiles()));
    });
}

// Notes of a scene what it has of the things below.
class Inventory {
  public:
    void take(const Scene& scene, const Expected& expected) {
        const Settings& settings = expected.settings;
        note(format("target %d", settings.target));
        noteIf(settings.verbose, "-v");
        noteIf(settings.info, "-info");
        noteIf(scene.inArgFile.has_value(), "ARG file");
        noteIf(scene.project && scene.project->namesInputs, "project");
        noteIf(scene.project && !scene.project->namesInputs, "-id");
        noteIf(expected.objects.size() > 2, "three objects");
        noteIf(expected.scale != 1, "scale");
        for (const Input& input : scene.inputs) {
            noteIf(!input.object, "missing object");
            noteIf(!input.before.empty(), "options between names");
        }
        for (const Object& object : scene.objects)
            takeObject(object);
        for (const ExpectedObject& object : expected.objects)
            takeExpected(object);
    }

    [[nodiscard]] const std::set<std::string>& all() const { return notes; }

  private:
    void note(const std::string& what) { notes.insert(what); }

    void noteIf(bool has, const char* what) {
        if (has)
            note(what);
    }

    void takeObject(const Object& object) {
        noteIf(object.plyStamp == Stamp::old, "old PLY");
        noteIf(object.matStamp == Stamp::old, "old MAT");
        noteIf(object.surplusTextures > 0, "missing textures");
        noteIf(object.textures.size() > 20, "many textures");
        noteIf(object.vertices.size() > 256 && object.normals.size() > 256, "indices of two bytes");
        noteIf(object.normals.empty() && !object.polygons.empty(), "no normals");
        noteIf(object.polygons.empty(), "no polygons");
        noteIf(toLower(object.disk) != toLower(object.word) && object.disk.starts_with("rsd/"),
               "found in rsd");
        noteIf(object.ply.shown != object.ply.written, "name of another case");
        for (const Texture& texture : object.textures) {
            note(format("pixel mode %u", texture.flags & 0xFU));
            noteIf(texture.name.shown.starts_with("../TIM/"), "found in ../TIM");
            noteIf(texture.name.shown.starts_with("../tim/"), "found in ../tim");
        }
        for (const Material& material : object.materials) {
            note(format("kind %c", material.kind));
            for (const Range& range : material.list)
                noteIf(range.last >= static_cast<int>(object.polygons.size()), "foreign polygon");
        }
    }

    void takeExpected(const ExpectedObject& object) {
        noteIf(object.usesWhite, "white");
        noteIf(object.inheritsGradation, "inherited gradation");
        noteIf(object.id >= 0, "ID");
        noteIf(object.exponent != 0, "exponent");
        for (const std::array<int, 3>& vertex : object.vertices)
            noteIf(wrapped(vertex[0]) != vertex[0], "wrapped coordinate");
        for (const std::array<int, 3>& normal : object.normals)
            noteIf(wrapped(normal[0]) != normal[0], "wrapped normal");
        for (const ExpectedPacket& packet : object.packets) {
            note(format("type %u", packet.type));
            noteIf(packet.attributes.rate == 3 && !packet.uv.empty(), "rate 3");
        }
    }

    std::set<std::string> notes;
};

const std::set<std::string> everything = {
    "target 0",
    "target 1",
    "target 2",
    "-v",
    "-info",
    "ARG file",
    "project",
    "-id",
    "three objects",
    "scale",
    "missing object",
    "options between names",
    "old PLY",
    "old MAT",
    "missing textures",
    "many textures",
    "indices of two bytes",
    "no normals",
    "no polygons",
    "found in rsd",
    "name of another case",
    "pixel mode 0",
    "pixel mode 1",
    "pixel mode 2",
    "pixel mode 3",
    "pixel mode 4",
    "pixel mode 8",
    "pixel mode 9",
    "pixel mode 10",
    "pixel mode 12",
    "found in ../TIM",
    "found in ../tim",
    "kind C",
    "kind G",
    "kind T",
    "kind D",
    "kind H",
    "kind X",
    "kind c",
    "foreign polygon",
    "white",
    "inherited gradation",
    "ID",
    "exponent",
    "wrapped coordinate",
    "wrapped normal",
    "type 0",
    "type 1",
    "type 2",
    "type 3",
    "type 4",
    "type 5",
    "type 6",
    "type 7",
    "rate 3",
};

// A thousand scenes have everything that can be said, and packets of all kinds.
TEST(Loop, ScenesHaveEverything) {
    Inventory inventory;
    Expected all;
    std::vector<Scene> scenes;
    for (std::size_t number = 0; number < 1000; ++number)
        scenes.push_back(makeScene(1, number, "/scene"));
    for (const Scene& scene : scenes) {
        const Expected expected = expect(scene);
        inventory.take(scene, expected);
        all.objects.insert(all.objects.end(), expected.objects.begin(), expected.objects.end());
    }
    EXPECT_EQ(inventory.all(), everything);
    const std::string counters = expectedCounters(all);
    EXPECT_EQ(std::count(counters.begin(), counters.end(), '\n'), 52) << counters;
}

} // namespace
} // namespace properties
