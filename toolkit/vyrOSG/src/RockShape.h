// The form of a rock: convex blocks cut by random planes.
#pragma once

#include <vyr/Random.h>
#include <vyr/Vec3.h>

#include <vector>

namespace vyrOSG {

/// A block: the part of space behind some planes, with edges worn round.
class RockBlock {
public:
  /// @param extent half sizes along the axes, in m. @param roundness 0 for sharp cuts, 1 for a pebble.
  RockBlock(vyr::Random& random, const vyr::Vec3& centre, const vyr::Vec3& extent, double roundness);

  const vyr::Vec3& getCentre() const { return m_centre; }

  /// The surface point from the centre towards a unit direction.
  vyr::Vec3 pointAt(const vyr::Vec3& direction) const;

  bool contains(const vyr::Vec3& point) const;

  /// Distance of the farthest surface point from the centre, in m.
  double getReach() const;

private:
  struct Cut {
    vyr::Vec3 normal;
    double distance;
  };

  double radiusAt(const vyr::Vec3& direction) const;

  vyr::Vec3 m_centre;
  vyr::Vec3 m_extent;
  double m_sharpness;
  std::vector<Cut> m_cuts; ///< in the frame where the block is a unit ball
};

/// Triangles of a ball, evenly spread: an icosahedron divided `level` times. Counter-clockwise from outside.
struct BallMesh {
  std::vector<vyr::Vec3> directions; ///< unit vectors
  std::vector<unsigned int> indices;
};
const BallMesh& ballMesh(unsigned int level);

} // namespace vyrOSG
