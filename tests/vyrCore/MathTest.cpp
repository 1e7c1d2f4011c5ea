/// The numeric helpers.
#include <vyr/Math.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(Math, LerpClampsItsEnds) {
  EXPECT_EQ(vyr::lerp(2, 4, 0.25), 2.5);
  EXPECT_EQ(vyr::lerp(2, 4, 1.5), 4);
  EXPECT_EQ(vyr::lerp(2, 4, -1), 2);
}

TEST(Math, RandomFollowsTheProcessGenerator) {
  std::srand(7);
  const double first = vyr::random(-1, 3);
  std::srand(7);
  EXPECT_EQ(first, -1 + 4 * (std::rand() / 2147483647.0));
  EXPECT_EQ(vyr::random(5, 5), 5);
}

TEST(Math, LogInterpolateNarrowsT) {
  EXPECT_NEAR(vyr::logInterpolate(1, 100, 0.5f), 10, 1e-12);
  EXPECT_EQ(vyr::logInterpolate(1, 100, 2), std::pow(10.0, std::log10(100.0)));
  EXPECT_EQ(vyr::logInterpolate(3, 100, -1), std::pow(10.0, std::log10(3.0)));
  EXPECT_TRUE(std::isnan(vyr::logInterpolate(-1, 100, 0.5f)));
}

TEST(Math, EquivalentIncludesTheEdge) {
  EXPECT_TRUE(vyr::equivalent(1, 1 + 5e-10));
  EXPECT_FALSE(vyr::equivalent(1, 1 + 2e-9));
  EXPECT_TRUE(vyr::equivalent(1, 1.5, 1));
  EXPECT_TRUE(vyr::equivalent(1, 2, 1));
  EXPECT_FALSE(vyr::equivalent(kNaN, 1, 1));
  EXPECT_FALSE(vyr::equivalent(1, kNaN, 1));
}

TEST(Math, EquivalentComparesEveryStoredComponent) {
  EXPECT_TRUE(vyr::equivalent(vyr::Vec3(1, 2, 3), vyr::Vec3(1, 2, 3 + 5e-7)));
  EXPECT_FALSE(vyr::equivalent(vyr::Vec3(1, 2, 3), vyr::Vec3(1, 2, 3 + 5e-7), 1e-7));
  vyr::AffineMatrix4x4 m;
  m(3, 3) = 1.1;
  EXPECT_FALSE(vyr::equivalent(m, vyr::AffineMatrix4x4()));
  EXPECT_FALSE(vyr::equivalent(vyr::SPDMatrix3x3(), vyr::SPDMatrix3x3(1, 0, 0, 1, 0, 1 + 1e-8)));
  EXPECT_TRUE(vyr::equivalent(vyr::Quat(), vyr::Quat(0, 0, 0, 1 + 5e-7)));
}

TEST(Math, AbsoluteWidens) {
  EXPECT_FALSE(std::signbit(vyr::absolute(-0.0)));
  EXPECT_TRUE(std::isnan(vyr::absolute(kNaN)));
  EXPECT_EQ(vyr::absolute(vyr::Vec3f(-1.5f, 2, -3)), vyr::Vec3(1.5, 2, 3));
  EXPECT_EQ(vyr::absolute(vyr::Vec4(-1, -2, -3, -4)), vyr::Vec4(1, 2, 3, 4));
}

TEST(Math, ClampWithMinAboveMax) {
  EXPECT_EQ(vyr::clamp(5, 0, 3), 3);
  EXPECT_EQ(vyr::clamp(-1, 0, 3), 0);
  EXPECT_EQ(vyr::clamp(2, 3, 1), 3);
  EXPECT_EQ(vyr::clamp(4, 3, 1), 1);
}

TEST(Math, SignOfZeroIsOne) {
  EXPECT_EQ(vyr::sign(-0.5), -1);
  EXPECT_EQ(vyr::sign(0), 1);
  EXPECT_EQ(vyr::sign(-0.0), 1);
  EXPECT_EQ(vyr::sign(kNaN), 1);
}

} // namespace
