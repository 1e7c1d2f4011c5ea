/// Where a ray first meets one geometry.
#include "GeometryRay.h"

#include "BulletConvert.h"
#include "GeometryNative.h"

#include <BulletCollision/CollisionDispatch/btCollisionWorld.h>
#include <BulletCollision/CollisionShapes/btBoxShape.h>
#include <BulletCollision/NarrowPhaseCollision/btRaycastCallback.h>
#include <LinearMath/btAabbUtil2.h>

#include <algorithm>
#include <cmath>

namespace vyrCollide {

namespace {

/// The piece of a ray that a shape is tested with, in radii of its bounding sphere to either side.
constexpr double kRoom = 1.1;

/// Boxes are met exactly, sharp edges included.
bool meetBox(const btTransform& place, const btVector3& halfExtents, const btVector3& from, const btVector3& way,
             btScalar length, RayMeeting& outMeeting) {
  btScalar share = 1.0;
  btVector3 face(0.0, 0.0, 0.0);
  if (!btRayAabb(place.invXform(from), place.invXform(from + way), -halfExtents, halfExtents, share, face) ||
      !(share > 0.0)) {
    return false;
  }
  outMeeting.distance = share * length;
  // The engine gives the direction into the box.
  outMeeting.normal = -(place.getBasis() * face);
  return true;
}

} // namespace

bool meetRay(const Geometry& geometry, const btVector3& from, const btVector3& direction, btScalar length,
             RayMeeting& outMeeting) {
  btCollisionShape* shape = geometry.getNative()->instance->getShape();
  const btTransform place = vyrPhysics::toBullet(geometry.getTransform());
  if (shape->getShapeType() == BOX_SHAPE_PROXYTYPE) {
    const btVector3 halfExtents = static_cast<const btBoxShape*>(shape)->getHalfExtentsWithMargin();
    return meetBox(place, halfExtents, from, length * direction, length, outMeeting);
  }
  // Only the piece of the ray beside the shape: the test is exact to a share of what it is given.
  btVector3 center;
  btScalar radius = 0.0;
  shape->getBoundingSphere(center, radius);
  const btScalar along = direction.dot(place * center - from);
  const btScalar begin = std::max(along - kRoom * radius, 0.0);
  const btScalar end = std::min(along + kRoom * radius, length);
  if (!(begin < end)) {
    return false;
  }
  const btVector3 first = from + begin * direction;
  const btVector3 last = from + end * direction;
  btCollisionWorld::ClosestRayResultCallback nearest(first, last);
  // The other test of curved and convex shapes meets what a grazing ray only passes by.
  nearest.m_flags |= btTriangleRaycastCallback::kF_UseGjkConvexCastRaytest;
  btCollisionObject object;
  btCollisionWorld::rayTestSingle(btTransform(btMatrix3x3::getIdentity(), first),
                                  btTransform(btMatrix3x3::getIdentity(), last), &object, shape, place, nearest);
  if (!nearest.hasHit()) {
    return false;
  }
  outMeeting.distance = begin + nearest.m_closestHitFraction * (end - begin);
  outMeeting.normal = nearest.m_hitNormalWorld;
  return true;
}

bool Geometry::rayTest(const vyr::Vec3& origin, const vyr::Vec3& direction, double length, double& outDistance) const {
  if (!isValid() || !origin.isFinite() || !direction.isFinite() || !(direction.length() > 0.0) || !(length > 0.0) ||
      !std::isfinite(length)) {
    return false;
  }
  RayMeeting meeting;
  if (!meetRay(*this, vyrPhysics::toBullet(origin), vyrPhysics::toBullet(direction.normalized()), length, meeting)) {
    return false;
  }
  outDistance = meeting.distance;
  return true;
}

} // namespace vyrCollide
