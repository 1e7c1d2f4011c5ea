/// Rotations by `vyr::Quat`.
#include <vyr/AffineMatrix4x4.h>
#include <vyr/Math.h>
#include <vyr/Quat.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

const double kPi = std::acos(-1.0);

TEST(Quat, DefaultDoesNothing) {
  EXPECT_EQ(vyr::Quat() * vyr::Vec3(1, 2, 3), vyr::Vec3(1, 2, 3));
}

TEST(Quat, QuarterTurnAboutZTakesXToY) {
  const vyr::Quat q(kPi / 2, vyr::Vec3(0, 0, 2));
  EXPECT_TRUE(vyr::equivalent(q * vyr::Vec3(1, 0, 0), vyr::Vec3(0, 1, 0), 1e-15));
}

TEST(Quat, ProductAppliesTheLeftRotationFirst) {
  const vyr::Quat aboutZ(kPi / 2, vyr::Vec3(0, 0, 1));
  const vyr::Quat aboutX(kPi / 2, vyr::Vec3(1, 0, 0));
  // x goes to y by the first, y to z by the second.
  EXPECT_TRUE(vyr::equivalent((aboutZ * aboutX) * vyr::Vec3(1, 0, 0), vyr::Vec3(0, 0, 1), 1e-15));
}

TEST(Quat, TurnsOneDirectionIntoAnother) {
  const vyr::Vec3 from(1, 2, 3);
  const vyr::Vec3 to(-2, 0.5, 1);
  EXPECT_TRUE(vyr::equivalent(vyr::Quat(from, to) * from.normalized(), to.normalized(), 1e-14));
  EXPECT_TRUE(vyr::equivalent(vyr::Quat(from, -from) * from, -from, 1e-12));
}

TEST(Quat, InverseUndoes) {
  const vyr::Quat q(1.1, vyr::Vec3(1, 2, 3));
  EXPECT_TRUE(vyr::equivalent((q * q.inverse()) * vyr::Vec3(4, 5, 6), vyr::Vec3(4, 5, 6), 1e-14));
}

TEST(Quat, GivesBackAngleAndAxis) {
  double angle = 0;
  vyr::Vec3 axis;
  vyr::Quat(0.7, vyr::Vec3(0, 3, 4)).getRotate(angle, axis);
  EXPECT_NEAR(angle, 0.7, 1e-15);
  EXPECT_TRUE(vyr::equivalent(axis, vyr::Vec3(0, 0.6, 0.8), 1e-15));
}

TEST(Quat, FromMatrixInvertsToMatrixForEveryLargestComponent) {
  const vyr::Vec3 axes[] = {{1, 0.1, 0.2}, {0.1, 1, 0.2}, {0.1, 0.2, 1}};
  for (const vyr::Vec3& axis : axes) {
    for (const double angle : {0.3, 2.0, 3.1}) {
      const vyr::Quat q(angle, axis);
      const vyr::Quat back = vyr::Quat::fromMatrix(vyr::AffineMatrix4x4(q));
      const double cosine = q.x() * back.x() + q.y() * back.y() + q.z() * back.z() + q.w() * back.w();
      EXPECT_NEAR(std::fabs(cosine), 1, 1e-14);
    }
  }
}

TEST(Quat, SlerpGoesHalfWay) {
  const vyr::Quat half = vyr::Quat::slerp(0.5, vyr::Quat(), vyr::Quat(1.0, vyr::Vec3(0, 0, 1)));
  EXPECT_TRUE(vyr::equivalent(half, vyr::Quat(0.5, vyr::Vec3(0, 0, 1)), 1e-15));
}

TEST(Quat, NormalizeOfZeroDoesNothing) {
  vyr::Quat q(0, 0, 0, 0);
  q.normalize();
  EXPECT_EQ(q, vyr::Quat());
}

TEST(Quat, EulerTurnsAboutXThenYThenZ) {
  EXPECT_TRUE(
      vyr::equivalent(vyr::Quat::fromEuler(kPi / 2, 0, kPi / 2) * vyr::Vec3(0, 1, 0), vyr::Vec3(0, 0, 1), 1e-15));
}

} // namespace
