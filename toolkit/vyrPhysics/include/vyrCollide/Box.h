/// A block with six rectangular faces.
#pragma once

#include <vyrCollide/Shape.h>

namespace vyrCollide {

/// A block around the origin of its frame, edges along the axes.
class VYRPHYSICS_EXPORT Box : public Shape {
public:
  /// `halfExtents`: half of the edge lengths, in m, each above 0.
  explicit Box(const vyr::Vec3& halfExtents);
  Box(double halfX, double halfY, double halfZ);

  Type getType() const override { return BOX; }

  /// Half of the edge lengths, in m.
  const vyr::Vec3& getHalfExtents() const { return m_halfExtents; }

  Bounds getBounds() const override;

  /// Source: I_xx = m/12 (b^2 + c^2) for edges a, b, c; Goldstein, Classical Mechanics, 3rd ed., section 5.3.
  MassProperties getMassProperties() const override;
  std::unique_ptr<ShapeInstance> createInstance(bool moving) const override;

protected:
  ~Box() override;

private:
  vyr::Vec3 m_halfExtents;
};

} // namespace vyrCollide
