/// Rigid and affine transforms as 4x4 matrices.
#include <vyr/AffineMatrix4x4.h>

#include <algorithm>
#include <cmath>

namespace vyr {

AffineMatrix4x4::AffineMatrix4x4()
    : AffineMatrix4x4(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1) {}

AffineMatrix4x4::AffineMatrix4x4(double a00, double a01, double a02, double a03, double a10, double a11, double a12,
                                 double a13, double a20, double a21, double a22, double a23, double a30, double a31,
                                 double a32, double a33)
    : m_v{{a00, a01, a02, a03}, {a10, a11, a12, a13}, {a20, a21, a22, a23}, {a30, a31, a32, a33}} {}

AffineMatrix4x4::AffineMatrix4x4(const Quat& rotation, const Vec3& translation)
    : AffineMatrix4x4(rotation) {
  setTranslate(translation);
}

AffineMatrix4x4::AffineMatrix4x4(const Quat& rotation)
    : AffineMatrix4x4() {
  setRotate(rotation);
}

AffineMatrix4x4 AffineMatrix4x4::translate(const Vec3& t) {
  AffineMatrix4x4 m;
  m.setTranslate(t);
  return m;
}

AffineMatrix4x4 AffineMatrix4x4::scale(const Vec3& factors) {
  AffineMatrix4x4 m;
  for (int i = 0; i < 3; ++i) {
    m(i, i) = factors[static_cast<std::size_t>(i)];
  }
  return m;
}

void AffineMatrix4x4::setTranslate(const Vec3& t) {
  m_v[3][0] = t.x();
  m_v[3][1] = t.y();
  m_v[3][2] = t.z();
}

Quat AffineMatrix4x4::getRotate() const {
  AffineMatrix4x4 unit(*this);
  for (int row = 0; row < 3; ++row) {
    const double norm = Vec3(m_v[row][0], m_v[row][1], m_v[row][2]).length();
    for (int column = 0; column < 3 && norm > 0; ++column) {
      unit(row, column) /= norm;
    }
  }
  return Quat::fromMatrix(unit);
}

void AffineMatrix4x4::setRotate(const Quat& q) {
  // The images of the axes are the rows.
  const Vec3 rows[3] = {q * Vec3(1, 0, 0), q * Vec3(0, 1, 0), q * Vec3(0, 0, 1)};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      m_v[row][column] = rows[row][static_cast<std::size_t>(column)];
    }
  }
}

AffineMatrix4x4 AffineMatrix4x4::operator*(const AffineMatrix4x4& next) const {
  AffineMatrix4x4 product;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      double sum = 0;
      for (int k = 0; k < 4; ++k) {
        sum += m_v[row][k] * next.m_v[k][column];
      }
      product.m_v[row][column] = sum;
    }
  }
  return product;
}

AffineMatrix4x4 AffineMatrix4x4::inverse() const {
  const Vec3 r0(m_v[0][0], m_v[0][1], m_v[0][2]);
  const Vec3 r1(m_v[1][0], m_v[1][1], m_v[1][2]);
  const Vec3 r2(m_v[2][0], m_v[2][1], m_v[2][2]);
  const Vec3 c0 = r1 ^ r2;
  const Vec3 c1 = r2 ^ r0;
  const Vec3 c2 = r0 ^ r1;
  const double determinant = r0 * c0;
  AffineMatrix4x4 result;
  if (determinant == 0 || !std::isfinite(determinant)) {
    return result;
  }
  // The inverse of a 3x3 matrix has the cross products of its rows as columns, divided by the determinant.
  const Vec3 columns[3] = {c0 / determinant, c1 / determinant, c2 / determinant};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      result.m_v[row][column] = columns[column][static_cast<std::size_t>(row)];
    }
  }
  result.setTranslate(-result.transform3x3(getTranslate()));
  return result;
}

Vec3 AffineMatrix4x4::preMult(const Vec3& point) const {
  return transform3x3(point) + getTranslate();
}

Vec3 AffineMatrix4x4::transform3x3(const Vec3& d) const {
  return {d.x() * m_v[0][0] + d.y() * m_v[1][0] + d.z() * m_v[2][0],
          d.x() * m_v[0][1] + d.y() * m_v[1][1] + d.z() * m_v[2][1],
          d.x() * m_v[0][2] + d.y() * m_v[1][2] + d.z() * m_v[2][2]};
}

bool AffineMatrix4x4::isIdentity() const {
  return *this == AffineMatrix4x4();
}

bool AffineMatrix4x4::isFinite() const {
  return std::all_of(ptr(), ptr() + 16, [](double element) { return std::isfinite(element); });
}

bool AffineMatrix4x4::operator==(const AffineMatrix4x4& o) const {
  return std::equal(ptr(), ptr() + 16, o.ptr());
}

std::ostream& operator<<(std::ostream& out, const AffineMatrix4x4& m) {
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      out << (row + column == 0 ? "" : " ") << m(row, column);
    }
  }
  return out;
}

} // namespace vyr
