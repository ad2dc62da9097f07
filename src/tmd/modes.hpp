// The mode and the flag byte of a packet's header, high bit to low.
#pragma once

#include <cstdint>

namespace vexbind {

// Mode: primitive code in the three high bits, and drawing options.
inline constexpr std::uint32_t codePolygon = 0x20;
inline constexpr std::uint32_t codeLine = 0x40;
inline constexpr std::uint32_t codeSprite = 0x60;
inline constexpr std::uint32_t modeIIP = 0x10;  // gouraud; on a line: gradation
inline constexpr std::uint32_t modeQuad = 0x08; // quadrangle
inline constexpr std::uint32_t modeTME = 0x04;  // textured
inline constexpr std::uint32_t modeABE = 0x02;  // translucent
inline constexpr std::uint32_t modeTGE = 0x01;  // no brightness calculation

// Mode of a sprite: in place of modeIIP and modeQuad, its size.
inline constexpr std::uint32_t spriteSizeMask = 0x18;
inline constexpr std::uint32_t spriteSizeFree = 0x00;
inline constexpr std::uint32_t spriteSize1 = 0x08;  // 1x1
inline constexpr std::uint32_t spriteSize8 = 0x10;  // 8x8
inline constexpr std::uint32_t spriteSize16 = 0x18; // 16x16

// Flag: options of the console's runtime.
inline constexpr std::uint32_t flagGRD = 0x04; // gradation
inline constexpr std::uint32_t flagFCE = 0x02; // two-sided
inline constexpr std::uint32_t flagLGT = 0x01; // light-source calculation off

/// The code of a mode byte as a number: 1 polygon, 2 line, 3 sprite.
constexpr std::uint32_t primitive_code(std::uint32_t mode) {
    return mode >> 5 & 7;
}

} // namespace vexbind
