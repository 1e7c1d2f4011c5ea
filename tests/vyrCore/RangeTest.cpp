/// Intervals by `vyr::Range`.
#include <vyr/Range.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Range, DefaultHoldsEverything) {
  EXPECT_TRUE(vyr::RangeReal().isIn(std::numeric_limits<double>::max()));
  EXPECT_TRUE(vyr::RangeReal().isIn(std::numeric_limits<double>::lowest()));
}

TEST(Range, EndsAreIncluded) {
  const vyr::RangeReal range(-1, 2);
  EXPECT_TRUE(range.isIn(-1));
  EXPECT_TRUE(range.isIn(2));
  EXPECT_FALSE(range.isIn(2.0000001));
  EXPECT_EQ(range.clamp(5), 2);
  EXPECT_EQ(range.length(), 3);
}

TEST(Range, UpsideDownHoldsNothing) {
  const vyr::RangeReal range(2, -1);
  EXPECT_FALSE(range.isValid());
  EXPECT_FALSE(range.isIn(0));
}

} // namespace
