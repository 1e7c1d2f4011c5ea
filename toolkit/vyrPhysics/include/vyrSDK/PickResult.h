/// What the user picked on the screen.
#pragma once

#include <vyr/Vec3.h>
#include <vyr/observer_ptr.h>
#include <vyrCollide/Geometry.h>

namespace vyrSDK {

/// Result of one pick, a value. The geometry is observed, not held: it turns null when the geometry goes away.
struct PickResult {
  vyr::observer_ptr<vyrCollide::Geometry> geometry; ///< Nullable: what was picked, if it is a geometry
  double distance = 0.0;                            ///< from the eye, m
  vyr::Vec3 worldPoint;                             ///< picked point, world, m
  vyr::Vec3 localPoint;                             ///< picked point in the geometry's frame, m
  bool hit = false;                                 ///< false: nothing was picked, and the rest is meaningless
};

} // namespace vyrSDK
