#include "properties/expect.hpp"

#include <algorithm>

namespace properties {

namespace {

using enum TmdKind;

struct Size {
    TmdKind kind;
    unsigned triangle; // bytes; of lines and sprites too
    unsigned quadrangle;
    unsigned olenTriangle;
    unsigned olenQuadrangle;
};

constexpr std::array<Size, 13> packetSizes = {{
    {flat, 16, 20, 4, 5},
    {flatLightOff, 16, 16, 4, 5},
    {flatGradation, 24, 32, 6, 8},
    {gouraud, 20, 24, 6, 8},
    {gouraudLightOff, 24, 28, 6, 8},
    {gouraudGradation, 28, 36, 6, 8},
    {flatTexture, 24, 32, 7, 9},
    {flatTextureLightOff, 28, 32, 7, 9},
    {gouraudTexture, 28, 36, 9, 12},
    {gouraudTextureLightOff, 36, 44, 9, 12},
    {flatLine, 12, 0, 3, 0},
    {gouraudLine, 16, 0, 4, 0},
    {sprite, 16, 0, 5, 0},
}};

int lowByte(int value) {
    return value & 0xFF;
}

// The numbers of a material as its packets take them: those of its line, in order, low bytes only. A line
// of a kind without numbers has those of the line before it.
std::vector<int> ownNumbers(const Material& material) {
    std::vector<int> numbers;
    const bool textured = isTexturedKind(material.kind);
    if (textured) {
        numbers.push_back(lowByte(material.texture));
        for (const std::array<int, 2>& point : material.uv)
            numbers.insert(numbers.end(), {lowByte(point[0]), lowByte(point[1])});
    }
    if (material.kind == 'T')
        numbers.insert(numbers.end(), {128, 128, 128});
    if (material.kind != 'T' && hasNumbers(material.kind)) {
        const bool one = material.kind == 'C' || material.kind == 'D';
        for (std::size_t i = 0; i < (one ? 1U : 4U); ++i) {
            for (const int part : material.colours[i])
                numbers.push_back(lowByte(part));
        }
    }
    return numbers;
}

std::vector<std::vector<int>> allNumbers(const Object& object) {
    std::vector<std::vector<int>> all;
    for (const Material& material : object.materials)
        all.push_back(hasNumbers(material.kind) ? ownNumbers(material) : all.back());
    return all;
}

void setBits(const Material& material, Attributes& bits) {
    bits.twoSided = (material.attr & 2U) != 0;
    bits.translucent = (material.attr & 4U) != 0;
    bits.rate = material.attr >> 3U & 3U;
    bits.gouraud = material.shading == 'G';
    bits.textured = isTexturedKind(material.kind);
    bits.gradation = material.kind == 'G' || material.kind == 'H';
    bits.lightOff = (material.attr & 1U) != 0;
    if (!bits.lightOff)
        return;
    if (bits.gradation)
        bits.gouraud = true;
    if (material.kind == 'C' || material.kind == 'D' || material.kind == 'T')
        bits.gouraud = false;
}

constexpr int noMaterial = -1;

struct Slot {
    Attributes bits;
    int material = noMaterial;
};

// The polygons after both files have been read: new attributes but for the gradation bit, which stays as it
// was; then those of the last line that names each.
std::vector<Slot> readAttributes(const Object& object, std::vector<bool>& gradation) {
    gradation.resize(std::max(gradation.size(), object.polygons.size()));
    std::vector<Slot> slots(object.polygons.size());
    for (std::size_t i = 0; i < slots.size(); ++i)
        slots[i].bits.gradation = gradation[i];
    for (std::size_t line = 0; line < object.materials.size(); ++line) {
        const Material& material = object.materials[line];
        Slot slot;
        setBits(material, slot.bits);
        slot.material = static_cast<int>(line);
        for (const Range& range : material.list) {
            for (int k = range.first; k <= range.last; ++k) {
                const auto at = static_cast<std::size_t>(k);
                gradation.resize(std::max(gradation.size(), at + 1));
                gradation[at] = slot.bits.gradation;
                if (at < slots.size())
                    slots[at] = slot;
            }
        }
    }
    return slots;
}

TmdKind kindOf(const Attributes& bits) {
    if (bits.textured) {
        if (bits.lightOff)
            return bits.gouraud ? gouraudTextureLightOff : flatTextureLightOff;
        return bits.gouraud ? gouraudTexture : flatTexture;
    }
    if (bits.lightOff)
        return bits.gouraud ? gouraudLightOff : flatLightOff;
    if (bits.gradation)
        return bits.gouraud ? gouraudGradation : flatGradation;
    return bits.gouraud ? gouraud : flat;
}

// The 16-bit fields of TIM files have a sign, which goes as far as the value does.
std::uint32_t extend(std::uint16_t value) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<std::int16_t>(value)));
}

class PacketMaker {
  public:
    PacketMaker(const Object& from, int forTarget)
        : object(from), target(forTarget), numbers(allNumbers(from)) {}

    ExpectedPacket make(const Polygon& polygon, const Slot& slot) {
        ExpectedPacket packet;
        packet.type = polygon.typeWord & 7U;
        packet.attributes = slot.bits;
        param = slot.material == noMaterial ? std::vector<int>{255, 255, 255}
                                            : numbers[static_cast<std::size_t>(slot.material)];
        packet.mode = slot.bits.translucent ? 0x02 : 0;
        if (packet.type == 2) {
            makeLine(polygon, packet);
        } else if (packet.type == 3) {
            makeSprite(polygon, packet);
        } else {
            makePolygon(polygon, packet);
        }
        setSize(packet);
        return packet;
    }

  private:
    void makeLine(const Polygon& polygon, ExpectedPacket& packet) {
        const bool gradation = packet.attributes.gradation;
        packet.kind = gradation ? gouraudLine : flatLine;
        packet.mode |= gradation ? 0x50U : 0x40U;
        packet.flag = 1;
        packet.vertices = {polygon.vertices[0], polygon.vertices[1]};
        addColours(packet, 0, gradation ? 2 : 1);
    }

    void makeSprite(const Polygon& polygon, ExpectedPacket& packet) {
        packet.kind = sprite;
        packet.mode |= 0x64;
        packet.flag = 1;
        packet.vertices = {polygon.vertices[0]};
        packet.width = polygon.vertices[1];
        packet.height = polygon.vertices[2];
        if (packet.width == packet.height) {
            packet.mode |= packet.width == 1    ? 0x08U
                           : packet.width == 8  ? 0x10U
                           : packet.width == 16 ? 0x18U
                                                : 0U;
        }
        addTexture(packet, 1);
    }

    void makePolygon(const Polygon& polygon, ExpectedPacket& packet) {
        const Attributes& bits = packet.attributes;
        packet.quadrangle = packet.type == 1;
        packet.kind = kindOf(bits);
        packet.mode |= 0x20U | (bits.gouraud ? 0x10U : 0U) | (packet.quadrangle ? 0x08U : 0U) |
                       (bits.textured ? 0x04U : 0U) | (bits.lightOff ? 0x01U : 0U);
        const bool gradation = bits.gradation && !bits.textured && !bits.lightOff;
        packet.flag = (bits.lightOff ? 1U : 0U) | (bits.twoSided ? 2U : 0U) | (gradation ? 4U : 0U);
        const std::ptrdiff_t corners = packet.quadrangle ? 4 : 3;
        packet.vertices.assign(polygon.vertices.begin(), polygon.vertices.begin() + corners);
        if (!bits.lightOff)
            packet.normals.assign(polygon.normals.begin(),
                                  polygon.normals.begin() + (bits.gouraud ? corners : 1));
        if (bits.textured) {
            addTexture(packet, static_cast<std::size_t>(corners));
            if (bits.lightOff)
                addColours(packet, 9, bits.gouraud ? corners : 1);
        } else if (bits.lightOff && bits.gouraud && !bits.gradation) {
            addColours(packet, 0, 1);
            packet.colours.resize(static_cast<std::size_t>(corners), packet.colours.front());
        } else {
            const bool perCorner = bits.lightOff ? bits.gouraud : bits.gradation;
            addColours(packet, 0, perCorner ? corners : 1);
        }
    }

    // `count` colours from the material's number `first` on.
    void addColours(ExpectedPacket& packet, std::size_t first, std::ptrdiff_t count) {
        for (std::size_t at = first; at < first + 3 * static_cast<std::size_t>(count); at += 3) {
            const bool known = at + 2 < param.size();
            packet.openColours = packet.openColours || !known;
            packet.colours.push_back(known ? Colour{param[at], param[at + 1], param[at + 2]} : Colour{});
        }
    }

    void addTexture(ExpectedPacket& packet, std::size_t corners) {
        packet.texture = param.at(0);
        const Texture& texture = object.textures.at(static_cast<std::size_t>(packet.texture));
        const unsigned mode = texture.flags & 0xFFU;
        const unsigned texels = mode == 0 || mode == 8 ? 4 : mode == 1 || mode == 9 ? 2 : 1;
        const int u = static_cast<int>(texture.image.x % 64 * texels);
        for (std::size_t i = 0; i < corners; ++i)
            packet.uv.push_back(
                {lowByte(param.at(1 + 2 * i) + u), lowByte(param.at(2 + 2 * i) + texture.image.y)});
        packet.cba = clutCode(texture) & 0xFFFFU;
        packet.tsb = pageCode(texture, target) & 0xFFFFU;
        if (packet.attributes.translucent)
            packet.tsb |= packet.attributes.rate << (target == 1 ? 7U : 5U);
    }

    static void setSize(ExpectedPacket& packet) {
        const Size& row = *std::find_if(packetSizes.begin(), packetSizes.end(),
                                        [&](const Size& each) { return each.kind == packet.kind; });
        packet.size = packet.quadrangle ? row.quadrangle : row.triangle;
        packet.olen = packet.quadrangle ? row.olenQuadrangle : row.olenTriangle;
        if (packet.kind == sprite && (packet.mode & 0x18U) != 0) {
            packet.size = 12;
            packet.olen = 4;
        }
    }

    const Object& object;
    int target;
    std::vector<std::vector<int>> numbers; // of each material
    std::vector<int> param;                // of the one at hand
};

} // namespace

unsigned clutCode(const Texture& texture) {
    if (!hasClut(texture.flags))
        return 0;
    return (extend(texture.clut.x) / 16 % 64) + extend(texture.clut.y) * 64;
}

unsigned pageCode(const Texture& texture, int target) {
    const std::uint32_t x = extend(texture.image.x);
    const std::uint32_t y = extend(texture.image.y);
    const std::uint32_t mode = texture.flags % 4;
    if (target == 1)
        return x / 64 % 32 + y / 256 % 4 * 32 + mode * 512;
    return x / 64 % 16 + y / 256 % 2 * 16 + mode * 128 + (target == 2 ? y / 512 % 2 * 2048 : 0);
}

void fillPackets(int target, std::vector<bool>& gradation, ExpectedObject& object) {
    const std::vector<Polygon>& polygons = object.object->polygons;
    const std::vector<Slot> slots = readAttributes(*object.object, gradation);
    PacketMaker maker(*object.object, target);
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        object.packets.push_back(maker.make(polygons[i], slots[i]));
        const bool white = slots[i].material == noMaterial;
        object.usesWhite = object.usesWhite || white;
        object.inheritsGradation = object.inheritsGradation || (white && slots[i].bits.gradation);
    }
}

} // namespace properties
