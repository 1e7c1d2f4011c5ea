/// A ball.
#include <vyrCollide/Sphere.h>

#include "ShapeInstance.h"
#include "Validate.h"

#include <BulletCollision/CollisionShapes/btSphereShape.h>

namespace vyrCollide {

Sphere::Sphere(double radius)
    : m_radius(radius) {
  m_valid = vyrPhysics::isPositive(radius, "sphere radius");
}

Sphere::~Sphere() = default;

Bounds Sphere::getBounds() const {
  return Bounds{vyr::Vec3(-m_radius, -m_radius, -m_radius), vyr::Vec3(m_radius, m_radius, m_radius)};
}

MassProperties Sphere::getMassProperties() const {
  MassProperties result;
  if (!m_valid) {
    return result;
  }
  result.volume = 4.0 / 3.0 * SIMD_PI * m_radius * m_radius * m_radius;
  for (int i = 0; i < 3; ++i) {
    result.inertia[i][i] = 0.4 * result.volume * m_radius * m_radius;
  }
  return result;
}

std::unique_ptr<ShapeInstance> Sphere::createInstance(bool) const {
  if (!m_valid) {
    return nullptr;
  }
  return std::make_unique<ShapeInstance>(std::make_unique<btSphereShape>(m_radius));
}

} // namespace vyrCollide
