/// A rigid body: what it is made of, and how heavy that is.
#include <vyr/Material.h>
#include <vyr/Notify.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "GeometryNative.h"
#include "RigidBodyNative.h"
#include "Validate.h"

#include <algorithm>
#include <cmath>

namespace vyr {

using vyrPhysics::fromBullet;
using vyrPhysics::toBullet;

namespace {

/// Inertia about a point at `arm` from the centre of mass.
/// Source: parallel-axis theorem, Goldstein, Classical Mechanics, 3rd ed., equation 5.21.
btMatrix3x3 displaced(const btMatrix3x3& inertia, double mass, const btVector3& arm) {
  const double square = arm.length2();
  btMatrix3x3 result = inertia;
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) {
      result[r][c] += mass * ((r == c ? square : 0.0) - arm[r] * arm[c]);
    }
  }
  return result;
}

bool isDiagonal(const btMatrix3x3& m) {
  const double limit = 1.0e-12 * (m[0][0] + m[1][1] + m[2][2]);
  return std::fabs(m[0][1]) <= limit && std::fabs(m[0][2]) <= limit && std::fabs(m[1][2]) <= limit;
}

/// Box around all geometries in the body's frame.
vyrCollide::Bounds boundsOf(const RigidBody& body) {
  vyrCollide::Bounds all;
  for (const auto& geometry : body.getGeometries()) {
    const vyrCollide::Bounds bounds = geometry->getShape()->getBounds();
    for (int corner = 0; corner < 8; ++corner) {
      const Vec3 point =
          Vec3((corner & 1) != 0 ? bounds.max.x() : bounds.min.x(), (corner & 2) != 0 ? bounds.max.y() : bounds.min.y(),
               (corner & 4) != 0 ? bounds.max.z() : bounds.min.z()) *
          geometry->getLocalTransform();
      const bool first = !all.isValid();
      for (size_t axis = 0; axis < 3; ++axis) {
        all.min[axis] = first ? point[axis] : std::min(all.min[axis], point[axis]);
        all.max[axis] = first ? point[axis] : std::max(all.max[axis], point[axis]);
      }
    }
  }
  return all;
}

} // namespace

void RigidBody::collectMassProperties() {
  double mass = 0.0;
  btVector3 moment(0.0, 0.0, 0.0);
  for (const auto& geometry : m_geometries) {
    const vyrCollide::MassProperties part = geometry->getShape()->getMassProperties();
    const double partMass = geometry->isSensor() ? 0.0 : part.volume * geometry->getMaterial()->getDensity();
    mass += partMass;
    moment += toBullet(part.center * geometry->getLocalTransform()) * partMass;
  }
  m_native->userMass = false;
  m_native->userInertia = false;
  if (!(mass > 0.0)) {
    const vyrCollide::Bounds bounds = boundsOf(*this);
    const bool hasExtent = bounds.isValid() && bounds.getSize().length() > 0.0;
    const Vec3 size = hasExtent ? bounds.getSize() : Vec3(1.0, 1.0, 1.0);
    const double x = size.x() * size.x();
    const double y = size.y() * size.y();
    const double z = size.z() * size.z();
    m_native->mass = 1.0;
    m_native->center = hasExtent ? bounds.getCenter() : Vec3();
    m_native->inertia.setValue((y + z) / 12.0, 0.0, 0.0, 0.0, (z + x) / 12.0, 0.0, 0.0, 0.0, (x + y) / 12.0);
    return;
  }
  const btVector3 center = moment / mass;
  btMatrix3x3 sum(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0);
  for (const auto& geometry : m_geometries) {
    if (geometry->isSensor()) {
      continue;
    }
    const vyrCollide::MassProperties part = geometry->getShape()->getMassProperties();
    const double density = geometry->getMaterial()->getDensity();
    const auto& i = part.inertia;
    const btMatrix3x3 own(i[0][0], i[0][1], i[0][2], i[1][0], i[1][1], i[1][2], i[2][0], i[2][1], i[2][2]);
    const btMatrix3x3 turn = toBullet(geometry->getLocalTransform()).getBasis();
    const btVector3 arm = toBullet(part.center * geometry->getLocalTransform()) - center;
    sum += displaced(turn * own * turn.transpose() * density, part.volume * density, arm);
  }
  m_native->mass = mass;
  m_native->center = fromBullet(center);
  m_native->inertia = sum;
}

void RigidBody::applyMassProperties() {
  RigidBodyNative& native = *m_native;
  const btTransform pose = native.getBodyTransform();
  btMatrix3x3 principal = native.inertia;
  btMatrix3x3 axes = btMatrix3x3::getIdentity();
  if (!isDiagonal(principal)) {
    principal.diagonalize(axes, 1.0e-15, 100);
  }
  native.offset = btTransform(axes, toBullet(native.center));
  native.hasOffset = !(native.offset == btTransform::getIdentity());
  const bool moves = m_motionControl == DYNAMICS;
  const btVector3 moments(principal[0][0], principal[1][1], principal[2][2]);
  native.body->setMassProps(moves ? native.mass : 0.0, moves ? moments : btVector3(0.0, 0.0, 0.0));
  int flags = btCollisionObject::CF_CUSTOM_MATERIAL_CALLBACK;
  flags |= m_motionControl == STATIC ? btCollisionObject::CF_STATIC_OBJECT : 0;
  flags |= m_motionControl == KINEMATICS ? btCollisionObject::CF_KINEMATIC_OBJECT : 0;
  native.body->setCollisionFlags(flags);
  native.setBodyTransform(pose);
  placeShapes();
}

void RigidBody::placeShapes() {
  RigidBodyNative& native = *m_native;
  const btTransform toEngine = native.offset.inverse();
  const bool moving = m_motionControl != STATIC;
  std::vector<std::pair<btTransform, btCollisionShape*>> shapes;
  // The engine must have let go of the old shapes before new ones take their place.
  native.body->setCollisionShape(&native.emptyShape);
  native.compound.reset();
  for (size_t i = 0; i < m_geometries.size(); ++i) {
    vyrCollide::Geometry& geometry = *m_geometries[i];
    geometry.createInstance(moving, static_cast<int>(i));
    if (geometry.getEnableCollisions()) {
      const btTransform local = toBullet(geometry.getLocalTransform());
      shapes.emplace_back(native.hasOffset ? toEngine * local : local, geometry.getNative()->instance->getShape());
    }
  }
  if (shapes.size() == 1 && shapes[0].first == btTransform::getIdentity()) {
    native.body->setCollisionShape(shapes[0].second);
  } else if (!shapes.empty()) {
    auto compound = std::make_unique<btCompoundShape>();
    for (const auto& shape : shapes) {
      compound->addChildShape(shape.first, shape.second);
    }
    native.body->setCollisionShape(compound.get());
    native.compound = std::move(compound);
  }
}

void RigidBody::rebuild() {
  const double mass = m_native->mass;
  const btMatrix3x3 inertia = m_native->inertia;
  const bool userMass = m_native->userMass;
  const bool userInertia = m_native->userInertia;
  vyrSDK::Simulation* simulation = m_simulation;
  if (simulation != nullptr) {
    simulation->withdrawBody(this);
  }
  collectMassProperties();
  if (userMass) {
    m_native->inertia = m_native->inertia * (mass / m_native->mass);
    m_native->mass = mass;
  }
  if (userInertia) {
    m_native->inertia = inertia;
  }
  m_native->userMass = userMass;
  m_native->userInertia = userInertia;
  applyMassProperties();
  if (simulation != nullptr) {
    simulation->insertBody(this);
    // Constraints act in the engine's frame of the body, which may have moved.
    simulation->refreshConstraints(this);
  }
}

bool RigidBody::setMotionControl(MotionControl control) {
  if (control != STATIC && control != KINEMATICS && control != DYNAMICS) {
    VYR_NOTIFY(NOTIFY_ERROR) << "the body '" << m_name << "' has no motion control " << static_cast<int>(control);
    return false;
  }
  const bool hasPlane = std::any_of(m_geometries.begin(), m_geometries.end(), [](const auto& geometry) {
    return geometry->getShape()->getType() == vyrCollide::Shape::PLANE;
  });
  if (control == DYNAMICS && hasPlane) {
    VYR_NOTIFY(NOTIFY_ERROR) << "the body '" << m_name << "' has a plane and cannot be moved by forces";
    return false;
  }
  if (control != m_motionControl) {
    m_native->velocity = control == STATIC ? Vec3() : getVelocity();
    m_native->angularVelocity = control == STATIC ? Vec3() : getAngularVelocity();
    m_motionControl = control;
    m_native->body->setLinearVelocity(toBullet(m_native->velocity));
    m_native->body->setAngularVelocity(toBullet(m_native->angularVelocity));
    m_native->body->clearForces();
    rebuild();
  }
  return true;
}

double RigidBody::getMass() const {
  return m_native->mass;
}

bool RigidBody::setMass(double mass) {
  if (!vyrPhysics::isPositive(mass, "mass of a body")) {
    return false;
  }
  m_native->mass = mass;
  m_native->userMass = true;
  rebuild();
  return true;
}

SPDMatrix3x3 RigidBody::getInertia() const {
  const btMatrix3x3& i = m_native->inertia;
  return SPDMatrix3x3(i[0][0], i[0][1], i[0][2], i[1][1], i[1][2], i[2][2]);
}

bool RigidBody::setInertia(const SPDMatrix3x3& inertia) {
  // Positive definite exactly when all leading minors are positive (Sylvester's criterion).
  const double minor2 = inertia(0, 0) * inertia(1, 1) - inertia(0, 1) * inertia(0, 1);
  const btMatrix3x3 matrix(inertia(0, 0), inertia(0, 1), inertia(0, 2), inertia(0, 1), inertia(1, 1), inertia(1, 2),
                           inertia(0, 2), inertia(1, 2), inertia(2, 2));
  const double determinant = matrix.determinant();
  if (!(inertia(0, 0) > 0.0 && minor2 > 0.0 && determinant > 0.0 && std::isfinite(determinant))) {
    VYR_NOTIFY(NOTIFY_ERROR) << "the inertia of the body '" << m_name << "' must be positive definite, not " << inertia;
    return false;
  }
  m_native->inertia = matrix;
  m_native->userInertia = true;
  rebuild();
  return true;
}

void RigidBody::updateMassProperties() {
  m_native->userMass = false;
  m_native->userInertia = false;
  rebuild();
}

} // namespace vyr
