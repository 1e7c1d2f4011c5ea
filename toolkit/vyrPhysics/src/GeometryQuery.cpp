/// What a ray meets of one geometry.
#include <vyrCollide/Geometry.h>

#include "BulletConvert.h"
#include "GeometryNative.h"

#include <BulletCollision/CollisionDispatch/btCollisionWorld.h>

#include <cmath>

namespace vyrCollide {

bool Geometry::rayTest(const vyr::Vec3& origin, const vyr::Vec3& direction, double length, double& outDistance) const {
  if (!isValid() || !origin.isFinite() || !direction.isFinite() || !(direction.length() > 0.0) || !(length > 0.0) ||
      !std::isfinite(length)) {
    return false;
  }
  const btVector3 from = vyrPhysics::toBullet(origin);
  const btVector3 to = vyrPhysics::toBullet(origin + direction.normalized() * length);
  btCollisionObject object;
  btCollisionWorld::ClosestRayResultCallback nearest(from, to);
  btCollisionWorld::rayTestSingle(btTransform(btMatrix3x3::getIdentity(), from),
                                  btTransform(btMatrix3x3::getIdentity(), to), &object,
                                  getNative()->instance->getShape(), vyrPhysics::toBullet(getTransform()), nearest);
  if (!nearest.hasHit()) {
    return false;
  }
  outDistance = nearest.m_closestHitFraction * length;
  return true;
}

} // namespace vyrCollide
