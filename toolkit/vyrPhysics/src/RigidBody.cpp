/// A rigid body: pose, velocity and forces.
#include <vyr/RigidBody.h>

#include <vyr/Notify.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "Find.h"
#include "GeometryNative.h"
#include "RigidBodyNative.h"
#include "Validate.h"

namespace vyr {

using vyrPhysics::fromBullet;
using vyrPhysics::toBullet;

RigidBody::RigidBody(const String& name)
    : m_name(name)
    , m_native(std::make_unique<RigidBodyNative>()) {
  btRigidBody::btRigidBodyConstructionInfo info(1.0, nullptr, &m_native->emptyShape, btVector3(1.0, 1.0, 1.0));
  m_native->body = std::make_unique<btRigidBody>(info);
  m_native->body->setUserPointer(this);
  m_native->body->setUserIndex2(vyrCollide::BODY_OBJECT);
  collectMassProperties();
  applyMassProperties();
}

RigidBody::~RigidBody() {
  for (const auto& geometry : m_geometries) {
    geometry->m_body = nullptr;
  }
}

bool RigidBody::add(vyrCollide::Geometry* geometry, const AffineMatrix4x4& local) {
  ref_ptr<vyrCollide::Geometry> holder = geometry;
  if (geometry == nullptr || !geometry->isValid() || geometry->getRigidBody() != nullptr) {
    VYR_NOTIFY(NOTIFY_ERROR) << "the body '" << m_name << "' takes no geometry that is null, invalid or another body's";
    return false;
  }
  if (geometry->getShape()->getType() == vyrCollide::Shape::PLANE && m_motionControl == DYNAMICS) {
    VYR_NOTIFY(NOTIFY_ERROR) << "the body '" << m_name << "' is moved by forces and takes no plane";
    return false;
  }
  if (!vyrPhysics::isFinite(local, "transform of a geometry")) {
    return false;
  }
  if (geometry->m_simulation != nullptr) {
    geometry->m_simulation->remove(geometry);
  }
  geometry->m_body = this;
  geometry->m_localTransform = fromBullet(toBullet(local));
  m_geometries.push_back(holder);
  rebuild();
  return true;
}

bool RigidBody::remove(vyrCollide::Geometry* geometry) {
  ref_ptr<vyrCollide::Geometry> holder = geometry;
  if (!vyrPhysics::erase(m_geometries, geometry)) {
    return false;
  }
  geometry->m_body = nullptr;
  rebuild();
  return true;
}

Vec3 RigidBody::getPosition() const {
  return fromBullet(m_native->getBodyTransform().getOrigin());
}

void RigidBody::setPosition(const Vec3& position) {
  if (vyrPhysics::isFinite(position, "position of a body")) {
    btTransform transform = m_native->getBodyTransform();
    transform.setOrigin(toBullet(position));
    m_native->setBodyTransform(transform);
  }
}

Quat RigidBody::getRotation() const {
  return fromBullet(m_native->getBodyTransform().getRotation());
}

void RigidBody::setRotation(const Quat& rotation) {
  if (!std::isfinite(rotation.length()) || rotation.length() == 0.0) {
    VYR_NOTIFY(NOTIFY_ERROR) << "rotation of the body '" << m_name << "' must not be " << rotation;
    return;
  }
  btTransform transform = m_native->getBodyTransform();
  transform.setRotation(toBullet(rotation).normalized());
  m_native->setBodyTransform(transform);
}

AffineMatrix4x4 RigidBody::getTransform() const {
  return fromBullet(m_native->getBodyTransform());
}

void RigidBody::setTransform(const AffineMatrix4x4& transform) {
  if (vyrPhysics::isFinite(transform, "transform of a body")) {
    m_native->setBodyTransform(toBullet(transform));
  }
}

Vec3 RigidBody::getCenterOfMass() const {
  return fromBullet(m_native->body->getWorldTransform().getOrigin());
}

Vec3 RigidBody::getVelocity() const {
  return m_motionControl == KINEMATICS ? m_native->velocity : fromBullet(m_native->body->getLinearVelocity());
}

void RigidBody::setVelocity(const Vec3& velocity) {
  if (vyrPhysics::isFinite(velocity, "velocity of a body") && m_motionControl != STATIC) {
    m_native->velocity = velocity;
    m_native->body->setLinearVelocity(toBullet(velocity));
    m_native->body->activate();
  }
}

Vec3 RigidBody::getAngularVelocity() const {
  return m_motionControl == KINEMATICS ? m_native->angularVelocity : fromBullet(m_native->body->getAngularVelocity());
}

void RigidBody::setAngularVelocity(const Vec3& velocity) {
  if (vyrPhysics::isFinite(velocity, "angular velocity of a body") && m_motionControl != STATIC) {
    m_native->angularVelocity = velocity;
    m_native->body->setAngularVelocity(toBullet(velocity));
    m_native->body->activate();
  }
}

Vec3 RigidBody::getVelocityAtPoint(const Vec3& point) const {
  return getVelocity() + (getAngularVelocity() ^ (point - getCenterOfMass()));
}

void RigidBody::addForce(const Vec3& force) {
  if (m_motionControl == DYNAMICS && vyrPhysics::isFinite(force, "force on a body")) {
    m_native->body->applyCentralForce(toBullet(force));
    m_native->body->activate();
  }
}

void RigidBody::addForceAtPosition(const Vec3& force, const Vec3& point) {
  if (vyrPhysics::isFinite(point, "point of a force on a body")) {
    addForce(force);
    addTorque((point - getCenterOfMass()) ^ force);
  }
}

void RigidBody::addTorque(const Vec3& torque) {
  if (m_motionControl == DYNAMICS && vyrPhysics::isFinite(torque, "torque on a body")) {
    m_native->body->applyTorque(toBullet(torque));
    m_native->body->activate();
  }
}

Vec3 RigidBody::getForce() const {
  return fromBullet(m_native->body->getTotalForce());
}

Vec3 RigidBody::getTorque() const {
  return fromBullet(m_native->body->getTotalTorque());
}

bool RigidBody::setLinearDamping(double damping) {
  if (!(damping >= 0.0 && damping <= 1.0)) {
    return false;
  }
  m_native->linearDamping = damping;
  m_native->body->setDamping(m_native->linearDamping, m_native->angularDamping);
  return true;
}

double RigidBody::getLinearDamping() const {
  return m_native->linearDamping;
}

bool RigidBody::setAngularDamping(double damping) {
  if (!(damping >= 0.0 && damping <= 1.0)) {
    return false;
  }
  m_native->angularDamping = damping;
  m_native->body->setDamping(m_native->linearDamping, m_native->angularDamping);
  return true;
}

double RigidBody::getAngularDamping() const {
  return m_native->angularDamping;
}

void RigidBody::setEnableGravity(bool enable) {
  m_gravity = enable;
  const Vec3 gravity = m_simulation != nullptr && enable ? m_simulation->getGravity() : Vec3();
  m_native->body->setGravity(toBullet(gravity));
}

double RigidBody::getKineticEnergy() const {
  const Vec3 v = getVelocity();
  // In the frame of the body, where the inertia is constant.
  const Vec3 w = getAngularVelocity() * getRotation().inverse();
  return 0.5 * getMass() * (v * v) + 0.5 * (w * (getInertia() * w));
}

} // namespace vyr
