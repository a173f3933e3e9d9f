#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace lab {

/// Random numbers that are the same for the same seeds on every system.
class Random {
  public:
    /// A stream of its own for each list of numbers.
    Random(std::initializer_list<std::uint64_t> seeds) {
        for (const std::uint64_t seed : seeds) {
            m_state ^= seed;
            m_state = next();
        }
    }

    std::uint64_t next() {
        m_state += 0x9E3779B97F4A7C15;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
        return z ^ (z >> 31);
    }

    /// Below `limit`, which is at least 1 and small.
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }
    bool coin() { return (next() >> 63) != 0; }
    /// The numbers from 0 to size - 1 in any order.
    std::vector<std::size_t> order(std::size_t size) {
        std::vector<std::size_t> numbers(size);
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t place = below(i + 1);
            numbers[i] = numbers[place];
            numbers[place] = i;
        }
        return numbers;
    }

  private:
    std::uint64_t m_state = 0;
};

}  // namespace lab
