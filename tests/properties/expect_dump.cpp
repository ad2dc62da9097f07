// The lines that -info writes about every packet.
#include "properties/expect.hpp"

#include "properties/format.hpp"

namespace properties {

namespace {

using enum TmdKind;

constexpr std::array<const char*, 4> pixelModes = {"4bit", "8bit", "16bit", "50% back + 50% polygon"};
constexpr std::array<const char*, 4> translucencies = {"50% back + 50% polygon", "100% back + 100% polygon",
                                                       "100% back - 100% polygon", "100% back + 25% polygon"};

class Dump {
  public:
    Dump(const ExpectedObject& of, int forTarget) : object(of), target(forTarget) {}

    std::string lines() {
        for (std::size_t i = 0; i < object.packets.size(); ++i) {
            addTitle(i, object.packets[i]);
            addLines(object.packets[i]);
        }
        return text;
    }

  private:
    void addTitle(std::size_t number, const ExpectedPacket& packet) {
        const Attributes& bits = packet.attributes;
        const bool isTextured = !packet.uv.empty();
        text += format("= [%3zu] ", number);
        const std::string trans = bits.translucent ? "TRANS " : "";
        if (packet.kind == sprite) {
            text += trans + "3D SPRITE";
        } else if (packet.kind == flatLine || packet.kind == gouraudLine) {
            text += (packet.kind == flatLine ? "FLAT " : "GRADATION ") + trans + "LINE";
        } else {
            text += bits.gouraud ? "GOURAUD " : "FLAT ";
            text += (isTextured ? "TEX " : "NO TEX ") + trans;
            if (bits.twoSided)
                text += isTextured && bits.gouraud ? "TWO-SIDES " : "TWO-SIDED ";
            if (!isTextured && bits.gradation && !bits.lightOff)
                text += "GRADATION ";
            text += packet.type == 0 ? "3-POLY" : "4-POLY";
        }
        text += format("(0x%x)", packet.header());
        if (packet.type != 2 && packet.type != 3)
            text += bits.lightOff ? " LIGHT: OFF" : " LIGHT: ON";
        text += " =\n";
        if (packet.type > 3)
            text += " <Bad Data>\n";
    }

    void addLines(const ExpectedPacket& packet) {
        addIndices("Vert", packet.vertices, object.vertices);
        addIndices("Norm", packet.normals, object.normals);
        switch (packet.kind) {
        case flatLine:
        case flatLightOff:
        case gouraud:
            addColours(packet, "\tColor :", "");
            break;
        case gouraudLine:
            addColours(packet, "\tColor :", "-");
            break;
        case flat:
            addColours(packet, "\tColor : ", " ");
            break;
        case flatGradation:
        case gouraudLightOff:
        case gouraudGradation:
            addColours(packet, "\tColors: ", " ");
            break;
        case sprite:
            text += format("\t(u v, wxh) = (%d, %d, %dx%d)\n", packet.uv[0][0], packet.uv[0][1], packet.width,
                           packet.height);
            addPlace(packet);
            break;
        default:
            addTextured(packet);
            break;
        }
    }

    void addTextured(const ExpectedPacket& packet) {
        text += format("\tUV 0-%zu:", packet.uv.size() - 1);
        for (const std::array<int, 2>& uv : packet.uv)
            text += format(" (%3d %3d)", uv[0], uv[1]);
        text += "\n";
        if (packet.kind == flatTextureLightOff)
            addColours(packet, "\tColor : ", " ");
        if (packet.kind == gouraudTextureLightOff)
            addColours(packet, "\tColor :", "");
        addPlace(packet);
    }

    void addIndices(const char* what, const std::vector<int>& indices,
                    const std::vector<std::array<int, 3>>& table) {
        for (std::size_t i = 0; i < indices.size(); ++i) {
            const std::array<int, 3>& at = table.at(static_cast<std::size_t>(indices[i]));
            text += format("\t%s-%zu: (%6d, %6d, %6d) (#%d)\n", what, i, wrapped(at[0]), wrapped(at[1]),
                           wrapped(at[2]), indices[i]);
        }
    }

    // A colour is followed by a blank, or by nothing; or there is something between colours, a blank where
    // that is nothing.
    void addColours(const ExpectedPacket& packet, const char* title, const std::string& mark) {
        text += title;
        for (std::size_t i = 0; i < packet.colours.size(); ++i) {
            const Colour& colour = packet.colours[i];
            if (mark != " ")
                text += i > 0 && !mark.empty() ? mark : " ";
            text += format("(%3d %3d %3d)", colour[0], colour[1], colour[2]);
            if (mark == " ")
                text += mark;
        }
        text += "\n";
    }

    void addPlace(const ExpectedPacket& packet) {
        const unsigned pixelMode = packet.tsb >> (target == 1 ? 9U : 7U) & 3U;
        text += std::string("\tPixel mode  : ") + pixelModes.at(pixelMode);
        if (pixelMode < 2) {
            text += format(" CLUT : (x y)=(%3u %3u)", packet.cba % 64 * 16,
                           packet.cba >> 6U & (target == 0 ? 0x1FFU : 0x3FFU));
        }
        unsigned page = packet.tsb & (target == 1 ? 127U : 31U);
        if (target == 2)
            page += (packet.tsb & 0x800U) >> 6U;
        text += format("\n\tTexture Page: %2u   Texture No. : %2d\n", page, packet.texture);
        if (packet.attributes.translucent) {
            const unsigned rate = packet.tsb >> (target == 1 ? 7U : 5U) & 3U;
            text += std::string("\tTranslucency: ") + translucencies.at(rate) + "\n";
        }
    }

    const ExpectedObject& object;
    int target;
    std::string text;
};

} // namespace

std::string expectedDump(const ExpectedObject& object, int target) {
    return Dump(object, target).lines();
}

} // namespace properties
