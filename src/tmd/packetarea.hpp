// The area in which one packet at a time is built, and access to its parts by file offset.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vexbind {

inline constexpr std::size_t packetWords = 25;
inline constexpr std::size_t packetBytes = packetWords * 4;

/// Words whose least significant byte comes first in the file.
using PacketArea = std::array<std::uint32_t, packetWords>;

// Where a byte or an aligned half word of the file lies in a word of this machine.
inline constexpr std::size_t byteLane = std::endian::native == std::endian::little ? 0 : 3;
inline constexpr std::size_t halfLane = std::endian::native == std::endian::little ? 0 : 2;

inline void put_byte(PacketArea& area, std::size_t offset, std::uint8_t value) {
    std::memcpy(reinterpret_cast<unsigned char*>(area.data()) + (offset ^ byteLane), &value, sizeof value);
}

inline std::uint8_t get_byte(const PacketArea& area, std::size_t offset) {
    return reinterpret_cast<const unsigned char*>(area.data())[offset ^ byteLane];
}

/// `offset` is even.
inline void put_half(PacketArea& area, std::size_t offset, std::uint16_t value) {
    std::memcpy(reinterpret_cast<unsigned char*>(area.data()) + (offset ^ halfLane), &value, sizeof value);
}

inline std::uint16_t get_half(const PacketArea& area, std::size_t offset) {
    std::uint16_t value = 0;
    std::memcpy(&value, reinterpret_cast<const unsigned char*>(area.data()) + (offset ^ halfLane),
                sizeof value);
    return value;
}

// The header of every packet.
inline constexpr std::size_t olenOffset = 0; // words of the drawing packet that the runtime builds
inline constexpr std::size_t ilenOffset = 1; // words of this packet behind the header
inline constexpr std::size_t flagOffset = 2; // bits of tmd/modes.hpp
inline constexpr std::size_t modeOffset = 3;
inline constexpr std::size_t headerBytes = 4;

} // namespace vexbind
