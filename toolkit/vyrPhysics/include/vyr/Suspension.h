/// A wheel's joint: turns about its axle, gives way along an upright, and can be steered.
#pragma once

#include <vyr/Constraint1DOF.h>

namespace vyr {

/// The first frame is fixed to the wheel with its z axis along the axle, the second to the chassis with its x axis
/// upright and its z axis along the axle when the wheel points ahead. The coordinate is the angle about the axle.
///
/// Along the upright, a spring and a damper act: F = -stiffness * displacement - damping * speed, in the form that
/// stays stable for stiff springs. Source: Catto, Soft Constraints, GDC 2011, slides on the implicit spring.
class VYRPHYSICS_EXPORT Suspension : public Constraint1DOF {
public:
  /// Nullable: a null frame is the world's. *retains*
  Suspension(Frame* wheel, Frame* chassis);

  /// Stiffness in N/m, above 0. Default: 30000.
  bool setStiffness(double stiffness);
  double getStiffness() const;

  /// Damping in N s/m, at least 0. Default: 2000.
  bool setDamping(double damping);
  double getDamping() const;

  /// Turns the axle about the upright, in rad; positive is counter-clockwise seen from above. Default: 0.
  bool setSteeringAngle(double angle);
  double getSteeringAngle() const;

  /// How far the wheel stands above (below: negative) its place on the chassis, in m.
  double getDisplacement() const;

protected:
  ~Suspension() override;
};

} // namespace vyr
