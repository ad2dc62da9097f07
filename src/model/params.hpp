// The numbers of the materials: short byte lists, millions of them in a large model, kept side by side
// in a pool and counted like blocks of their own.
#pragma once

#include "model/tables.hpp"

#include <array>
#include <cstdint>
#include <span>

namespace vexbind {

/// The longest list: a texture number, four U V pairs and four colours.
inline constexpr std::size_t maxParams = 21;
using ParamList = std::array<std::uint8_t, maxParams>;

/// Stores `bytes` (at most maxParams) as the list of `record`; none leaves it without a list. A failure is
/// raised as ALC_ERR, named "UCHAR", at allocFailed.
void set_params(MaterialRecord& record, std::span<const std::uint8_t> bytes);

/// The list of `record`; bytes beyond it, or all when there is none, are 0.
ParamList get_params(const MaterialRecord& record);

/// Counts the release of the record's list, if any, and forgets it.
void free_params(MaterialRecord& record);

/// Gives the place of all lists that were stored after that of `record` to the next ones.
void reuse_params_behind(const MaterialRecord& record);

} // namespace vexbind
