// All statistics counters in the order of the report, each with the words that its line ends in.
#pragma once

#include "tmd/counters.hpp"

#include <array>

struct CounterWords {
    vexbind::Counter* counter;
    const char* words;
};

inline const std::array<CounterWords, 53> allCounters = {{
    {&vexbind::nFlat3, "Flat Colored Triangles"},
    {&vexbind::nFlat4, "Flat Colored Quadrangles"},
    {&vexbind::nFlatTrans3, "Flat Trans-Colored Triangles"},
    {&vexbind::nFlatTrans4, "Flat Trans-Colored Quadrangles"},
    {&vexbind::nFlat3NoLight, "Flat Colored Triangles (Light OFF)"},
    {&vexbind::nFlat4NoLight, "Flat Colored Quadrangles (Light OFF)"},
    {&vexbind::nFlatTrans3NoLight, "Flat Trans-Colored Triangles (Light OFF)"},
    {&vexbind::nFlatTrans4NoLight, "Flat Trans-Colored Quadrangles (Light OFF)"},
    {&vexbind::nGouraud3, "Gouraud Colored Triangles"},
    {&vexbind::nGouraud4, "Gouraud Colored Quadrangles"},
    {&vexbind::nGouraudTrans3, "Gouraud Trans-Colored Triangles"},
    {&vexbind::nGouraudTrans4, "Gouraud Trans-Colored Quadrangles"},
    {&vexbind::nGouraud3NoLight, "Gouraud Colored Triangles (Light OFF)"},
    {&vexbind::nGouraud4NoLight, "Gouraud Colored Quadrangles (Light OFF)"},
    {&vexbind::nGouraudTrans3NoLight, "Gouraud Trans-Colored Triangles (Light OFF)"},
    {&vexbind::nGouraudTrans4NoLight, "Gouraud Trans-Colored Quadrangles (Light OFF)"},
    {&vexbind::nGradFlat3, "Flat Gradation Triangles"},
    {&vexbind::nGradFlat4, "Flat Gradation Quadrangles"},
    {&vexbind::nGradFlatTrans3, "Flat Trans-Gradation Triangles"},
    {&vexbind::nGradFlatTrans4, "Flat Trans-Gradation Quadrangles"},
    {&vexbind::nGradGouraud3, "Gouraud Gradation Triangles"},
    {&vexbind::nGradGouraud4, "Gouraud Gradation Quadrangles"},
    {&vexbind::nGradGouraudTrans3, "Gouraud Trans-Gradation Triangles"},
    {&vexbind::nGradGouraudTrans4, "Gouraud Trans-Gradation Quadrangles"},
    {&vexbind::nFlat3Tex, "Flat Textured Triangles"},
    {&vexbind::nFlat4Tex, "Flat Textured Quadrangles"},
    {&vexbind::nFlatTrans3Tex, "Flat Trans-Textured Triangles"},
    {&vexbind::nFlatTrans4Tex, "Flat Trans-Textured Quadrangles"},
    {&vexbind::nFlat3TexNoLight, "Flat Textured Triangles (Light OFF)"},
    {&vexbind::nFlat4TexNoLight, "Flat Textured Quadrangles (Light OFF)"},
    {&vexbind::nFlatTrans3TexNoLight, "Flat Trans-Textured Triangles (Light OFF)"},
    {&vexbind::nFlatTrans4TexNoLight, "Flat Trans-Textured Quadrangles (Light OFF)"},
    {&vexbind::nGouraud3Tex, "Gouraud Textured Triangles"},
    {&vexbind::nGouraud4Tex, "Gouraud Textured Quadrangles"},
    {&vexbind::nGouraudTrans3Tex, "Gouraud Trans-Textured Triangles"},
    {&vexbind::nGouraudTrans4Tex, "Gouraud Trans-Textured Quadrangles"},
    {&vexbind::nGouraud3TexNoLight, "Gouraud Textured Triangles (Light OFF)"},
    {&vexbind::nGouraud4TexNoLight, "Gouraud Textured Quadrangles (Light OFF)"},
    {&vexbind::nGouraudTrans3TexNoLight, "Gouraud Trans-Textured Triangles (Light OFF)"},
    {&vexbind::nGouraudTrans4TexNoLight, "Gouraud Trans-Textured Quadrangles (Light OFF)"},
    {&vexbind::nFlatLine, "Flat Lines"},
    {&vexbind::nGouraudLine, "Gradation Lines"},
    {&vexbind::nFlatTransLine, "Flat Trans-Lines"},
    {&vexbind::nGouraudTransLine, "Gradation Trans-Lines"},
    {&vexbind::nSpriteFree, "3D Sprites(Free)"},
    {&vexbind::nSprite1, "3D Sprites(1x1)"},
    {&vexbind::nSprite8, "3D Sprites(8x8)"},
    {&vexbind::nSprite16, "3D Sprites(16x16)"},
    {&vexbind::nTransSpriteFree, "Trans-3D Sprites(Free)"},
    {&vexbind::nTransSprite1, "Trans-3D Sprites(1x1)"},
    {&vexbind::nTransSprite8, "Trans-3D Sprites(8x8)"},
    {&vexbind::nTransSprite16, "Trans-3D Sprites(16x16)"},
    {&vexbind::nOthers, "unknown"},
}};
