/// What a ray met first.
#pragma once

#include <vyr/Vec3.h>

namespace vyrCollide {
class Geometry;
}

namespace vyrSDK {

/// Result of a ray test. The pointer is a *borrows* and holds until the simulation changes.
struct RayHit {
  bool hit = false;                         ///< false: nothing was met, and the rest is meaningless
  vyrCollide::Geometry* geometry = nullptr; ///< what was met
  double distance = 0.0;                    ///< from the origin, m
  vyr::Vec3 point;                          ///< world, m
  vyr::Vec3 normal;                         ///< of the surface, world, unit vector
};

} // namespace vyrSDK
