// Objects changed in a way that makes no difference, or one that is known.
#include "properties/expect.hpp"
#include "properties/format.hpp"
#include "properties/runs.hpp"

#include <algorithm>
#include <array>
#include <numeric>

#include <gtest/gtest.h>

namespace properties {
namespace {

// The scene against the scene with other objects that come to the same.
void expectSameObjects(const std::function<void(Object&, Random&)>& change) {
    std::size_t changed = 0;
    const std::size_t scenes = forSomeScenes([&](SceneTest& test) {
        Scene scene = test.scene;
        for (Object& object : scene.objects)
            change(object, test.random);
        if (filesOf(scene) == filesOf(test.scene))
            return;
        ++changed;
        const Result plain = test.convert(test.scene);
        test.expectSame(test.convert(scene), plain);
    });
    expectTelling(changed, scenes);
}

Stamp otherStamp(Stamp stamp, Random& random) {
    if (stamp != Stamp::old)
        return Stamp::old;
    return random.oneIn(2) ? Stamp::current : Stamp::later;
}

// The stamp of the MAT file tells the order of corners in both files; the other stamps tell nothing.
TEST(SameContents, Stamps) {
    expectSameObjects([](Object& object, Random& random) {
        object.matStamp = otherStamp(object.matStamp, random);
        object.plyStamp = otherStamp(object.plyStamp, random);
        object.rsdStamp = otherStamp(object.rsdStamp, random);
    });
}

// All single numbers of a list, in any order.
std::vector<Range> scattered(const std::vector<Range>& list, Random& random) {
    std::vector<Range> numbers;
    for (const Range& range : list) {
        for (int i = range.first; i <= range.last; ++i)
            numbers.push_back({i, i});
    }
    random.shuffle(numbers);
    return numbers;
}

// Whether numbers of the line before are this line's too.
bool isContinued(const std::vector<Material>& materials, std::size_t line) {
    return line + 1 < materials.size() && !hasNumbers(materials[line + 1].kind);
}

TEST(SameContents, PolygonLists) {
    expectSameObjects([](Object& object, Random& random) {
        // Large objects would have too long lists.
        if (object.polygons.size() > 60)
            return;
        for (Material& material : object.materials) {
            material.list = scattered(material.list, random);
            if (material.list.empty())
                material.list.push_back({4, 1});
        }
    });
}

// A line split in two that say the same of a part of its polygons each.
TEST(SameContents, SplitMaterialLines) {
    expectSameObjects([](Object& object, Random& random) {
        std::vector<Material> lines;
        for (const Material& material : object.materials) {
            Material front = material;
            Material back = material;
            front.list.clear();
            back.list.clear();
            for (const Range& range : material.list)
                (random.oneIn(2) ? front : back).list.push_back(range);
            for (Material* part : {&front, &back}) {
                if (part->list.empty())
                    part->list.push_back({1, 0});
                lines.push_back(*part);
            }
        }
        object.materials = lines;
    });
}

// Lines in another order, as long as no polygon is named by both and no line needs the numbers of the other.
TEST(SameContents, OrderOfMaterialLines) {
    expectSameObjects([](Object& object, Random& random) {
        const auto meet = [](const Material& one, const Material& other) {
            return std::any_of(one.list.begin(), one.list.end(), [&](const Range& a) {
                return std::any_of(other.list.begin(), other.list.end(), [&](const Range& b) {
                    return std::max(a.first, b.first) <= std::min(a.last, b.last);
                });
            });
        };
        std::vector<Material>& lines = object.materials;
        for (int exchanges = 0; exchanges < 20 && lines.size() > 1; ++exchanges) {
            const std::size_t at = random.below(lines.size() - 1);
            const bool independent = hasNumbers(lines[at].kind) && hasNumbers(lines[at + 1].kind) &&
                                     !isContinued(lines, at + 1) && !meet(lines[at], lines[at + 1]);
            if (independent)
                std::swap(lines[at], lines[at + 1]);
        }
    });
}

// A line in front whose polygons are all named again.
TEST(SameContents, OverriddenMaterialLine) {
    expectSameObjects([](Object& object, Random& random) {
        Material first;
        first.attr = static_cast<unsigned>(random.below(32));
        first.shading = random.oneIn(2) ? 'G' : 'F';
        first.kind = random.oneIn(2) ? 'G' : 'C';
        for (const Material& material : object.materials)
            first.list.insert(first.list.end(), material.list.begin(), material.list.end());
        if (object.polygons.size() <= 60 && !first.list.empty())
            object.materials.insert(object.materials.begin(), first);
    });
}

// Everything that is read and not used, or not read at all.
TEST(SameContents, UnusedNumbers) {
    expectSameObjects([](Object& object, Random& random) {
        object.group = object.group ? std::nullopt : std::optional<std::string>("other");
        object.surplusTextures = 0;
        for (Texture& texture : object.textures) {
            texture.id ^= static_cast<std::uint32_t>(random.next()) & 0xFFFFFFEFU;
            texture.flags ^= static_cast<std::uint32_t>(random.next()) & 0xFFFFFF00U;
            for (TimBlock* block : {&texture.clut, &texture.image}) {
                block->width = static_cast<std::uint16_t>(random.below(0x10000));
                block->height = static_cast<std::uint16_t>(random.below(0x10000));
                block->dataBytes = random.below(100);
            }
        }
        for (Polygon& polygon : object.polygons) {
            polygon.typeWord ^= static_cast<unsigned>(random.below(0x1000)) << 3U;
            const unsigned type = polygon.typeWord & 7U;
            if (type != 1)
                polygon.vertices[3] = random.between(-9, 100000);
            if (type == 2)
                polygon.vertices[2] = random.between(-9, 100000);
            for (int& index : polygon.normals) {
                if (type == 2 || type == 3)
                    index = random.between(-9, 100000);
            }
        }
        for (Material& material : object.materials)
            material.attr ^= static_cast<unsigned>(random.below(0x1000)) << 5U;
    });
}

// Numbers from 0 in any order.
std::vector<int> shuffledNumbers(std::size_t count, Random& random) {
    std::vector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    random.shuffle(numbers);
    return numbers;
}

// Every item at its new place.
template <typename Items> Items moved(const Items& items, const std::vector<int>& newPlaces) {
    Items result(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        result.at(static_cast<std::size_t>(newPlaces.at(i))) = items[i];
    return result;
}

// Textures in another order, with their numbers. A line of polygons or a kind without numbers can take the
// number of a texture for a colour; objects that have one stay as they are.
TEST(SameContents, OrderOfTextures) {
    expectSameObjects([](Object& object, Random& random) {
        const bool unsuited = std::any_of(object.polygons.begin(), object.polygons.end(),
                                          [](const Polygon& each) { return (each.typeWord & 7U) == 2; }) ||
                              std::any_of(object.materials.begin(), object.materials.end(),
                                          [](const Material& each) { return !hasNumbers(each.kind); });
        if (unsuited)
            return;
        const std::vector<int> newPlaces = shuffledNumbers(object.textures.size(), random);
        object.textures = moved(object.textures, newPlaces);
        for (Material& material : object.materials) {
            if (!newPlaces.empty())
                material.texture = newPlaces[static_cast<std::size_t>(material.texture)];
        }
    });
}

// What a factor takes a coordinate to: the coordinate is the number of units times digits / 10^places.
struct Factor {
    const char* text;
    Decimal unit;
};

constexpr std::array<Factor, 7> factors = {{
    {"0.25", {4, 0}},
    {"0.5", {2, 0}},
    {"2", {5, 1}},
    {"4", {25, 2}},
    {"8", {125, 3}},
    {"0.1", {10, 0}},
    {"12.5", {8, 2}},
}};

struct Scaled {
    Decimal before;
    Decimal after;
};

// A coordinate with its sign the same before and after, where both roundings come to the same.
Scaled makeScaled(const Factor& factor, int translation, Random& random) {
    if (translation <= 0 && random.oneIn(10))
        return {{0, 0}, {translation, 0}};
    const int units = random.between(300, 9000) * (random.oneIn(2) ? 1 : -1);
    return {{units * factor.unit.digits, factor.unit.places}, {units + translation, 0}};
}

// Without any scaling and translation.
void dropScaling(Scene& scene) {
    const auto drop = [](std::vector<Option>& options) {
        std::erase_if(options, [](const Option& each) {
            return each.name == "-s" || each.name == "-sc" || each.name == "-sa" || each.name == "-t";
        });
    };
    drop(scene.options);
    for (Input& input : scene.inputs)
        drop(input.before);
}

TEST(SameContents, ScaledAndTranslatedText) {
    forSomeScenes([](SceneTest& test) {
        Scene scaled = withoutArgFile(test.scene);
        dropScaling(scaled);
        Scene plain = scaled;
        const Factor& factor = test.random.pick(factors);
        std::array<int, 3> translation{};
        Option option{"-t", {}};
        for (int& each : translation) {
            each = test.random.between(-255, 255);
            option.values.push_back(std::to_string(each));
        }
        scaled.options.insert(scaled.options.begin(), {option, {"-sa", {factor.text}}});
        for (std::size_t k = 0; k < plain.objects.size(); ++k) {
            for (std::size_t i = 0; i < plain.objects[k].vertices.size(); ++i) {
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    const Scaled pair = makeScaled(factor, translation[axis], test.random);
                    scaled.objects[k].vertices[i][axis] = pair.before;
                    plain.objects[k].vertices[i][axis] = pair.after;
                }
            }
        }
        const Result before = test.convert(scaled);
        test.expectSame(before, test.convert(plain));
    });
}

// With the table's scale set to 0 in all objects.
std::string withoutScale(const std::string& tmd, std::size_t objects) {
    std::string bytes = tmd;
    for (std::size_t k = 0; k < objects && 12 + 28 * (k + 1) <= bytes.size(); ++k)
        bytes.replace(12 + 28 * k + 24, 4, 4, '\0');
    return bytes;
}

// A power of two is the same factor for both options, except that the table tells the one.
TEST(SameContents, RelativeAndAbsoluteScale) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        dropScaling(scene);
        const std::string factor =
            test.random.pick(std::array<const char*, 6>{"0.125", "0.25", "0.5", "1", "2", "8"});
        scene.options.insert(scene.options.begin(), {"-s", {factor}});
        const Result relative = test.convert(scene);
        scene.options.front().name = "-sa";
        const Result absolute = test.convert(scene);
        if (!test.expectSuccess(relative) || !test.expectSuccess(absolute))
            return;
        const std::size_t objects = readResult(absolute).objects.size();
        test.expectText("the TMD", withoutScale(*relative.tmd, objects), *absolute.tmd);
    });
}

// The bytes of a packet without those that are left from packets before.
std::vector<unsigned char> ownBytes(const TmdPacket& packet) {
    std::vector<unsigned char> bytes = packet.bytes;
    for (const std::size_t at : packet.stale)
        bytes[at] = 0;
    return bytes;
}

void expectSameObject(SceneTest& test, const TmdObject& alone, const TmdObject& together) {
    if (alone.vertices != together.vertices)
        test.fail("the vertices differ");
    if (alone.normals != together.normals)
        test.fail("the normals differ");
    const bool same = std::equal(alone.packets.begin(), alone.packets.end(), together.packets.begin(),
                                 together.packets.end(), [](const TmdPacket& one, const TmdPacket& other) {
                                     return one.stale == other.stale && ownBytes(one) == ownBytes(other);
                                 });
    if (!same)
        test.fail("the packets differ");
}

// Among others, MAT lines may name polygons that the object does not have.
void dropForeignPolygons(Object& object) {
    const int count = static_cast<int>(object.polygons.size());
    for (Material& material : object.materials) {
        for (Range& range : material.list)
            range.last = std::min(range.last, count - 1);
    }
}

// One of the objects, alone. The factor of all objects is fixed by the first; and a polygon without a
// material has the gradation bit of an object before, so that objects with such polygons are left out.
TEST(SameContents, AloneAndTogether) {
    std::size_t compared = 0;
    const std::size_t scenes = forSomeScenes([&](SceneTest& test) {
        const Expected expected = expect(test.scene);
        const std::size_t k = test.random.below(expected.objects.size());
        const ExpectedObject& object = expected.objects[k];
        if (object.inheritsGradation)
            return;
        const Result together = test.convert(test.scene);
        Scene alone = withoutArgFile(test.scene);
        alone.project.reset();
        dropScaling(alone);
        std::erase_if(alone.options, [](const Option& each) { return each.name == "-id"; });
        const auto index = static_cast<std::size_t>(object.object - test.scene.objects.data());
        alone.inputs = {{{{"-sa", {format("%.17g", expected.scale)}}, {"-t", {}}}, index, {}}};
        for (const int each : object.translation)
            alone.inputs[0].before[1].values.push_back(std::to_string(each));
        dropForeignPolygons(alone.objects[index]);
        const Result result = test.convert(alone);
        if (!test.expectSuccess(together) || !test.expectSuccess(result))
            return;
        ++compared;
        expectSameObject(test, readResult(result).objects.at(0), readResult(together).objects.at(k));
    });
    expectTelling(compared, scenes);
}

// Where the vertices and the normals of an object went.
struct Renumbering {
    std::vector<int> vertices;
    std::vector<int> normals;
};

Renumbering renumber(Object& object, Random& random) {
    Renumbering places;
    places.vertices = shuffledNumbers(object.vertices.size(), random);
    places.normals = shuffledNumbers(object.normals.size(), random);
    object.vertices = moved(object.vertices, places.vertices);
    object.normals = moved(object.normals, places.normals);
    const auto follow = [](int& index, const std::vector<int>& newPlaces) {
        const auto at = static_cast<std::size_t>(index);
        if (index >= 0 && at < newPlaces.size())
            index = newPlaces[at];
    };
    for (Polygon& polygon : object.polygons) {
        const std::size_t corners = (polygon.typeWord & 7U) == 3 ? 1 : 4; // behind it, the size of a sprite
        for (std::size_t i = 0; i < 4; ++i) {
            if (i < corners)
                follow(polygon.vertices[i], places.vertices);
            follow(polygon.normals[i], places.normals);
        }
    }
    return places;
}

std::vector<std::uint16_t> followed(std::vector<std::uint16_t> indices, const std::vector<int>& newPlaces) {
    for (std::uint16_t& index : indices)
        index = static_cast<std::uint16_t>(newPlaces.at(index));
    return indices;
}

void expectRenumbered(SceneTest& test, const TmdObject& got, const TmdObject& plain,
                      const Renumbering& places) {
    if (plain.vertices.size() != places.vertices.size() || plain.normals.size() != places.normals.size() ||
        got.packets.size() != plain.packets.size()) {
        test.fail("the file has other numbers of things than the scene");
        return;
    }
    if (got.vertices != moved(plain.vertices, places.vertices) ||
        got.normals != moved(plain.normals, places.normals))
        test.fail("the vertices or the normals differ");
    for (std::size_t i = 0; i < plain.packets.size(); ++i) {
        const TmdPacket& one = got.packets[i];
        const TmdPacket& other = plain.packets[i];
        const bool same = one.mode == other.mode && one.flag == other.flag && one.cba == other.cba &&
                          one.tsb == other.tsb && one.width == other.width && one.height == other.height &&
                          one.vertices == followed(other.vertices, places.vertices) &&
                          one.normals == followed(other.normals, places.normals);
        if (!same)
            test.fail("packet " + std::to_string(i) + " differs");
    }
}

TEST(SameContents, NumbersOfVerticesAndNormals) {
    forSomeScenes([](SceneTest& test) {
        const Result plain = test.convert(test.scene);
        Scene scene = test.scene;
        std::vector<Renumbering> places;
        for (Object& object : scene.objects)
            places.push_back(renumber(object, test.random));
        const Result result = test.convert(scene);
        if (!test.expectSuccess(plain) || !test.expectSuccess(result))
            return;
        const TmdFile one = readResult(result);
        const TmdFile other = readResult(plain);
        std::size_t k = 0;
        for (const Input& input : scene.inputs) {
            if (!input.object)
                continue;
            expectRenumbered(test, one.objects.at(k), other.objects.at(k), places[*input.object]);
            ++k;
        }
    });
}

} // namespace
} // namespace properties
