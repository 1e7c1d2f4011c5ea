/// The simulation: what a ray meets, and the hash of its state.
#include <vyrCollide/Geometry.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "GeometryNative.h"
#include "GeometryRay.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"

#include <cstring>

namespace vyrSDK {

using vyrPhysics::fromBullet;
using vyrPhysics::toBullet;

namespace {

/// Tests every geometry of the objects whose boxes the ray crosses.
class RayTester : public btBroadphaseRayCallback {
public:
  /// `direction`: a unit vector.
  RayTester(const btVector3& from, const btVector3& direction, btScalar length)
      : distance(length)
      , m_from(from)
      , m_direction(direction) {
    for (int axis = 0; axis < 3; ++axis) {
      m_rayDirectionInverse[axis] = direction[axis] == 0.0 ? BT_LARGE_FLOAT : 1.0 / direction[axis];
      m_signs[axis] = m_rayDirectionInverse[axis] < 0.0 ? 1U : 0U;
    }
    m_lambda_max = length;
  }

  bool process(const btBroadphaseProxy* proxy) override {
    btCollisionObject* object = static_cast<btCollisionObject*>(proxy->m_clientObject);
    if (object->getUserIndex2() == vyrCollide::GEOMETRY_OBJECT) {
      test(static_cast<vyrCollide::Geometry*>(object->getUserPointer()));
    } else if (object->getUserIndex2() == vyrCollide::BODY_OBJECT) {
      for (const auto& part : static_cast<vyr::RigidBody*>(object->getUserPointer())->getGeometries()) {
        test(part.get());
      }
    }
    return true;
  }

  btScalar distance;
  btVector3 normal{0.0, 0.0, 0.0};
  vyrCollide::Geometry* geometry = nullptr;

private:
  void test(vyrCollide::Geometry* candidate) {
    vyrCollide::RayMeeting meeting;
    if (!candidate->isSensor() && candidate->getEnableCollisions() &&
        vyrCollide::meetRay(*candidate, m_from, m_direction, distance, meeting)) {
      distance = meeting.distance;
      normal = meeting.normal;
      geometry = candidate;
    }
  }

  btVector3 m_from;
  btVector3 m_direction;
};

} // namespace

RayHit Simulation::rayTest(const vyr::Vec3& origin, const vyr::Vec3& direction, double length) const {
  RayHit result;
  if (!origin.isFinite() || !direction.isFinite() || !(direction.length() > 0.0) || !(length > 0.0) ||
      !std::isfinite(length)) {
    return result;
  }
  const vyr::Vec3 unit = direction.normalized();
  RayTester tester(toBullet(origin), toBullet(unit), length);
  m_native->world.updateAabbs();
  m_native->broadphase.rayTest(toBullet(origin), toBullet(origin + unit * length), tester);
  if (tester.geometry != nullptr) {
    result.hit = true;
    result.geometry = tester.geometry;
    result.distance = tester.distance;
    result.point = origin + unit * tester.distance;
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
