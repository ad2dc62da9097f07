// The tables of the packets in the manual of the formats are those of the sources.
#include "docs/mdoc.hpp"
#include "runner/run_case.hpp"
#include "tmd/modes.hpp"
#include "tmd/packetrows.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

const std::string formatsPage = VEXBIND_MAN "/vexbind.5";

std::string hexByte(std::size_t value) {
    std::array<char, 3> text{};
    std::snprintf(text.data(), text.size(), "%02x", static_cast<unsigned>(value & 0xFF));
    return text.data();
}

using Bits = std::vector<std::pair<std::string, std::string>>;

// The first two cells of the rows of a section's tables.
Bits bitsOf(std::string_view section) {
    Bits bits;
    for (const Item& item : itemsOf(readWholeFile(formatsPage), section)) {
        const std::vector<std::string> cells = cellsOf(item);
        bits.emplace_back(cells[0], cells.size() > 1 ? cells[1] : "");
    }
    return bits;
}

TEST(PacketTables, BitsAreThoseOfTheCode) {
    using namespace vexbind;
    EXPECT_EQ(bitsOf("Mode"), (Bits{
                                  {hexByte(codePolygon), "polygon"},
                                  {hexByte(codeLine), "line"},
                                  {hexByte(codeSprite), "sprite"},
                                  {hexByte(modeIIP), "IIP"},
                                  {hexByte(modeQuad), "quad"},
                                  {hexByte(modeTME), "TME"},
                                  {hexByte(modeABE), "ABE"},
                                  {hexByte(modeTGE), "TGE"},
                                  {hexByte(spriteSizeFree), "free"},
                                  {hexByte(spriteSize1), "1x1"},
                                  {hexByte(spriteSize8), "8x8"},
                                  {hexByte(spriteSize16), "16x16"},
                              }));
    EXPECT_EQ(bitsOf("Flag"), (Bits{
                                  {hexByte(flagGRD), "GRD"},
                                  {hexByte(flagFCE), "FCE"},
                                  {hexByte(flagLGT), "LGT"},
                              }));
}

TEST(PacketTables, HeaderOfThePacketIsThatOfTheCode) {
    using namespace vexbind;
    EXPECT_EQ(bitsOf("Packets"), (Bits{
                                     {std::to_string(olenOffset), "olen"},
                                     {std::to_string(ilenOffset), "ilen"},
                                     {std::to_string(flagOffset), "flag"},
                                     {std::to_string(modeOffset), "mode"},
                                 }));
}

// A packet as words of four bytes, each byte a hexadecimal number or the name of what stands there.
using Words = std::vector<std::string>;

// What a variant is besides its row: mode and flag, opaque and with one side.
struct Header {
    std::uint32_t mode;
    std::uint32_t flag;
};

Header headerOf(vexbind::PacketVariant variant) {
    using namespace vexbind;
    constexpr std::uint32_t dark = codePolygon | modeTGE;
    constexpr std::uint32_t sprite = codeSprite | modeTME;
    switch (variant) {
    case flatPlain3:
        return {codePolygon, 0};
    case flatPlain4:
        return {codePolygon | modeQuad, 0};
    case flatGrad3:
        return {codePolygon, flagGRD};
    case flatGrad4:
        return {codePolygon | modeQuad, flagGRD};
    case flatDark3:
    case flatDarkOther:
        return {dark, flagLGT};
    case flatDark4:
        return {dark | modeQuad, flagLGT};
    case gouraudPlain3:
        return {codePolygon | modeIIP, 0};
    case gouraudPlain4:
        return {codePolygon | modeIIP | modeQuad, 0};
    case gouraudGrad3:
        return {codePolygon | modeIIP, flagGRD};
    case gouraudGrad4:
        return {codePolygon | modeIIP | modeQuad, flagGRD};
    case gouraudDark3:
    case gouraudDarkGrad3:
        return {dark | modeIIP, flagLGT};
    case gouraudDark4:
    case gouraudDarkGrad4:
        return {dark | modeIIP | modeQuad, flagLGT};
    case flatTex3:
        return {codePolygon | modeTME, 0};
    case flatTex4:
        return {codePolygon | modeTME | modeQuad, 0};
    case flatTexDark3:
        return {dark | modeTME, flagLGT};
    case flatTexDark4:
        return {dark | modeTME | modeQuad, flagLGT};
    case gouraudTex3:
        return {codePolygon | modeTME | modeIIP, 0};
    case gouraudTex4:
        return {codePolygon | modeTME | modeIIP | modeQuad, 0};
    case gouraudTexDark3:
    case gouraudTexDarkGrad3:
        return {dark | modeTME | modeIIP, flagLGT};
    case gouraudTexDark4:
    case gouraudTexDarkGrad4:
        return {dark | modeTME | modeIIP | modeQuad, flagLGT};
    case lineFlat:
        return {codeLine, flagLGT};
    case lineGrad:
        return {codeLine | modeIIP, flagLGT};
    case spriteFree:
        return {sprite | spriteSizeFree, flagLGT};
    case sprite1x1:
        return {sprite | spriteSize1, flagLGT};
    case sprite8x8:
        return {sprite | spriteSize8, flagLGT};
    case sprite16x16:
        return {sprite | spriteSize16, flagLGT};
    case packetVariants:
        break;
    }
    return {};
}

// The bytes of a field as the page names them.
std::vector<std::string> bytesOf(vexbind::Field field) {
    using enum vexbind::Field;
    const auto number = [field](vexbind::Field first) {
        return std::to_string(static_cast<int>(field) - static_cast<int>(first));
    };
    switch (field) {
    case C0:
    case C1:
    case C2:
    case C3:
        return {"R" + number(C0), "G" + number(C0), "B" + number(C0)};
    case mode:
        return {"md"};
    case N0:
    case N1:
    case N2:
    case N3:
        return {"N" + number(N0), "N" + number(N0)};
    case V0:
    case V1:
    case V2:
    case V3:
        return {"V" + number(V0), "V" + number(V0)};
    case UV0:
    case UV1:
    case UV2:
    case UV3:
        return {"u" + number(UV0), "v" + number(UV0)};
    case cba:
        return {"cb", "cb"};
    case tsb:
        return {"ts", "ts"};
    case width:
        return {"wd", "wd"};
    case height:
        return {"ht", "ht"};
    case noV3:
    case zero2:
        return {"00", "00"};
    case zero:
        return {"00"};
    case stale:
        return {"xx"};
    case behind:
    case none:
        break;
    }
    return {};
}

// A row of the code's table, copied at compile time without its counters, which are not linked here.
struct Layout {
    std::uint8_t size = 0;
    std::uint8_t olen = 0;
    std::array<vexbind::Field, vexbind::maxFields> fields{};
};

constexpr auto layouts = [] {
    std::array<Layout, vexbind::packetVariants> all{};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const vexbind::PacketRow& row = vexbind::packetRows[i];
        all[i] = {.size = row.size, .olen = row.olen, .fields = row.fields};
    }
    return all;
}();

Words packetOf(std::size_t variant) {
    const Layout& layout = layouts[variant];
    const Header header = headerOf(static_cast<vexbind::PacketVariant>(variant));
    std::vector<std::string> bytes = {hexByte(layout.olen), hexByte(layout.size / 4U - 1U),
                                      hexByte(header.flag), hexByte(header.mode)};
    for (const vexbind::Field field : layout.fields) {
        if (field == vexbind::Field::behind) {
            break;
        }
        for (const std::string& byte : bytesOf(field)) {
            bytes.push_back(byte);
        }
    }
    Words words;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        words.push_back(bytes[i] + " " + bytes[i + 1] + " " + bytes[i + 2] + " " + bytes[i + 3]);
    }
    return words;
}

// The columns of a display whose lines are an offset and a word of each packet; none of any other display.
// Column i begins at firstColumn + i * columnWidth.
std::vector<Words> columnsOf(const Display& display) {
    static constexpr std::size_t firstColumn = 6;
    static constexpr std::size_t columnWidth = 13;
    const std::regex line("( *\\d+)  (?: *[0-9a-zA-Z]{2} [0-9a-zA-Z]{2} [0-9a-zA-Z]{2} [0-9a-zA-Z]{2})+");
    std::vector<Words> columns;
    std::size_t offset = 0;
    for (const std::string& text : display.lines) {
        std::smatch found;
        if (!std::regex_match(text, found, line) || found[1].length() != 4) {
            EXPECT_TRUE(columns.empty()) << "a line of a table cannot be read: " << text;
            continue;
        }
        EXPECT_EQ(std::stoul(found[1]), offset) << text;
        for (std::size_t i = 0; firstColumn + i * columnWidth < text.size(); ++i) {
            const std::string word = text.substr(firstColumn + i * columnWidth, columnWidth - 2);
            if (word.find_first_not_of(' ') == std::string::npos) {
                continue;
            }
            if (offset == 0) {
                columns.emplace_back();
            }
            if (i >= columns.size() || columns[i].size() != offset / 4) {
                ADD_FAILURE() << "a word without one above it: " << text;
                return columns;
            }
            columns[i].push_back(word);
        }
        offset += 4;
    }
    return columns;
}

std::vector<Words> packetsOfThePage() {
    std::vector<Words> packets;
    for (const Display& display : readDisplays(readWholeFile(formatsPage))) {
        for (const Words& column : columnsOf(display)) {
            packets.push_back(column);
        }
    }
    return packets;
}

// The one colour of a packet whose vertices all have it, in the places of all colours.
Words withOneColour(Words words) {
    for (std::string& word : words) {
        word = std::regex_replace(word, std::regex("R[1-3] G[1-3] B[1-3]"), "R0 G0 B0");
    }
    return words;
}

TEST(PacketTables, PacketsAreThoseOfTheCode) {
    using namespace vexbind;
    // These have the layout of the packet with a colour for each vertex, and the same header.
    const std::map<std::size_t, std::size_t> copies = {
        {gouraudDark3, gouraudDarkGrad3},
        {gouraudDark4, gouraudDarkGrad4},
        {gouraudTexDark3, gouraudTexDarkGrad3},
        {gouraudTexDark4, gouraudTexDarkGrad4},
    };
    std::vector<Words> expected;
    for (std::size_t variant = 0; variant < packetVariants; ++variant) {
        const Words packet = packetOf(variant);
        ASSERT_EQ(packet.size() * 4, layouts[variant].size) << variant;
        if (copies.contains(variant)) {
            EXPECT_EQ(packet, withOneColour(packetOf(copies.at(variant)))) << variant;
        } else {
            expected.push_back(packet);
        }
    }
    std::vector<Words> shown = packetsOfThePage();
    std::sort(expected.begin(), expected.end());
    std::sort(shown.begin(), shown.end());
    EXPECT_EQ(shown, expected);
}

} // namespace
