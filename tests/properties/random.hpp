// Random numbers that are the same on every machine and under every library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace properties {

// splitmix64. The order of calls decides what they give: no two of them stand among the arguments of one
// call, whose order is left to the compiler.
class Random {
  public:
    explicit Random(std::uint64_t seed) : state(seed) {}

    std::uint64_t next() {
        state += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state;
        mixed = (mixed ^ mixed >> 30U) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ mixed >> 27U) * 0x94D049BB133111EBU;
        return mixed ^ mixed >> 31U;
    }

    // 0 to count - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }

    // low to high, both included.
    int between(int low, int high) {
        return low + static_cast<int>(below(static_cast<std::size_t>(high - low) + 1));
    }

    bool oneIn(std::size_t count) { return below(count) == 0; }

    template <typename Choices> const auto& pick(const Choices& choices) {
        return *(choices.begin() + static_cast<std::ptrdiff_t>(below(choices.size())));
    }

    template <typename Sequence> void shuffle(Sequence& sequence) {
        for (std::size_t left = sequence.size(); left > 1; --left) {
            const std::size_t other = below(left);
            std::swap(sequence[left - 1], sequence[other]);
        }
    }

  private:
    std::uint64_t state;
};

} // namespace properties
