/// Symmetric 3x3 matrices, such as inertia tensors.
#pragma once

#include <vyr/Vec3.h>

#include <algorithm>
#include <cstddef>
#include <ostream>

namespace vyr {

/// Stores only the six independent elements, in the order xx, xy, xz, yy, yz, zz. The default is the identity.
class SPDMatrix3x3 {
public:
  constexpr SPDMatrix3x3()
      : m_v{1, 0, 0, 1, 0, 1} {}
  constexpr SPDMatrix3x3(double xx, double xy, double xz, double yy, double yz, double zz)
      : m_v{xx, xy, xz, yy, yz, zz} {}
  /// A diagonal matrix.
  explicit constexpr SPDMatrix3x3(const Vec3& diagonal)
      : m_v{diagonal.x(), 0, 0, diagonal.y(), 0, diagonal.z()} {}

  /// Element at `row`, `column`, each 0 to 2; both triangles give the same element.
  constexpr double& operator()(int row, int column) { return m_v[index(row, column)]; }
  constexpr double operator()(int row, int column) const { return m_v[index(row, column)]; }
  /// Stored element `i`, 0 to 5.
  constexpr double& operator[](std::size_t i) { return m_v[i]; }
  constexpr double operator[](std::size_t i) const { return m_v[i]; }
  constexpr Vec3 getDiagonal() const { return {m_v[0], m_v[3], m_v[5]}; }

  constexpr SPDMatrix3x3 operator+(const SPDMatrix3x3& o) const {
    return {m_v[0] + o.m_v[0], m_v[1] + o.m_v[1], m_v[2] + o.m_v[2],
            m_v[3] + o.m_v[3], m_v[4] + o.m_v[4], m_v[5] + o.m_v[5]};
  }
  constexpr SPDMatrix3x3 operator*(double s) const {
    return {m_v[0] * s, m_v[1] * s, m_v[2] * s, m_v[3] * s, m_v[4] * s, m_v[5] * s};
  }
  constexpr Vec3 operator*(const Vec3& v) const {
    return {m_v[0] * v.x() + m_v[1] * v.y() + m_v[2] * v.z(), m_v[1] * v.x() + m_v[3] * v.y() + m_v[4] * v.z(),
            m_v[2] * v.x() + m_v[4] * v.y() + m_v[5] * v.z()};
  }
  bool operator==(const SPDMatrix3x3& o) const { return std::equal(m_v, m_v + 6, o.m_v); }
  bool operator!=(const SPDMatrix3x3& o) const { return !(*this == o); }

private:
  static constexpr std::size_t index(int row, int column) {
    const int low = row < column ? row : column;
    const int high = row < column ? column : row;
    return static_cast<std::size_t>(low == 0 ? high : low + high + 1);
  }

  double m_v[6];
};

inline std::ostream& operator<<(std::ostream& out, const SPDMatrix3x3& m) {
  for (std::size_t i = 0; i < 6; ++i) {
    out << (i == 0 ? "" : " ") << m[i];
  }
  return out;
}

} // namespace vyr
