#include "tmd/texcoord.hpp"

#include "model/attributes.hpp"
#include "settings/settings.hpp"

namespace vexbind {

/// The texture's x within its page, in texels, of which a frame-buffer unit holds four, two or one.
// Kept: the whole byte is compared, so that any other bit of the flag word makes it one.
static std::uint32_t texel_offset(const TextureRecord& texture) {
    const std::uint32_t units = texture.pixel_x % 64;
    switch (texture.pmode) {
    case 0:
    case 8:
        return units * 4;
    case 1:
    case 9:
        return units * 2;
    default:
        return units;
    }
}

/// The texture page code, with the translucency rate of a translucent polygon.
// Kept: the rate's place depends on the target.
static std::uint32_t page_with_rate(const TextureRecord& texture, std::uint32_t attr) {
    if ((attr & translucentBit) == 0) {
        return texture.tpage;
    }
    return texture.tpage | translucency_rate(attr) << (arcade == arcadeLayoutA ? 7 : 5);
}

void set_texture(PacketSource& source, std::uint32_t attr, const ParamList& params, std::size_t corners) {
    const TextureRecord& texture = texture_of(params[textureNumber]);
    const std::uint32_t offset = texel_offset(texture);
    for (std::size_t i = 0; i < corners; ++i) {
        source.uv[2 * i] = static_cast<std::uint8_t>(params[texels + 2 * i] + offset);
        source.uv[2 * i + 1] = static_cast<std::uint8_t>(params[texels + 2 * i + 1] + texture.pixel_y);
    }
    source.cba = static_cast<std::uint16_t>(texture.clut_id);
    source.tsb = static_cast<std::uint16_t>(page_with_rate(texture, attr));
}

} // namespace vexbind
