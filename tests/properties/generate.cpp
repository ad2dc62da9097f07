#include "properties/generate.hpp"

#include "properties/files.hpp"

#include <algorithm>
#include <array>

namespace properties {

namespace {

constexpr std::array<const char*, 14> relativeFactors = {"1",   "2",   "4",    "3",   "0.5",   "0.25", "0.3",
                                                         "1.5", "0.7", ".125", "8.0", "25e-1", "7x",   "+2"};
constexpr std::array<const char*, 12> absoluteFactors = {"1",   "2",    "0.5", "0.1",  "1.7", "-1",
                                                         "100", "3e-1", "0",   "0.01", ".25", "1.0001"};

const std::vector<Stamp> newStamps = {Stamp::current, Stamp::later};

Option makeScaleOrTranslation(Random& random) {
    switch (random.below(3)) {
    case 0:
        return {"-s", {random.pick(relativeFactors)}};
    case 1:
        return {"-sa", {random.pick(absoluteFactors)}};
    default:
        break;
    }
    Option option{"-t", {}};
    for (int i = 0; i < 3; ++i) {
        const int most = random.oneIn(8) ? 40000 : 300;
        option.values.push_back(std::to_string(random.between(-most, most)));
        if (random.oneIn(20))
            option.values.back() += "x"; // not part of the number
    }
    return option;
}

// What stands in front of all names. Options that change how much is said are rarer, since they take time.
std::vector<Option> makeOptions(Random& random) {
    std::vector<Option> options;
    while (options.size() < 5 && random.oneIn(2)) {
        options.push_back(makeScaleOrTranslation(random));
        if (options.back().name == "-s" && random.oneIn(3))
            options.back().name = "-sc";
    }
    constexpr std::array<const char*, 5> outputs = {"out.tmd", "deep/er/model.tmd", "noext", "UP.TMD",
                                                    "./o.bin"};
    if (random.oneIn(2))
        options.push_back({"-o", {random.pick(outputs)}});
    if (random.oneIn(3))
        options.push_back({"-a", {}});
    if (random.oneIn(3))
        options.push_back({"-b", {}});
    if (random.oneIn(4))
        options.push_back({"-v", {}});
    if (random.oneIn(4))
        options.push_back({"-info", {}});
    random.shuffle(options);
    return options;
}

Stamp makeStamp(Random& random) {
    return random.oneIn(4) ? Stamp::old : random.pick(newStamps);
}

Object makeObject(Random& random, const ObjectSizes& sizes, const std::string& base,
                  const std::string& root) {
    Object object;
    object.base = base;
    const std::size_t textures = random.oneIn(60) ? 19 + random.below(4) : random.below(5);
    for (std::size_t i = 0; i < textures; ++i)
        object.textures.push_back(makeTexture(random));
    object.rsdStamp = makeStamp(random);
    object.plyStamp = makeStamp(random);
    object.matStamp = makeStamp(random);
    if (random.oneIn(3))
        object.group = "some.grp";
    if (random.oneIn(15))
        object.surplusTextures = random.between(1, 20);
    nameFiles(random, root, object);
    fillGeometry(random, sizes, object);
    fillMaterials(random, sizes, object);
    return object;
}

// Every object once, some twice, in any order; options and names of missing objects in between.
std::vector<Input> makeInputs(Random& random, std::size_t objects) {
    std::vector<Input> inputs;
    for (std::size_t i = 0; i < objects; ++i) {
        inputs.push_back({{}, i, {}});
        if (random.oneIn(10))
            inputs.push_back({{}, i, {}});
    }
    random.shuffle(inputs);
    if (random.oneIn(20))
        inputs.insert(inputs.begin() + static_cast<std::ptrdiff_t>(random.below(inputs.size() + 1)),
                      {{}, {}, "missing"});
    for (Input& input : inputs) {
        while (input.before.size() < 3 && random.oneIn(4))
            input.before.push_back(makeScaleOrTranslation(random));
    }
    return inputs;
}

std::string wordOf(const Scene& scene, const Input& input) {
    return input.object ? scene.objects[*input.object].word : input.missing;
}

// IDs within and outside of 16 bits, and below zero, which is none.
int makeId(Random& random) {
    return random.oneIn(6) ? random.between(-70000, 70000) : random.between(0, 40);
}

void addNoise(Random& random, Project& project) {
    constexpr std::array<const char*, 5> noise = {"x", "12", "", "# 3 cube", "\t"};
    while (random.oneIn(5))
        project.lines.push_back({{}, random.pick(noise)});
}

// As the first inputs, with entries for some of them in the same order; or behind -id, where the entries are
// any.
Project makeProject(Random& random, Scene& scene) {
    Project project;
    constexpr std::array<int, 6> versions = {940331, 940400, 940401, 940401, 940402, 961231};
    project.version = random.pick(versions);
    project.namesInputs = random.oneIn(2);
    std::size_t count = 1 + random.below(scene.inputs.size());
    if (!project.namesInputs)
        count = random.below(2 * scene.inputs.size() + 1);
    for (std::size_t i = 0; i < count; ++i) {
        const Input& input = project.namesInputs ? scene.inputs[i] : random.pick(scene.inputs);
        addNoise(random, project);
        const int id = makeId(random);
        project.lines.push_back({id, wordOf(scene, input)});
    }
    addNoise(random, project);
    // Nothing can stand between the names that it stands for, nor the project behind an option.
    for (std::size_t i = 0; project.namesInputs && i < count; ++i)
        scene.inputs[i].before.clear();
    if (!project.namesInputs)
        scene.options.insert(scene.options.begin(), {"-id", {projectName}});
    return project;
}

} // namespace

// A name of a project is one on the command line only, unless it stands behind an -id there.
Slice makeSlice(Random& random, const Scene& scene) {
    const Words words = plainWordsOf(scene);
    const auto isName = [&](std::size_t i) {
        return words[i] == projectName && (i == 0 || words[i - 1] != "-id");
    };
    const auto endsInId = [&](std::size_t end) { return end > 0 && words[end - 1] == "-id"; };
    Slice slice;
    slice.first = random.below(words.size());
    while (slice.first < words.size() && (isName(slice.first) || endsInId(slice.first)))
        ++slice.first;
    std::size_t end = slice.first;
    const std::size_t most = random.oneIn(3) ? words.size() : slice.first + random.below(6);
    while (end < std::min(most, words.size()) && !isName(end))
        ++end;
    slice.count = end - slice.first - (endsInId(end) ? 1 : 0);
    return slice;
}

Scene makeScene(std::uint64_t seed, std::size_t number, const std::string& root) {
    Random random(seed * 0x10000001 + number);
    Scene scene;
    scene.root = root;
    std::vector<ObjectSizes> sizes(random.oneIn(3) ? 1 : 2 + random.below(3));
    int most = 0;
    for (ObjectSizes& each : sizes) {
        each = makeSizes(random);
        most = std::max(most, each.polygons);
    }
    constexpr std::array<const char*, 4> names = {"cube", "lamp", "a", "x-1_"};
    for (ObjectSizes& each : sizes) {
        each.mostPolygons = most;
        const std::string base = random.pick(names) + std::to_string(scene.objects.size());
        scene.objects.push_back(makeObject(random, each, base, root));
    }
    scene.options = makeOptions(random);
    scene.inputs = makeInputs(random, scene.objects.size());
    if (random.oneIn(3))
        scene.project = makeProject(random, scene);
    if (random.oneIn(6))
        scene.inArgFile = makeSlice(random, scene);
    return scene;
}

} // namespace properties
