/// A joint that holds a point of one body at a point of the other.
#pragma once

#include <vyr/Constraint.h>

namespace vyr {

/// The two frames share their origin and turn freely.
class VYRPHYSICS_EXPORT Ball : public Constraint {
public:
  /// Nullable: a null frame is the world's. *retains*
  Ball(Frame* frame1, Frame* frame2);

  /// A joint at `position` (m, world), as the bodies stand now. Nullable: `body2` null is the world. *returns new*
  static Ball* create(RigidBody* body1, RigidBody* body2, const Vec3& position);

protected:
  ~Ball() override;
};

} // namespace vyr
