/// A point where two geometries touch, with the force that passes through it.
#pragma once

#include <vyr/Vec3.h>

namespace vyrCollide {
class Geometry;
}

namespace vyrSDK {

/// One contact point after a step. The pointers are *borrows* and hold until the simulation changes.
struct Contact {
  vyrCollide::Geometry* geometry1 = nullptr; ///< never null
  vyrCollide::Geometry* geometry2 = nullptr; ///< never null
  vyr::Vec3 point;                           ///< on the surface of geometry2, world, m
  vyr::Vec3 normal;                          ///< unit vector from geometry2 to geometry1, world
  double depth = 0.0;                        ///< overlap in m; negative while there is still a gap
  double normalForce = 0.0;  ///< N along normal on geometry1 (and against it on geometry2), mean over the step
  vyr::Vec3 tangentialForce; ///< friction on geometry1, world, N, mean over the step
  vyr::Vec3 velocity;        ///< of geometry1 relative to geometry2 at the point, world, m/s

  /// Whole force on geometry1, world, N.
  vyr::Vec3 getForce() const { return normal * normalForce + tangentialForce; }
};

} // namespace vyrSDK
