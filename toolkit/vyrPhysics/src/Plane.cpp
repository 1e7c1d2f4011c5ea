/// An endless plane, solid below.
#include <vyrCollide/Plane.h>

#include "ShapeInstance.h"

#include <BulletCollision/CollisionShapes/btStaticPlaneShape.h>

namespace vyrCollide {

Plane::Plane() = default;

Plane::~Plane() = default;

Bounds Plane::getBounds() const {
  const double far = 1.0e6;
  return Bounds{vyr::Vec3(-far, -far, -far), vyr::Vec3(far, far, 0.0)};
}

std::unique_ptr<ShapeInstance> Plane::createInstance(bool) const {
  return std::make_unique<ShapeInstance>(std::make_unique<btStaticPlaneShape>(btVector3(0.0, 0.0, 1.0), 0.0));
}

} // namespace vyrCollide
