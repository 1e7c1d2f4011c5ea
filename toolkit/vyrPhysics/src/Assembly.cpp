/// A named group of parts of a simulation.
#include <vyrSDK/Assembly.h>

#include <vyrSDK/Simulation.h>

#include "Find.h"

namespace vyrSDK {

using vyrPhysics::erase;

Assembly::Assembly(const vyr::String& name)
    : m_name(name) {}

Assembly::~Assembly() = default;

namespace {

/// Puts a part into the list and, when there is one, into the simulation.
template <class Part>
bool addTo(std::vector<vyr::ref_ptr<Part>>& list, Part* part, Simulation* simulation) {
  vyr::ref_ptr<Part> holder = part;
  if (part == nullptr || vyrPhysics::contains(list, part)) {
    return false;
  }
  list.push_back(holder);
  if (simulation != nullptr && part->getSimulation() == nullptr) {
    simulation->add(part);
  }
  return true;
}

template <class Part>
bool removeFrom(std::vector<vyr::ref_ptr<Part>>& list, Part* part, Simulation* simulation) {
  vyr::ref_ptr<Part> holder = part;
  if (!erase(list, part)) {
    return false;
  }
  if (simulation != nullptr) {
    simulation->remove(part);
  }
  return true;
}

} // namespace

bool Assembly::add(vyr::RigidBody* body) {
  return addTo(m_bodies, body, m_simulation);
}

bool Assembly::add(vyrCollide::Geometry* geometry) {
  return addTo(m_geometries, geometry, m_simulation);
}

bool Assembly::add(vyr::Constraint* constraint) {
  return addTo(m_constraints, constraint, m_simulation);
}

bool Assembly::add(vyr::Frame* frame) {
  vyr::ref_ptr<vyr::Frame> holder = frame;
  if (frame == nullptr || vyrPhysics::contains(m_frames, frame)) {
    return false;
  }
  m_frames.push_back(holder);
  return true;
}

bool Assembly::add(Assembly* assembly) {
  vyr::ref_ptr<Assembly> holder = assembly;
  if (assembly == nullptr || assembly == this || assembly->contains(this) ||
      vyrPhysics::contains(m_assemblies, assembly)) {
    return false;
  }
  m_assemblies.push_back(holder);
  if (m_simulation != nullptr && assembly->getSimulation() == nullptr) {
    assembly->enter(m_simulation);
  }
  return true;
}

bool Assembly::remove(vyr::RigidBody* body) {
  return removeFrom(m_bodies, body, m_simulation);
}

bool Assembly::remove(vyrCollide::Geometry* geometry) {
  return removeFrom(m_geometries, geometry, m_simulation);
}

bool Assembly::remove(vyr::Constraint* constraint) {
  return removeFrom(m_constraints, constraint, m_simulation);
}

bool Assembly::remove(vyr::Frame* frame) {
  return erase(m_frames, frame);
}

bool Assembly::remove(Assembly* assembly) {
  vyr::ref_ptr<Assembly> holder = assembly;
  if (!erase(m_assemblies, assembly)) {
    return false;
  }
  if (m_simulation != nullptr) {
    assembly->leave();
  }
  return true;
}

bool Assembly::contains(const Assembly* assembly) const {
  for (const auto& part : m_assemblies) {
    if (part.get() == assembly || part->contains(assembly)) {
      return true;
    }
  }
  return false;
}

void Assembly::enter(Simulation* simulation) {
  m_simulation = simulation;
  const auto addNew = [simulation](auto& list) {
    for (const auto& part : list) {
      if (part->getSimulation() == nullptr) {
        simulation->add(part.get());
      }
    }
  };
  addNew(m_bodies);
  addNew(m_geometries);
  addNew(m_constraints);
  for (const auto& assembly : m_assemblies) {
    if (assembly->getSimulation() == nullptr) {
      assembly->enter(simulation);
    }
  }
}

void Assembly::leave() {
  Simulation* simulation = m_simulation;
  m_simulation = nullptr;
  for (const auto& assembly : m_assemblies) {
    assembly->leave();
  }
  if (simulation == nullptr) {
    return;
  }
  for (const auto& constraint : m_constraints) {
    simulation->remove(constraint.get());
  }
  for (const auto& geometry : m_geometries) {
    simulation->remove(geometry.get());
  }
  for (const auto& body : m_bodies) {
    simulation->remove(body.get());
  }
}

void Assembly::transform(const vyr::AffineMatrix4x4& transform) {
  for (const auto& body : m_bodies) {
    body->setTransform(body->getTransform() * transform);
  }
  for (const auto& geometry : m_geometries) {
    if (geometry->getRigidBody() == nullptr) {
      geometry->setLocalTransform(geometry->getLocalTransform() * transform);
    }
  }
  const auto moveWorldFrame = [&transform](vyr::Frame* frame) {
    if (frame->getRigidBody() == nullptr) {
      frame->setLocalTransform(frame->getLocalTransform() * transform);
    }
  };
  for (const auto& frame : m_frames) {
    moveWorldFrame(frame.get());
  }
  for (const auto& constraint : m_constraints) {
    for (vyr::Frame* frame : {constraint->getFrame1(), constraint->getFrame2()}) {
      if (!vyrPhysics::contains(m_frames, frame)) {
        moveWorldFrame(frame);
      }
    }
  }
  for (const auto& assembly : m_assemblies) {
    assembly->transform(transform);
  }
}

vyr::RigidBody* Assembly::findRigidBody(const vyr::String& name) const {
  for (const auto& body : m_bodies) {
    if (body->getName() == name) {
      return body.get();
    }
  }
  for (const auto& assembly : m_assemblies) {
    if (vyr::RigidBody* body = assembly->findRigidBody(name)) {
      return body;
    }
  }
  return nullptr;
}

} // namespace vyrSDK
