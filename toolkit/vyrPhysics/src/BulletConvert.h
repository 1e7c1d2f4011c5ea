/// Conversions between the toolkit's small mathematics and the collision engine's.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Quat.h>
#include <vyr/Vec3.h>

#include <LinearMath/btTransform.h>

namespace vyrPhysics {

// Contact forces of stacks and the repeatability promise are stated for double precision.
static_assert(sizeof(btScalar) == 8, "the collision engine must be the one built for double precision");

inline btVector3 toBullet(const vyr::Vec3& v) {
  return btVector3(v.x(), v.y(), v.z());
}

inline vyr::Vec3 fromBullet(const btVector3& v) {
  return vyr::Vec3(v.x(), v.y(), v.z());
}

inline btQuaternion toBullet(const vyr::Quat& q) {
  return btQuaternion(q.x(), q.y(), q.z(), q.w());
}

inline vyr::Quat fromBullet(const btQuaternion& q) {
  return vyr::Quat(q.x(), q.y(), q.z(), q.w());
}

/// The rigid part of a transform. A matrix that is rigid already passes in every bit; of any other the rows are made
/// orthonormal in turn, so that scale and shear are left out.
inline btTransform toBullet(const vyr::AffineMatrix4x4& m) {
  btVector3 x(m(0, 0), m(0, 1), m(0, 2));
  btVector3 y(m(1, 0), m(1, 1), m(1, 2));
  btVector3 z(m(2, 0), m(2, 1), m(2, 2));
  const double tolerance = 1.0e-12;
  const bool rigid = btFabs(x.length2() - 1.0) < tolerance && btFabs(y.length2() - 1.0) < tolerance &&
                     btFabs(x.dot(y)) < tolerance && (x.cross(y) - z).length2() < tolerance * tolerance;
  if (!rigid) {
    x = x.length2() > 0.0 ? x.normalized() : btVector3(1.0, 0.0, 0.0);
    y -= x * x.dot(y);
    if (!(y.length2() > 0.0)) {
      y = x.cross(btFabs(x.z()) < 0.9 ? btVector3(0.0, 0.0, 1.0) : btVector3(0.0, 1.0, 0.0));
    }
    y.normalize();
    z = x.cross(y);
  }
  // Row vectors there, column vectors here: the rows become columns.
  return btTransform(btMatrix3x3(x.x(), y.x(), z.x(), x.y(), y.y(), z.y(), x.z(), y.z(), z.z()),
                     btVector3(m(3, 0), m(3, 1), m(3, 2)));
}

inline vyr::AffineMatrix4x4 fromBullet(const btTransform& t) {
  const btMatrix3x3& b = t.getBasis();
  const btVector3& o = t.getOrigin();
  return vyr::AffineMatrix4x4(b[0][0], b[1][0], b[2][0], 0.0, b[0][1], b[1][1], b[2][1], 0.0, b[0][2], b[1][2], b[2][2],
                              0.0, o.x(), o.y(), o.z(), 1.0);
}

} // namespace vyrPhysics
