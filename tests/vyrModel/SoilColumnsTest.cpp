/// Columns of soil: sinkage, mass, slopes.
#include <vyrModel/SoilColumns.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using vyrModel::Soil;
using vyrModel::SoilColumns;

SoilColumns flatGround(double thickness = 0.5) {
  return SoilColumns(11, 11, 0.1, 0.1, std::vector<double>(121, thickness), Soil());
}

TEST(SoilColumns, SinksAsTheePressureSinkageEquationSays) {
  SoilColumns soil = flatGround();
  for (int i = 0; i < 100; ++i) {
    soil.press({60}, {5.0e4}, 0.01);
  }
  const double expected = std::pow(5.0e4 / Soil().modulus, 1 / Soil().exponent);
  EXPECT_NEAR(soil.getSinkage(60), expected, 1e-9);
  EXPECT_NEAR(0.5 - soil.getThickness(60), expected, 1e-9);
}

TEST(SoilColumns, SinksNoFasterThanItsRate) {
  SoilColumns soil = flatGround();
  soil.press({60}, {1.0e6}, 0.01);
  EXPECT_NEAR(soil.getSinkage(60), Soil().sinkRate * 0.01, 1e-12);
}

TEST(SoilColumns, ALighterLoadDoesNotSinkFurther) {
  SoilColumns soil = flatGround();
  for (int i = 0; i < 100; ++i) {
    soil.press({60}, {5.0e4}, 0.01);
  }
  const double sinkage = soil.getSinkage(60);
  soil.press({60}, {4.0e4}, 0.01);
  EXPECT_EQ(soil.getSinkage(60), sinkage);
}

TEST(SoilColumns, KeepsItsMassAndRaisesItsRim) {
  SoilColumns soil = flatGround();
  const double mass = soil.getMass();
  const std::vector<double> floors(121, 0);
  for (int i = 0; i < 200; ++i) {
    soil.press({59, 60, 61}, {9.0e4, 9.0e4, 9.0e4}, 0.01);
    soil.slide(floors, 4);
  }
  EXPECT_NEAR(soil.getMass(), mass, 1e-9 * mass);
  EXPECT_GT(soil.getDensity(60), Soil().looseDensity);
  EXPECT_LE(soil.getDensity(60), Soil().denseDensity);
  EXPECT_GT(soil.getThickness(49), 0.5);
  EXPECT_LT(soil.getThickness(60), 0.45);
}

TEST(SoilColumns, SlopesComeToTheAngleOfRepose) {
  std::vector<double> thicknesses(121, 0.1);
  thicknesses[60] = 1.5;
  SoilColumns soil(11, 11, 0.1, 0.1, thicknesses, Soil());
  const double mass = soil.getMass();
  const std::vector<double> floors(121, 0);
  // A light load wakes the neighbourhood of the heap.
  soil.press({59}, {10}, 0.01);
  soil.press({}, {}, 0.01);
  soil.slide(floors, 5000);
  EXPECT_NEAR(soil.getMass(), mass, 1e-9 * mass);
  const double steepest = std::tan(Soil().angleOfRepose) * 0.1;
  for (std::size_t row = 0; row < 11; ++row) {
    for (std::size_t column = 0; column + 1 < 11; ++column) {
      const double drop = soil.getThickness(row * 11 + column) - soil.getThickness(row * 11 + column + 1);
      EXPECT_LE(std::fabs(drop), steepest * 1.001);
    }
  }
}

TEST(SoilColumns, TellsWhatChangedOnce) {
  SoilColumns soil = flatGround();
  soil.press({60}, {5.0e4}, 0.01);
  const std::vector<std::size_t> expected = {49, 59, 60, 61, 71};
  EXPECT_EQ(soil.takeChanged(), expected);
  EXPECT_TRUE(soil.takeChanged().empty());
}

TEST(SoilColumns, AFullyPressedGridKeepsItsMass) {
  SoilColumns soil(2, 2, 1, 1, std::vector<double>(4, 0.5), Soil());
  const double mass = soil.getMass();
  for (int i = 0; i < 50; ++i) {
    soil.press({0, 1, 2, 3}, {1e6, 1e6, 1e6, 1e6}, 0.01);
  }
  EXPECT_NEAR(soil.getMass(), mass, 1e-9 * mass);
}

} // namespace
