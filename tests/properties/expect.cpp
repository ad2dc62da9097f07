#include "properties/expect.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace properties {

namespace {

// The least e with 2^e not below the factor.
int exponentFor(double factor) {
    int exponent = 0;
    while (std::ldexp(1.0, exponent) < factor)
        ++exponent;
    while (std::ldexp(1.0, exponent - 1) >= factor)
        --exponent;
    return exponent;
}

double realOf(const Words& values) {
    return std::strtod(values.at(0).c_str(), nullptr);
}

// A vertex that raises the largest value is not looked at for the smallest. The file is read twice before
// the values are used, and they are not reset in between.
void boundTwice(ExpectedObject& object) {
    object.largest.fill(-65536);
    object.smallest.fill(65535);
    for (int reading = 0; reading < 2; ++reading) {
        for (const std::array<int, 3>& vertex : object.vertices) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                if (vertex[axis] > object.largest[axis]) {
                    object.largest[axis] = vertex[axis];
                } else if (vertex[axis] < object.smallest[axis]) {
                    object.smallest[axis] = vertex[axis];
                }
            }
        }
    }
}

// Reals are read in single precision.
float singleOf(const Decimal& number) {
    std::string text = std::to_string(std::llabs(number.digits));
    text += "e-" + std::to_string(number.places);
    return std::strtof(((number.digits < 0 ? "-" : "") + text).c_str(), nullptr);
}

double half(float value) {
    return value > 0 ? 0.5 : -0.5;
}

} // namespace

void apply(const Option& option, Settings& settings) {
    const std::string name = toLower(option.name);
    if (name == "-s" || name == "-sc") {
        settings.exponent = exponentFor(realOf(option.values));
        settings.scale = 0;
    } else if (name == "-sa") {
        settings.exponent = 0;
        settings.scale = realOf(option.values);
    } else if (name == "-t") {
        for (std::size_t i = 0; i < 3; ++i)
            settings.translation[i] = std::atoi(option.values.at(i).c_str());
    } else if (name == "-a") {
        settings.target = 1;
    } else if (name == "-b") {
        settings.target = 2;
    } else if (name == "-v") {
        settings.verbose = true;
    } else if (name == "-info") {
        settings.info = true;
    } else if (name == "-o") {
        settings.output = option.values.at(0);
    } else if (name == "-id") {
        settings.idList = true;
    }
}

void fillVectors(double scale, ExpectedObject& object) {
    for (const Point& point : object.object->vertices) {
        std::array<int, 3> vertex{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const float value = singleOf(point[axis]);
            const double moved = half(value) + static_cast<double>(value) * scale + object.translation[axis];
            vertex[axis] = static_cast<int>(std::trunc(moved));
        }
        object.vertices.push_back(vertex);
    }
    for (const Point& point : object.object->normals) {
        std::array<int, 3> normal{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const float value = singleOf(point[axis]);
            normal[axis] = static_cast<int>(std::trunc(static_cast<double>(value) * 4096.0 + half(value)));
        }
        object.normals.push_back(normal);
    }
    boundTwice(object);
}

// Each entry gives its ID to the first object of its name that has none yet, negative IDs being none.
void fillIds(const Project& project, Expected& expected) {
    for (const ProjectLine& line : project.lines) {
        if (!line.id)
            continue;
        const std::string name = toLower(baseOf(line.text));
        const auto found =
            std::find_if(expected.objects.begin(), expected.objects.end(),
                         [&](const auto& each) { return each.id < 0 && toLower(each.name) == name; });
        if (found != expected.objects.end())
            found->id = wrapped(*line.id);
    }
}

int wrapped(int value) {
    const int low = value & 0xFFFF;
    return low < 0x8000 ? low : low - 0x10000;
}

std::size_t ExpectedObject::packetBytes() const {
    std::size_t bytes = 0;
    for (const ExpectedPacket& packet : packets)
        bytes += packet.size;
    return bytes;
}

bool Expected::isClosed() const {
    return std::all_of(objects.begin(), objects.end(), [](const ExpectedObject& object) {
        return std::none_of(object.packets.begin(), object.packets.end(),
                            [](const ExpectedPacket& packet) { return packet.openColours; });
    });
}

Expected expect(const Scene& scene) {
    Expected expected;
    Settings& settings = expected.settings;
    for (const Option& option : scene.options)
        apply(option, settings);
    settings.idList = scene.project.has_value();
    for (const Input& input : scene.inputs) {
        for (const Option& option : input.before)
            apply(option, settings);
        if (!input.object)
            continue;
        ExpectedObject object;
        object.object = &scene.objects[*input.object];
        object.name = baseOf(object.object->word);
        object.exponent = settings.exponent;
        object.translation = settings.translation;
        expected.objects.push_back(object);
    }
    expected.scale = settings.scale;
    if (expected.scale == 0 && !expected.objects.empty())
        expected.scale = std::ldexp(1.0, expected.objects.front().exponent);
    // What is left of the attributes of polygons when the next object's take their places.
    std::vector<bool> gradation;
    for (ExpectedObject& object : expected.objects) {
        fillVectors(expected.scale, object);
        fillPackets(settings.target, gradation, object);
    }
    if (scene.project)
        fillIds(*scene.project, expected);
    return expected;
}

} // namespace properties
