/// An endless plane, solid below.
#pragma once

#include <vyrCollide/Shape.h>

namespace vyrCollide {

/// The plane z = 0 of its frame. Everything below it (z < 0) counts as inside. Bodies that carry one must not be
/// moved by forces: a plane has no mass.
class VYRPHYSICS_EXPORT Plane : public Shape {
public:
  Plane();

  Type getType() const override { return PLANE; }
  Bounds getBounds() const override;
  MassProperties getMassProperties() const override { return MassProperties(); }
  std::unique_ptr<ShapeInstance> createInstance(bool moving) const override;

protected:
  ~Plane() override;
};

} // namespace vyrCollide
