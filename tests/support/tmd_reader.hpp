// An independent reader of TMD files. It takes a file apart and complains about everything that
// the format does not allow, so that a test can accept or refuse a file as a whole.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

// What a packet draws, as its mode and flag bytes say. "Lit" is the plain form.
enum class TmdKind {
    unknown,
    flat,
    flatLightOff,
    flatGradation,
    gouraud,
    gouraudLightOff,
    gouraudGradation,
    flatTexture,
    flatTextureLightOff,
    gouraudTexture,
    gouraudTextureLightOff,
    flatLine,
    gouraudLine,
    sprite,
};

// Red, green, blue, and the fourth byte of the colour word.
using TmdColour = std::array<unsigned char, 4>;

struct TmdUv {
    unsigned char u = 0;
    unsigned char v = 0;
};

struct TmdPacket {
    std::size_t offset = 0; // from the start of the file
    unsigned char olen = 0;
    unsigned char ilen = 0;
    unsigned char flag = 0;
    unsigned char mode = 0;
    TmdKind kind = TmdKind::unknown;
    bool quadrangle = false;
    std::vector<TmdColour> colours;
    std::vector<std::uint16_t> vertices;
    std::vector<std::uint16_t> normals;
    std::vector<TmdUv> uv;
    std::uint16_t cba = 0;
    std::uint16_t tsb = 0;
    std::uint16_t width = 0; // of a sprite, also of a fixed-size one
    std::uint16_t height = 0;
    std::vector<std::size_t> stale;   // offsets, in the packet, of bytes left from packets before
    std::vector<unsigned char> bytes; // the whole packet, header included
};

// A vertex or a normal.
struct TmdVector {
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::int16_t z = 0;
    std::int16_t pad = 0;

    bool operator==(const TmdVector&) const = default;
};

// One entry of the object table, with what its offsets lead to.
struct TmdObject {
    std::uint32_t vertTop = 0;
    std::uint32_t nVert = 0;
    std::uint32_t normalTop = 0;
    std::uint32_t nNormal = 0;
    std::uint32_t primitiveTop = 0;
    std::uint32_t nPrimitive = 0;
    std::int32_t scale = 0;
    std::vector<TmdPacket> packets;
    std::vector<TmdVector> vertices;
    std::vector<TmdVector> normals;
};

struct TmdFile {
    std::uint32_t id = 0;
    std::uint32_t flags = 0;
    std::uint32_t objectCount = 0;
    std::vector<TmdObject> objects;
    std::vector<std::string> complaints; // in the order of reading; empty for a sound file
};

// Reads a TMD file from its bytes. Whatever they are, reading ends and stays inside them; the
// packets of an object are read up to the first whose kind or length is wrong.
[[nodiscard]] TmdFile readTmd(std::span<const unsigned char> bytes);
