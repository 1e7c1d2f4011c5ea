// Reads the short forms of launch options.
#include <vyrOSG/LaunchOptions.h>

#include <gtest/gtest.h>

using vyrOSG::LaunchOptions;

namespace {

TEST(LaunchOptions, BackendsHaveNames) {
  LaunchOptions::Backend backend = LaunchOptions::AUTO;
  EXPECT_TRUE(LaunchOptions::parseBackend("window", backend));
  EXPECT_EQ(LaunchOptions::WINDOW, backend);
  EXPECT_TRUE(LaunchOptions::parseBackend("egl", backend));
  EXPECT_EQ(LaunchOptions::EGL, backend);
  EXPECT_TRUE(LaunchOptions::parseBackend("none", backend));
  EXPECT_EQ(LaunchOptions::NONE, backend);
  EXPECT_FALSE(LaunchOptions::parseBackend("EGL", backend));
  EXPECT_EQ(LaunchOptions::NONE, backend);
}

TEST(LaunchOptions, ShotsAreATimeAndAFile) {
  LaunchOptions options;
  EXPECT_TRUE(options.addShot("t=2.5:a.png"));
  EXPECT_TRUE(options.addShot("0:folder/b:c.png"));
  ASSERT_EQ(2u, options.shots.size());
  EXPECT_EQ(2.5, options.shots[0].time);
  EXPECT_EQ("a.png", options.shots[0].file);
  EXPECT_EQ(0.0, options.shots[1].time);
  EXPECT_EQ("folder/b:c.png", options.shots[1].file);
  for (const char* wrong : {"", "a.png", "t=:a.png", "1:", "-1:a.png", "nan:a.png", "1x:a.png", "t=inf:a.png"})
    EXPECT_FALSE(options.addShot(wrong)) << wrong;
  EXPECT_EQ(2u, options.shots.size());
}

TEST(LaunchOptions, SizesArePositive) {
  LaunchOptions options;
  EXPECT_TRUE(options.parseSize("640x480"));
  EXPECT_EQ(640u, options.width);
  EXPECT_EQ(480u, options.height);
  for (const char* wrong :
       {"", "640", "640x", "x480", "0x480", "-1x5", "1.5x2", "999999999999x1", "640 x 480", "99999x480", "640x16385"})
    EXPECT_FALSE(options.parseSize(wrong)) << wrong;
  EXPECT_EQ(640u, options.width);
  EXPECT_EQ(480u, options.height);
}

TEST(LaunchOptions, TheFirstFailureStays) {
  LaunchOptions options;
  EXPECT_EQ(0, options.getFailure());
  options.setFailure(3);
  options.setFailure(1);
  EXPECT_EQ(3, options.getFailure());
}

} // namespace
