/// Rigid and affine transforms as 4x4 matrices.
#pragma once

#include <vyr/Quat.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyrCore/export.h>

#include <ostream>

namespace vyr {

/// Row vectors: a point is transformed by `p * m`, row 3 is the translation, `a * b` applies `a` first.
/// The default is the identity.
class VYRCORE_EXPORT AffineMatrix4x4 {
public:
  AffineMatrix4x4();
  /// The sixteen elements, row by row.
  AffineMatrix4x4(double a00, double a01, double a02, double a03, double a10, double a11, double a12, double a13,
                  double a20, double a21, double a22, double a23, double a30, double a31, double a32, double a33);
  /// First the rotation, then the translation (m).
  AffineMatrix4x4(const Quat& rotation, const Vec3& translation);
  explicit AffineMatrix4x4(const Quat& rotation);

  static AffineMatrix4x4 translate(const Vec3& t);
  static AffineMatrix4x4 translate(double x, double y, double z) { return translate(Vec3(x, y, z)); }
  static AffineMatrix4x4 rotate(const Quat& q) { return AffineMatrix4x4(q); }
  /// Rotation by `angle` (rad) about `axis`.
  static AffineMatrix4x4 rotate(double angle, const Vec3& axis) { return AffineMatrix4x4(Quat(angle, axis)); }
  static AffineMatrix4x4 scale(const Vec3& factors);

  /// Element at `row`, `column`, each 0 to 3; not range-checked.
  double& operator()(int row, int column) { return m_v[row][column]; }
  double operator()(int row, int column) const { return m_v[row][column]; }
  /// The sixteen elements, row by row.
  const double* ptr() const { return &m_v[0][0]; }
  double* ptr() { return &m_v[0][0]; }

  Vec3 getTranslate() const { return {m_v[3][0], m_v[3][1], m_v[3][2]}; }
  void setTranslate(const Vec3& t);
  /// The rotation part; the matrix must be free of shear.
  Quat getRotate() const;
  void setRotate(const Quat& q);

  AffineMatrix4x4 operator*(const AffineMatrix4x4& next) const;
  /// The inverse of an affine matrix (column 3 is 0, 0, 0, 1). A singular matrix gives the identity.
  AffineMatrix4x4 inverse() const;
  /// The transformed point.
  Vec3 preMult(const Vec3& point) const;
  /// The rotated and scaled direction; the translation does not act on it.
  Vec3 transform3x3(const Vec3& direction) const;
  bool isIdentity() const;
  bool isFinite() const;

  bool operator==(const AffineMatrix4x4& o) const;
  bool operator!=(const AffineMatrix4x4& o) const { return !(*this == o); }

private:
  double m_v[4][4];
};

inline Vec3 operator*(const Vec3& point, const AffineMatrix4x4& m) {
  return m.preMult(point);
}

VYRCORE_EXPORT std::ostream& operator<<(std::ostream& out, const AffineMatrix4x4& m);

} // namespace vyr
