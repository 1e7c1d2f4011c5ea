/// Repeatable random numbers.
#pragma once

#include <cstdint>

namespace vyr {

/// A stream of random numbers that its seed decides, the same on every machine.
/// Source: Steele, Lea, Flood, Fast Splittable Pseudorandom Number Generators, OOPSLA 2014, figure 17 (SplitMix64).
class Random {
public:
  explicit Random(std::uint64_t seed)
      : m_state(seed) {}

  /// 64 random bits.
  std::uint64_t next() {
    m_state += 0x9e3779b97f4a7c15u;
    std::uint64_t z = m_state;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
  }

  /// From 0 on, below 1.
  double uniform() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }

  /// From `low` on, below `high`.
  double uniform(double low, double high) { return low + (high - low) * uniform(); }

private:
  std::uint64_t m_state;
};

} // namespace vyr
