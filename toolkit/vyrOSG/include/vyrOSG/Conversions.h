// Turns the toolkit's vectors, quaternions and matrices into the scene-graph library's and back; no rounding.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Quat.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <osg/Matrixd>
#include <osg/Quat>
#include <osg/Vec3d>
#include <osg/Vec4>

namespace vyrOSG {

inline osg::Vec3d toOsg(const vyr::Vec3& v) {
  return osg::Vec3d(v[0], v[1], v[2]);
}

inline vyr::Vec3 toVyr(const osg::Vec3d& v) {
  return vyr::Vec3(v[0], v[1], v[2]);
}

/// A colour in the scene-graph library's single precision.
inline osg::Vec4 toOsg(const vyr::Vec4& v) {
  return osg::Vec4(float(v[0]), float(v[1]), float(v[2]), float(v[3]));
}

inline osg::Quat toOsg(const vyr::Quat& q) {
  return osg::Quat(q[0], q[1], q[2], q[3]);
}

/// Both sides multiply row vectors from the left, so the elements keep their places.
inline osg::Matrixd toOsg(const vyr::AffineMatrix4x4& m) {
  osg::Matrixd result;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column)
      result(row, column) = m(row, column);
  }
  return result;
}

} // namespace vyrOSG
