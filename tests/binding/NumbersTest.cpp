// Conversions of Lua numbers: truncation in range, and a defined value everywhere else.
#include "LuaState.h"

#include <vyrBinding/Numbers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using vyrBinding::convertNumber;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTwo31 = 2147483648.0;
constexpr double kTwo32 = 4294967296.0;
constexpr double kTwo63 = 9223372036854775808.0;
constexpr int kIntMin = std::numeric_limits<int>::min();

enum Choice { FIRST = 0, LAST = 7 };

TEST(Numbers, IntTruncatesTowardZero) {
  EXPECT_EQ(3, convertNumber<int>(3.99));
  EXPECT_EQ(-3, convertNumber<int>(-3.99));
  EXPECT_EQ(0, convertNumber<int>(-0.5));
  EXPECT_EQ(2147483647, convertNumber<int>(2147483647.0));
  EXPECT_EQ(2147483647, convertNumber<int>(2147483647.5));
  EXPECT_EQ(kIntMin, convertNumber<int>(-kTwo31));
  EXPECT_EQ(kIntMin, convertNumber<int>(-kTwo31 - 0.5));
}

TEST(Numbers, IntOutOfRangeIsTheSmallest) {
  for (double value : {kTwo31, -kTwo31 - 1, 1e300, -1e300, kInfinity, -kInfinity, kNaN}) {
    EXPECT_EQ(kIntMin, convertNumber<int>(value)) << value;
  }
}

TEST(Numbers, UnsignedTakesTheLowBitsOfTheLongTruncation) {
  EXPECT_EQ(3u, convertNumber<unsigned int>(3.99));
  EXPECT_EQ(4294967295u, convertNumber<unsigned int>(4294967295.0));
  EXPECT_EQ(4294967295u, convertNumber<unsigned int>(-1.9));
  EXPECT_EQ(1u, convertNumber<unsigned int>(kTwo32 + 1));
  EXPECT_EQ(0u, convertNumber<unsigned int>(kTwo63));
  EXPECT_EQ(0u, convertNumber<unsigned int>(kNaN));
}

TEST(Numbers, SizesKeepTheirFullWidth) {
  EXPECT_EQ(5000000000u, convertNumber<std::size_t>(5e9));
  EXPECT_EQ(std::size_t(1) << 63, convertNumber<std::size_t>(kTwo63));
  EXPECT_EQ((std::size_t(1) << 63) + 2048, convertNumber<std::size_t>(kTwo63 + 2048));
  EXPECT_EQ(std::numeric_limits<std::size_t>::max(), convertNumber<std::size_t>(-1.5));
  EXPECT_EQ(std::size_t(1) << 63, convertNumber<std::size_t>(kNaN));
  EXPECT_EQ(0u, convertNumber<std::size_t>(1e300));
}

TEST(Numbers, LongOutOfRangeIsTheSmallest) {
  EXPECT_EQ(-5000000000, convertNumber<long>(-5e9));
  EXPECT_EQ(std::numeric_limits<long>::min(), convertNumber<long>(kTwo63));
  EXPECT_EQ(std::numeric_limits<long>::min(), convertNumber<long>(kNaN));
}

TEST(Numbers, NarrowIntegersTakeTheLowBits) {
  EXPECT_EQ(-7, convertNumber<short>(-7.9));
  EXPECT_EQ(1, convertNumber<short>(65537.0));
  EXPECT_EQ(255, convertNumber<unsigned char>(-1.0));
}

TEST(Numbers, EnumerationsGoThroughInt) {
  EXPECT_EQ(LAST, convertNumber<Choice>(7.9));
  EXPECT_EQ(FIRST, convertNumber<Choice>(-0.9));
}

TEST(Numbers, FloatNarrows) {
  EXPECT_EQ(0.1f, convertNumber<float>(0.1));
  EXPECT_EQ(std::numeric_limits<float>::infinity(), convertNumber<float>(1e300));
  EXPECT_TRUE(std::isnan(convertNumber<float>(kNaN)));
}

} // namespace
