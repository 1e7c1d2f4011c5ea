/// Symmetric matrices by `vyr::SPDMatrix3x3`.
#include <vyr/SPDMatrix3x3.h>

#include <gtest/gtest.h>

#include <sstream>

namespace {

using vyr::SPDMatrix3x3;
using vyr::Vec3;

TEST(SPDMatrix3x3, BothTrianglesShareTheirElements) {
  SPDMatrix3x3 m(1, 2, 3, 4, 5, 6);
  const double expected[3][3] = {{1, 2, 3}, {2, 4, 5}, {3, 5, 6}};
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      EXPECT_EQ(m(row, column), expected[row][column]);
    }
  }
  m(2, 0) = 9;
  EXPECT_EQ(m(0, 2), 9);
}

TEST(SPDMatrix3x3, MultipliesAVector) {
  EXPECT_EQ(SPDMatrix3x3(1, 2, 3, 4, 5, 6) * Vec3(1, 0, -1), Vec3(-2, -3, -3));
  EXPECT_EQ(SPDMatrix3x3() * Vec3(1, 2, 3), Vec3(1, 2, 3));
}

TEST(SPDMatrix3x3, AddsScalesAndPrints) {
  const SPDMatrix3x3 m = SPDMatrix3x3(Vec3(1, 2, 3)) * 2 + SPDMatrix3x3(0, 1, 0, 0, 1, 0);
  std::ostringstream out;
  out << m;
  EXPECT_EQ(out.str(), "2 1 0 4 1 6");
  EXPECT_EQ(m.getDiagonal(), Vec3(2, 4, 6));
}

} // namespace
