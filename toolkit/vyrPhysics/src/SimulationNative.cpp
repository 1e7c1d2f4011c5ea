/// The engine's world: its settings, and the contacts read from it.
#include "SimulationNative.h"

#include <vyr/Material.h>
#include <vyr/ParticleSystem.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>

#include "BulletConvert.h"
#include "GeometryNative.h"

#include <BulletCollision/CollisionDispatch/btCollisionObjectWrapper.h>
#include <BulletCollision/CollisionDispatch/btManifoldResult.h>

#include <algorithm>
#include <cstdint>

namespace vyrSDK {

using vyrPhysics::fromBullet;

SimulationNative::SimulationNative()
    : dispatcher(&configuration)
    , multi(&dantzig)
    , world(&dispatcher, &broadphase, &iterative, &configuration) {
  // Without this, the order of pairs, and with it the rounding, depends on addresses.
  world.getDispatchInfo().m_deterministicOverlappingPairs = true;
  world.setSynchronizeAllMotionStates(false);
  // Two friction directions: with one, friction across it would be missed.
  world.getSolverInfo().m_solverMode |= SOLVER_USE_2_FRICTION_DIRECTIONS;
  // Overlap is undone by moving bodies apart, never by giving them speed: a bounce must not gain energy from it.
  world.getSolverInfo().m_splitImpulse = 1;
  world.getSolverInfo().m_splitImpulsePenetrationThreshold = 0.0;
  // The last step's forces are the first guess: bodies at rest start each step with the forces that hold them.
  world.getSolverInfo().m_warmstartingFactor = 1.0;
  installContactCallback();
}

void* encodeChildren(int first, int second) {
  const uint64_t mark =
      static_cast<uint64_t>(static_cast<uint32_t>(first)) << 32 | static_cast<uint64_t>(static_cast<uint32_t>(second));
  return reinterpret_cast<void*>(static_cast<uintptr_t>(mark));
}

void decodeChildren(const void* mark, int& outFirst, int& outSecond) {
  const uint64_t value = reinterpret_cast<uintptr_t>(mark);
  outFirst = static_cast<int>(value >> 32);
  outSecond = static_cast<int>(value & 0xffffffffU);
}

namespace {

/// *returns inner*. Nullable: the geometry behind the part of an object that touches; parts nest, triangles innermost.
vyrCollide::Geometry* geometryOf(const btCollisionObjectWrapper* wrapper) {
  for (; wrapper != nullptr; wrapper = wrapper->m_parent) {
    if (wrapper->getCollisionShape()->getUserPointer() != nullptr) {
      return static_cast<vyrCollide::Geometry*>(wrapper->getCollisionShape()->getUserPointer());
    }
  }
  return nullptr;
}

/// Never null.
const vyr::Material* materialOf(const vyrCollide::Geometry* geometry, const btCollisionObject* object) {
  if (geometry != nullptr) {
    return geometry->getMaterial();
  }
  const bool particle = object->getUserIndex2() == vyrCollide::PARTICLE_OBJECT;
  return particle ? static_cast<const vyr::ParticleSystem*>(object->getUserPointer())->getMaterial()
                  : vyr::Material::getDefault();
}

bool prepareContact(btManifoldPoint& point, const btCollisionObjectWrapper* wrapper1, int, int,
                    const btCollisionObjectWrapper* wrapper2, int, int) {
  const vyrCollide::Geometry* geometry1 = geometryOf(wrapper1);
  const vyrCollide::Geometry* geometry2 = geometryOf(wrapper2);
  const vyr::Material& material1 = *materialOf(geometry1, wrapper1->getCollisionObject());
  const vyr::Material& material2 = *materialOf(geometry2, wrapper2->getCollisionObject());
  point.m_combinedFriction = vyr::Material::combineFriction(material1, material2);
  point.m_combinedRestitution = vyr::Material::combineRestitution(material1, material2);
  point.m_combinedRollingFriction = std::max(material1.getRollingFriction(), material2.getRollingFriction());
  const auto index = [](const vyrCollide::Geometry* geometry) {
    return geometry != nullptr ? geometry->getNative()->instance->getShape()->getUserIndex() : 0;
  };
  point.m_userPersistentData = encodeChildren(index(geometry1), index(geometry2));
  const bool sensor =
      (geometry1 != nullptr && geometry1->isSensor()) || (geometry2 != nullptr && geometry2->isSensor());
  if (sensor) {
    // A contact this soft passes no force; the engine can leave out contacts of whole objects only.
    const double softest = 1.0e30;
    point.m_contactPointFlags |= BT_CONTACT_FLAG_HAS_CONTACT_CFM;
    point.m_contactCFM = softest;
    point.m_combinedFriction = 0.0;
    point.m_combinedRollingFriction = 0.0;
  }
  return true;
}

} // namespace

vyrCollide::Geometry* geometryAt(const btCollisionObject* object, int index) {
  if (object->getUserIndex2() == vyrCollide::GEOMETRY_OBJECT) {
    return static_cast<vyrCollide::Geometry*>(object->getUserPointer());
  }
  if (object->getUserIndex2() == vyrCollide::BODY_OBJECT) {
    const auto& geometries = static_cast<vyr::RigidBody*>(object->getUserPointer())->getGeometries();
    return index >= 0 && static_cast<size_t>(index) < geometries.size() ? geometries[static_cast<size_t>(index)].get()
                                                                        : nullptr;
  }
  return nullptr;
}

namespace {

vyr::Vec3 velocityAt(const vyrCollide::Geometry* geometry, const vyr::Vec3& point) {
  return geometry->getRigidBody() != nullptr ? geometry->getRigidBody()->getVelocityAtPoint(point) : vyr::Vec3();
}

} // namespace

void installContactCallback() {
  gContactAddedCallback = prepareContact;
}

void gatherContacts(SimulationNative& native, double timeStep) {
  native.contacts.clear();
  for (int m = 0; m < native.dispatcher.getNumManifolds(); ++m) {
    const btPersistentManifold* manifold = native.dispatcher.getManifoldByIndexInternal(m);
    for (int i = 0; i < manifold->getNumContacts(); ++i) {
      const btManifoldPoint& point = manifold->getContactPoint(i);
      if (point.getDistance() > 0.0 && point.m_appliedImpulse <= 0.0) {
        continue; // kept by the engine in case it closes; nothing touches yet
      }
      int index1 = 0;
      int index2 = 0;
      decodeChildren(point.m_userPersistentData, index1, index2);
      Contact contact;
      contact.geometry1 = geometryAt(manifold->getBody0(), index1);
      contact.geometry2 = geometryAt(manifold->getBody1(), index2);
      if (contact.geometry1 == nullptr || contact.geometry2 == nullptr) {
        continue; // particles have contacts of their own
      }
      contact.point = fromBullet(point.getPositionWorldOnB());
      contact.normal = fromBullet(point.m_normalWorldOnB);
      contact.depth = -point.getDistance();
      contact.normalForce = point.m_appliedImpulse / timeStep;
      contact.tangentialForce = fromBullet((point.m_lateralFrictionDir1 * point.m_appliedImpulseLateral1 +
                                            point.m_lateralFrictionDir2 * point.m_appliedImpulseLateral2) /
                                           timeStep);
      contact.velocity = velocityAt(contact.geometry1, contact.point) - velocityAt(contact.geometry2, contact.point);
      if (contact.geometry1->isSensor() || contact.geometry2->isSensor()) {
        contact.normalForce = 0.0;
        contact.tangentialForce = vyr::Vec3();
      }
      native.contacts.push_back(contact);
    }
  }
  native.contactsValid = true;
}

} // namespace vyrSDK
