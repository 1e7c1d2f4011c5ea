/// Puts the parts of a scene file into a simulation, in the state that they were written in.
#include "SceneReader.h"

#include "BulletConvert.h"
#include "ConstraintNative.h"
#include "GeometryNative.h"
#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"

#include <algorithm>

namespace vyrSDK {

void SceneReader::applySettings(Simulation& simulation) const {
  simulation.setTimeStep(m_settings.timeStep);
  simulation.setGravity(m_settings.gravity);
  simulation.setSolver(m_settings.solver);
  simulation.setNumIterations(m_settings.iterations);
  simulation.setFrictionModel(m_settings.frictionModel);
  simulation.setEnableSleeping(m_settings.sleeping);
  simulation.m_clock.restore(m_settings.countStart, m_settings.countedSteps, m_settings.steps);
}

void SceneReader::insertObjects(Simulation& simulation) {
  simulation.m_bodies = m_bodies;
  simulation.m_geometries = m_geometries;
  simulation.m_particleSystems = m_particleSystems;
  for (const auto& body : m_bodies) {
    body->m_simulation = &simulation;
  }
  for (const auto& particles : m_particleSystems) {
    particles->m_simulation = &simulation;
  }
  SimulationNative& native = *simulation.m_native;
  int highest = native.broadphase.m_gid;
  const int base = highest;
  for (const OrderEntry& entry : m_order) {
    // The engine sorts pairs by these numbers; with the same ranks it takes contacts in the same order.
    native.broadphase.m_gid = base + entry.rank - 1;
    if (entry.kind == OrderEntry::BODY) {
      simulation.insertBody(m_bodies[entry.index].get());
    } else if (entry.kind == OrderEntry::GEOMETRY) {
      simulation.insertGeometry(m_geometries[entry.index].get());
    } else {
      native.world.addRigidBody(m_particleSystems[entry.index]->getNative()->bodies[entry.part].get());
    }
    highest = std::max(highest, base + entry.rank);
  }
  native.broadphase.m_gid = highest;
  for (const auto& geometry : m_geometries) {
    if (!geometry->getEnableCollisions()) {
      simulation.insertGeometry(geometry.get());
    }
    geometry->m_simulation = &simulation;
    simulation.m_space->add(geometry.get());
  }
}

void SceneReader::insertConstraints(Simulation& simulation) {
  for (const auto& constraint : m_constraints) {
    simulation.add(constraint.get());
  }
  for (const auto& space : m_spaces) {
    simulation.add(space.get());
  }
  for (const auto& assembly : m_assemblies) {
    simulation.add(assembly.get());
  }
}

namespace {

/// Listeners that scene files hold are parts: those of the file take their place.
void removeSceneListeners(Simulation& simulation) {
  const auto listeners = simulation.getStepEventListeners();
  for (const auto& listener : listeners) {
    if (SceneType::of(*listener) != nullptr) {
      simulation.remove(listener.get());
    }
  }
}

} // namespace

void SceneReader::restoreState(Simulation& simulation) const {
  for (std::size_t i = 0; i < m_bodyStates.size(); ++i) {
    const BodyState& state = m_bodyStates[i];
    btRigidBody& engine = *simulation.m_bodies[i]->getNative()->body;
    engine.setWorldTransform(state.engineTransform);
    engine.setInterpolationWorldTransform(state.engineTransform);
    engine.updateInertiaTensor();
    engine.clearForces();
    engine.applyCentralForce(state.force);
    engine.applyTorque(state.torque);
    if (simulation.getEnableSleeping() && state.hasActivation) {
      engine.forceActivationState(state.activation);
      engine.setDeactivationTime(state.restTime);
    }
  }
  for (std::size_t i = 0; i < m_constraintStates.size(); ++i) {
    const ConstraintState& state = m_constraintStates[i];
    vyr::ConstraintNative& native = *simulation.m_constraints[i]->getNative();
    if (state.hasPosition) {
      native.constraint->setTurns(state.position);
    }
    native.constraint->setSpringMemory(state.spring);
    native.feedback.m_appliedForceBodyA = vyrPhysics::toBullet(state.force);
    native.feedback.m_appliedTorqueBodyA = vyrPhysics::toBullet(state.torque);
  }
}

void SceneReader::commit(Simulation& simulation) {
  removeSceneListeners(simulation);
  simulation.clearParts();
  applySettings(simulation);
  insertObjects(simulation);
  insertConstraints(simulation);
  restoreState(simulation);
  restoreContacts(simulation);
  for (const auto& listener : m_listeners) {
    simulation.add(listener.object.get());
  }
}

} // namespace vyrSDK
