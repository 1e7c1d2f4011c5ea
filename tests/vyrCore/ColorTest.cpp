/// Colours by name.
#include <vyrRender/Color.h>

#include <gtest/gtest.h>

namespace {

using vyrRender::Color;

TEST(Color, ReadsNamesInAnyCase) {
  Color color;
  ASSERT_TRUE(Color::fromName("Teal", color));
  EXPECT_EQ(color, Color(0, 128 / 255.0, 128 / 255.0));
}

TEST(Color, ReadsHexadecimalWithAndWithoutOpacity) {
  Color color;
  ASSERT_TRUE(Color::fromName("#ff0000", color));
  EXPECT_EQ(color, Color(1, 0, 0, 1));
  ASSERT_TRUE(Color::fromName("#00FF0080", color));
  EXPECT_EQ(color, Color(0, 1, 0, 128 / 255.0));
}

TEST(Color, LeavesTheColourAloneWhenTheNameIsUnknown) {
  Color color(0.1, 0.2, 0.3);
  EXPECT_FALSE(Color::fromName("no such colour", color));
  EXPECT_FALSE(Color::fromName("#12345", color));
  EXPECT_FALSE(Color::fromName("#gggggg", color));
  EXPECT_EQ(color, Color(0.1, 0.2, 0.3));
}

} // namespace
