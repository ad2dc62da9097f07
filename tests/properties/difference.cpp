// Compares what the reader finds in a file with what was worked out. The reader itself complains about the
// bytes that are the same in all packets of a kind and about those that are left from packets before.
#include "properties/expect.hpp"

#include <algorithm>

namespace properties {

namespace {

template <typename Numbers> std::string listed(const Numbers& numbers) {
    std::string text;
    for (const auto& number : numbers)
        text.append(text.empty() ? "" : " ").append(std::to_string(number));
    return text;
}

// Collects the first difference.
class Comparison {
  public:
    void scope(const std::string& name) { place = name; }

    void same(const char* what, long long got, long long wanted) {
        if (got != wanted)
            report(what, std::to_string(got), std::to_string(wanted));
    }

    template <typename Got, typename Wanted>
    void sameList(const char* what, const Got& got, const Wanted& wanted) {
        const bool equal = std::equal(got.begin(), got.end(), wanted.begin(), wanted.end(),
                                      [](long long a, long long b) { return a == b; });
        if (!equal)
            report(what, listed(got), listed(wanted));
    }

    [[nodiscard]] const std::string& result() const { return first; }

  private:
    void report(const char* what, const std::string& got, const std::string& wanted) {
        if (first.empty())
            first = place + what + " is " + got + ", expected " + wanted;
    }

    std::string place;
    std::string first;
};

void compareVectors(Comparison& comparison, const std::string& where, const std::vector<TmdVector>& got,
                    const std::vector<std::array<int, 3>>& wanted) {
    comparison.scope(where);
    comparison.same("their number", static_cast<long long>(got.size()),
                    static_cast<long long>(wanted.size()));
    for (std::size_t i = 0; i < std::min(got.size(), wanted.size()); ++i) {
        const std::array<int, 4> expected = {wrapped(wanted[i][0]), wrapped(wanted[i][1]),
                                             wrapped(wanted[i][2]), 0};
        if (got[i] == TmdVector{static_cast<std::int16_t>(expected[0]),
                                static_cast<std::int16_t>(expected[1]),
                                static_cast<std::int16_t>(expected[2]), 0})
            continue;
        comparison.scope(where + "number " + std::to_string(i) + ": ");
        comparison.sameList("x y z pad", std::array<int, 4>{got[i].x, got[i].y, got[i].z, got[i].pad},
                            expected);
    }
}

void compareColours(Comparison& comparison, const TmdPacket& got, const ExpectedPacket& wanted) {
    comparison.same("number of colours", static_cast<long long>(got.colours.size()),
                    static_cast<long long>(wanted.colours.size()));
    const std::size_t known = wanted.openColours ? 1 : wanted.colours.size();
    for (std::size_t i = 0; i < std::min(known, got.colours.size()); ++i) {
        const std::array<int, 3> colour = {got.colours[i][0], got.colours[i][1], got.colours[i][2]};
        comparison.sameList("colour", colour, wanted.colours[i]);
    }
}

void comparePacket(Comparison& comparison, const TmdPacket& got, const ExpectedPacket& wanted) {
    comparison.same("kind", static_cast<int>(got.kind), static_cast<int>(wanted.kind));
    comparison.same("four corners", got.quadrangle ? 1 : 0, wanted.quadrangle ? 1 : 0);
    comparison.same("olen", got.olen, wanted.olen);
    comparison.same("ilen", got.ilen, wanted.size / 4 - 1);
    comparison.same("flag", got.flag, wanted.flag);
    comparison.same("mode", got.mode, wanted.mode);
    comparison.same("size", static_cast<long long>(got.bytes.size()), wanted.size);
    comparison.sameList("vertices", got.vertices, wanted.vertices);
    comparison.sameList("normals", got.normals, wanted.normals);
    compareColours(comparison, got, wanted);
    comparison.same("number of u, v", static_cast<long long>(got.uv.size()),
                    static_cast<long long>(wanted.uv.size()));
    for (std::size_t i = 0; i < std::min(got.uv.size(), wanted.uv.size()); ++i)
        comparison.sameList("u v", std::array<int, 2>{got.uv[i].u, got.uv[i].v}, wanted.uv[i]);
    comparison.same("CBA", got.cba, wanted.cba);
    comparison.same("TSB", got.tsb, wanted.tsb);
    comparison.same("width", got.width, wanted.width);
    comparison.same("height", got.height, wanted.height);
}

void comparePackets(Comparison& comparison, const std::string& where, std::size_t offset,
                    const TmdObject& got, const ExpectedObject& wanted) {
    comparison.same("number of packets", static_cast<long long>(got.packets.size()),
                    static_cast<long long>(wanted.packets.size()));
    for (std::size_t i = 0; i < std::min(got.packets.size(), wanted.packets.size()); ++i) {
        comparison.scope(where + "packet " + std::to_string(i) + ": ");
        comparison.same("offset", static_cast<long long>(got.packets[i].offset),
                        static_cast<long long>(offset));
        comparePacket(comparison, got.packets[i], wanted.packets[i]);
        offset += wanted.packets[i].size;
    }
}

// Where the three sections of an object begin, from the object table.
struct Tops {
    std::size_t packets = 0;
    std::size_t vertices = 0;
    std::size_t normals = 0;
};

std::vector<Tops> topsOf(const Expected& expected) {
    std::vector<Tops> all(expected.objects.size());
    std::size_t top = 28 * all.size();
    const auto place = [&](std::size_t Tops::*section, auto bytes) {
        for (std::size_t k = 0; k < all.size(); ++k) {
            all[k].*section = top;
            top += bytes(expected.objects[k]);
        }
    };
    place(&Tops::packets, [](const ExpectedObject& object) { return object.packetBytes(); });
    place(&Tops::vertices, [](const ExpectedObject& object) { return 8 * object.vertices.size(); });
    place(&Tops::normals, [](const ExpectedObject& object) { return 8 * object.normals.size(); });
    return all;
}

void compareObject(Comparison& comparison, const std::string& where, const TmdObject& got, const Tops& tops,
                   const ExpectedObject& wanted) {
    comparison.scope(where);
    comparison.same("vert_top", got.vertTop, static_cast<long long>(tops.vertices));
    comparison.same("n_vert", got.nVert, static_cast<long long>(wanted.vertices.size()));
    comparison.same("normal_top", got.normalTop, static_cast<long long>(tops.normals));
    comparison.same("n_normal", got.nNormal, static_cast<long long>(wanted.normals.size()));
    comparison.same("primitive_top", got.primitiveTop, static_cast<long long>(tops.packets));
    comparison.same("n_primitive", got.nPrimitive, static_cast<long long>(wanted.packets.size()));
    comparison.same("scale", got.scale, wanted.exponent);
    comparePackets(comparison, where, 12 + tops.packets, got, wanted);
    compareVectors(comparison, where + "vertices: ", got.vertices, wanted.vertices);
    compareVectors(comparison, where + "normals: ", got.normals, wanted.normals);
}

} // namespace

std::string findDifference(const TmdFile& file, const Expected& expected) {
    if (!file.complaints.empty())
        return file.complaints.front();
    Comparison comparison;
    comparison.same("ID", file.id, 0x41);
    comparison.same("flags", file.flags, 0);
    comparison.same("number of objects", static_cast<long long>(file.objectCount),
                    static_cast<long long>(expected.objects.size()));
    const std::vector<Tops> tops = topsOf(expected);
    for (std::size_t k = 0; k < std::min(file.objects.size(), expected.objects.size()); ++k)
        compareObject(comparison, "object " + std::to_string(k) + ": ", file.objects[k], tops[k],
                      expected.objects[k]);
    return comparison.result();
}

} // namespace properties
