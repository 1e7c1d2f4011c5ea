/// The toolkit's vector of two components, in single and double precision.
#pragma once

#include <cmath>
#include <cstddef>
#include <ostream>

namespace vyr {

/// 2 components of type T, stored side by side. `a * b` is the dot product.
template <class T>
class Vec2T {
public:
  using value_type = T;
  static constexpr std::size_t kSize = 2;

  constexpr Vec2T()
      : m_v{T(0), T(0)} {}
  constexpr Vec2T(T inX, T inY)
      : m_v{inX, inY} {}
  /// Converts between the precisions; narrowing is the caller's wish, so it is explicit.
  template <class Other>
  explicit constexpr Vec2T(const Vec2T<Other>& other)
      : m_v{static_cast<T>(other[0]), static_cast<T>(other[1])} {}

  constexpr T& x() { return m_v[0]; }
  constexpr T x() const { return m_v[0]; }
  constexpr T& y() { return m_v[1]; }
  constexpr T y() const { return m_v[1]; }
  /// Component `index`, from 0; not range-checked.
  constexpr T& operator[](std::size_t index) { return m_v[index]; }
  constexpr T operator[](std::size_t index) const { return m_v[index]; }
  constexpr T* ptr() { return m_v; }
  constexpr const T* ptr() const { return m_v; }
  constexpr void set(T inX, T inY) { *this = Vec2T(inX, inY); }

  constexpr Vec2T operator-() const { return {-m_v[0], -m_v[1]}; }
  constexpr Vec2T operator+(const Vec2T& o) const { return {m_v[0] + o.m_v[0], m_v[1] + o.m_v[1]}; }
  constexpr Vec2T operator-(const Vec2T& o) const { return {m_v[0] - o.m_v[0], m_v[1] - o.m_v[1]}; }
  constexpr Vec2T operator*(T s) const { return {m_v[0] * s, m_v[1] * s}; }
  constexpr Vec2T operator/(T s) const { return {m_v[0] / s, m_v[1] / s}; }
  /// The dot product.
  constexpr T operator*(const Vec2T& o) const { return m_v[0] * o.m_v[0] + m_v[1] * o.m_v[1]; }
  constexpr Vec2T& operator+=(const Vec2T& o) { return *this = *this + o; }
  constexpr Vec2T& operator-=(const Vec2T& o) { return *this = *this - o; }
  constexpr Vec2T& operator*=(T s) { return *this = *this * s; }
  constexpr Vec2T& operator/=(T s) { return *this = *this / s; }
  constexpr bool operator==(const Vec2T& o) const { return m_v[0] == o.m_v[0] && m_v[1] == o.m_v[1]; }
  constexpr bool operator!=(const Vec2T& o) const { return !(*this == o); }
  /// Orders by the first component that differs.
  constexpr bool operator<(const Vec2T& o) const {
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
  Vec2T normalized() const {
    Vec2T unit(*this);
    unit.normalize();
    return unit;
  }
  bool isNaN() const { return std::isnan(m_v[0]) || std::isnan(m_v[1]); }
  bool isFinite() const { return std::isfinite(m_v[0]) && std::isfinite(m_v[1]); }

private:
  T m_v[kSize];
};

template <class T>
constexpr Vec2T<T> operator*(T s, const Vec2T<T>& v) {
  return v * s;
}

template <class T>
std::ostream& operator<<(std::ostream& out, const Vec2T<T>& v) {
  return out << v[0] << ' ' << v[1];
}

using Vec2f = Vec2T<float>;
using Vec2d = Vec2T<double>;
using Vec2 = Vec2d;

} // namespace vyr
