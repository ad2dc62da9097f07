// The forms below are the packet layouts of the format, one letter for each field after the
// 4-byte packet header:
//   C colour, fourth byte the mode   S colour, fourth byte stale   Z colour, fourth byte zero
//   n normal index   v vertex index   z 16-bit zero   u texture coordinates u, v
//   a CBA   t TSB   w width   h height
#include "support/tmd_reader.hpp"

#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t headerSize = 12; // also where the offsets count from
constexpr std::size_t entrySize = 28;
constexpr std::size_t vectorSize = 8;
constexpr std::size_t largestPacket = 100; // bytes of the area that every packet is built in

constexpr unsigned modeCode = 0xE0;
constexpr unsigned modeGouraud = 0x10;
constexpr unsigned modeQuadrangle = 0x08;
constexpr unsigned modeTextured = 0x04;
constexpr unsigned modeTranslucent = 0x02;
constexpr unsigned modeLightOff = 0x01;
constexpr unsigned modeSpriteSize = 0x18;
constexpr unsigned flagLightOff = 0x01;
constexpr unsigned flagTwoSided = 0x02;
constexpr unsigned flagGradation = 0x04;

struct Form {
    TmdKind kind;
    bool quadrangle;
    unsigned olen;
    std::string_view fields;
};

using enum TmdKind;

constexpr std::array<Form, 22> forms = {{
    {flat, false, 4, "Cnvvv"},
    {flat, true, 5, "Cnvvvvz"},
    {flatLightOff, false, 4, "Cvvvz"},
    {flatLightOff, true, 5, "Cvvvv"},
    {flatGradation, false, 6, "CSSnvvv"},
    {flatGradation, true, 8, "CSSSnvvvvz"},
    {gouraud, false, 6, "Cnvnvnv"},
    {gouraud, true, 8, "Cnvnvnvnv"},
    {gouraudLightOff, false, 6, "CZZvvvz"},
    {gouraudLightOff, true, 8, "CZZZvvvv"},
    {gouraudGradation, false, 6, "CSSnvnvnv"},
    {gouraudGradation, true, 8, "CSSSnvnvnvnv"},
    {flatTexture, false, 7, "uautuznvvv"},
    {flatTexture, true, 9, "uautuzuznvvvvz"},
    {flatTextureLightOff, false, 7, "uautuzZvvvz"},
    {flatTextureLightOff, true, 9, "uautuzuzZvvvv"},
    {gouraudTexture, false, 9, "uautuznvnvnv"},
    {gouraudTexture, true, 12, "uautuzuznvnvnvnv"},
    {gouraudTextureLightOff, false, 9, "uautuzSZZvvvz"},
    {gouraudTextureLightOff, true, 12, "uautuzuzZZZZvvvv"},
    {flatLine, false, 3, "Cvv"},
    {gouraudLine, false, 4, "CZvv"},
}};

constexpr Form freeSprite = {sprite, false, 5, "vtuawh"};
constexpr Form fixedSprite = {sprite, false, 4, "vtua"};

// Everything that the reading of one file shares.
struct Reading {
    std::span<const unsigned char> bytes;
    TmdFile file;
    // What the area that packets are built in holds before the next packet.
    std::array<unsigned char, largestPacket> area{};
    bool areaKnown = true;
};

std::string hex(std::size_t value) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%zx", value);
    return text.data();
}

void complain(Reading& reading, const std::string& text) {
    reading.file.complaints.push_back(text);
}

std::string mismatch(const std::string& what, std::size_t got, std::size_t wanted) {
    return what + " " + std::to_string(got) + ", expected " + std::to_string(wanted);
}

std::uint16_t halfAt(std::span<const unsigned char> bytes, std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] | static_cast<unsigned>(bytes[at + 1]) << 8U);
}

std::uint32_t wordAt(std::span<const unsigned char> bytes, std::size_t at) {
    return halfAt(bytes, at) | static_cast<std::uint32_t>(halfAt(bytes, at + 2)) << 16U;
}

std::size_t formSize(const Form& form) {
    std::size_t size = 4;
    for (const char field : form.fields)
        size += field == 'C' || field == 'S' || field == 'Z' ? 4 : 2;
    return size;
}

TmdKind polygonKind(unsigned flag, unsigned mode) {
    const bool gouraudMode = (mode & modeGouraud) != 0;
    const bool lightOff = (flag & flagLightOff) != 0;
    if ((mode & modeTextured) != 0) {
        if (lightOff)
            return gouraudMode ? gouraudTextureLightOff : flatTextureLightOff;
        return gouraudMode ? gouraudTexture : flatTexture;
    }
    if (lightOff)
        return gouraudMode ? gouraudLightOff : flatLightOff;
    if ((flag & flagGradation) != 0)
        return gouraudMode ? gouraudGradation : flatGradation;
    return gouraudMode ? gouraud : flat;
}

const Form* findForm(TmdKind kind, bool quadrangle) {
    for (const Form& form : forms) {
        if (form.kind == kind && form.quadrangle == quadrangle)
            return &form;
    }
    return nullptr;
}

// The form that mode and flag call for; null for a code that is none.
const Form* formOf(unsigned flag, unsigned mode) {
    switch (mode & modeCode) {
    case 0x20:
        return findForm(polygonKind(flag, mode), (mode & modeQuadrangle) != 0);
    case 0x40:
        return findForm((mode & modeGouraud) != 0 ? gouraudLine : flatLine, false);
    case 0x60:
        return (mode & modeSpriteSize) == 0 ? &freeSprite : &fixedSprite;
    default:
        return nullptr;
    }
}

void checkPolygonBits(Reading& reading, const std::string& where, unsigned flag, unsigned mode) {
    if (((flag & flagLightOff) != 0) != ((mode & modeLightOff) != 0)) {
        complain(reading,
                 where + "light off stands in only one of flag " + hex(flag) + " and mode " + hex(mode));
    }
    if ((flag & flagGradation) != 0 && (flag & flagLightOff) != 0) {
        complain(reading, where + "gradation flag on a light-off polygon");
    }
    if ((flag & flagGradation) != 0 && (mode & modeTextured) != 0) {
        complain(reading, where + "gradation flag on a textured polygon");
    }
    if ((flag & ~(flagLightOff | flagTwoSided | flagGradation)) != 0) {
        complain(reading, where + "unknown bits in flag " + hex(flag));
    }
}

// Flag and mode combinations that no polygon, line or sprite can have.
void checkBits(Reading& reading, const std::string& where, unsigned flag, unsigned mode) {
    const unsigned code = mode & modeCode;
    if (code == 0x20) {
        checkPolygonBits(reading, where, flag, mode);
        return;
    }
    const bool isLine = code == 0x40;
    const std::string what = isLine ? "line" : "sprite";
    if (flag != flagLightOff)
        complain(reading, where + "flag " + hex(flag) + " on a " + what + ", expected 0x1");
    const unsigned allowed =
        modeCode | modeTranslucent | (isLine ? modeGouraud : modeTextured | modeSpriteSize);
    const unsigned needed = isLine ? 0 : modeTextured;
    if ((mode & ~allowed) != 0 || (mode & needed) != needed) {
        complain(reading, where + "mode " + hex(mode) + " is that of no " + what);
    }
}

void checkIndex(Reading& reading, const std::string& where, const char* what, std::size_t index,
                std::size_t count) {
    if (index < count)
        return;
    complain(reading, where + what + " index " + std::to_string(index) + " of " + std::to_string(count));
}

void takeColour(Reading& reading, const std::string& where, char field, std::size_t at, TmdPacket& packet) {
    const std::vector<unsigned char>& bytes = packet.bytes;
    const unsigned char fourth = bytes[at + 3];
    packet.colours.push_back({bytes[at], bytes[at + 1], bytes[at + 2], fourth});
    const std::string place = where + "byte " + std::to_string(at + 3) + " is " + hex(fourth);
    if (field == 'C' && fourth != packet.mode) {
        complain(reading, place + ", expected the mode " + hex(packet.mode));
    }
    if (field == 'Z' && fourth != 0)
        complain(reading, place + ", expected 0");
    if (field == 'S') {
        packet.stale.push_back(at + 3);
        const unsigned char left = reading.area[at + 3];
        if (reading.areaKnown && fourth != left) {
            complain(reading, place + ", but the packets before it left " + hex(left));
        }
    }
}

void takeField(Reading& reading, const std::string& where, char field, std::size_t at,
               const TmdObject& object, TmdPacket& packet) {
    const std::uint16_t value = halfAt(packet.bytes, at);
    switch (field) {
    case 'n':
        packet.normals.push_back(value);
        checkIndex(reading, where, "normal", value, object.nNormal);
        break;
    case 'v':
        packet.vertices.push_back(value);
        checkIndex(reading, where, "vertex", value, object.nVert);
        break;
    case 'z':
        if (value == 0)
            break;
        complain(reading,
                 where + "bytes " + std::to_string(at) + ", " + std::to_string(at + 1) + " are not 0");
        break;
    case 'u':
        packet.uv.push_back({packet.bytes[at], packet.bytes[at + 1]});
        break;
    case 'a':
        packet.cba = value;
        break;
    case 't':
        packet.tsb = value;
        break;
    case 'w':
        packet.width = value;
        break;
    case 'h':
        packet.height = value;
        break;
    default:
        takeColour(reading, where, field, at, packet);
        break;
    }
}

void setSpriteSize(Reading& reading, const std::string& where, TmdPacket& packet) {
    constexpr std::array<std::uint16_t, 4> sizes = {0, 1, 8, 16};
    const std::uint16_t size = sizes[(packet.mode & modeSpriteSize) >> 3U];
    if (size != 0) {
        packet.width = size;
        packet.height = size;
        return;
    }
    if (packet.width != packet.height)
        return;
    for (const std::uint16_t fixed : {sizes[1], sizes[2], sizes[3]}) {
        if (packet.width != fixed)
            continue;
        const std::string text = std::to_string(fixed) + " x " + std::to_string(fixed);
        complain(reading, where + "a sprite of " + text + " is written as one of free size");
    }
}

// A sprite of fixed size leaves its width and height behind the end of its packet.
void leaveInArea(Reading& reading, const TmdPacket& packet) {
    for (std::size_t i = 0; i < packet.bytes.size(); ++i)
        reading.area[i] = packet.bytes[i];
    if (packet.kind == sprite) {
        reading.area[12] = static_cast<unsigned char>(packet.width & 0xFFU);
        reading.area[13] = static_cast<unsigned char>(packet.width >> 8U);
        reading.area[14] = static_cast<unsigned char>(packet.height & 0xFFU);
        reading.area[15] = static_cast<unsigned char>(packet.height >> 8U);
    }
}

// Reads the packet at file offset `at`; false when the next one cannot be found from it.
bool readPacket(Reading& reading, const std::string& where, std::size_t at, TmdObject& object) {
    if (at + 4 > reading.bytes.size()) {
        complain(reading, where + "lies outside the file");
        return false;
    }
    TmdPacket packet;
    packet.offset = at;
    packet.olen = reading.bytes[at];
    packet.ilen = reading.bytes[at + 1];
    packet.flag = reading.bytes[at + 2];
    packet.mode = reading.bytes[at + 3];
    const Form* form = formOf(packet.flag, packet.mode);
    if (form == nullptr) {
        complain(reading, where + "mode " + hex(packet.mode) + " has no known code");
        return false;
    }
    checkBits(reading, where, packet.flag, packet.mode);
    if (packet.olen != form->olen)
        complain(reading, mismatch(where + "olen", packet.olen, form->olen));
    const std::size_t size = formSize(*form);
    if (packet.ilen != size / 4 - 1) {
        complain(reading, mismatch(where + "ilen", packet.ilen, size / 4 - 1));
        return false;
    }
    if (at + size > reading.bytes.size()) {
        complain(reading, where + "lies outside the file");
        return false;
    }
    const auto bytes = reading.bytes.subspan(at, size);
    packet.bytes.assign(bytes.begin(), bytes.end());
    packet.kind = form->kind;
    packet.quadrangle = form->quadrangle;
    std::size_t inside = 4;
    for (const char field : form->fields) {
        takeField(reading, where, field, inside, object, packet);
        inside += field == 'C' || field == 'S' || field == 'Z' ? 4 : 2;
    }
    if (packet.kind == sprite)
        setSpriteSize(reading, where, packet);
    leaveInArea(reading, packet);
    object.packets.push_back(std::move(packet));
    return true;
}

std::string objectName(std::size_t number) {
    return "object " + std::to_string(number) + ": ";
}

void checkTop(Reading& reading, const std::string& what, std::size_t top, std::size_t wanted) {
    if (top % 4 != 0)
        complain(reading, what + " " + std::to_string(top) + " is no multiple of 4");
    if (top != wanted)
        complain(reading, mismatch(what, top, wanted));
}

// Reads every object's packets from where its entry says; gives the section's end as an offset
// from the object table.
std::size_t readPrimitives(Reading& reading) {
    std::size_t end = entrySize * reading.file.objects.size();
    bool endKnown = true;
    for (std::size_t k = 0; k < reading.file.objects.size(); ++k) {
        TmdObject& object = reading.file.objects[k];
        const std::string name = objectName(k);
        checkTop(reading, name + "primitive_top", object.primitiveTop, endKnown ? end : object.primitiveTop);
        std::size_t at = headerSize + object.primitiveTop;
        endKnown = true;
        for (std::uint32_t i = 0; i < object.nPrimitive && endKnown; ++i) {
            const std::string where = name + "packet " + std::to_string(i) + " at " + hex(at) + ": ";
            endKnown = readPacket(reading, where, at, object);
            if (endKnown)
                at += object.packets.back().bytes.size();
        }
        reading.areaKnown = reading.areaKnown && endKnown;
        end = at - headerSize;
    }
    // Where the packets cannot be followed, the vertices begin where the table says.
    if (!endKnown)
        end = reading.file.objects.front().vertTop;
    return end;
}

std::vector<TmdVector> readVectors(Reading& reading, const std::string& what, std::size_t top,
                                   std::size_t count) {
    std::vector<TmdVector> vectors;
    const std::size_t start = headerSize + top;
    if (start + count * vectorSize > reading.bytes.size()) {
        complain(reading, what + " lie outside the file");
        return vectors;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = start + i * vectorSize;
        const auto part = [&](std::size_t n) {
            return static_cast<std::int16_t>(halfAt(reading.bytes, at + 2 * n));
        };
        vectors.push_back({part(0), part(1), part(2), part(3)});
        if (part(3) != 0)
            complain(reading, what + ": pad of number " + std::to_string(i) + " is not 0");
    }
    return vectors;
}

// Both sections follow the primitives in object order; gives the end of the last.
std::size_t readVectorSections(Reading& reading, std::size_t end) {
    std::vector<TmdObject>& objects = reading.file.objects;
    for (std::size_t k = 0; k < objects.size(); ++k) {
        TmdObject& object = objects[k];
        checkTop(reading, objectName(k) + "vert_top", object.vertTop, end);
        object.vertices = readVectors(reading, objectName(k) + "vertices", object.vertTop, object.nVert);
        end += vectorSize * object.nVert;
    }
    for (std::size_t k = 0; k < objects.size(); ++k) {
        TmdObject& object = objects[k];
        checkTop(reading, objectName(k) + "normal_top", object.normalTop, end);
        object.normals = readVectors(reading, objectName(k) + "normals", object.normalTop, object.nNormal);
        end += vectorSize * object.nNormal;
    }
    return end;
}

TmdObject readEntry(std::span<const unsigned char> bytes, std::size_t at) {
    TmdObject object;
    object.vertTop = wordAt(bytes, at);
    object.nVert = wordAt(bytes, at + 4);
    object.normalTop = wordAt(bytes, at + 8);
    object.nNormal = wordAt(bytes, at + 12);
    object.primitiveTop = wordAt(bytes, at + 16);
    object.nPrimitive = wordAt(bytes, at + 20);
    object.scale = static_cast<std::int32_t>(wordAt(bytes, at + 24));
    return object;
}

} // namespace

TmdFile readTmd(std::span<const unsigned char> bytes) {
    static_assert(sizeof(std::size_t) >= 8, "offsets and counts of 32 bits are added without wrapping");
    Reading reading;
    reading.bytes = bytes;
    TmdFile& file = reading.file;
    if (bytes.size() < headerSize) {
        complain(reading, "the file is shorter than its header");
        return std::move(reading.file);
    }
    file.id = wordAt(bytes, 0);
    file.flags = wordAt(bytes, 4);
    file.objectCount = wordAt(bytes, 8);
    if (file.id != 0x41)
        complain(reading, "ID " + hex(file.id) + ", expected 0x41");
    if (file.flags != 0)
        complain(reading, "flags " + hex(file.flags) + ", expected 0");
    if (headerSize + entrySize * file.objectCount > bytes.size()) {
        complain(reading,
                 "an object table of " + std::to_string(file.objectCount) + " lies outside the file");
        return std::move(reading.file);
    }
    for (std::size_t k = 0; k < file.objectCount; ++k) {
        file.objects.push_back(readEntry(bytes, headerSize + entrySize * k));
    }
    const std::size_t size = headerSize + readVectorSections(reading, readPrimitives(reading));
    if (size != bytes.size())
        complain(reading, mismatch("file size", bytes.size(), size));
    return std::move(reading.file);
}
