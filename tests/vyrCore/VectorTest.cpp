/// The containers and strings.
#include <vyr/Vector.h>
#include <vyr/VectorPOD.h>
#include <vyr/VyrString.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

/// Counts the bytes that are held.
struct CountingAllocator {
  static inline int blocks = 0;
  static void* allocate(std::size_t size) {
    ++blocks;
    return vyr::ByteAllocator::allocate(size);
  }
  static void deallocate(void* memory) noexcept {
    --blocks;
    vyr::ByteAllocator::deallocate(memory);
  }
};

TEST(Vector, DrawsItsMemoryFromItsAllocator) {
  {
    vyr::Vector<std::string, CountingAllocator> vector;
    vector.push_back("vyr");
    vector.push_back("vyrModel");
    EXPECT_EQ(CountingAllocator::blocks, 1);
    EXPECT_EQ(vector.back(), "vyrModel");
  }
  EXPECT_EQ(CountingAllocator::blocks, 0);
}

TEST(VectorPOD, WorksWithAlgorithms) {
  vyr::RealVector heights(4, 0.5);
  heights.push_back(2);
  EXPECT_EQ(*std::max_element(heights.begin(), heights.end()), 2);
  EXPECT_EQ(heights.size(), 5u);
}

TEST(VyrString, ConvertsFreely) {
  const std::string plain = "name";
  const vyr::String text = plain;
  EXPECT_EQ(text, plain);
  EXPECT_EQ(vyr::String("a").append("b"), "ab");
}

} // namespace
