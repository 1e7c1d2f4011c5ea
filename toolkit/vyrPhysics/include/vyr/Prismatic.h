/// A joint that lets one body slide along an axis of the other.
#pragma once

#include <vyr/Constraint1DOF.h>

namespace vyr {

/// The two frames keep their orientation to each other and share the line of their z axes; the coordinate is the
/// distance along z from the second frame's origin to the first frame's.
class VYRPHYSICS_EXPORT Prismatic : public Constraint1DOF {
public:
  /// Nullable: a null frame is the world's. *retains*
  Prismatic(Frame* frame1, Frame* frame2);

  /// A slide through `position` (m) along `axis`, both in the world, as the bodies stand now. Nullable: `body2` null is
  /// the world. *returns new*
  static Prismatic* create(RigidBody* body1, RigidBody* body2, const Vec3& position, const Vec3& axis);

protected:
  ~Prismatic() override;
};

} // namespace vyr
