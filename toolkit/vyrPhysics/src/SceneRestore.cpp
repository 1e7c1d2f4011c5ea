/// Gives the parts of a simulation the state that a scene file holds, without replacing them.
#include "SceneReader.h"

#include "ParticleSystemNative.h"
#include "SceneParse.h"
#include "SceneRow.h"
#include "SimulationNative.h"

#include <vyrCollide/HeightField.h>

#include <typeinfo>

namespace vyrSDK {

namespace {

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

template <class Part>
void requireSameNumber(const std::vector<Part>& saved, const std::vector<Part>& present, const char* what) {
  if (saved.size() != present.size()) {
    throw SceneError("it has " + std::to_string(saved.size()) + " " + what + ", the simulation " +
                     std::to_string(present.size()));
  }
}

template <class Part>
void requireSameNames(const std::vector<Part>& saved, const std::vector<Part>& present, const char* what) {
  requireSameNumber(saved, present, what);
  for (std::size_t i = 0; i < saved.size(); ++i) {
    if (saved[i]->getName() != present[i]->getName()) {
      throw SceneError(std::string("of its ") + what + ", number " + std::to_string(i) + " is " +
                       quoted(saved[i]->getName()) + ", in the simulation " + quoted(present[i]->getName()));
    }
  }
}

void requireSameShapes(const std::vector<vyr::ref_ptr<vyrCollide::Geometry>>& saved,
                       const std::vector<vyr::ref_ptr<vyrCollide::Geometry>>& present, const std::string& owner) {
  bool same = saved.size() == present.size();
  for (std::size_t i = 0; same && i < saved.size(); ++i) {
    same = saved[i]->getShape()->getType() == present[i]->getShape()->getType();
  }
  if (!same) {
    throw SceneError("the geometries of " + owner + " are others than in the simulation");
  }
}

/// All assemblies of known types, in the order in which a file names them.
void collectTyped(const std::vector<vyr::ref_ptr<Assembly>>& assemblies, std::vector<Assembly*>& typed) {
  for (const auto& assembly : assemblies) {
    if (SceneType::of(*assembly) != nullptr) {
      typed.push_back(assembly.get());
    }
    collectTyped(assembly->getAssemblies(), typed);
  }
}

std::vector<Assembly*> typedAssemblies(const Simulation& simulation) {
  std::vector<Assembly*> typed;
  collectTyped(simulation.getAssemblies(), typed);
  return typed;
}

std::vector<StepEventListener*> typedListeners(const Simulation& simulation) {
  std::vector<StepEventListener*> typed;
  for (const auto& listener : simulation.getStepEventListeners()) {
    if (SceneType::of(*listener) != nullptr) {
      typed.push_back(listener.get());
    }
  }
  return typed;
}

template <class Typed, class Object>
void requireSameTypes(const std::vector<Typed>& saved, const std::vector<Object*>& present, const char* what) {
  bool same = saved.size() == present.size();
  for (std::size_t i = 0; same && i < saved.size(); ++i) {
    same = SceneType::of(*present[i]) == saved[i].type;
  }
  if (!same) {
    throw SceneError(std::string("its ") + what + " are others than in the simulation");
  }
}

void restoreHeights(const std::vector<vyr::ref_ptr<vyrCollide::Geometry>>& saved,
                    const std::vector<vyr::ref_ptr<vyrCollide::Geometry>>& present) {
  for (std::size_t i = 0; i < saved.size(); ++i) {
    if (saved[i]->getShape()->getType() == vyrCollide::Shape::HEIGHT_FIELD) {
      const auto& from = static_cast<const vyrCollide::HeightField&>(*saved[i]->getShape());
      auto& to = static_cast<vyrCollide::HeightField&>(*present[i]->getShape());
      if (from.getHeights() != to.getHeights()) {
        vyr::RealVector heights;
        heights.assign(from.getHeights().begin(), from.getHeights().end());
        to.setHeights(heights);
      }
    }
  }
}

} // namespace

void SceneReader::checkFit(const Simulation& simulation) const {
  requireSameNames(m_bodies, simulation.m_bodies, "bodies");
  for (std::size_t i = 0; i < m_bodies.size(); ++i) {
    requireSameShapes(m_bodies[i]->getGeometries(), simulation.m_bodies[i]->getGeometries(),
                      "the body " + quoted(m_bodies[i]->getName()));
  }
  requireSameNames(m_geometries, simulation.m_geometries, "geometries");
  requireSameShapes(m_geometries, simulation.m_geometries, "the scene");
  requireSameNames(m_constraints, simulation.m_constraints, "constraints");
  for (std::size_t i = 0; i < m_constraints.size(); ++i) {
    const vyr::Constraint& saved = *m_constraints[i];
    const vyr::Constraint& present = *simulation.m_constraints[i];
    if (typeid(saved) != typeid(present)) {
      m_constraintValues[i].fail("is of another type than in the simulation");
    }
  }
  requireSameNames(m_particleSystems, simulation.m_particleSystems, "particle systems");
  requireSameTypes(m_typedAssemblies, typedAssemblies(simulation), "assemblies");
  requireSameTypes(m_listeners, typedListeners(simulation), "listeners");
}

void SceneReader::restoreBody(vyr::RigidBody& body, const vyr::RigidBody& saved) const {
  if (body.getMotionControl() != saved.getMotionControl()) {
    body.setMotionControl(saved.getMotionControl());
  }
  body.setTransform(saved.getTransform());
  body.setVelocity(saved.getVelocity());
  body.setAngularVelocity(saved.getAngularVelocity());
  restoreHeights(saved.getGeometries(), body.getGeometries());
}

void SceneReader::restoreParticles(vyr::ParticleSystem& system, const vyr::ParticleSystem& saved) const {
  system.clear();
  for (std::size_t i = 0; i < saved.m_particles.size(); ++i) {
    const auto& particle = saved.m_particles[i];
    const btRigidBody& from = *saved.m_native->bodies[i];
    const std::size_t index =
        system.add(saved.getPosition(i), saved.getVelocity(i), particle.radius, particle.mass, particle.life);
    system.m_particles[index] = particle;
    btRigidBody& to = *system.m_native->bodies[index];
    to.setWorldTransform(from.getWorldTransform());
    to.setInterpolationWorldTransform(from.getWorldTransform());
    to.updateInertiaTensor();
    to.setAngularVelocity(from.getAngularVelocity());
    to.applyCentralForce(from.getTotalForce());
  }
  system.m_nextId = saved.m_nextId;
}

bool SceneReader::hasOrderOf(const Simulation& simulation) const {
  const std::vector<RowEntry> row = rowOf(simulation);
  bool same = row.size() == m_order.size();
  for (std::size_t i = 0; same && i < row.size(); ++i) {
    const OrderEntry& here = row[i].what;
    const OrderEntry& there = m_order[i];
    same = here.kind == there.kind && here.index == there.index && here.part == there.part && here.rank == there.rank;
  }
  return same;
}

void SceneReader::restore(Simulation& simulation) {
  checkFit(simulation);
  applySettings(simulation);
  for (std::size_t i = 0; i < m_bodies.size(); ++i) {
    restoreBody(*simulation.m_bodies[i], *m_bodies[i]);
  }
  restoreHeights(m_geometries, simulation.m_geometries);
  for (std::size_t i = 0; i < m_particleSystems.size(); ++i) {
    restoreParticles(*simulation.m_particleSystems[i], *m_particleSystems[i]);
  }
  for (std::size_t i = 0; i < m_constraints.size(); ++i) {
    readConstraintState(*simulation.m_constraints[i], m_constraintValues[i]);
  }
  restoreState(simulation);
  // From here on references in the file lead to the simulation's own parts.
  m_bodies = simulation.m_bodies;
  m_geometries = simulation.m_geometries;
  m_constraints = simulation.m_constraints;
  m_particleSystems = simulation.m_particleSystems;
  if (!hasOrderOf(simulation)) {
    m_contacts.clear();
  }
  restoreContacts(simulation);
  simulation.m_native->contactsValid = false;
  const std::vector<Assembly*> assemblies = typedAssemblies(simulation);
  for (std::size_t i = 0; i < assemblies.size(); ++i) {
    m_typedAssemblies[i].type->restore(*assemblies[i], m_typedAssemblies[i].value, *this);
  }
  const std::vector<StepEventListener*> listeners = typedListeners(simulation);
  for (std::size_t i = 0; i < listeners.size(); ++i) {
    m_listeners[i].type->restore(*listeners[i], m_listeners[i].value, *this);
  }
}

} // namespace vyrSDK
