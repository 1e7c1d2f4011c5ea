/// The toolkit's vector of four components, in single and double precision.
#pragma once

#include <vyr/Vec3.h>

#include <cmath>
#include <cstddef>
#include <ostream>

namespace vyr {

/// 4 components of type T, stored side by side. `a * b` is the dot product.
template <class T>
class Vec4T {
public:
  using value_type = T;
  static constexpr std::size_t kSize = 4;

  constexpr Vec4T()
      : m_v{T(0), T(0), T(0), T(0)} {}
  constexpr Vec4T(T inX, T inY, T inZ, T inW)
      : m_v{inX, inY, inZ, inW} {}
  constexpr Vec4T(const Vec3T<T>& xyz, T inW)
      : m_v{xyz.x(), xyz.y(), xyz.z(), inW} {}
  /// Converts between the precisions; narrowing is the caller's wish, so it is explicit.
  template <class Other>
  explicit constexpr Vec4T(const Vec4T<Other>& other)
      : m_v{static_cast<T>(other[0]), static_cast<T>(other[1]), static_cast<T>(other[2]), static_cast<T>(other[3])} {}

  constexpr T& x() { return m_v[0]; }
  constexpr T x() const { return m_v[0]; }
  constexpr T& y() { return m_v[1]; }
  constexpr T y() const { return m_v[1]; }
  constexpr T& z() { return m_v[2]; }
  constexpr T z() const { return m_v[2]; }
  constexpr T& w() { return m_v[3]; }
  constexpr T w() const { return m_v[3]; }
  constexpr T& r() { return m_v[0]; }
  constexpr T r() const { return m_v[0]; }
  constexpr T& g() { return m_v[1]; }
  constexpr T g() const { return m_v[1]; }
  constexpr T& b() { return m_v[2]; }
  constexpr T b() const { return m_v[2]; }
  constexpr T& a() { return m_v[3]; }
  constexpr T a() const { return m_v[3]; }
  constexpr Vec3T<T> xyz() const { return {m_v[0], m_v[1], m_v[2]}; }
  /// Component `index`, from 0; not range-checked.
  constexpr T& operator[](std::size_t index) { return m_v[index]; }
  constexpr T operator[](std::size_t index) const { return m_v[index]; }
  constexpr T* ptr() { return m_v; }
  constexpr const T* ptr() const { return m_v; }
  constexpr void set(T inX, T inY, T inZ, T inW) { *this = Vec4T(inX, inY, inZ, inW); }

  constexpr Vec4T operator-() const { return {-m_v[0], -m_v[1], -m_v[2], -m_v[3]}; }
  constexpr Vec4T operator+(const Vec4T& o) const {
    return {m_v[0] + o.m_v[0], m_v[1] + o.m_v[1], m_v[2] + o.m_v[2], m_v[3] + o.m_v[3]};
  }
  constexpr Vec4T operator-(const Vec4T& o) const {
    return {m_v[0] - o.m_v[0], m_v[1] - o.m_v[1], m_v[2] - o.m_v[2], m_v[3] - o.m_v[3]};
  }
  constexpr Vec4T operator*(T s) const { return {m_v[0] * s, m_v[1] * s, m_v[2] * s, m_v[3] * s}; }
  constexpr Vec4T operator/(T s) const { return {m_v[0] / s, m_v[1] / s, m_v[2] / s, m_v[3] / s}; }
  /// The dot product.
  constexpr T operator*(const Vec4T& o) const {
    return m_v[0] * o.m_v[0] + m_v[1] * o.m_v[1] + m_v[2] * o.m_v[2] + m_v[3] * o.m_v[3];
  }
  constexpr Vec4T& operator+=(const Vec4T& o) { return *this = *this + o; }
  constexpr Vec4T& operator-=(const Vec4T& o) { return *this = *this - o; }
  constexpr Vec4T& operator*=(T s) { return *this = *this * s; }
  constexpr Vec4T& operator/=(T s) { return *this = *this / s; }
  constexpr bool operator==(const Vec4T& o) const {
    return m_v[0] == o.m_v[0] && m_v[1] == o.m_v[1] && m_v[2] == o.m_v[2] && m_v[3] == o.m_v[3];
  }
  constexpr bool operator!=(const Vec4T& o) const { return !(*this == o); }
  /// Orders by the first component that differs.
  constexpr bool operator<(const Vec4T& o) const {
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
  Vec4T normalized() const {
    Vec4T unit(*this);
    unit.normalize();
    return unit;
  }
  bool isNaN() const { return std::isnan(m_v[0]) || std::isnan(m_v[1]) || std::isnan(m_v[2]) || std::isnan(m_v[3]); }
  bool isFinite() const {
    return std::isfinite(m_v[0]) && std::isfinite(m_v[1]) && std::isfinite(m_v[2]) && std::isfinite(m_v[3]);
  }

private:
  T m_v[kSize];
};

template <class T>
constexpr Vec4T<T> operator*(T s, const Vec4T<T>& v) {
  return v * s;
}

template <class T>
std::ostream& operator<<(std::ostream& out, const Vec4T<T>& v) {
  return out << v[0] << ' ' << v[1] << ' ' << v[2] << ' ' << v[3];
}

using Vec4f = Vec4T<float>;
using Vec4d = Vec4T<double>;
using Vec4 = Vec4d;

} // namespace vyr
