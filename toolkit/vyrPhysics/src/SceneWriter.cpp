/// Turns a simulation into the text of a scene file.
#include "SceneWriter.h"

#include <vyr/Ball.h>
#include <vyr/Constraint1DOF.h>
#include <vyr/Distance.h>
#include <vyr/Hinge.h>
#include <vyr/Lock.h>
#include <vyr/Material.h>
#include <vyr/Prismatic.h>
#include <vyr/Suspension.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>

#include "ConstraintNative.h"
#include "ContactJson.h"
#include "GeometryNative.h"
#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"

#include <algorithm>
#include <tuple>

namespace vyrSDK {

namespace {

Json shapeJson(const vyrCollide::Shape& shape) {
  using namespace vyrCollide;
  switch (shape.getType()) {
  case Shape::BOX:
    return {{"type", "box"}, {"halfExtents", toJson(static_cast<const Box&>(shape).getHalfExtents())}};
  case Shape::SPHERE:
    return {{"type", "sphere"}, {"radius", static_cast<const Sphere&>(shape).getRadius()}};
  case Shape::CAPSULE: {
    const auto& capsule = static_cast<const Capsule&>(shape);
    return {{"type", "capsule"}, {"radius", capsule.getRadius()}, {"height", capsule.getHeight()}};
  }
  case Shape::CYLINDER: {
    const auto& cylinder = static_cast<const Cylinder&>(shape);
    return {{"type", "cylinder"}, {"radius", cylinder.getRadius()}, {"height", cylinder.getHeight()}};
  }
  case Shape::PLANE:
    return {{"type", "plane"}};
  case Shape::HEIGHT_FIELD: {
    const auto& field = static_cast<const HeightField&>(shape);
    return {{"type", "heightField"},
            {"columns", field.getNumColumns()},
            {"rows", field.getNumRows()},
            {"size", {field.getSizeX(), field.getSizeY()}},
            {"changed", field.getRevision() > 0},
            {"heights", field.getHeights()}};
  }
  case Shape::TRIMESH: {
    const auto& mesh = static_cast<const Trimesh&>(shape);
    Json vertices = Json::array();
    for (const vyr::Vec3& vertex : mesh.getVertices()) {
      vertices.push_back(toJson(vertex));
    }
    return {{"type", "trimesh"}, {"vertices", vertices}, {"indices", mesh.getIndices()}};
  }
  }
  return Json();
}

/// Kind of a constraint, most derived first.
const char* constraintType(const vyr::Constraint& constraint) {
  if (dynamic_cast<const vyr::Hinge*>(&constraint) != nullptr) {
    return "hinge";
  }
  if (dynamic_cast<const vyr::Prismatic*>(&constraint) != nullptr) {
    return "prismatic";
  }
  if (dynamic_cast<const vyr::Distance*>(&constraint) != nullptr) {
    return "distance";
  }
  if (dynamic_cast<const vyr::Suspension*>(&constraint) != nullptr) {
    return "suspension";
  }
  return dynamic_cast<const vyr::Lock*>(&constraint) != nullptr ? "lock" : "ball";
}

Json controlJson(const vyr::Constraint1DOF& c) {
  return {
      {"motor", c.getEnableMotor()},   {"motorSpeed", c.getMotorSpeed()},     {"motorForce", toJson(c.getMotorForce())},
      {"lock", c.getEnableLock()},     {"lockPosition", c.getLockPosition()}, {"lockForce", toJson(c.getLockForce())},
      {"limited", c.getEnableRange()}, {"range", toJson(c.getRange())},       {"position", c.getPosition()}};
}

} // namespace

int SceneWriter::materialIndex(const vyr::Material* material) {
  if (material == vyr::Material::getDefault()) {
    return -1;
  }
  const auto entry = m_materials.emplace(material, static_cast<int>(m_materials.size()));
  if (entry.second) {
    m_json["materials"].push_back({{"name", std::string(material->getName())},
                                   {"density", material->getDensity()},
                                   {"friction", material->getFriction()},
                                   {"restitution", material->getRestitution()},
                                   {"rollingFriction", material->getRollingFriction()}});
  }
  return entry.first->second;
}

int SceneWriter::shapeIndex(const vyrCollide::Shape* shape) {
  const auto entry = m_shapes.emplace(shape, static_cast<int>(m_shapes.size()));
  if (entry.second) {
    m_json["shapes"].push_back(shapeJson(*shape));
  }
  return entry.first->second;
}

int SceneWriter::geometryIndex(const vyrCollide::Geometry* geometry) {
  const auto found = m_geometries.find(geometry);
  if (found != m_geometries.end()) {
    return found->second;
  }
  const int shape = shapeIndex(geometry->getShape());
  const int material = materialIndex(geometry->getMaterial());
  const int index = static_cast<int>(m_geometries.size());
  m_geometries.emplace(geometry, index);
  m_json["geometries"].push_back({{"name", std::string(geometry->getName())},
                                  {"shape", shape},
                                  {"material", material},
                                  {"transform", toJson(geometry->getLocalTransform())},
                                  {"sensor", geometry->isSensor()},
                                  {"collides", geometry->getEnableCollisions()}});
  return index;
}

int SceneWriter::bodyIndex(const vyr::RigidBody* body) const {
  const auto found = m_bodies.find(body);
  return found != m_bodies.end() ? found->second : -1;
}

Json SceneWriter::settings() const {
  const vyr::TimeStamp& clock = m_simulation.getTimeStamp();
  return {{"timeStep", clock.getTimeStep()},
          {"countStart", clock.countStart()},
          {"countedSteps", clock.countedSteps()},
          {"steps", clock.steps()},
          {"gravity", toJson(m_simulation.getGravity())},
          {"solver", m_simulation.getSolver() == Simulation::MULTI ? "multi" : "iterative"},
          {"iterations", m_simulation.getNumIterations()},
          {"frictionModel", static_cast<int>(m_simulation.getFrictionModel())},
          {"sleeping", m_simulation.getEnableSleeping()}};
}

void SceneWriter::addBody(const vyr::RigidBody& body) {
  const vyr::RigidBodyNative& native = *body.getNative();
  const btRigidBody& engine = *native.body;
  Json geometries = Json::array();
  for (const auto& geometry : body.getGeometries()) {
    geometries.push_back(geometryIndex(geometry.get()));
  }
  m_bodies.emplace(&body, static_cast<int>(m_bodies.size()));
  m_json["bodies"].push_back({{"name", std::string(body.getName())},
                              {"geometries", geometries},
                              {"motionControl", static_cast<int>(body.getMotionControl())},
                              {"transform", toJson(body.getTransform())},
                              {"velocity", toJson(body.getVelocity())},
                              {"angularVelocity", toJson(body.getAngularVelocity())},
                              {"mass", native.mass},
                              {"center", toJson(native.center)},
                              {"inertia", toJson(native.inertia)},
                              {"massIsSet", native.userMass},
                              {"inertiaIsSet", native.userInertia},
                              {"linearDamping", native.linearDamping},
                              {"angularDamping", native.angularDamping},
                              {"gravity", body.getEnableGravity()},
                              {"force", toJson(engine.getTotalForce())},
                              {"torque", toJson(engine.getTotalTorque())},
                              {"engineTransform", toJson(engine.getWorldTransform())},
                              {"activation", engine.getActivationState()},
                              {"restTime", engine.getDeactivationTime()}});
}

Json SceneWriter::frameJson(const vyr::Frame& frame) const {
  return {{"body", bodyIndex(frame.getRigidBody())}, {"transform", toJson(frame.getLocalTransform())}};
}

void SceneWriter::addConstraint(const vyr::Constraint& constraint) {
  Json json = {{"type", constraintType(constraint)},
               {"name", std::string(constraint.getName())},
               {"frame1", frameJson(*constraint.getFrame1())},
               {"frame2", frameJson(*constraint.getFrame2())},
               {"solveType", static_cast<int>(constraint.getSolveType())},
               {"enable", constraint.getEnable()},
               {"collides", constraint.getEnableCollisions()},
               {"breakForce", toJson(constraint.getBreakForce())}};
  if (const auto* controlled = dynamic_cast<const vyr::Constraint1DOF*>(&constraint)) {
    json["control"] = controlJson(*controlled);
  }
  if (const auto* suspension = dynamic_cast<const vyr::Suspension*>(&constraint)) {
    const vyr::JointConstraint::SpringMemory& memory = constraint.getNative()->constraint->getSpringMemory();
    json["suspension"] = {{"stiffness", suspension->getStiffness()},
                          {"damping", suspension->getDamping()},
                          {"steering", suspension->getSteeringAngle()},
                          {"lastKnown", memory.known},
                          {"lastSpeed", memory.speed},
                          {"lastForce", memory.force}};
  }
  const auto* lock = dynamic_cast<const vyr::Lock*>(&constraint);
  if (lock != nullptr && lock->isElastic()) {
    json["elastic"] = {
        {"stiffness", lock->getStiffness()}, {"damping", lock->getDamping()}, {"preload", toJson(lock->getPreload())}};
  }
  m_constraints.emplace(&constraint, static_cast<int>(m_constraints.size()));
  m_json["constraints"].push_back(json);
}

void SceneWriter::addParticles(const vyr::ParticleSystem& particles) {
  Json list = Json::array();
  for (size_t i = 0; i < particles.m_particles.size(); ++i) {
    const auto& particle = particles.m_particles[i];
    const btRigidBody& engine = *particles.m_native->bodies[i];
    list.push_back({{"id", particle.id},
                    {"radius", particle.radius},
                    {"mass", particle.mass},
                    {"life", toJson(particle.life)},
                    {"initialLife", toJson(particle.initialLife)},
                    {"color", toJson(particle.color)},
                    {"engineTransform", toJson(engine.getWorldTransform())},
                    {"velocity", toJson(engine.getLinearVelocity())},
                    {"angularVelocity", toJson(engine.getAngularVelocity())},
                    {"force", toJson(engine.getTotalForce())}});
  }
  m_json["particleSystems"].push_back({{"name", std::string(particles.getName())},
                                       {"material", materialIndex(particles.getMaterial())},
                                       {"defaultColor", toJson(particles.getDefaultColor())},
                                       {"nextId", particles.m_nextId},
                                       {"particles", list}});
}

Json SceneWriter::assemblyJson(const Assembly& assembly) {
  const auto indices = [](const auto& parts, const std::map<const void*, int>& numbers) {
    Json list = Json::array();
    for (const auto& part : parts) {
      const auto found = numbers.find(part.get());
      if (found != numbers.end()) {
        list.push_back(found->second);
      }
    }
    return list;
  };
  Json frames = Json::array();
  for (const auto& frame : assembly.getFrames()) {
    frames.push_back(frameJson(*frame));
  }
  Json assemblies = Json::array();
  for (const auto& part : assembly.getAssemblies()) {
    assemblies.push_back(assemblyJson(*part));
  }
  return {{"name", std::string(assembly.getName())},
          {"bodies", indices(assembly.getRigidBodies(), m_bodies)},
          {"geometries", indices(assembly.getGeometries(), m_geometries)},
          {"constraints", indices(assembly.getConstraints(), m_constraints)},
          {"frames", frames},
          {"assemblies", assemblies}};
}

Json SceneWriter::order() {
  struct Entry {
    const btCollisionObject* object;
    Json what;
  };
  std::vector<Entry> entries;
  const auto add = [&entries](const btCollisionObject* object, const char* kind, size_t index, size_t part) {
    if (object != nullptr && object->getBroadphaseHandle() != nullptr) {
      entries.push_back(Entry{object, {kind, index, part, 0}});
    }
  };
  for (size_t i = 0; i < m_simulation.getRigidBodies().size(); ++i) {
    add(m_simulation.getRigidBodies()[i]->getNative()->body.get(), "body", i, 0);
  }
  for (size_t i = 0; i < m_simulation.getGeometries().size(); ++i) {
    add(m_simulation.getGeometries()[i]->getNative()->standalone.get(), "geometry", i, 0);
  }
  for (size_t i = 0; i < m_simulation.getParticleSystems().size(); ++i) {
    const auto& bodies = m_simulation.getParticleSystems()[i]->getNative()->bodies;
    for (size_t k = 0; k < bodies.size(); ++k) {
      add(bodies[k].get(), "particle", i, k);
    }
  }
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.object->getBroadphaseHandle()->m_uniqueId < b.object->getBroadphaseHandle()->m_uniqueId;
  });
  for (size_t rank = 0; rank < entries.size(); ++rank) {
    entries[rank].what[3] = rank + 1;
  }
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.object->getWorldArrayIndex() < b.object->getWorldArrayIndex();
  });
  Json list = Json::array();
  for (const Entry& entry : entries) {
    m_places.emplace(entry.object, static_cast<int>(m_places.size()));
    list.push_back(entry.what);
  }
  return list;
}

Json SceneWriter::contacts() const {
  Json list = Json::array();
  const btCollisionDispatcher& dispatcher = m_simulation.getNative()->dispatcher;
  for (int m = 0; m < dispatcher.getNumManifolds(); ++m) {
    const btPersistentManifold& manifold = *dispatcher.getManifoldByIndexInternal(m);
    Json points = Json::array();
    for (int i = 0; i < manifold.getNumContacts(); ++i) {
      points.push_back(toJson(manifold.getContactPoint(i)));
    }
    const auto first = m_places.find(manifold.getBody0());
    const auto second = m_places.find(manifold.getBody1());
    if (!points.empty() && first != m_places.end() && second != m_places.end()) {
      list.push_back({{"objects", {first->second, second->second}}, {"points", points}});
    }
  }
  // The engine's own order depends on the history, and one state shall have one text.
  const auto key = [](const Json& entry) {
    const Json& point = entry["points"][0];
    return std::make_tuple(entry["objects"][0].get<int>(), entry["objects"][1].get<int>(),
                           point["geometry1"].get<int>(), point["geometry2"].get<int>());
  };
  std::sort(list.begin(), list.end(), [&key](const Json& a, const Json& b) { return key(a) < key(b); });
  return list;
}

std::string SceneWriter::write() {
  m_json["format"] = "vyr-scene";
  m_json["version"] = kSceneVersion;
  m_json["simulation"] = settings();
  for (const char* list : {"materials", "shapes", "geometries", "bodies", "freeGeometries", "constraints",
                           "particleSystems", "spaces", "assemblies"}) {
    m_json[list] = Json::array();
  }
  for (const auto& body : m_simulation.getRigidBodies()) {
    addBody(*body);
  }
  for (const auto& geometry : m_simulation.getGeometries()) {
    m_json["freeGeometries"].push_back(geometryIndex(geometry.get()));
  }
  for (const auto& constraint : m_simulation.getConstraints()) {
    addConstraint(*constraint);
  }
  for (const auto& particles : m_simulation.getParticleSystems()) {
    addParticles(*particles);
  }
  for (const auto& space : m_simulation.getSpaces()) {
    Json list = Json::array();
    for (const auto& geometry : space->getGeometries()) {
      if (geometry->getSimulation() == &m_simulation) {
        list.push_back(geometryIndex(geometry.get()));
      }
    }
    m_json["spaces"].push_back(list);
  }
  for (const auto& assembly : m_simulation.getAssemblies()) {
    m_json["assemblies"].push_back(assemblyJson(*assembly));
  }
  m_json["order"] = order();
  m_json["contacts"] = contacts();
  return m_json.dump(1);
}

} // namespace vyrSDK
