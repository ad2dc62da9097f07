// How many primitives of each kind were built. All counters start at zero, are raised by the builders
// and are never reset.
//
// In the names, 3 and 4 stand for triangle and quadrangle, Trans for translucent, NoLight for light off,
// Grad for a colour per vertex, Tex for textured.
#pragma once

#include <array>
#include <cstdint>

namespace vexbind {

using Counter = std::uint32_t;

extern Counter nFlat3, nFlat4, nFlatTrans3, nFlatTrans4;
extern Counter nFlat3NoLight, nFlat4NoLight, nFlatTrans3NoLight, nFlatTrans4NoLight;
extern Counter nGouraud3, nGouraud4, nGouraudTrans3, nGouraudTrans4;
extern Counter nGouraud3NoLight, nGouraud4NoLight, nGouraudTrans3NoLight, nGouraudTrans4NoLight;
extern Counter nGradFlat3, nGradFlat4, nGradFlatTrans3, nGradFlatTrans4;
extern Counter nGradGouraud3, nGradGouraud4, nGradGouraudTrans3, nGradGouraudTrans4;
extern Counter nFlat3Tex, nFlat4Tex, nFlatTrans3Tex, nFlatTrans4Tex;
extern Counter nFlat3TexNoLight, nFlat4TexNoLight, nFlatTrans3TexNoLight, nFlatTrans4TexNoLight;
extern Counter nGouraud3Tex, nGouraud4Tex, nGouraudTrans3Tex, nGouraudTrans4Tex;
extern Counter nGouraud3TexNoLight, nGouraud4TexNoLight, nGouraudTrans3TexNoLight, nGouraudTrans4TexNoLight;
extern Counter nFlatLine, nGouraudLine, nFlatTransLine, nGouraudTransLine;
extern Counter nSpriteFree, nSprite1, nSprite8, nSprite16;
extern Counter nTransSpriteFree, nTransSprite1, nTransSprite8, nTransSprite16;
extern Counter nOthers; // Kept: listed, but nothing raises it.

inline constexpr std::size_t counterLabels = 5;

/// A line of the summary: the count and the words that run together behind it.
struct CounterLine {
    const Counter* count;
    std::array<const char*, counterLabels> labels;
};

inline constexpr std::size_t counterTotal = 53;

/// All counters in the order of the report.
extern const std::array<CounterLine, counterTotal> counterLines;

} // namespace vexbind
