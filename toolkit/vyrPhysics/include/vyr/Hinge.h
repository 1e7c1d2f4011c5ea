/// A joint that lets one body turn about an axis of the other.
#pragma once

#include <vyr/Constraint1DOF.h>

namespace vyr {

/// The two frames share their origin and their z axis; the coordinate is the angle about z from the second frame's x
/// axis to the first frame's.
class VYRPHYSICS_EXPORT Hinge : public Constraint1DOF {
public:
  /// Nullable: a null frame is the world's. *retains*
  Hinge(Frame* frame1, Frame* frame2);

  /// A hinge through `position` (m) along `axis`, both in the world, as the bodies stand now. Nullable: `body2` null is
  /// the world. *returns new*
  static Hinge* create(RigidBody* body1, RigidBody* body2, const Vec3& position, const Vec3& axis);

protected:
  ~Hinge() override;
};

} // namespace vyr
