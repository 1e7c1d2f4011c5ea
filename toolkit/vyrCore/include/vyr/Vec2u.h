/// A pair of counts, such as a grid's resolution.
#pragma once

#include <cstddef>
#include <ostream>

namespace vyr {

/// Two unsigned components.
class Vec2u {
public:
  using value_type = unsigned int;

  constexpr Vec2u()
      : m_v{0, 0} {}
  constexpr Vec2u(unsigned int inX, unsigned int inY)
      : m_v{inX, inY} {}

  constexpr unsigned int& x() { return m_v[0]; }
  constexpr unsigned int x() const { return m_v[0]; }
  constexpr unsigned int& y() { return m_v[1]; }
  constexpr unsigned int y() const { return m_v[1]; }
  constexpr unsigned int& operator[](std::size_t index) { return m_v[index]; }
  constexpr unsigned int operator[](std::size_t index) const { return m_v[index]; }
  constexpr bool operator==(const Vec2u& o) const { return m_v[0] == o.m_v[0] && m_v[1] == o.m_v[1]; }
  constexpr bool operator!=(const Vec2u& o) const { return !(*this == o); }

private:
  unsigned int m_v[2];
};

inline std::ostream& operator<<(std::ostream& out, const Vec2u& v) {
  return out << v.x() << ' ' << v.y();
}

} // namespace vyr
