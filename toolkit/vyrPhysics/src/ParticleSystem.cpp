/// Many small balls in a simulation.
#include <vyr/ParticleSystem.h>

#include <vyr/Notify.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "GeometryNative.h"
#include "ParticleSystemNative.h"
#include "SimulationNative.h"
#include "Validate.h"

namespace vyr {

using vyrPhysics::fromBullet;
using vyrPhysics::toBullet;

ParticleSystem::ParticleSystem(const String& name)
    : m_name(name)
    , m_native(std::make_unique<ParticleSystemNative>()) {}

ParticleSystem::~ParticleSystem() = default;

size_t ParticleSystem::add(const Vec3& position, const Vec3& velocity, double radius, double mass, double life) {
  if (!vyrPhysics::isFinite(position, "position of a particle") ||
      !vyrPhysics::isFinite(velocity, "velocity of a particle") ||
      !vyrPhysics::isPositive(radius, "radius of a particle") || !vyrPhysics::isPositive(mass, "mass of a particle")) {
    return ParticleContact::kNone;
  }
  if (!(life > 0.0)) {
    VYR_NOTIFY(NOTIFY_ERROR) << "life of a particle must be above 0, not " << life;
    return ParticleContact::kNone;
  }
  auto& shape = m_native->shapes[radius];
  if (!shape) {
    shape = std::make_unique<btSphereShape>(radius);
  }
  btVector3 inertia;
  shape->calculateLocalInertia(mass, inertia);
  btRigidBody::btRigidBodyConstructionInfo info(mass, nullptr, shape.get(), inertia);
  info.m_startWorldTransform.setOrigin(toBullet(position));
  auto body = std::make_unique<btRigidBody>(info);
  body->setLinearVelocity(toBullet(velocity));
  body->setUserPointer(this);
  body->setUserIndex(static_cast<int>(m_particles.size()));
  body->setUserIndex2(vyrCollide::PARTICLE_OBJECT);
  body->setCollisionFlags(body->getCollisionFlags() | btCollisionObject::CF_CUSTOM_MATERIAL_CALLBACK);
  body->setActivationState(DISABLE_DEACTIVATION);
  if (m_simulation != nullptr) {
    m_simulation->getNative()->world.addRigidBody(body.get());
  }
  m_native->bodies.push_back(std::move(body));
  m_native->contactsValid = false;
  m_particles.push_back(Particle{m_nextId++, radius, mass, life, life, m_defaultColor});
  return m_particles.size() - 1;
}

bool ParticleSystem::remove(size_t index) {
  if (index >= m_particles.size()) {
    return false;
  }
  if (m_simulation != nullptr) {
    m_simulation->getNative()->world.removeRigidBody(m_native->bodies[index].get());
    m_simulation->getNative()->contactsValid = false;
  }
  m_native->bodies.erase(m_native->bodies.begin() + static_cast<std::ptrdiff_t>(index));
  m_particles.erase(m_particles.begin() + static_cast<std::ptrdiff_t>(index));
  for (size_t i = index; i < m_native->bodies.size(); ++i) {
    m_native->bodies[i]->setUserIndex(static_cast<int>(i));
  }
  m_native->contactsValid = false;
  return true;
}

void ParticleSystem::clear() {
  while (!m_particles.empty()) {
    remove(m_particles.size() - 1);
  }
}

void ParticleSystem::enter(vyrSDK::Simulation* simulation) {
  m_simulation = simulation;
  for (const auto& body : m_native->bodies) {
    simulation->getNative()->world.addRigidBody(body.get());
  }
  m_native->contactsValid = false;
}

void ParticleSystem::leave() {
  for (const auto& body : m_native->bodies) {
    m_simulation->getNative()->world.removeRigidBody(body.get());
  }
  m_simulation->getNative()->contactsValid = false;
  m_simulation = nullptr;
  m_native->contacts.clear();
  m_native->contactsValid = false;
}

void ParticleSystem::age(double dt) {
  for (size_t i = m_particles.size(); i-- > 0;) {
    m_particles[i].life -= dt;
    if (m_particles[i].life <= 0.0) {
      remove(i);
    }
  }
  m_native->contactsValid = false;
}

uint64_t ParticleSystem::getId(size_t index) const {
  return index < m_particles.size() ? m_particles[index].id : 0;
}

size_t ParticleSystem::findParticle(uint64_t id) const {
  for (size_t i = 0; i < m_particles.size(); ++i) {
    if (m_particles[i].id == id) {
      return i;
    }
  }
  return ParticleContact::kNone;
}

Vec3 ParticleSystem::getPosition(size_t index) const {
  return index < m_particles.size() ? fromBullet(m_native->bodies[index]->getWorldTransform().getOrigin()) : Vec3();
}

bool ParticleSystem::setPosition(size_t index, const Vec3& position) {
  if (index >= m_particles.size() || !vyrPhysics::isFinite(position, "position of a particle")) {
    return false;
  }
  m_native->bodies[index]->getWorldTransform().setOrigin(toBullet(position));
  return true;
}

Vec3 ParticleSystem::getVelocity(size_t index) const {
  return index < m_particles.size() ? fromBullet(m_native->bodies[index]->getLinearVelocity()) : Vec3();
}

bool ParticleSystem::setVelocity(size_t index, const Vec3& velocity) {
  if (index >= m_particles.size() || !vyrPhysics::isFinite(velocity, "velocity of a particle")) {
    return false;
  }
  m_native->bodies[index]->setLinearVelocity(toBullet(velocity));
  return true;
}

Vec3 ParticleSystem::getAngularVelocity(size_t index) const {
  return index < m_particles.size() ? fromBullet(m_native->bodies[index]->getAngularVelocity()) : Vec3();
}

Quat ParticleSystem::getRotation(size_t index) const {
  return index < m_particles.size() ? fromBullet(m_native->bodies[index]->getWorldTransform().getRotation()) : Quat();
}

double ParticleSystem::getRadius(size_t index) const {
  return index < m_particles.size() ? m_particles[index].radius : 0.0;
}

double ParticleSystem::getMass(size_t index) const {
  return index < m_particles.size() ? m_particles[index].mass : 0.0;
}

Vec4 ParticleSystem::getColor(size_t index) const {
  return index < m_particles.size() ? m_particles[index].color : Vec4();
}

bool ParticleSystem::setColor(size_t index, const Vec4& color) {
  if (index >= m_particles.size()) {
    return false;
  }
  m_particles[index].color = color;
  return true;
}

double ParticleSystem::getLife(size_t index) const {
  return index < m_particles.size() ? m_particles[index].life : 0.0;
}

double ParticleSystem::getInitialLife(size_t index) const {
  return index < m_particles.size() ? m_particles[index].initialLife : 0.0;
}

bool ParticleSystem::addForce(size_t index, const Vec3& force) {
  if (index >= m_particles.size() || !vyrPhysics::isFinite(force, "force on a particle")) {
    return false;
  }
  m_native->bodies[index]->applyCentralForce(toBullet(force));
  return true;
}

void ParticleSystem::setMaterial(Material* material) {
  m_material = material;
}

Material* ParticleSystem::getMaterial() const {
  return m_material ? m_material.get() : Material::getDefault();
}

namespace {

/// The contact as seen by the particle that is the manifold's body 0 (`first`) or body 1.
ParticleContact readContact(const btPersistentManifold& manifold, const btManifoldPoint& point, bool first,
                            double timeStep) {
  const btCollisionObject* own = first ? manifold.getBody0() : manifold.getBody1();
  const btCollisionObject* other = first ? manifold.getBody1() : manifold.getBody0();
  ParticleContact contact;
  contact.particle1 = static_cast<size_t>(own->getUserIndex());
  if (other->getUserIndex2() == vyrCollide::PARTICLE_OBJECT && other->getUserPointer() == own->getUserPointer()) {
    contact.particle2 = static_cast<size_t>(other->getUserIndex());
  } else {
    int index1 = 0;
    int index2 = 0;
    vyrSDK::decodeChildren(point.m_userPersistentData, index1, index2);
    contact.geometry = vyrSDK::geometryAt(other, first ? index2 : index1);
  }
  contact.point = fromBullet(point.getPositionWorldOnB());
  contact.normal = fromBullet(point.m_normalWorldOnB) * (first ? 1.0 : -1.0);
  contact.depth = -point.getDistance();
  contact.normalForce = point.m_appliedImpulse / timeStep;
  return contact;
}

} // namespace

const std::vector<ParticleContact>& ParticleSystem::getContacts() const {
  if (m_native->contactsValid || m_simulation == nullptr) {
    return m_native->contacts;
  }
  m_native->contacts.clear();
  const auto isOwn = [this](const btCollisionObject* object) {
    return object->getUserIndex2() == vyrCollide::PARTICLE_OBJECT && object->getUserPointer() == this;
  };
  btCollisionDispatcher& dispatcher = m_simulation->getNative()->dispatcher;
  for (int m = 0; m < dispatcher.getNumManifolds(); ++m) {
    const btPersistentManifold& manifold = *dispatcher.getManifoldByIndexInternal(m);
    const bool first = isOwn(manifold.getBody0());
    if (!first && !isOwn(manifold.getBody1())) {
      continue;
    }
    for (int i = 0; i < manifold.getNumContacts(); ++i) {
      const btManifoldPoint& point = manifold.getContactPoint(i);
      if (point.getDistance() <= 0.0 || point.m_appliedImpulse > 0.0) {
        m_native->contacts.push_back(readContact(manifold, point, first, m_simulation->getTimeStep()));
      }
    }
  }
  m_native->contactsValid = true;
  return m_native->contacts;
}

} // namespace vyr
