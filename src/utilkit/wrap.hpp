// 32-bit counters that wrap instead of overflowing.
#pragma once

#include <cstdint>

namespace vexbind {

/// `value` plus `amount`, modulo 2 to the 32nd.
constexpr std::int32_t wrapAdd(std::int32_t value, std::uint32_t amount) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value) + amount);
}

} // namespace vexbind
