// The bits of the two attribute words, high to low.
#pragma once

#include <cstdint>

namespace vexbind {

// The attribute word of a polygon record.
inline constexpr std::uint32_t typeShift = 24; // 31-24: a PrimitiveType, or 4 to 7
inline constexpr std::uint32_t typeMask = 0xFFU << typeShift;
inline constexpr std::uint32_t texturedBit = 1U << 23; // kind "T", "D" or "H"
inline constexpr std::uint32_t gouraudBit = 1U << 22;  // one normal per vertex
inline constexpr std::uint32_t translucentBit = 1U << 21;
inline constexpr std::uint32_t transRateShift = 19; // 20-19: 0 to 3
inline constexpr std::uint32_t transRateMask = 3U << transRateShift;
inline constexpr std::uint32_t twoSidedBit = 1U << 18;  // both faces are drawn
inline constexpr std::uint32_t lightOffBit = 1U << 17;  // no light-source calculation
inline constexpr std::uint32_t gradationBit = 1U << 16; // one colour per vertex

// The attribute byte of a material, as MAT files write it.
inline constexpr std::uint32_t materialRateShift = 3; // 4-3: semi-transparency rate
inline constexpr std::uint32_t materialRateMask = 3U << materialRateShift;
inline constexpr std::uint32_t materialTranslucent = 1U << 2;
inline constexpr std::uint32_t materialTwoSided = 1U << 1;
inline constexpr std::uint32_t materialLightOff = 1U << 0;

/// The types that PLY files give; 4 to 7 occur too and are drawn as polygons.
enum PrimitiveType : std::uint32_t { triangle = 0, quadrangle = 1, line = 2, sprite3d = 3 };

constexpr std::uint32_t primitive_type(std::uint32_t attr) {
    return attr >> typeShift;
}

constexpr std::uint32_t translucency_rate(std::uint32_t attr) {
    return (attr & transRateMask) >> transRateShift;
}

} // namespace vexbind
