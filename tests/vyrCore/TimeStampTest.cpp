/// Simulation time by `vyr::TimeStamp`.
#include <vyr/TimeStamp.h>

#include <gtest/gtest.h>

namespace {

TEST(TimeStamp, DoesNotDrift) {
  vyr::TimeStamp time(0.1);
  for (int i = 0; i < 1000; ++i) {
    time.advance();
  }
  EXPECT_EQ(time.seconds(), 1000 * 0.1);
  EXPECT_EQ(time.steps(), 1000u);
}

TEST(TimeStamp, KeepsTheTimeWhenTheStepChanges) {
  vyr::TimeStamp time(0.5);
  time.advance();
  time.advance();
  time.setTimeStep(0.25);
  time.advance();
  EXPECT_EQ(time.seconds(), 1.25);
  EXPECT_EQ(time.steps(), 3u);
}

TEST(TimeStamp, ResetRestores) {
  vyr::TimeStamp time(0.5);
  time.reset(7.5, 15);
  time.advance();
  EXPECT_EQ(time.seconds(), 8);
  EXPECT_EQ(time.steps(), 16u);
}

} // namespace
