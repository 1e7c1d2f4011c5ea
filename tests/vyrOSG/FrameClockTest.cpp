/// How many pictures a film owes to a clock.
#include <vyrOSG/FrameClock.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

/// Pictures that become due while a clock runs from 0 through `steps` steps of `dt` seconds.
int countDue(double fps, double dt, int steps) {
  vyrOSG::FrameClock clock;
  clock.start(fps);
  int count = clock.advance(0.0);
  for (int i = 1; i <= steps; ++i)
    count += clock.advance(i * dt);
  return count;
}

TEST(FrameClock, CountIsDurationTimesRate) {
  EXPECT_EQ(countDue(30, 1.0 / 60, 120), 60);
  EXPECT_EQ(countDue(60, 1.0 / 60, 120), 120);
  EXPECT_EQ(countDue(25, 1.0 / 60, 600), 250);
  EXPECT_EQ(countDue(24, 0.01, 1000), 240);
  EXPECT_EQ(countDue(120, 1.0 / 60, 60), 120);
  EXPECT_EQ(countDue(50, 1.0, 7), 350);
}

TEST(FrameClock, NoDriftOverALongFilm) {
  EXPECT_EQ(countDue(30, 1.0 / 60, 6000000), 3000000);
  // 29.97 pictures in a second, for 10000 seconds.
  EXPECT_EQ(countDue(29.97, 0.01, 1000000), 299700);
}

TEST(FrameClock, SummedStepsCountAsWell) {
  vyrOSG::FrameClock clock;
  clock.start(60);
  clock.advance(0.0);
  int count = 0;
  double time = 0.0;
  for (int i = 0; i < 600000; ++i)
    count += clock.advance(time += 1.0 / 60);
  EXPECT_EQ(count, 600000);
}

TEST(FrameClock, NoPictureBeforeOneInterval) {
  vyrOSG::FrameClock clock;
  clock.start(10);
  EXPECT_EQ(clock.advance(5.0), 0);
  EXPECT_EQ(clock.advance(5.09), 0);
  EXPECT_NEAR(clock.getTimeToNext(), 0.01, 1e-12);
  EXPECT_EQ(clock.advance(5.1), 1);
  EXPECT_EQ(clock.advance(5.1), 0);
}

TEST(FrameClock, ATimeThatRunsBackwardsBeginsAnew) {
  vyrOSG::FrameClock clock;
  clock.start(10);
  clock.advance(0.0);
  EXPECT_EQ(clock.advance(0.19), 1);
  EXPECT_EQ(clock.advance(0.0), 0);
  EXPECT_EQ(clock.advance(0.09), 0);
  EXPECT_EQ(clock.advance(0.1), 1);
}

TEST(FrameClock, UselessRatesGiveNoPictures) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double fps : {0.0, -5.0, std::nan(""), infinity}) {
    EXPECT_EQ(countDue(fps, 1.0, 3), 0) << fps;
    vyrOSG::FrameClock clock;
    clock.start(fps);
    EXPECT_EQ(clock.getTimeToNext(), infinity) << fps;
  }
  vyrOSG::FrameClock clock;
  clock.start(10);
  clock.advance(0);
  EXPECT_EQ(clock.advance(std::nan("")), 0);
  EXPECT_EQ(clock.advance(0.1), 1);
}

TEST(FrameClock, HugeCountsStayInRange) {
  vyrOSG::FrameClock clock;
  clock.start(1e12);
  clock.advance(0);
  EXPECT_EQ(clock.advance(1.0), std::numeric_limits<int>::max());
}

} // namespace
