/// The simulation: what is in it, and how it enters and leaves.
#include <vyr/Notify.h>
#include <vyrCollide/Shape.h>
#include <vyrCollide/Trimesh.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "ConstraintNative.h"
#include "Find.h"
#include "GeometryNative.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace vyrSDK {

using vyrPhysics::contains;
using vyrPhysics::erase;
using vyrPhysics::toBullet;

namespace {

bool refuse(const char* what, const vyr::String& name) {
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the simulation cannot take the " << what << " '" << name
                                << "': it is invalid or in a simulation already";
  return false;
}

bool refuseNull(const char* what) {
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the simulation cannot take a null " << what;
  return false;
}

} // namespace

void Simulation::warnOfHulls(const vyr::RigidBody& body) {
  for (const auto& geometry : body.getGeometries()) {
    if (geometry->getShape()->getType() != vyrCollide::Shape::TRIMESH) {
      continue;
    }
    const auto* mesh = static_cast<const vyrCollide::Trimesh*>(geometry->getShape());
    if (!mesh->m_warned && !mesh->isConvex()) {
      mesh->m_warned = true;
      VYR_NOTIFY(vyr::NOTIFY_WARNING) << "the body '" << body.getName()
                                      << "' moves with a mesh that is not convex: it touches as the convex hull";
    }
  }
}

void Simulation::insertBody(vyr::RigidBody* body) {
  if (body->getMotionControl() != vyr::RigidBody::STATIC) {
    warnOfHulls(*body);
  }
  btRigidBody* native = body->getNative()->body.get();
  m_native->world.addRigidBody(native);
  body->setEnableGravity(body->getEnableGravity());
  if (body->getMotionControl() != vyr::RigidBody::STATIC) {
    native->forceActivationState(m_sleeping ? ACTIVE_TAG : DISABLE_DEACTIVATION);
  }
  m_native->contactsValid = false;
}

void Simulation::withdrawBody(vyr::RigidBody* body) {
  btRigidBody* native = body->getNative()->body.get();
  m_native->world.removeRigidBody(native);
  wakeBodies();
}

void Simulation::wakeBodies() {
  // What rested on a part must notice that it is gone.
  if (m_sleeping) {
    for (const auto& body : m_bodies) {
      body->getNative()->body->activate();
    }
  }
  m_native->contacts.clear();
  m_native->contactsValid = false;
}

void Simulation::insertGeometry(vyrCollide::Geometry* geometry) {
  geometry->createInstance(false, 0);
  vyrCollide::GeometryNative& native = *geometry->getNative();
  btRigidBody::btRigidBodyConstructionInfo info(0.0, nullptr, native.instance->getShape());
  info.m_startWorldTransform = toBullet(geometry->getLocalTransform());
  native.standalone = std::make_unique<btRigidBody>(info);
  native.standalone->setUserPointer(geometry);
  native.standalone->setUserIndex2(vyrCollide::GEOMETRY_OBJECT);
  native.standalone->setCollisionFlags(native.standalone->getCollisionFlags() |
                                       btCollisionObject::CF_CUSTOM_MATERIAL_CALLBACK);
  if (geometry->getEnableCollisions()) {
    m_native->world.addRigidBody(native.standalone.get());
  }
  m_native->contactsValid = false;
}

void Simulation::withdrawGeometry(vyrCollide::Geometry* geometry) {
  m_native->world.removeRigidBody(geometry->getNative()->standalone.get());
  geometry->getNative()->standalone.reset();
  wakeBodies();
}

void Simulation::refresh(vyrCollide::Geometry* geometry) {
  withdrawGeometry(geometry);
  insertGeometry(geometry);
}

void Simulation::insertConstraint(vyr::Constraint* constraint) {
  constraint->createNative();
  constraint->applySettings();
  constraint->getNative()->constraint->setUserConstraintId(constraint->getNative()->order);
  m_native->world.addConstraint(constraint->getNative()->constraint.get(), !constraint->getEnableCollisions());
}

void Simulation::withdrawConstraint(vyr::Constraint* constraint) {
  m_native->world.removeConstraint(constraint->getNative()->constraint.get());
  constraint->getNative()->constraint.reset();
}

void Simulation::refreshConstraints(const vyr::RigidBody* body) {
  for (const auto& constraint : m_constraints) {
    if (constraint->getRigidBody1() == body || constraint->getRigidBody2() == body) {
      withdrawConstraint(constraint.get());
      insertConstraint(constraint.get());
    }
  }
}

bool Simulation::add(vyr::RigidBody* body) {
  vyr::ref_ptr<vyr::RigidBody> holder = body;
  if (body == nullptr) {
    return refuseNull("body");
  }
  if (body->m_simulation != nullptr) {
    return refuse("body", body->getName());
  }
  m_bodies.push_back(holder);
  body->m_simulation = this;
  insertBody(body);
  return true;
}

bool Simulation::remove(vyr::RigidBody* body) {
  vyr::ref_ptr<vyr::RigidBody> holder = body;
  if (!contains(m_bodies, body)) {
    return false;
  }
  std::vector<vyr::ref_ptr<vyr::Constraint>> held;
  std::copy_if(m_constraints.begin(), m_constraints.end(), std::back_inserter(held),
               [body](const vyr::ref_ptr<vyr::Constraint>& constraint) {
                 return constraint->getRigidBody1() == body || constraint->getRigidBody2() == body;
               });
  for (const auto& constraint : held) {
    remove(constraint.get());
  }
  erase(m_bodies, body);
  withdrawBody(body);
  body->m_simulation = nullptr;
  return true;
}

bool Simulation::add(vyrCollide::Geometry* geometry) {
  vyr::ref_ptr<vyrCollide::Geometry> holder = geometry;
  if (geometry == nullptr) {
    return refuseNull("geometry");
  }
  if (!geometry->isValid() || geometry->getSimulation() != nullptr) {
    return refuse("geometry", geometry->getName());
  }
  if (geometry->getRigidBody() != nullptr) {
    return add(geometry->getRigidBody());
  }
  m_geometries.push_back(holder);
  geometry->m_simulation = this;
  insertGeometry(geometry);
  m_space->add(geometry);
  return true;
}

bool Simulation::remove(vyrCollide::Geometry* geometry) {
  vyr::ref_ptr<vyrCollide::Geometry> holder = geometry;
  if (!erase(m_geometries, geometry)) {
    return false;
  }
  withdrawGeometry(geometry);
  geometry->m_simulation = nullptr;
  m_space->remove(geometry);
  return true;
}

bool Simulation::add(vyrCollide::Space* space) {
  vyr::ref_ptr<vyrCollide::Space> holder = space;
  if (space == nullptr) {
    return refuseNull("space");
  }
  if (space->m_simulation != nullptr) {
    return refuse("space", vyr::String());
  }
  space->m_simulation = this;
  m_spaces.push_back(holder);
  for (const auto& geometry : space->getGeometries()) {
    if (geometry->getSimulation() == nullptr) {
      add(geometry.get());
    }
  }
  return true;
}

bool Simulation::remove(vyrCollide::Space* space) {
  vyr::ref_ptr<vyrCollide::Space> holder = space;
  if (!erase(m_spaces, space)) {
    return false;
  }
  space->m_simulation = nullptr;
  for (const auto& geometry : space->getGeometries()) {
    remove(geometry.get());
  }
  return true;
}

bool Simulation::add(vyr::Constraint* constraint) {
  vyr::ref_ptr<vyr::Constraint> holder = constraint;
  if (constraint == nullptr) {
    return refuseNull("constraint");
  }
  if (!constraint->isValid() || constraint->m_simulation != nullptr) {
    return refuse("constraint", constraint->getName());
  }
  for (vyr::RigidBody* body : {constraint->getRigidBody1(), constraint->getRigidBody2()}) {
    if (body != nullptr && body->getSimulation() != this && !add(body)) {
      return false;
    }
  }
  m_constraints.push_back(holder);
  constraint->m_simulation = this;
  constraint->getNative()->order = m_native->numConstraintsMade++;
  insertConstraint(constraint);
  return true;
}

bool Simulation::remove(vyr::Constraint* constraint) {
  vyr::ref_ptr<vyr::Constraint> holder = constraint;
  if (!erase(m_constraints, constraint)) {
    return false;
  }
  withdrawConstraint(constraint);
  constraint->m_simulation = nullptr;
  return true;
}

bool Simulation::add(vyr::ParticleSystem* particles) {
  vyr::ref_ptr<vyr::ParticleSystem> holder = particles;
  if (particles == nullptr) {
    return refuseNull("particle system");
  }
  if (particles->getSimulation() != nullptr) {
    return refuse("particle system", particles->getName());
  }
  m_particleSystems.push_back(holder);
  particles->enter(this);
  return true;
}

bool Simulation::remove(vyr::ParticleSystem* particles) {
  vyr::ref_ptr<vyr::ParticleSystem> holder = particles;
  if (!erase(m_particleSystems, particles)) {
    return false;
  }
  particles->leave();
  return true;
}

bool Simulation::add(Assembly* assembly) {
  vyr::ref_ptr<Assembly> holder = assembly;
  if (assembly == nullptr) {
    return refuseNull("assembly");
  }
  if (assembly->m_simulation != nullptr) {
    return refuse("assembly", assembly->getName());
  }
  m_assemblies.push_back(holder);
  assembly->enter(this);
  return true;
}

bool Simulation::remove(Assembly* assembly) {
  vyr::ref_ptr<Assembly> holder = assembly;
  if (!erase(m_assemblies, assembly)) {
    return false;
  }
  assembly->leave();
  return true;
}

bool Simulation::add(StepEventListener* listener) {
  vyr::ref_ptr<StepEventListener> holder = listener;
  if (listener == nullptr || contains(m_stepListeners, listener)) {
    return refuseNull("step listener, or one that it has");
  }
  m_stepListeners.push_back(holder);
  listener->simulationChanged(this);
  return true;
}

bool Simulation::remove(StepEventListener* listener) {
  vyr::ref_ptr<StepEventListener> holder = listener;
  if (!erase(m_stepListeners, listener)) {
    return false;
  }
  listener->simulationChanged(nullptr);
  return true;
}

bool Simulation::add(GuiEventListener* listener) {
  vyr::ref_ptr<GuiEventListener> holder = listener;
  if (listener == nullptr || contains(m_guiListeners, listener)) {
    return refuseNull("user event listener, or one that it has");
  }
  m_guiListeners.push_back(holder);
  listener->simulationChanged(this);
  return true;
}

bool Simulation::remove(GuiEventListener* listener) {
  vyr::ref_ptr<GuiEventListener> holder = listener;
  if (!erase(m_guiListeners, listener)) {
    return false;
  }
  listener->simulationChanged(nullptr);
  return true;
}

void Simulation::clear() {
  while (!m_stepListeners.empty()) {
    remove(m_stepListeners.back().get());
  }
  while (!m_guiListeners.empty()) {
    remove(m_guiListeners.back().get());
  }
  clearParts();
  m_clock.reset();
}

void Simulation::clearParts() {
  while (!m_assemblies.empty()) {
    remove(m_assemblies.back().get());
  }
  while (!m_spaces.empty()) {
    remove(m_spaces.back().get());
  }
  while (!m_constraints.empty()) {
    remove(m_constraints.back().get());
  }
  while (!m_particleSystems.empty()) {
    remove(m_particleSystems.back().get());
  }
  // The engine looks through all pairs for each body that goes: without pairs it does not have to.
  btOverlappingPairCache& pairs = *m_native->broadphase.getOverlappingPairCache();
  while (pairs.getNumOverlappingPairs() > 0) {
    const btBroadphasePair last = pairs.getOverlappingPairArray()[pairs.getNumOverlappingPairs() - 1];
    pairs.removeOverlappingPair(last.m_pProxy0, last.m_pProxy1, &m_native->dispatcher);
  }
  while (!m_bodies.empty()) {
    remove(m_bodies.back().get());
  }
  while (!m_geometries.empty()) {
    remove(m_geometries.back().get());
  }
}

vyr::RigidBody* Simulation::findRigidBody(const vyr::String& name) const {
  for (const auto& body : m_bodies) {
    if (body->getName() == name) {
      return body.get();
    }
  }
  return nullptr;
}

} // namespace vyrSDK
