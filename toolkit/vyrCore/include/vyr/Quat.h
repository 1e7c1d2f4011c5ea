/// Rotations as unit quaternions.
#pragma once

#include <vyr/Vec3.h>
#include <vyrCore/export.h>

#include <cstddef>
#include <ostream>

namespace vyr {

class AffineMatrix4x4;

/// A quaternion x i + y j + z k + w; the default is the rotation that does nothing.
/// Products follow the row-vector convention: `v * (a * b)` rotates by `a` first, then by `b`.
class VYRCORE_EXPORT Quat {
public:
  constexpr Quat()
      : m_v{0, 0, 0, 1} {}
  constexpr Quat(double x, double y, double z, double w)
      : m_v{x, y, z, w} {}
  /// Rotation by `angle` (rad) about `axis`; a zero axis gives no rotation.
  Quat(double angle, const Vec3& axis);
  /// The shortest rotation that turns the direction `from` into `to`.
  Quat(const Vec3& from, const Vec3& to);
  /// Rotation by roll about x, then pitch about y, then yaw about z (rad).
  static Quat fromEuler(double roll, double pitch, double yaw);
  /// The rotation of a matrix whose upper 3x3 block is orthonormal.
  static Quat fromMatrix(const AffineMatrix4x4& matrix);

  constexpr double& x() { return m_v[0]; }
  constexpr double x() const { return m_v[0]; }
  constexpr double& y() { return m_v[1]; }
  constexpr double y() const { return m_v[1]; }
  constexpr double& z() { return m_v[2]; }
  constexpr double z() const { return m_v[2]; }
  constexpr double& w() { return m_v[3]; }
  constexpr double w() const { return m_v[3]; }
  constexpr double& operator[](std::size_t index) { return m_v[index]; }
  constexpr double operator[](std::size_t index) const { return m_v[index]; }

  /// First this rotation, then `next`.
  Quat operator*(const Quat& next) const;
  constexpr Quat conj() const { return {-m_v[0], -m_v[1], -m_v[2], m_v[3]}; }
  /// The opposite rotation, also of a quaternion that is not of length 1.
  Quat inverse() const;
  double length() const;
  /// Scales to length 1; a zero quaternion becomes the rotation that does nothing.
  void normalize();
  /// The rotated vector.
  Vec3 operator*(const Vec3& v) const;
  /// Gives angle (rad, 0 to 2 pi) and unit axis.
  void getRotate(double& outAngle, Vec3& outAxis) const;
  /// The rotation a fraction `t` (0 to 1) of the way from `a` to `b`, on the shorter arc.
  /// Source: K. Shoemake, "Animating rotation with quaternion curves", SIGGRAPH 1985, section 3.3.
  static Quat slerp(double t, const Quat& a, const Quat& b);

  constexpr bool operator==(const Quat& o) const {
    return m_v[0] == o.m_v[0] && m_v[1] == o.m_v[1] && m_v[2] == o.m_v[2] && m_v[3] == o.m_v[3];
  }
  constexpr bool operator!=(const Quat& o) const { return !(*this == o); }

private:
  double m_v[4];
};

inline Vec3 operator*(const Vec3& v, const Quat& rotation) {
  return rotation * v;
}

inline std::ostream& operator<<(std::ostream& out, const Quat& q) {
  return out << q.x() << ' ' << q.y() << ' ' << q.z() << ' ' << q.w();
}

} // namespace vyr
