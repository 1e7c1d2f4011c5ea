/// A cylinder with a half ball on either end.
#include <vyrCollide/Capsule.h>

#include "ShapeInstance.h"
#include "Validate.h"

#include <BulletCollision/CollisionShapes/btCapsuleShape.h>

namespace vyrCollide {

Capsule::Capsule(double radius, double height)
    : m_radius(radius)
    , m_height(height) {
  m_valid = vyrPhysics::isPositive(radius, "capsule radius") && vyrPhysics::isPositive(height, "capsule height");
}

Capsule::~Capsule() = default;

Bounds Capsule::getBounds() const {
  const vyr::Vec3 corner(m_radius, m_radius, 0.5 * m_height + m_radius);
  return Bounds{-corner, corner};
}

MassProperties Capsule::getMassProperties() const {
  MassProperties result;
  if (!m_valid) {
    return result;
  }
  const double r2 = m_radius * m_radius;
  const double h = m_height;
  const double tube = SIMD_PI * r2 * h;
  const double cap = 2.0 / 3.0 * SIMD_PI * r2 * m_radius;
  result.volume = tube + 2.0 * cap;
  result.inertia[2][2] = 0.5 * tube * r2 + 2.0 * cap * 0.4 * r2;
  const double arm = 0.5 * h + 0.375 * m_radius;
  const double across = tube / 12.0 * (3.0 * r2 + h * h) + 2.0 * cap * (83.0 / 320.0 * r2 + arm * arm);
  result.inertia[0][0] = across;
  result.inertia[1][1] = across;
  return result;
}

std::unique_ptr<ShapeInstance> Capsule::createInstance(bool) const {
  if (!m_valid) {
    return nullptr;
  }
  return std::make_unique<ShapeInstance>(std::make_unique<btCapsuleShapeZ>(m_radius, m_height));
}

} // namespace vyrCollide
