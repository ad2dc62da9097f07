#include "tmd/counters.hpp"

namespace vexbind {

// clang-format off
Counter nFlat3 = 0, nFlat4 = 0, nFlatTrans3 = 0, nFlatTrans4 = 0;
Counter nFlat3NoLight = 0, nFlat4NoLight = 0, nFlatTrans3NoLight = 0, nFlatTrans4NoLight = 0;
Counter nGouraud3 = 0, nGouraud4 = 0, nGouraudTrans3 = 0, nGouraudTrans4 = 0;
Counter nGouraud3NoLight = 0, nGouraud4NoLight = 0, nGouraudTrans3NoLight = 0, nGouraudTrans4NoLight = 0;
Counter nGradFlat3 = 0, nGradFlat4 = 0, nGradFlatTrans3 = 0, nGradFlatTrans4 = 0;
Counter nGradGouraud3 = 0, nGradGouraud4 = 0, nGradGouraudTrans3 = 0, nGradGouraudTrans4 = 0;
Counter nFlat3Tex = 0, nFlat4Tex = 0, nFlatTrans3Tex = 0, nFlatTrans4Tex = 0;
Counter nFlat3TexNoLight = 0, nFlat4TexNoLight = 0, nFlatTrans3TexNoLight = 0, nFlatTrans4TexNoLight = 0;
Counter nGouraud3Tex = 0, nGouraud4Tex = 0, nGouraudTrans3Tex = 0, nGouraudTrans4Tex = 0;
Counter nGouraud3TexNoLight = 0, nGouraud4TexNoLight = 0, nGouraudTrans3TexNoLight = 0, nGouraudTrans4TexNoLight = 0;
Counter nFlatLine = 0, nGouraudLine = 0, nFlatTransLine = 0, nGouraudTransLine = 0;
Counter nSpriteFree = 0, nSprite1 = 0, nSprite8 = 0, nSprite16 = 0;
Counter nTransSpriteFree = 0, nTransSprite1 = 0, nTransSprite8 = 0, nTransSprite16 = 0;
Counter nOthers = 0;

static constexpr char _Null[]      = "";
static constexpr char _Flat[]      = "Flat ";
static constexpr char _Gouraud[]   = "Gouraud ";
static constexpr char _Gradation[] = "Gradation ";
static constexpr char _Trans[]     = "Trans-";
static constexpr char _Colored[]   = "Colored ";
static constexpr char _Textured[]  = "Textured ";
static constexpr char _Tri[]       = "Triangles";
static constexpr char _Quad[]      = "Quadrangles";
static constexpr char _NoLight[]   = " (Light OFF)";
static constexpr char _Lines[]     = "Lines";
static constexpr char _Sprite[]    = "3D Sprites";
static constexpr char _Free[]      = "(Free)";
static constexpr char _1x1[]       = "(1x1)";
static constexpr char _8x8[]       = "(8x8)";
static constexpr char _16x16[]     = "(16x16)";

// Kept: the gouraud line counters say "Gradation".
constexpr std::array<CounterLine, counterTotal> counterLines = {{
    {&nFlat3,                    {_Flat     , _Null , _Colored  , _Tri     , _Null}},
    {&nFlat4,                    {_Flat     , _Null , _Colored  , _Quad    , _Null}},
    {&nFlatTrans3,               {_Flat     , _Trans, _Colored  , _Tri     , _Null}},
    {&nFlatTrans4,               {_Flat     , _Trans, _Colored  , _Quad    , _Null}},
    {&nFlat3NoLight,             {_Flat     , _Null , _Colored  , _Tri     , _NoLight}},
    {&nFlat4NoLight,             {_Flat     , _Null , _Colored  , _Quad    , _NoLight}},
    {&nFlatTrans3NoLight,        {_Flat     , _Trans, _Colored  , _Tri     , _NoLight}},
    {&nFlatTrans4NoLight,        {_Flat     , _Trans, _Colored  , _Quad    , _NoLight}},
    {&nGouraud3,                 {_Gouraud  , _Null , _Colored  , _Tri     , _Null}},
    {&nGouraud4,                 {_Gouraud  , _Null , _Colored  , _Quad    , _Null}},
    {&nGouraudTrans3,            {_Gouraud  , _Trans, _Colored  , _Tri     , _Null}},
    {&nGouraudTrans4,            {_Gouraud  , _Trans, _Colored  , _Quad    , _Null}},
    {&nGouraud3NoLight,          {_Gouraud  , _Null , _Colored  , _Tri     , _NoLight}},
    {&nGouraud4NoLight,          {_Gouraud  , _Null , _Colored  , _Quad    , _NoLight}},
    {&nGouraudTrans3NoLight,     {_Gouraud  , _Trans, _Colored  , _Tri     , _NoLight}},
    {&nGouraudTrans4NoLight,     {_Gouraud  , _Trans, _Colored  , _Quad    , _NoLight}},
    {&nGradFlat3,                {_Flat     , _Null , _Gradation, _Tri     , _Null}},
    {&nGradFlat4,                {_Flat     , _Null , _Gradation, _Quad    , _Null}},
    {&nGradFlatTrans3,           {_Flat     , _Trans, _Gradation, _Tri     , _Null}},
    {&nGradFlatTrans4,           {_Flat     , _Trans, _Gradation, _Quad    , _Null}},
    {&nGradGouraud3,             {_Gouraud  , _Null , _Gradation, _Tri     , _Null}},
    {&nGradGouraud4,             {_Gouraud  , _Null , _Gradation, _Quad    , _Null}},
    {&nGradGouraudTrans3,        {_Gouraud  , _Trans, _Gradation, _Tri     , _Null}},
    {&nGradGouraudTrans4,        {_Gouraud  , _Trans, _Gradation, _Quad    , _Null}},
    {&nFlat3Tex,                 {_Flat     , _Null , _Textured , _Tri     , _Null}},
    {&nFlat4Tex,                 {_Flat     , _Null , _Textured , _Quad    , _Null}},
    {&nFlatTrans3Tex,            {_Flat     , _Trans, _Textured , _Tri     , _Null}},
    {&nFlatTrans4Tex,            {_Flat     , _Trans, _Textured , _Quad    , _Null}},
    {&nFlat3TexNoLight,          {_Flat     , _Null , _Textured , _Tri     , _NoLight}},
    {&nFlat4TexNoLight,          {_Flat     , _Null , _Textured , _Quad    , _NoLight}},
    {&nFlatTrans3TexNoLight,     {_Flat     , _Trans, _Textured , _Tri     , _NoLight}},
    {&nFlatTrans4TexNoLight,     {_Flat     , _Trans, _Textured , _Quad    , _NoLight}},
    {&nGouraud3Tex,              {_Gouraud  , _Null , _Textured , _Tri     , _Null}},
    {&nGouraud4Tex,              {_Gouraud  , _Null , _Textured , _Quad    , _Null}},
    {&nGouraudTrans3Tex,         {_Gouraud  , _Trans, _Textured , _Tri     , _Null}},
    {&nGouraudTrans4Tex,         {_Gouraud  , _Trans, _Textured , _Quad    , _Null}},
    {&nGouraud3TexNoLight,       {_Gouraud  , _Null , _Textured , _Tri     , _NoLight}},
    {&nGouraud4TexNoLight,       {_Gouraud  , _Null , _Textured , _Quad    , _NoLight}},
    {&nGouraudTrans3TexNoLight,  {_Gouraud  , _Trans, _Textured , _Tri     , _NoLight}},
    {&nGouraudTrans4TexNoLight,  {_Gouraud  , _Trans, _Textured , _Quad    , _NoLight}},
    {&nFlatLine,                 {_Flat     , _Null , _Null     , _Lines   , _Null}},
    {&nGouraudLine,              {_Gradation, _Null , _Null     , _Lines   , _Null}},
    {&nFlatTransLine,            {_Flat     , _Trans, _Null     , _Lines   , _Null}},
    {&nGouraudTransLine,         {_Gradation, _Trans, _Null     , _Lines   , _Null}},
    {&nSpriteFree,               {_Null     , _Null , _Null     , _Sprite  , _Free}},
    {&nSprite1,                  {_Null     , _Null , _Null     , _Sprite  , _1x1}},
    {&nSprite8,                  {_Null     , _Null , _Null     , _Sprite  , _8x8}},
    {&nSprite16,                 {_Null     , _Null , _Null     , _Sprite  , _16x16}},
    {&nTransSpriteFree,          {_Null     , _Trans, _Null     , _Sprite  , _Free}},
    {&nTransSprite1,             {_Null     , _Trans, _Null     , _Sprite  , _1x1}},
    {&nTransSprite8,             {_Null     , _Trans, _Null     , _Sprite  , _8x8}},
    {&nTransSprite16,            {_Null     , _Trans, _Null     , _Sprite  , _16x16}},
    {&nOthers,                   {_Null     , _Null , _Null     , "unknown", _Null}},
}};
// clang-format on

static constexpr bool each_counter_once() {
    for (std::size_t i = 0; i < counterTotal; ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            if (counterLines[i].count == counterLines[k].count) {
                return false;
            }
        }
    }
    return true;
}
static_assert(each_counter_once(), "every counter has one line of its own");

} // namespace vexbind
