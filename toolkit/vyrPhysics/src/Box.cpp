/// A block with six rectangular faces.
#include <vyrCollide/Box.h>

#include "BulletConvert.h"
#include "ShapeInstance.h"
#include "Validate.h"

#include <BulletCollision/CollisionShapes/btBoxShape.h>

namespace vyrCollide {

Box::Box(const vyr::Vec3& halfExtents)
    : m_halfExtents(halfExtents) {
  m_valid = vyrPhysics::isPositive(halfExtents.x(), "box half extent x") &&
            vyrPhysics::isPositive(halfExtents.y(), "box half extent y") &&
            vyrPhysics::isPositive(halfExtents.z(), "box half extent z");
}

Box::Box(double halfX, double halfY, double halfZ)
    : Box(vyr::Vec3(halfX, halfY, halfZ)) {}

Box::~Box() = default;

Bounds Box::getBounds() const {
  return Bounds{-m_halfExtents, m_halfExtents};
}

MassProperties Box::getMassProperties() const {
  MassProperties result;
  if (!m_valid) {
    return result;
  }
  const double a = 2.0 * m_halfExtents.x();
  const double b = 2.0 * m_halfExtents.y();
  const double c = 2.0 * m_halfExtents.z();
  result.volume = a * b * c;
  result.inertia[0][0] = result.volume / 12.0 * (b * b + c * c);
  result.inertia[1][1] = result.volume / 12.0 * (c * c + a * a);
  result.inertia[2][2] = result.volume / 12.0 * (a * a + b * b);
  return result;
}

std::unique_ptr<ShapeInstance> Box::createInstance(bool) const {
  if (!m_valid) {
    return nullptr;
  }
  return std::make_unique<ShapeInstance>(std::make_unique<btBoxShape>(vyrPhysics::toBullet(m_halfExtents)));
}

} // namespace vyrCollide
