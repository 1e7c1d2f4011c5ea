/// A ball.
#pragma once

#include <vyrCollide/Shape.h>

namespace vyrCollide {

/// A ball around the origin of its frame.
class VYRPHYSICS_EXPORT Sphere : public Shape {
public:
  /// `radius` in m, above 0.
  explicit Sphere(double radius);

  Type getType() const override { return SPHERE; }

  /// Radius in m.
  double getRadius() const { return m_radius; }

  Bounds getBounds() const override;

  /// Source: I = 2/5 m r^2; Goldstein, Classical Mechanics, 3rd ed., section 5.3.
  MassProperties getMassProperties() const override;
  std::unique_ptr<ShapeInstance> createInstance(bool moving) const override;

protected:
  ~Sphere() override;

private:
  double m_radius;
};

} // namespace vyrCollide
