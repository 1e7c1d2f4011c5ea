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

  /// Lets the turning give way like a spring: torque = -stiffness * angle - damping * speed + preload.
  /// `stiffness` in N m/rad, above 0; `damping` in N m s/rad, at least 0 and raised where the solver needs more to
  /// converge. Refused with one error message otherwise. Default: no give. The ITERATIVE solver alone gives way: the
  /// MULTI solver turns the joint back to rest at its own rate.
  bool setElasticity(double stiffness, double damping);
  bool isElastic() const;
  /// 0 without elasticity.
  double getStiffness() const;
  double getDamping() const;

  /// Torque in N m, along the axes of the second frame, that an elastic joint puts on the first body at rest.
  /// Default: 0. Refused with one error message when it is not finite.
  bool setPreload(const Vec3& torque);
  Vec3 getPreload() const;

protected:
  ~Lock() override;
};

} // namespace vyr
