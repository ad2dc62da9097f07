// The numbers of the materials: short byte lists, millions of them in a large model, kept in the records or
// side by side in a pool, and counted like blocks of their own.
#pragma once

#include "model/tables.hpp"

#include <array>
#include <cstdint>
#include <span>

namespace vexbind {

/// The longest list: a texture number, four U V pairs and four colours.
inline constexpr std::size_t maxParams = 21;

// Where the numbers of a textured material stand in its list; the colours of any other begin at 0.
inline constexpr std::size_t textureNumber = 0;
inline constexpr std::size_t texels = 1; // U V for vertex 0 to 3
inline constexpr std::size_t texturedColours = 9;

using ParamList = std::array<std::uint8_t, maxParams>;

/// Stores `bytes` (at most maxParams) as the list of `record`; none leaves it without a list. A failure is
/// raised as ALC_ERR, named "UCHAR", at allocFailed.
void set_params(MaterialRecord& record, std::span<const std::uint8_t> bytes);

/// The list of `record`; bytes beyond it, or all when there is none, are 0.
ParamList get_params(const MaterialRecord& record);

/// Counts the release of the record's list, if any, and forgets it.
void free_params(MaterialRecord& record);

/// Forgets the lists in the pool, which must not be read any more: their places go to the next ones. Lists of
/// up to four numbers are in their records and stay.
void reuse_pool();

} // namespace vexbind
