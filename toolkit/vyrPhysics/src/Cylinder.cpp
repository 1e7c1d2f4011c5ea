/// A circular cylinder with flat ends.
#include <vyrCollide/Cylinder.h>

#include "ShapeInstance.h"
#include "Validate.h"

#include <BulletCollision/CollisionShapes/btCylinderShape.h>

namespace vyrCollide {

Cylinder::Cylinder(double radius, double height)
    : m_radius(radius)
    , m_height(height) {
  m_valid = vyrPhysics::isPositive(radius, "cylinder radius") && vyrPhysics::isPositive(height, "cylinder height");
}

Cylinder::~Cylinder() = default;

Bounds Cylinder::getBounds() const {
  const vyr::Vec3 corner(m_radius, m_radius, 0.5 * m_height);
  return Bounds{-corner, corner};
}

MassProperties Cylinder::getMassProperties() const {
  MassProperties result;
  if (!m_valid) {
    return result;
  }
  const double r2 = m_radius * m_radius;
  result.volume = SIMD_PI * r2 * m_height;
  result.inertia[0][0] = result.volume / 12.0 * (3.0 * r2 + m_height * m_height);
  result.inertia[1][1] = result.inertia[0][0];
  result.inertia[2][2] = 0.5 * result.volume * r2;
  return result;
}

std::unique_ptr<ShapeInstance> Cylinder::createInstance(bool) const {
  if (!m_valid) {
    return nullptr;
  }
  return std::make_unique<ShapeInstance>(
      std::make_unique<btCylinderShapeZ>(btVector3(m_radius, m_radius, 0.5 * m_height)));
}

} // namespace vyrCollide
