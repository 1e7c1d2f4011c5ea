/// The simulation: what a ray meets, and the hash of its state.
#include <vyrCollide/Geometry.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "GeometryNative.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"

#include <BulletCollision/CollisionShapes/btBoxShape.h>
#include <BulletCollision/NarrowPhaseCollision/btRaycastCallback.h>
#include <LinearMath/btAabbUtil2.h>

#include <algorithm>
#include <cstring>

namespace vyrSDK {

using vyrPhysics::fromBullet;
using vyrPhysics::toBullet;

namespace {

/// The piece of a ray that a shape is tested with, in radii of its bounding sphere to either side.
constexpr double kRoom = 1.1;

using NearestOfOne = btCollisionWorld::ClosestRayResultCallback;

/// Tests every geometry of the objects whose boxes the ray crosses.
class RayTester : public btBroadphaseRayCallback {
public:
  RayTester(const btVector3& from, const btVector3& to)
      : m_from(from)
      , m_length((to - from).length())
      , m_direction((to - from) / m_length) {
    const btVector3& direction = m_direction;
    for (int axis = 0; axis < 3; ++axis) {
      m_rayDirectionInverse[axis] = direction[axis] == 0.0 ? BT_LARGE_FLOAT : 1.0 / direction[axis];
      m_signs[axis] = m_rayDirectionInverse[axis] < 0.0 ? 1U : 0U;
    }
    m_lambda_max = m_length;
  }

  bool process(const btBroadphaseProxy* proxy) override {
    btCollisionObject* object = static_cast<btCollisionObject*>(proxy->m_clientObject);
    if (object->getUserIndex2() == vyrCollide::GEOMETRY_OBJECT) {
      test(object, static_cast<vyrCollide::Geometry*>(object->getUserPointer()));
    } else if (object->getUserIndex2() == vyrCollide::BODY_OBJECT) {
      for (const auto& part : static_cast<vyr::RigidBody*>(object->getUserPointer())->getGeometries()) {
        test(object, part.get());
      }
    }
    return true;
  }

  double fraction = 1.0;
  btVector3 normal{0.0, 0.0, 0.0};
  vyrCollide::Geometry* geometry = nullptr;

private:
  void test(btCollisionObject* object, vyrCollide::Geometry* candidate) {
    if (candidate->isSensor() || !candidate->getEnableCollisions()) {
      return;
    }
    btCollisionShape* shape = candidate->getNative()->instance->getShape();
    const btTransform place = toBullet(candidate->getTransform());
    if (shape->getShapeType() == BOX_SHAPE_PROXYTYPE) {
      testBox(place, static_cast<const btBoxShape*>(shape)->getHalfExtentsWithMargin(), candidate);
      return;
    }
    // Only the piece of the ray beside the shape: the test is exact to a share of what it is given.
    btVector3 center;
    btScalar radius = 0.0;
    shape->getBoundingSphere(center, radius);
    const btScalar along = m_direction.dot(place * center - m_from);
    const btScalar begin = std::max(along - kRoom * radius, 0.0);
    const btScalar end = std::min(along + kRoom * radius, fraction * m_length);
    if (!(begin < end)) {
      return;
    }
    const btVector3 from = m_from + begin * m_direction;
    const btVector3 to = m_from + end * m_direction;
    NearestOfOne nearest(from, to);
    // The other test of curved and convex shapes meets what a grazing ray only passes by.
    nearest.m_flags |= btTriangleRaycastCallback::kF_UseGjkConvexCastRaytest;
    btCollisionWorld::rayTestSingle(btTransform(btMatrix3x3::getIdentity(), from),
                                    btTransform(btMatrix3x3::getIdentity(), to), object, shape, place, nearest);
    if (nearest.hasHit()) {
      fraction = (begin + nearest.m_closestHitFraction * (end - begin)) / m_length;
      normal = nearest.m_hitNormalWorld;
      geometry = candidate;
    }
  }

  /// Boxes are met exactly, sharp edges included. A ray that begins inside does not meet the box, as with other shapes.
  void testBox(const btTransform& place, const btVector3& halfExtents, vyrCollide::Geometry* candidate) {
    btScalar share = fraction;
    btVector3 face(0.0, 0.0, 0.0);
    if (btRayAabb(place.invXform(m_from), place.invXform(m_from + m_length * m_direction), -halfExtents, halfExtents,
                  share, face) &&
        share > 0.0) {
      fraction = share;
      // The engine gives the direction into the box.
      normal = -(place.getBasis() * face);
      geometry = candidate;
    }
  }

  btVector3 m_from;
  btScalar m_length;
  btVector3 m_direction;
};

} // namespace

RayHit Simulation::rayTest(const vyr::Vec3& origin, const vyr::Vec3& direction, double length) const {
  RayHit result;
  if (!origin.isFinite() || !direction.isFinite() || !(direction.length() > 0.0) || !(length > 0.0) ||
      !std::isfinite(length)) {
    return result;
  }
  const vyr::Vec3 end = origin + direction.normalized() * length;
  RayTester tester(toBullet(origin), toBullet(end));
  m_native->world.updateAabbs();
  m_native->broadphase.rayTest(toBullet(origin), toBullet(end), tester);
  if (tester.geometry != nullptr) {
    result.hit = true;
    result.geometry = tester.geometry;
    result.distance = tester.fraction * length;
    result.point = origin + (end - origin) * tester.fraction;
    result.normal = fromBullet(tester.normal.normalized());
  }
  return result;
}

namespace {

/// Source: Fowler, Noll, Vo, The FNV Non-Cryptographic Hash Algorithm, section 2: FNV-1a with 64 bits.
class Hash {
public:
  void add(double number) {
    unsigned char bytes[sizeof(number)];
    std::memcpy(bytes, &number, sizeof(number));
    for (unsigned char byte : bytes) {
      m_value = (m_value ^ byte) * 0x100000001b3ULL;
    }
  }

  void add(const btVector3& v) {
    add(v.x());
    add(v.y());
    add(v.z());
  }

  uint64_t getValue() const { return m_value; }

private:
  uint64_t m_value = 0xcbf29ce484222325ULL;
};

} // namespace

uint64_t Simulation::stateHash() const {
  Hash hash;
  hash.add(getTime());
  for (const auto& body : m_bodies) {
    const btRigidBody& native = *body->getNative()->body;
    for (int row = 0; row < 3; ++row) {
      hash.add(native.getWorldTransform().getBasis()[row]);
    }
    hash.add(native.getWorldTransform().getOrigin());
    hash.add(toBullet(body->getVelocity()));
    hash.add(toBullet(body->getAngularVelocity()));
  }
  for (const auto& particles : m_particleSystems) {
    for (size_t i = 0; i < particles->getNumParticles(); ++i) {
      hash.add(toBullet(particles->getPosition(i)));
      hash.add(toBullet(particles->getVelocity(i)));
      hash.add(toBullet(particles->getAngularVelocity(i)));
    }
  }
  return hash.getValue();
}

} // namespace vyrSDK
