/// The toolkit's vector of three components, in single and double precision.
#pragma once

#include <cmath>
#include <cstddef>
#include <ostream>

namespace vyr {

/// 3 components of type T, stored side by side. `a * b` is the dot product, `a ^ b` the cross product.
template <class T>
class Vec3T {
public:
  using value_type = T;
  static constexpr std::size_t kSize = 3;

  constexpr Vec3T()
      : m_v{T(0), T(0), T(0)} {}
  constexpr Vec3T(T inX, T inY, T inZ)
      : m_v{inX, inY, inZ} {}
  /// Converts between the precisions; narrowing is the caller's wish, so it is explicit.
  template <class Other>
  explicit constexpr Vec3T(const Vec3T<Other>& other)
      : m_v{static_cast<T>(other[0]), static_cast<T>(other[1]), static_cast<T>(other[2])} {}

  constexpr T& x() { return m_v[0]; }
  constexpr T x() const { return m_v[0]; }
  constexpr T& y() { return m_v[1]; }
  constexpr T y() const { return m_v[1]; }
  constexpr T& z() { return m_v[2]; }
  constexpr T z() const { return m_v[2]; }
  /// Component `index`, from 0; not range-checked.
  constexpr T& operator[](std::size_t index) { return m_v[index]; }
  constexpr T operator[](std::size_t index) const { return m_v[index]; }
  constexpr T* ptr() { return m_v; }
  constexpr const T* ptr() const { return m_v; }
  constexpr void set(T inX, T inY, T inZ) { *this = Vec3T(inX, inY, inZ); }

  constexpr Vec3T operator-() const { return {-m_v[0], -m_v[1], -m_v[2]}; }
  constexpr Vec3T operator+(const Vec3T& o) const { return {m_v[0] + o.m_v[0], m_v[1] + o.m_v[1], m_v[2] + o.m_v[2]}; }
  constexpr Vec3T operator-(const Vec3T& o) const { return {m_v[0] - o.m_v[0], m_v[1] - o.m_v[1], m_v[2] - o.m_v[2]}; }
  constexpr Vec3T operator*(T s) const { return {m_v[0] * s, m_v[1] * s, m_v[2] * s}; }
  constexpr Vec3T operator/(T s) const { return {m_v[0] / s, m_v[1] / s, m_v[2] / s}; }
  /// The dot product.
  constexpr T operator*(const Vec3T& o) const { return m_v[0] * o.m_v[0] + m_v[1] * o.m_v[1] + m_v[2] * o.m_v[2]; }
  /// The cross product.
  constexpr Vec3T operator^(const Vec3T& o) const {
    return {m_v[1] * o.m_v[2] - m_v[2] * o.m_v[1], m_v[2] * o.m_v[0] - m_v[0] * o.m_v[2],
            m_v[0] * o.m_v[1] - m_v[1] * o.m_v[0]};
  }
  constexpr Vec3T& operator+=(const Vec3T& o) { return *this = *this + o; }
  constexpr Vec3T& operator-=(const Vec3T& o) { return *this = *this - o; }
  constexpr Vec3T& operator*=(T s) { return *this = *this * s; }
  constexpr Vec3T& operator/=(T s) { return *this = *this / s; }
  constexpr bool operator==(const Vec3T& o) const {
    return m_v[0] == o.m_v[0] && m_v[1] == o.m_v[1] && m_v[2] == o.m_v[2];
  }
  constexpr bool operator!=(const Vec3T& o) const { return !(*this == o); }
  /// Orders by the first component that differs.
  constexpr bool operator<(const Vec3T& o) const {
    for (std::size_t i = 0; i < kSize; ++i) {
      if (m_v[i] != o.m_v[i]) {
        return m_v[i] < o.m_v[i];
      }
    }
    return false;
  }

  constexpr T length2() const { return *this * *this; }
  T length() const { return std::sqrt(length2()); }
  /// Scales to length 1; returns the length before. A zero vector stays as it is.
  T normalize() {
    const T norm = length();
    if (norm > T(0)) {
      *this /= norm;
    }
    return norm;
  }
  Vec3T normalized() const {
    Vec3T unit(*this);
    unit.normalize();
    return unit;
  }
  bool isNaN() const { return std::isnan(m_v[0]) || std::isnan(m_v[1]) || std::isnan(m_v[2]); }
  bool isFinite() const { return std::isfinite(m_v[0]) && std::isfinite(m_v[1]) && std::isfinite(m_v[2]); }

private:
  T m_v[kSize];
};

template <class T>
constexpr Vec3T<T> operator*(T s, const Vec3T<T>& v) {
  return v * s;
}

/// The product of each pair of components.
template <class T>
constexpr Vec3T<T> componentMultiply(const Vec3T<T>& a, const Vec3T<T>& b) {
  return {a.x() * b.x(), a.y() * b.y(), a.z() * b.z()};
}

template <class T>
std::ostream& operator<<(std::ostream& out, const Vec3T<T>& v) {
  return out << v[0] << ' ' << v[1] << ' ' << v[2];
}

using Vec3f = Vec3T<float>;
using Vec3d = Vec3T<double>;
using Vec3 = Vec3d;

} // namespace vyr
