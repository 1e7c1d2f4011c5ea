/// Where a ray first meets one geometry.
#pragma once

#include <vyrCollide/Geometry.h>

#include <LinearMath/btVector3.h>

namespace vyrCollide {

/// Where a ray and a surface meet.
struct RayMeeting {
  btScalar distance = 0.0;         ///< from the ray's origin, in m
  btVector3 normal{0.0, 0.0, 0.0}; ///< out of the surface, not normalised
};

/// Tests a valid geometry with the ray from `from` along the unit vector `direction`, `length` m long. A ray that
/// begins inside a solid does not meet it.
bool meetRay(const Geometry& geometry, const btVector3& from, const btVector3& direction, btScalar length,
             RayMeeting& outMeeting);

} // namespace vyrCollide
