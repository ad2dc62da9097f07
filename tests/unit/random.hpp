// Numbers for tests that try inputs at random: the same in every run and with every library.
#pragma once

#include <cstdint>
#include <iterator>
#include <random>

class Random {
  public:
    explicit Random(std::uint64_t seed) : engine(seed) {}

    std::uint64_t bits() { return engine(); }
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine() >> 32) % limit; }
    bool oneIn(std::uint32_t number) { return below(number) == 0; }

    template <class List> auto pick(const List& list) {
        return list[below(static_cast<std::uint32_t>(std::size(list)))];
    }

  private:
    std::mt19937_64 engine;
};
