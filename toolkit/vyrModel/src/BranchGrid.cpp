/// Which pieces of a growing tree may be near a place.
#include "BranchGrid.h"

#include <algorithm>
#include <cmath>

namespace vyrModel {

void BranchGrid::add(std::size_t index, const vyr::Vec3& from, const vyr::Vec3& to, double margin) {
  const Range range = rangeOf(from, to, margin);
  for (std::int64_t x = range.low[0]; x <= range.high[0]; ++x) {
    for (std::int64_t y = range.low[1]; y <= range.high[1]; ++y) {
      for (std::int64_t z = range.low[2]; z <= range.high[2]; ++z) {
        m_cells[keyOf(x, y, z)].push_back(index);
      }
    }
  }
}

BranchGrid::Range BranchGrid::rangeOf(const vyr::Vec3& from, const vyr::Vec3& to, double margin) const {
  Range range{};
  for (int axis = 0; axis < 3; ++axis) {
    range.low[axis] = static_cast<std::int64_t>(std::floor((std::min(from[axis], to[axis]) - margin) / m_cell));
    range.high[axis] = static_cast<std::int64_t>(std::floor((std::max(from[axis], to[axis]) + margin) / m_cell));
  }
  return range;
}

std::uint64_t BranchGrid::keyOf(std::int64_t x, std::int64_t y, std::int64_t z) {
  // 21 bits a coordinate: two cells that fall together cost time and nothing else.
  const std::uint64_t mask = (std::uint64_t(1) << 21) - 1;
  return (static_cast<std::uint64_t>(x) & mask) << 42 | (static_cast<std::uint64_t>(y) & mask) << 21 |
         (static_cast<std::uint64_t>(z) & mask);
}

} // namespace vyrModel
