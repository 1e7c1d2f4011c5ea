/// A rod, rope or winch between two points.
#pragma once

#include <vyr/Constraint1DOF.h>

namespace vyr {

/// Acts along the line between the origins of the two frames; the coordinate is their distance. Made with the lock on,
/// at the distance that the points have then: a rod. With the lock off and a range from 0 it is a rope, with a motor a
/// winch.
class VYRPHYSICS_EXPORT Distance : public Constraint1DOF {
public:
  /// Nullable: a null frame is the world's. *retains*
  Distance(Frame* frame1, Frame* frame2);

  /// A rod between the points `point1` of `body1` and `point2` of `body2`, both in the world (m), as the bodies stand
  /// now. Nullable: `body2` null is the world. *returns new*
  static Distance* create(RigidBody* body1, const Vec3& point1, RigidBody* body2, const Vec3& point2);

protected:
  ~Distance() override;
};

} // namespace vyr
