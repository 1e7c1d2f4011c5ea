/// Small numeric helpers on numbers, vectors and matrices.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Quat.h>
#include <vyr/SPDMatrix3x3.h>
#include <vyr/Vec2.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace vyr {

/// From `a` (t <= 0) to `b` (t > 1) on a straight line.
inline double lerp(double a, double b, double t) {
  if (t > 1) {
    return b;
  }
  if (t <= 0) {
    return a;
  }
  return b * t + (1 - t) * a;
}

/// A number from `min` to `max`, drawn from the process's `rand()`, which this never seeds.
inline double random(double min, double max) {
  return min + (max - min) * (std::rand() / 2147483647.0);
}

/// From `a` to `b` on a straight line of logarithms. The way through log10 and pow is taken at the clamped ends too,
/// so that the ends carry the same rounding as the values between.
inline double logInterpolate(double a, double b, float t) {
  double exponent = 0;
  if (t > 1) {
    exponent = std::log10(b);
  } else if (t <= 0) {
    exponent = std::log10(a);
  } else {
    exponent = static_cast<double>(t) * std::log10(b) + static_cast<double>(1 - t) * std::log10(a);
  }
  return std::pow(10.0, exponent);
}

namespace detail {

/// Whether b lies within `eps` of a; false when either is NaN.
inline bool within(double a, double b, double eps) {
  return a + eps >= b && b >= a - eps;
}

template <class Value>
bool componentsWithin(const Value& a, const Value& b, std::size_t count, double eps) {
  for (std::size_t i = 0; i < count; ++i) {
    if (!within(a[i], b[i], eps)) {
      return false;
    }
  }
  return true;
}

} // namespace detail

/// Whether each pair of stored components differs by at most `eps`.
inline bool equivalent(double a, double b, double eps = 1e-9) {
  return detail::within(a, b, eps);
}
inline bool equivalent(const AffineMatrix4x4& a, const AffineMatrix4x4& b, double eps = 1e-9) {
  return detail::componentsWithin(a.ptr(), b.ptr(), 16, eps);
}
inline bool equivalent(const Quat& a, const Quat& b, double eps = 1e-6) {
  return detail::componentsWithin(a, b, 4, eps);
}
inline bool equivalent(const SPDMatrix3x3& a, const SPDMatrix3x3& b, double eps = 1e-9) {
  return detail::componentsWithin(a, b, 6, eps);
}
inline bool equivalent(const Vec2& a, const Vec2& b, double eps = 1e-6) {
  return detail::componentsWithin(a, b, 2, eps);
}
inline bool equivalent(const Vec3& a, const Vec3& b, double eps = 1e-6) {
  return detail::componentsWithin(a, b, 3, eps);
}
inline bool equivalent(const Vec4& a, const Vec4& b, double eps = 1e-6) {
  return detail::componentsWithin(a, b, 4, eps);
}

/// The magnitude: the sign bit is cleared.
inline double absolute(double x) {
  return std::fabs(x);
}
/// The magnitude of each component, in double precision.
template <class T>
Vec2 absolute(const Vec2T<T>& v) {
  return {std::fabs(v.x()), std::fabs(v.y())};
}
template <class T>
Vec3 absolute(const Vec3T<T>& v) {
  return {std::fabs(v.x()), std::fabs(v.y()), std::fabs(v.z())};
}
template <class T>
Vec4 absolute(const Vec4T<T>& v) {
  return {std::fabs(v.x()), std::fabs(v.y()), std::fabs(v.z()), std::fabs(v.w())};
}

/// `min` where v lies below it, else the smaller of `max` and v (`max` when min exceeds max and v >= min).
inline double clamp(double v, double min, double max) {
  if (min > v) {
    return min;
  }
  return max < v ? max : v;
}

/// -1 for negative numbers, otherwise 1 (also for 0, -0 and NaN).
inline double sign(double x) {
  return x < 0 ? -1.0 : 1.0;
}

} // namespace vyr
