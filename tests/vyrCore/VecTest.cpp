/// Arithmetic of the vectors.
#include <vyr/Axes.h>
#include <vyr/Vec2.h>
#include <vyr/Vec2u.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <type_traits>

namespace {

TEST(Vec3, DefaultIsZero) {
  EXPECT_EQ(vyr::Vec3(), vyr::Vec3(0, 0, 0));
}

TEST(Vec3, ArithmeticIsComponentwise) {
  const vyr::Vec3 a(1, 2, 3);
  const vyr::Vec3 b(4, 6, 8);
  EXPECT_EQ(a + b, vyr::Vec3(5, 8, 11));
  EXPECT_EQ(b - a, vyr::Vec3(3, 4, 5));
  EXPECT_EQ(a * 2.0, vyr::Vec3(2, 4, 6));
  EXPECT_EQ(2.0 * a, vyr::Vec3(2, 4, 6));
  EXPECT_EQ(b / 2.0, vyr::Vec3(2, 3, 4));
  EXPECT_EQ(-a, vyr::Vec3(-1, -2, -3));
  vyr::Vec3 c(a);
  c += b;
  c -= a;
  c *= 3;
  c /= 2;
  EXPECT_EQ(c, vyr::Vec3(6, 9, 12));
}

TEST(Vec3, DotAndCross) {
  EXPECT_EQ(vyr::Vec3(1, 2, 3) * vyr::Vec3(4, 5, 6), 32);
  EXPECT_EQ(vyr::Vec3(1, 0, 0) ^ vyr::Vec3(0, 1, 0), vyr::Vec3(0, 0, 1));
}

TEST(Vec3, NormalizeReturnsTheLength) {
  vyr::Vec3 v(3, 0, 4);
  EXPECT_EQ(v.normalize(), 5);
  EXPECT_EQ(v, vyr::Vec3(0.6, 0, 0.8));
  vyr::Vec3 zero;
  EXPECT_EQ(zero.normalize(), 0);
  EXPECT_EQ(zero, vyr::Vec3());
}

TEST(Vec3, TellsNumbersFromOthers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(vyr::Vec3(0, nan, 0).isNaN());
  EXPECT_FALSE(vyr::Vec3(0, infinity, 0).isNaN());
  EXPECT_FALSE(vyr::Vec3(0, infinity, 0).isFinite());
  EXPECT_TRUE(vyr::Vec3(1, 2, 3).isFinite());
}

TEST(Vec3, OrdersByTheFirstDifference) {
  EXPECT_LT(vyr::Vec3(1, 9, 9), vyr::Vec3(2, 0, 0));
  EXPECT_LT(vyr::Vec3(1, 2, 3), vyr::Vec3(1, 2, 4));
  EXPECT_FALSE(vyr::Vec3(1, 2, 3) < vyr::Vec3(1, 2, 3));
}

TEST(Vec3, NarrowsOnlyWhenAsked) {
  EXPECT_FALSE((std::is_convertible<vyr::Vec3d, vyr::Vec3f>::value));
  EXPECT_EQ(vyr::Vec3f(vyr::Vec3d(0.5, 1, 2)), vyr::Vec3f(0.5f, 1, 2));
}

TEST(Vec3, IsThreeNumbersSideBySide) {
  EXPECT_EQ(sizeof(vyr::Vec3), 3 * sizeof(double));
  EXPECT_EQ(sizeof(vyr::Vec2f), 2 * sizeof(float));
  EXPECT_EQ(sizeof(vyr::Vec4), 4 * sizeof(double));
}

TEST(Vec4, ComponentsHaveTwoNames) {
  vyr::Vec4 v(0.1, 0.2, 0.3, 0.4);
  EXPECT_EQ(v.r(), v.x());
  EXPECT_EQ(v.a(), v.w());
  v.g() = 0.7;
  EXPECT_EQ(v.y(), 0.7);
  EXPECT_EQ(v.xyz(), vyr::Vec3(0.1, 0.7, 0.3));
}

TEST(Vec2, DotLengthAndPrint) {
  EXPECT_EQ(vyr::Vec2(3, 4).length(), 5);
  std::ostringstream out;
  out << vyr::Vec2(1.5, -2) << " / " << vyr::Vec2u(3, 4);
  EXPECT_EQ(out.str(), "1.5 -2 / 3 4");
}

TEST(Axes, AreDirections) {
  EXPECT_EQ(vyr::X_AXIS, vyr::Vec4(1, 0, 0, 0));
  EXPECT_EQ(vyr::Y_AXIS, vyr::Vec4(0, 1, 0, 0));
  EXPECT_EQ(vyr::Z_AXIS, vyr::Vec4(0, 0, 1, 0));
  EXPECT_EQ(vyr::X_AXIS_2D, vyr::Vec2(1, 0));
  EXPECT_EQ(vyr::Y_AXIS_2D, vyr::Vec2(0, 1));
}

} // namespace
