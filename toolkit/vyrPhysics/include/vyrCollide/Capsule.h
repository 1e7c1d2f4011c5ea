/// A cylinder with a half ball on either end.
#pragma once

#include <vyrCollide/Shape.h>

namespace vyrCollide {

/// A capsule around the origin of its frame, its axis along local z.
class VYRPHYSICS_EXPORT Capsule : public Shape {
public:
  /// `radius` in m, above 0; `height` in m, above 0: length of the cylindrical part, without the two caps.
  Capsule(double radius, double height);

  Type getType() const override { return CAPSULE; }

  /// Radius of the cylindrical part and of the caps, in m.
  double getRadius() const { return m_radius; }

  /// Length of the cylindrical part without the caps, in m.
  double getHeight() const { return m_height; }

  Bounds getBounds() const override;

  /// Source: cylinder plus two half balls moved by the parallel-axis theorem; a half ball of mass m has its centre of
  /// mass 3/8 r above its flat side and 83/320 m r^2 about an axis across it (Beer and Johnston, Vector Mechanics
  /// for Engineers: Statics, table of centroids and moments of inertia).
  MassProperties getMassProperties() const override;
  std::unique_ptr<ShapeInstance> createInstance(bool moving) const override;

protected:
  ~Capsule() override;

private:
  double m_radius;
  double m_height;
};

} // namespace vyrCollide
