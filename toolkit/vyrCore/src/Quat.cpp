/// Rotations as unit quaternions.
#include <vyr/Quat.h>

#include <vyr/AffineMatrix4x4.h>

#include <algorithm>
#include <cmath>

namespace vyr {

Quat::Quat(double angle, const Vec3& axis)
    : Quat() {
  const double norm = axis.length();
  if (norm > 0) {
    const double s = std::sin(0.5 * angle) / norm;
    *this = Quat(axis.x() * s, axis.y() * s, axis.z() * s, std::cos(0.5 * angle));
  }
}

Quat::Quat(const Vec3& from, const Vec3& to)
    : Quat() {
  const Vec3 a = from.normalized();
  const Vec3 b = to.normalized();
  const double cosine = a * b;
  if (cosine < -1 + 1e-12) {
    // Opposite directions: any axis square to them will do.
    const Vec3 helper = std::fabs(a.x()) < 0.9 ? Vec3(1, 0, 0) : Vec3(0, 1, 0);
    *this = Quat(std::acos(-1.0), a ^ helper);
    return;
  }
  const Vec3 axis = a ^ b;
  *this = Quat(axis.x(), axis.y(), axis.z(), 1 + cosine);
  normalize();
}

Quat Quat::fromEuler(double roll, double pitch, double yaw) {
  return Quat(roll, Vec3(1, 0, 0)) * Quat(pitch, Vec3(0, 1, 0)) * Quat(yaw, Vec3(0, 0, 1));
}

Quat Quat::fromMatrix(const AffineMatrix4x4& m) {
  // Source: K. Shoemake, "Quaternions", 1991, matrix to quaternion; the largest component is found first so that
  // the division is by a number far from 0. Row vectors: the matrix is the transpose of the one printed there.
  const double trace = m(0, 0) + m(1, 1) + m(2, 2);
  Quat q;
  if (trace > 0) {
    const double s = std::sqrt(trace + 1) * 2;
    q = Quat((m(1, 2) - m(2, 1)) / s, (m(2, 0) - m(0, 2)) / s, (m(0, 1) - m(1, 0)) / s, 0.25 * s);
  } else {
    int i = 0;
    if (m(1, 1) > m(0, 0)) {
      i = 1;
    }
    if (m(2, 2) > m(i, i)) {
      i = 2;
    }
    const int j = (i + 1) % 3;
    const int k = (i + 2) % 3;
    const double s = std::sqrt(m(i, i) - m(j, j) - m(k, k) + 1) * 2;
    q[static_cast<std::size_t>(i)] = 0.25 * s;
    q[static_cast<std::size_t>(j)] = (m(i, j) + m(j, i)) / s;
    q[static_cast<std::size_t>(k)] = (m(i, k) + m(k, i)) / s;
    q.w() = (m(j, k) - m(k, j)) / s;
  }
  q.normalize();
  return q;
}

Quat Quat::operator*(const Quat& next) const {
  // The Hamilton product next x this: with row vectors the left factor acts first.
  const Quat& a = next;
  const Quat& b = *this;
  return {a.w() * b.x() + a.x() * b.w() + a.y() * b.z() - a.z() * b.y(),
          a.w() * b.y() - a.x() * b.z() + a.y() * b.w() + a.z() * b.x(),
          a.w() * b.z() + a.x() * b.y() - a.y() * b.x() + a.z() * b.w(),
          a.w() * b.w() - a.x() * b.x() - a.y() * b.y() - a.z() * b.z()};
}

Quat Quat::inverse() const {
  const double norm2 = m_v[0] * m_v[0] + m_v[1] * m_v[1] + m_v[2] * m_v[2] + m_v[3] * m_v[3];
  const Quat c = conj();
  return {c.x() / norm2, c.y() / norm2, c.z() / norm2, c.w() / norm2};
}

double Quat::length() const {
  return std::sqrt(m_v[0] * m_v[0] + m_v[1] * m_v[1] + m_v[2] * m_v[2] + m_v[3] * m_v[3]);
}

void Quat::normalize() {
  const double norm = length();
  if (norm > 0) {
    for (double& component : m_v) {
      component /= norm;
    }
  } else {
    *this = Quat();
  }
}

Vec3 Quat::operator*(const Vec3& v) const {
  const Vec3 axis(m_v[0], m_v[1], m_v[2]);
  const Vec3 uv = axis ^ v;
  const Vec3 uuv = axis ^ uv;
  return v + uv * (2 * m_v[3]) + uuv * 2.0;
}

void Quat::getRotate(double& outAngle, Vec3& outAxis) const {
  const double s = std::sqrt(m_v[0] * m_v[0] + m_v[1] * m_v[1] + m_v[2] * m_v[2]);
  outAngle = 2 * std::atan2(s, m_v[3]);
  outAxis = s > 0 ? Vec3(m_v[0] / s, m_v[1] / s, m_v[2] / s) : Vec3(0, 0, 1);
}

Quat Quat::slerp(double t, const Quat& a, const Quat& b) {
  double cosine = a.x() * b.x() + a.y() * b.y() + a.z() * b.z() + a.w() * b.w();
  const double side = cosine < 0 ? -1 : 1;
  cosine = std::min(1.0, std::fabs(cosine));
  double wa = 1 - t;
  double wb = t;
  if (cosine < 1 - 1e-9) {
    const double angle = std::acos(cosine);
    wa = std::sin((1 - t) * angle) / std::sin(angle);
    wb = std::sin(t * angle) / std::sin(angle);
  }
  wb *= side;
  Quat q(wa * a.x() + wb * b.x(), wa * a.y() + wb * b.y(), wa * a.z() + wb * b.z(), wa * a.w() + wb * b.w());
  q.normalize();
  return q;
}

} // namespace vyr
