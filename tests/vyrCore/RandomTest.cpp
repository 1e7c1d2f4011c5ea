// Repeatable random numbers.
#include <vyr/Random.h>

#include <gtest/gtest.h>

TEST(Random, GivesThePublishedNumbers) {
  // The first numbers of SplitMix64 for the seed 1234567, as the reference implementation prints them.
  vyr::Random random(1234567);
  EXPECT_EQ(6457827717110365317u, random.next());
  EXPECT_EQ(3203168211198807973u, random.next());
  EXPECT_EQ(9817491932198370423u, random.next());
}

TEST(Random, StaysInItsRangeAndFillsIt) {
  vyr::Random random(1);
  double sum = 0;
  for (int i = 0; i < 10000; ++i) {
    const double value = random.uniform(-2, 4);
    ASSERT_GE(value, -2);
    ASSERT_LT(value, 4);
    sum += value;
  }
  // The mean of 10000 draws scatters by 6 / sqrt(12 * 10000) = 0.017.
  EXPECT_NEAR(1, sum / 10000, 0.09);
}
