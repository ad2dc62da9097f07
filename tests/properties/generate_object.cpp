// The contents of one object: geometry, polygons with their materials, and textures.
#include "properties/generate.hpp"

#include <algorithm>
#include <array>
#include <set>

namespace properties {

namespace {

// Numbers where rounding turns, where 16-bit numbers end, and what is written with many places.
constexpr std::array<Decimal, 18> tellingNumbers = {{
    {0, 0},
    {5, 1},
    {-5, 1},
    {15, 1},
    {-15, 1},
    {4999, 4},
    {-4999, 4},
    {25, 2},
    {1, 4},
    {-1, 4},
    {33333333, 8},
    {1234567, 3},
    {-70001, 1},
    {32767, 0},
    {-32768, 0},
    {327675, 1},
    {-327695, 1},
    {40000, 0},
}};

// Parts of normals; 4096 stands for 1.0, and the last ones are beyond what fits.
constexpr std::array<Decimal, 12> tellingParts = {{
    {0, 0},
    {1, 0},
    {-1, 0},
    {5, 1},
    {-5, 1},
    {1, 4},
    {2, 4},
    {-2, 4},
    {57735, 5},
    {-70710678, 8},
    {8, 0},
    {-99999, 4},
}};

Decimal makeCoordinate(Random& random) {
    if (random.oneIn(6)) {
        const Decimal& number = random.pick(tellingNumbers);
        // The large ones only now and then, so that warnings stay something special.
        const bool large = number.digits > 30000 || number.digits < -30000;
        if (!large || random.oneIn(4))
            return number;
    }
    const int places = random.between(0, 4);
    const int most = places < 2 ? 2000 : 500000;
    return {random.between(-most, most), places};
}

Decimal makePart(Random& random) {
    if (random.oneIn(4))
        return random.pick(tellingParts);
    return {random.between(-10000, 10000), 4};
}

Point makeNormal(Random& random) {
    return {makePart(random), makePart(random), makePart(random)};
}

// A polygon's index that no packet takes: it can be any.
int makeUnusedIndex(Random& random) {
    if (!random.oneIn(8))
        return 0;
    return random.between(-1, 99999);
}

// What a line of a MAT file says of the polygons that it names.
struct Line {
    bool textured = false; // its kind is
    bool texture = false;  // its numbers, which can be those of a line before, begin with a texture
    bool lightOff = false;
};

constexpr int noOwner = -1;

class MaterialMaker {
  public:
    MaterialMaker(Random& from, const ObjectSizes& of, Object& into)
        : random(from), sizes(of), object(into) {}

    void makeLines() {
        const std::size_t count = random.oneIn(8) && sizes.normals > 0 ? 0 : 1 + random.below(7);
        for (std::size_t i = 0; i < count; ++i)
            addLine();
    }

    void makePolygons() {
        owners.assign(static_cast<std::size_t>(sizes.polygons), noOwner);
        // In large objects the lists of polygons would be too long if every polygon had its own owner.
        int block = 1;
        for (std::size_t i = 0; i < owners.size(); i += static_cast<std::size_t>(block)) {
            block = owners.size() > 60 ? random.between(3, 20) : 1;
            const int owner = makeOwner();
            for (std::size_t k = i; k < std::min(i + static_cast<std::size_t>(block), owners.size()); ++k) {
                owners[k] = owner;
                object.polygons.push_back(makePolygon(owner));
            }
        }
    }

    void makeLists() {
        for (std::size_t i = 0; i < lines.size(); ++i)
            makeList(static_cast<int>(i), object.materials[i]);
    }

  private:
    // Without normals everything has to be light off.
    [[nodiscard]] bool needsLightOff() const { return sizes.normals == 0; }

    char makeKind() {
        if (!lines.empty() && random.oneIn(12))
            return random.oneIn(2) ? 'X' : 'c';
        constexpr std::array<char, 5> kinds = {'C', 'G', 'T', 'D', 'H'};
        return kinds[random.below(object.textures.empty() ? 2 : kinds.size())];
    }

    int makeByte() { return random.oneIn(40) ? random.between(-300, 900) : random.between(0, 255); }

    void addLine() {
        Material material;
        material.kind = makeKind();
        material.attr = static_cast<unsigned>(random.below(32)) | (needsLightOff() ? 1U : 0U);
        if (random.oneIn(10))
            material.attr |= static_cast<unsigned>(random.below(0x800)) << 5U;
        material.shading = random.oneIn(20) ? 'g' : random.oneIn(2) ? 'G' : 'F';
        if (!object.textures.empty())
            material.texture = static_cast<int>(random.below(object.textures.size()));
        for (std::array<int, 2>& point : material.uv)
            point = {makeByte(), makeByte()};
        for (std::array<int, 3>& colour : material.colours)
            colour = {makeByte(), makeByte(), makeByte()};
        Line line;
        line.textured = isTexturedKind(material.kind);
        line.texture = hasNumbers(material.kind) ? line.textured : lines.back().texture;
        line.lightOff = (material.attr & 1U) != 0;
        lines.push_back(line);
        object.materials.push_back(material);
    }

    int makeOwner() {
        if (lines.empty() || (!needsLightOff() && random.oneIn(7)))
            return noOwner;
        return static_cast<int>(random.below(lines.size()));
    }

    unsigned makeType(int owner) {
        const bool hasTexture = owner != noOwner && lines[static_cast<std::size_t>(owner)].texture;
        const bool textured = owner != noOwner && lines[static_cast<std::size_t>(owner)].textured;
        if (owner == noOwner && needsLightOff())
            return 2;
        if (hasTexture && random.oneIn(3))
            return 3;
        if (textured && random.oneIn(20))
            return static_cast<unsigned>(random.between(4, 7));
        return random.oneIn(5) ? 2U : static_cast<unsigned>(random.below(2));
    }

    int makeIndex(int count) {
        return count == 0 ? 0 : static_cast<int>(random.below(static_cast<std::size_t>(count)));
    }

    Polygon makePolygon(int owner) {
        Polygon polygon;
        const unsigned type = makeType(owner);
        polygon.typeWord = type | (random.oneIn(8) ? static_cast<unsigned>(random.below(0x200)) << 3U : 0U);
        constexpr std::array<std::size_t, 8> usedCorners = {3, 4, 2, 1, 3, 3, 3, 3};
        const std::size_t used = usedCorners[type];
        for (std::size_t i = 0; i < 4; ++i) {
            polygon.vertices[i] = i < used ? makeIndex(sizes.vertices) : makeUnusedIndex(random);
            polygon.normals[i] =
                i < used && type != 2 && type != 3 ? makeIndex(sizes.normals) : makeUnusedIndex(random);
        }
        if (type == 3)
            makeSpriteSize(polygon);
        return polygon;
    }

    void makeSpriteSize(Polygon& polygon) {
        constexpr std::array<int, 11> sides = {1, 8, 16, 1, 8, 16, 2, 17, 64, 256, 65535};
        polygon.vertices[1] = random.pick(sides);
        polygon.vertices[2] = random.oneIn(3) ? random.pick(sides) : polygon.vertices[1];
    }

    // The polygons that the line owns, and some that lines behind it take away.
    void makeList(int line, Material& material) {
        std::set<int> named;
        for (int i = 0; i < sizes.polygons; ++i) {
            const int owner = owners[static_cast<std::size_t>(i)];
            if (owner == line || (owner > line && sizes.polygons <= 60 && random.oneIn(8)))
                named.insert(i);
        }
        // Of an object that is no larger than others, the table has more polygons.
        if (sizes.mostPolygons > sizes.polygons && random.oneIn(5))
            named.insert(random.between(sizes.polygons, sizes.mostPolygons - 1));
        for (auto each = named.begin(); each != named.end();) {
            const int first = *each;
            int last = first;
            while (++each != named.end() && *each == last + 1 && !random.oneIn(6))
                last = *each;
            material.list.push_back({first, last});
        }
        if (random.oneIn(8))
            material.list.push_back({random.between(1, 9), 0});
        if (random.oneIn(2))
            random.shuffle(material.list);
        if (random.oneIn(10) && !material.list.empty())
            material.list.push_back(material.list.front());
        constexpr std::array<const char*, 4> ends = {",", ",,0", "x0", ":1-2"};
        if (random.oneIn(10) || material.list.empty())
            material.listEnd = random.pick(ends);
    }

    Random& random;
    const ObjectSizes& sizes;
    Object& object;
    std::vector<Line> lines;
    std::vector<int> owners; // for each polygon the last line that names it
};

TimBlock makeBlock(Random& random, int mostX, int mostY, int step) {
    TimBlock block;
    block.x = static_cast<std::uint16_t>(random.between(0, mostX) * step);
    block.y = static_cast<std::uint16_t>(random.between(0, mostY));
    block.width = static_cast<std::uint16_t>(random.between(1, 16));
    block.height = static_cast<std::uint16_t>(random.between(1, 4));
    block.dataBytes = random.below(20);
    return block;
}

} // namespace

ObjectSizes makeSizes(Random& random) {
    ObjectSizes sizes;
    const std::size_t size = random.below(25);
    if (size == 0) {
        sizes.vertices = random.between(257, 500);
        sizes.normals = random.between(257, 400);
        sizes.polygons = random.between(50, 200);
    } else if (size < 3) {
        sizes.vertices = random.between(4, 60);
        sizes.normals = random.between(1, 30);
        sizes.polygons = random.between(20, 60);
    } else {
        sizes.vertices = random.between(1, 12);
        sizes.normals = random.between(1, 6);
        sizes.polygons = random.between(1, 14);
    }
    if (random.oneIn(20))
        sizes.normals = 0;
    if (random.oneIn(25))
        sizes = {.vertices = random.between(0, 3), .normals = random.between(0, 2)};
    return sizes;
}

Point makeVertex(Random& random) {
    return {makeCoordinate(random), makeCoordinate(random), makeCoordinate(random)};
}

void fillGeometry(Random& random, const ObjectSizes& sizes, Object& object) {
    for (int i = 0; i < sizes.vertices; ++i)
        object.vertices.push_back(makeVertex(random));
    for (int i = 0; i < sizes.normals; ++i)
        object.normals.push_back(makeNormal(random));
}

void fillMaterials(Random& random, const ObjectSizes& sizes, Object& object) {
    MaterialMaker maker(random, sizes, object);
    maker.makeLines();
    maker.makePolygons();
    maker.makeLists();
}

Texture makeTexture(Random& random) {
    // Each pixel mode with and without a CLUT; 0 and 1 have one even without the bit for it.
    constexpr std::array<unsigned, 11> modes = {8, 9, 2, 8, 9, 0, 1, 3, 10, 4, 12};
    Texture texture;
    texture.flags = random.pick(modes);
    if (random.oneIn(6))
        texture.flags |= static_cast<unsigned>(random.below(0x1000000)) << 8U;
    if (random.oneIn(6))
        texture.id |= static_cast<unsigned>(random.next() & 0xFFFFFFFFU);
    // Places that all targets accept, or that not all do, or that none does.
    switch (random.below(8)) {
    case 0:
        texture.clut = makeBlock(random, 0xFFFF, 0xFFFF, 1);
        texture.image = makeBlock(random, 0xFFFF, 0xFFFF, 1);
        break;
    case 1:
        texture.clut = makeBlock(random, 70, 1100, 16);
        texture.image = makeBlock(random, 2100, 1100, 1);
        break;
    default:
        texture.clut = makeBlock(random, 63, 511, 16);
        texture.image = makeBlock(random, 1023, 511, 1);
        break;
    }
    return texture;
}

} // namespace properties
