/// A joint that makes two bodies one.
#pragma once

#include <vyr/Constraint.h>

namespace vyr {

/// The two frames share origin and axes.
class VYRPHYSICS_EXPORT Lock : public Constraint {
public:
  /// Nullable: a null frame is the world's. *retains*
  Lock(Frame* frame1, Frame* frame2);

  /// Holds the bodies as they stand now, at the centre of mass of `body1`. Nullable: `body2` null is the world.
  /// *returns new*
  static Lock* create(RigidBody* body1, RigidBody* body2);

protected:
  ~Lock() override;
};

} // namespace vyr
