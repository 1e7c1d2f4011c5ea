/// Which pieces of a growing tree may be near a place.
#pragma once

#include <vyr/Vec3.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace vyrModel {

/// Boxes in a grid of cells: only pieces that share a cell can touch, so that a limb does not have to ask all others.
/// Pieces that were taken back may stay in it; whoever asks looks at the pieces themselves.
class BranchGrid {
public:
  /// `cell` in m, above 0: not much longer than the shortest pieces.
  explicit BranchGrid(double cell)
      : m_cell(cell) {}

  /// Enters the straight piece from `from` to `to` with everything up to `margin` m beside it.
  void add(std::size_t index, const vyr::Vec3& from, const vyr::Vec3& to, double margin);

  /// Calls `visit(index)` for pieces whose boxes may overlap the one of this piece, some more than once; stops and
  /// returns true when it returns true.
  template <class Visit>
  bool any(const vyr::Vec3& from, const vyr::Vec3& to, double margin, Visit visit) const {
    const Range range = rangeOf(from, to, margin);
    for (std::int64_t x = range.low[0]; x <= range.high[0]; ++x) {
      for (std::int64_t y = range.low[1]; y <= range.high[1]; ++y) {
        for (std::int64_t z = range.low[2]; z <= range.high[2]; ++z) {
          const auto found = m_cells.find(keyOf(x, y, z));
          if (found == m_cells.end()) {
            continue;
          }
          for (const std::size_t index : found->second) {
            if (visit(index)) {
              return true;
            }
          }
        }
      }
    }
    return false;
  }

private:
  struct Range {
    std::int64_t low[3];
    std::int64_t high[3];
  };

  Range rangeOf(const vyr::Vec3& from, const vyr::Vec3& to, double margin) const;
  static std::uint64_t keyOf(std::int64_t x, std::int64_t y, std::int64_t z);

  double m_cell;
  std::unordered_map<std::uint64_t, std::vector<std::size_t>> m_cells;
};

} // namespace vyrModel
