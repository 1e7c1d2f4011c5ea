/// A circular cylinder with flat ends.
#pragma once

#include <vyrCollide/Shape.h>

namespace vyrCollide {

/// A cylinder around the origin of its frame, its axis along local z.
class VYRPHYSICS_EXPORT Cylinder : public Shape {
public:
  /// `radius` and `height` (end to end) in m, each above 0.
  Cylinder(double radius, double height);

  Type getType() const override { return CYLINDER; }

  /// Radius in m.
  double getRadius() const { return m_radius; }

  /// Length from end to end, in m.
  double getHeight() const { return m_height; }

  Bounds getBounds() const override;

  /// Source: I_zz = m r^2/2, I_xx = I_yy = m/12 (3 r^2 + h^2); Goldstein, Classical Mechanics, 3rd ed., section 5.3.
  MassProperties getMassProperties() const override;
  std::unique_ptr<ShapeInstance> createInstance(bool moving) const override;

protected:
  ~Cylinder() override;

private:
  double m_radius;
  double m_height;
};

} // namespace vyrCollide
