/// Closed intervals.
#pragma once

#include <algorithm>
#include <limits>
#include <ostream>

namespace vyr {

/// The values from `lower` to `upper`, both included; an upside-down interval contains nothing.
template <class T>
class Range {
public:
  /// Everything that T can hold.
  constexpr Range()
      : m_lower(std::numeric_limits<T>::lowest())
      , m_upper(std::numeric_limits<T>::max()) {}
  constexpr Range(T lower, T upper)
      : m_lower(lower)
      , m_upper(upper) {}

  constexpr T lower() const { return m_lower; }
  constexpr T upper() const { return m_upper; }
  constexpr T& lower() { return m_lower; }
  constexpr T& upper() { return m_upper; }
  constexpr T length() const { return m_upper - m_lower; }
  constexpr bool isIn(T value) const { return m_lower <= value && value <= m_upper; }
  constexpr bool isValid() const { return m_lower <= m_upper; }
  /// The nearest value inside; the interval must be valid.
  constexpr T clamp(T value) const { return std::max(m_lower, std::min(m_upper, value)); }
  constexpr bool operator==(const Range& o) const { return m_lower == o.m_lower && m_upper == o.m_upper; }
  constexpr bool operator!=(const Range& o) const { return !(*this == o); }

private:
  T m_lower;
  T m_upper;
};

template <class T>
std::ostream& operator<<(std::ostream& out, const Range<T>& range) {
  return out << range.lower() << ' ' << range.upper();
}

using RangeReal = Range<double>;

} // namespace vyr
