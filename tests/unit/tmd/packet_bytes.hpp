// What the tests of the packet builders share: a polygon whose every index shows in the file, a packet area
// full of 0xEE, so that a byte that a builder leaves alone shows as EE, and the lines of a dump.
#pragma once

#include "unit/model_tables.hpp"
#include "unit/printed.hpp"
#include "unit/tmd/all_counters.hpp"

#include "settings/settings.hpp"
#include "tmd/current.hpp"
#include "tmd/packetarea.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using Builder = std::uint32_t (*)(const vexbind::PolygonRecord& poly, const vexbind::MaterialRecord& mat,
                                  vexbind::PacketArea& area);

// The translucent bit of attribute words.
inline constexpr std::uint32_t trans = 0x00200000;

// A polygon's attribute word, and the packet and counters that follow from it.
struct ExpectedPacket {
    const char* name;
    Builder build;
    std::uint32_t attr;
    std::uint32_t header; // mode and flag, where set_primitive puts them
    const char* bytes;
    vexbind::Counter* opaque;
    vexbind::Counter* translucent;
};

// Vertex indices are 03 02, 14 13, FF FF and 01 80 in the file, normal indices 0B 0A, 0D 0C, FE FF and 1F 1E.
inline constexpr std::array<std::int32_t, 4> vertices = {0x0203, 0x7F121314, -1, 0x00018001};
inline constexpr std::array<std::int32_t, 4> normals = {0x0A0B, 0x00050C0D, -2, 0x1E1F};

// The bytes of the area in file order: each word least significant first.
inline std::string bytesOfArea(const vexbind::PacketArea& area) {
    std::string bytes;
    for (const std::uint32_t word : area) {
        for (const unsigned shift : {0U, 8U, 16U, 24U}) {
            bytes += static_cast<char>(word >> shift & 0xFF);
        }
    }
    return bytes;
}

inline std::string hexOf(const std::string& bytes) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value >> 4];
        text += digits[value & 15];
        text += ' ';
    }
    return text;
}

inline std::vector<vexbind::Counter> counts() {
    std::vector<vexbind::Counter> values;
    for (const CounterWords& each : allCounters) {
        values.push_back(*each.counter);
    }
    return values;
}

// An area whose header holds mode and flag, where set_primitive puts them.
inline vexbind::PacketArea areaWith(std::uint32_t header) {
    vexbind::PacketArea area{};
    area.fill(0xEEEEEEEE);
    area[0] = header | 0xEEEE; // olen and ilen are still to come
    return area;
}

// What a builder is given.
struct BuilderInput {
    Builder build;
    vexbind::PolygonRecord poly;
    vexbind::MaterialRecord mat;
    std::uint32_t header; // mode and flag
};

// Expects `size` from the builder, the area to begin with the bytes `expected` and to be EE behind them, and
// one more packet in `counter` alone.
inline void expectBuilt(const BuilderInput& input, std::size_t size, std::string expected,
                        const vexbind::Counter* counter) {
    expected.resize(vexbind::packetBytes, '\xEE');
    std::vector<vexbind::Counter> expectedCounts = counts();
    for (std::size_t i = 0; i < allCounters.size(); ++i) {
        expectedCounts[i] += allCounters[i].counter == counter ? 1 : 0;
    }
    vexbind::PacketArea area = areaWith(input.header);
    EXPECT_EQ(input.build(input.poly, input.mat, area), size);
    EXPECT_EQ(hexOf(bytesOfArea(area)), hexOf(expected));
    EXPECT_EQ(counts(), expectedCounts);
}

// A polygon of vertices and normals that the object of dumpBy has.
inline vexbind::PolygonRecord smallPolygon(std::uint32_t attr) {
    return {.attr = attr, .vert = {0, 1, 2, 3}, .norm = {4, 3, 2, 1}, .mat_no = 0};
}

// The lines that a builder prints for polygon `number` of an object of five vertices and normals.
inline std::string dumpBy(const BuilderInput& input, std::uint32_t number) {
    const ModelTables tables({.vertices = 5, .normals = 5});
    for (std::int16_t i = 0; i < 5; ++i) {
        vertexAt(i) = {.x = i, .y = static_cast<std::int16_t>(-i), .z = 100};
        normalAt(i) = {.x = 4096, .y = i, .z = -4096};
    }
    vexbind::RSD object = plainObject();
    object.nvert = 5;
    object.nnorm = 5;
    vexbind::currentObject = &object;
    vexbind::currentPolygon = number;
    std::FILE* before = vexbind::dout;
    const std::string text = printed([&](std::FILE* stream) {
        vexbind::dout = stream;
        vexbind::PacketArea area = areaWith(input.header);
        input.build(input.poly, input.mat, area);
    });
    vexbind::dout = before;
    vexbind::currentObject = nullptr;
    vexbind::currentPolygon = 0;
    return text;
}
