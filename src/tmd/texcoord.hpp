// What textured polygons and sprites take from their texture.
#pragma once

#include "model/tim.hpp"
#include "tmd/packets.hpp"

#include <cstddef>
#include <cstdint>

namespace vexbind {

/// Fills texel coordinates for the first `corners` vertices, CLUT and texture page code of `source`. `attr`
/// is the polygon's attribute word, `params` its material's list.
void set_texture(PacketSource& source, std::uint32_t attr, const ParamList& params, std::size_t corners);

} // namespace vexbind
