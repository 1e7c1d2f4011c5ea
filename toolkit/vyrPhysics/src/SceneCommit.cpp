/// Puts the parts of a scene file into a simulation, in the state that they were written in.
#include "SceneReader.h"

#include "ConstraintNative.h"
#include "ContactJson.h"
#include "GeometryNative.h"
#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"

#include <vyr/Constraint1DOF.h>

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace vyrSDK {

namespace {

/// A line of the order: what it is, which one, which particle of it, and its rank among the engine's objects.
struct Entry {
  explicit Entry(const Json& json)
      : kind(json.at(0).get<std::string>())
      , index(json.at(1).get<size_t>())
      , part(json.at(2).get<size_t>())
      , rank(json.at(3).get<int>()) {}

  std::string kind;
  size_t index;
  size_t part;
  int rank;
};

} // namespace

btRigidBody* SceneReader::objectAt(size_t place) const {
  const Entry entry(m_json.at("order").at(place));
  if (entry.kind == "body") {
    return m_bodies.at(entry.index)->getNative()->body.get();
  }
  if (entry.kind == "geometry") {
    return m_freeGeometries.at(entry.index)->getNative()->standalone.get();
  }
  return m_particleSystems.at(entry.index)->getNative()->bodies.at(entry.part).get();
}

void SceneReader::checkOrder() const {
  std::set<std::tuple<std::string, size_t, size_t>> seen;
  std::set<int> ranks;
  for (const Json& json : m_json.at("order")) {
    const Entry entry(json);
    if (entry.kind == "body") {
      m_bodies.at(entry.index);
    } else if (entry.kind == "geometry") {
      m_freeGeometries.at(entry.index);
    } else if (entry.kind == "particle") {
      m_particleSystems.at(entry.index)->getNative()->bodies.at(entry.part);
    } else {
      throw std::runtime_error("the order names a '" + entry.kind + "'");
    }
    if (!seen.insert({entry.kind, entry.index, entry.part}).second || !ranks.insert(entry.rank).second ||
        entry.rank < 1) {
      throw std::runtime_error("the order names a part or a rank twice");
    }
  }
  size_t expected = m_bodies.size();
  for (const auto& geometry : m_freeGeometries) {
    expected += geometry->getEnableCollisions() ? 1 : 0;
  }
  for (const auto& particles : m_particleSystems) {
    expected += particles->getNumParticles();
  }
  if (seen.size() != expected) {
    throw std::runtime_error("the order leaves parts out");
  }
  for (const Json& json : m_json.at("contacts")) {
    for (const Json& place : json.at("objects")) {
      if (place.get<size_t>() >= seen.size()) {
        throw std::runtime_error("a contact names an object that is not there");
      }
    }
    for (const Json& point : json.at("points")) {
      toManifoldPoint(point);
    }
  }
}

void SceneReader::checkState() const {
  const Json& settings = m_json.at("simulation");
  if (!(settings.at("timeStep").get<double>() > 0.0) || settings.at("iterations").get<int>() < 1) {
    throw std::runtime_error("the time step or the number of iterations is refused");
  }
  toVec3(settings.at("gravity"));
  settings.at("solver").get<std::string>();
  settings.at("frictionModel").get<int>();
  settings.at("sleeping").get<bool>();
  settings.at("countStart").get<double>();
  settings.at("countedSteps").get<uint64_t>();
  settings.at("steps").get<uint64_t>();
  for (const Json& json : m_json.at("bodies")) {
    toEngineTransform(json.at("engineTransform"));
    toEngineVector(json.at("force"));
    toEngineVector(json.at("torque"));
    json.at("activation").get<int>();
    json.at("restTime").get<double>();
  }
  for (const Json& json : m_json.at("constraints")) {
    if (json.contains("control")) {
      json.at("control").at("position").get<double>();
    }
    if (json.contains("suspension")) {
      const Json& part = json.at("suspension");
      part.at("lastKnown").get<bool>();
      part.at("lastSpeed").get<double>();
      part.at("lastForce").get<double>();
    }
  }
}

void SceneReader::insertObjects(Simulation& simulation) {
  simulation.m_bodies = m_bodies;
  simulation.m_geometries = m_freeGeometries;
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
  for (const Json& json : m_json.at("order")) {
    const Entry entry(json);
    // The engine sorts pairs by these numbers; with the same ranks it takes contacts in the same order.
    native.broadphase.m_gid = base + entry.rank - 1;
    if (entry.kind == "body") {
      simulation.insertBody(m_bodies[entry.index].get());
    } else if (entry.kind == "geometry") {
      simulation.insertGeometry(m_freeGeometries[entry.index].get());
    } else {
      native.world.addRigidBody(m_particleSystems[entry.index]->getNative()->bodies[entry.part].get());
    }
    highest = std::max(highest, base + entry.rank);
  }
  native.broadphase.m_gid = highest;
  for (const auto& geometry : m_freeGeometries) {
    if (!geometry->getEnableCollisions()) {
      simulation.insertGeometry(geometry.get());
    }
    geometry->m_simulation = &simulation;
    simulation.m_space->add(geometry.get());
  }
}

void SceneReader::insertConstraints(Simulation& simulation) {
  for (size_t i = 0; i < m_constraints.size(); ++i) {
    vyr::Constraint* constraint = m_constraints[i].get();
    simulation.add(constraint);
    const Json& json = m_json.at("constraints")[i];
    vyr::JointConstraint& native = *constraint->getNative()->constraint;
    if (json.contains("control")) {
      native.setTurns(json.at("control").at("position").get<double>());
    }
    if (json.contains("suspension")) {
      const Json& part = json.at("suspension");
      native.setSpringMemory(
          {part.at("lastKnown").get<bool>(), part.at("lastSpeed").get<double>(), part.at("lastForce").get<double>()});
    }
  }
  for (const auto& space : m_spaces) {
    simulation.add(space.get());
  }
  for (const auto& assembly : m_assemblies) {
    simulation.add(assembly.get());
  }
}

void SceneReader::restoreState(Simulation& simulation) {
  for (size_t i = 0; i < m_bodies.size(); ++i) {
    const Json& json = m_json.at("bodies")[i];
    btRigidBody& engine = *m_bodies[i]->getNative()->body;
    const btTransform pose = toEngineTransform(json.at("engineTransform"));
    engine.setWorldTransform(pose);
    engine.setInterpolationWorldTransform(pose);
    engine.updateInertiaTensor();
    engine.clearForces();
    engine.applyCentralForce(toEngineVector(json.at("force")));
    engine.applyTorque(toEngineVector(json.at("torque")));
    if (simulation.getEnableSleeping()) {
      engine.forceActivationState(json.at("activation").get<int>());
      engine.setDeactivationTime(json.at("restTime").get<double>());
    }
  }
}

void SceneReader::restoreContacts(Simulation& simulation) {
  // Finding contacts makes the engine's places for them, which then get back what was in them.
  SimulationNative& native = *simulation.m_native;
  native.world.performDiscreteCollisionDetection();
  using Key = std::tuple<const btCollisionObject*, const btCollisionObject*, const void*>;
  std::map<Key, const Json*> saved;
  for (const Json& json : m_json.at("contacts")) {
    if (!json.at("points").empty()) {
      const btManifoldPoint point = toManifoldPoint(json.at("points")[0]);
      saved[Key(objectAt(json.at("objects").at(0).get<size_t>()), objectAt(json.at("objects").at(1).get<size_t>()),
                point.m_userPersistentData)] = &json.at("points");
    }
  }
  const auto fill = [](btPersistentManifold& manifold, const Json& points) {
    const int count = std::min(static_cast<int>(points.size()), MANIFOLD_CACHE_SIZE);
    manifold.setNumContacts(count);
    for (int i = 0; i < count; ++i) {
      manifold.getContactPoint(i) = toManifoldPoint(points[static_cast<size_t>(i)]);
    }
  };
  std::vector<btPersistentManifold*> empty;
  for (int m = 0; m < native.dispatcher.getNumManifolds(); ++m) {
    btPersistentManifold& manifold = *native.dispatcher.getManifoldByIndexInternal(m);
    const bool found = manifold.getNumContacts() > 0;
    const Key key(manifold.getBody0(), manifold.getBody1(),
                  found ? manifold.getContactPoint(0).m_userPersistentData : nullptr);
    manifold.clearManifold();
    const auto points = found ? saved.find(key) : saved.end();
    if (points != saved.end()) {
      fill(manifold, *points->second);
      saved.erase(points);
    } else {
      empty.push_back(&manifold);
    }
  }
  // Points that are about to open are kept for a step, though they would not be found anew.
  for (const auto& rest : saved) {
    const auto place = std::find_if(empty.begin(), empty.end(), [&rest](const btPersistentManifold* manifold) {
      return manifold->getNumContacts() == 0 && manifold->getBody0() == std::get<0>(rest.first) &&
             manifold->getBody1() == std::get<1>(rest.first);
    });
    if (place != empty.end()) {
      fill(**place, *rest.second);
    }
  }
}

void SceneReader::commit(Simulation& simulation) {
  simulation.clearParts();
  const Json& settings = m_json.at("simulation");
  simulation.setTimeStep(settings.at("timeStep").get<double>());
  simulation.setGravity(toVec3(settings.at("gravity")));
  simulation.setSolver(settings.at("solver").get<std::string>() == "multi" ? Simulation::MULTI : Simulation::ITERATIVE);
  simulation.setNumIterations(settings.at("iterations").get<int>());
  simulation.setFrictionModel(static_cast<vyr::FrictionModel::SolveType>(settings.at("frictionModel").get<int>()));
  simulation.setEnableSleeping(settings.at("sleeping").get<bool>());
  simulation.m_clock.restore(settings.at("countStart").get<double>(), settings.at("countedSteps").get<uint64_t>(),
                             settings.at("steps").get<uint64_t>());
  insertObjects(simulation);
  insertConstraints(simulation);
  restoreState(simulation);
  restoreContacts(simulation);
}

} // namespace vyrSDK
