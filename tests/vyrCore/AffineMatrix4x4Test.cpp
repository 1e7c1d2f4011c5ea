/// Transforms by `vyr::AffineMatrix4x4`.
#include <vyr/AffineMatrix4x4.h>
#include <vyr/Math.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace {

using vyr::AffineMatrix4x4;
using vyr::Vec3;

const double kPi = std::acos(-1.0);

TEST(AffineMatrix4x4, DefaultIsIdentity) {
  EXPECT_TRUE(AffineMatrix4x4().isIdentity());
  EXPECT_EQ(Vec3(1, 2, 3) * AffineMatrix4x4(), Vec3(1, 2, 3));
}

TEST(AffineMatrix4x4, TranslationIsRowThree) {
  const AffineMatrix4x4 m = AffineMatrix4x4::translate(1, 2, 3);
  EXPECT_EQ(m(3, 0), 1);
  EXPECT_EQ(m(3, 2), 3);
  EXPECT_EQ(Vec3(1, 1, 1) * m, Vec3(2, 3, 4));
  EXPECT_EQ(m.transform3x3(Vec3(1, 1, 1)), Vec3(1, 1, 1));
}

TEST(AffineMatrix4x4, ProductAppliesTheLeftOneFirst) {
  const AffineMatrix4x4 turn = AffineMatrix4x4::rotate(kPi / 2, Vec3(0, 0, 1));
  const AffineMatrix4x4 move = AffineMatrix4x4::translate(10, 0, 0);
  EXPECT_TRUE(vyr::equivalent(Vec3(1, 0, 0) * (turn * move), Vec3(10, 1, 0), 1e-14));
  EXPECT_TRUE(vyr::equivalent(Vec3(1, 0, 0) * (move * turn), Vec3(0, 11, 0), 1e-14));
}

TEST(AffineMatrix4x4, InverseUndoesRotationScaleAndTranslation) {
  const AffineMatrix4x4 m = AffineMatrix4x4::scale(Vec3(2, 3, 4)) * AffineMatrix4x4::rotate(0.7, Vec3(1, 2, 3)) *
                            AffineMatrix4x4::translate(5, 6, 7);
  EXPECT_TRUE(vyr::equivalent(m * m.inverse(), AffineMatrix4x4(), 1e-14));
  EXPECT_TRUE(AffineMatrix4x4::scale(Vec3(1, 0, 1)).inverse().isIdentity());
}

TEST(AffineMatrix4x4, GivesBackRotationAndTranslation) {
  const vyr::Quat q(0.4, Vec3(1, 1, 0));
  const AffineMatrix4x4 m(q, Vec3(1, 2, 3));
  EXPECT_TRUE(vyr::equivalent(m.getRotate(), q, 1e-14));
  EXPECT_EQ(m.getTranslate(), Vec3(1, 2, 3));
  EXPECT_TRUE(vyr::equivalent((AffineMatrix4x4::scale(Vec3(2, 2, 2)) * m).getRotate(), q, 1e-14));
}

TEST(AffineMatrix4x4, PrintsRowByRow) {
  std::ostringstream out;
  out << AffineMatrix4x4::translate(1, 2, 3);
  EXPECT_EQ(out.str(), "1 0 0 0 0 1 0 0 0 0 1 0 1 2 3 1");
}

TEST(AffineMatrix4x4, TellsFiniteElements) {
  AffineMatrix4x4 m;
  EXPECT_TRUE(m.isFinite());
  m(2, 1) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(m.isFinite());
}

} // namespace
