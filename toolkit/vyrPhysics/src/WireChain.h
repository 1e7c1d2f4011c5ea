/// One small step of a wire's mass points: an implicit solve of all segments at once.
#pragma once

#include <vyr/SPDMatrix3x3.h>
#include <vyr/Vec3.h>

#include <array>
#include <cstddef>
#include <vector>

namespace vyrWire {

/// Finds where a chain of mass points goes in a small step of h s, and how hard its segments pull.
///
/// A segment pulls along a mean of its directions before, at and after the start of the small step. The direction
/// after it is an unknown like the pull itself, so that the resistance of a taut wire against sideways motion is
/// implicit: no small step is too long for a tension, and waves too fast for the small step die out instead of growing.
/// Nearly equal weights of the outer directions keep the energy of slow swinging.
/// Source: N. M. Newmark, "A method of computation for structural dynamics", ASCE J. Eng. Mech. Div. 85 (1959), beta
/// 1/4 in its three-step form; the constraint forces as in J.-P. Ryckaert et al., J. Comp. Phys. 23 (1977), section 3.
class WireChain {
public:
  /// A node: where it goes without the segments' pull (m), and its mass (kg), a matrix for a point on a body.
  struct Node {
    bool fixed = false;
    vyr::Vec3 free;
    vyr::SPDMatrix3x3 mass;
  };
  /// A segment: its length when nothing pulls (m), its directions before and at the start of the small step, its give
  /// per pull (m per N s^2), and its pull times h^2 (N s^2), on entry a guess.
  struct Segment {
    double length = 0;
    vyr::Vec3 before;
    vyr::Vec3 now;
    double give = 0;
    double pull = 0;
    bool taut = false;     ///< while it is solved
    bool released = false; ///< while it is solved: was taut in an earlier round, and pressed
    vyr::Vec3 along;       ///< result: the direction of the pull; not quite of length 1
  };

  std::vector<Node> nodes;
  std::vector<Segment> segments; ///< one fewer than nodes
  bool pressable = true;         ///< false: segments may be shorter than their length, and then do not pull

  /// Moves `places`, one a node, on entry where they are at the start. False when no answer was found to `tolerance`
  /// (m) or it is not finite; the places are then of no use.
  bool solve(std::vector<vyr::Vec3>& places, double tolerance);

  /// Moves `places` by the first round alone, from where they are: nothing grows without bound, but segments that turn
  /// get longer.
  void extrapolate(std::vector<vyr::Vec3>& places, double tolerance);

private:
  using Matrix = std::array<std::array<double, 4>, 4>;
  using Column = std::array<double, 4>;
  /// One row of blocks of the system: a node's three coordinates and the pull of the segment before it.
  struct Row {
    Matrix lower;
    Matrix diagonal;
    Matrix upper;
    Column right;
  };

  double improve(std::vector<vyr::Vec3>& places, double tolerance);
  void assemble(const std::vector<vyr::Vec3>& places, double tolerance);
  void chooseTaut(const std::vector<vyr::Vec3>& places, double tolerance);
  void addSegment(std::size_t index, const std::vector<vyr::Vec3>& places);
  double lighterMass(std::size_t index) const;
  bool eliminate();
  static bool divide(Matrix& by, Matrix& upper, Column& right);

  std::vector<Row> m_rows;
};

} // namespace vyrWire
