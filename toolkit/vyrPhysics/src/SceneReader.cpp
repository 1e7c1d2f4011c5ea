/// Builds the parts of a simulation from the text of a scene file.
#include "SceneReader.h"

#include <vyr/Ball.h>
#include <vyr/Constraint1DOF.h>
#include <vyr/Distance.h>
#include <vyr/Hinge.h>
#include <vyr/Lock.h>
#include <vyr/Prismatic.h>
#include <vyr/Suspension.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>

#include "ConstraintNative.h"
#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"

namespace vyrSDK {

namespace {

/// The element that a number in the file leads to.
template <class Part>
Part* partAt(const std::vector<vyr::ref_ptr<Part>>& parts, const Json& index, const char* what) {
  const auto number = index.get<long long>();
  if (number < 0 || static_cast<size_t>(number) >= parts.size()) {
    throw std::runtime_error("there is no " + std::string(what) + " " + std::to_string(number));
  }
  return parts[static_cast<size_t>(number)].get();
}

[[noreturn]] void failOn(const std::string& what, const std::string& value) {
  throw std::runtime_error(what + " '" + value + "' is not known");
}

vyrCollide::Shape* makeHeightField(const Json& json) {
  vyr::RealVector heights;
  for (const Json& height : json.at("heights")) {
    heights.push_back(height.get<double>());
  }
  auto* field =
      new vyrCollide::HeightField(json.at("columns").get<size_t>(), json.at("rows").get<size_t>(),
                                  json.at("size").at(0).get<double>(), json.at("size").at(1).get<double>(), heights);
  if (field->isValid() && json.at("changed").get<bool>()) {
    field->setHeights(heights);
  }
  return field;
}

vyrCollide::Shape* makeShape(const Json& json) {
  const std::string type = json.at("type").get<std::string>();
  const auto number = [&json](const char* name) { return json.at(name).get<double>(); };
  if (type == "box") {
    return new vyrCollide::Box(toVec3(json.at("halfExtents")));
  }
  if (type == "sphere") {
    return new vyrCollide::Sphere(number("radius"));
  }
  if (type == "capsule") {
    return new vyrCollide::Capsule(number("radius"), number("height"));
  }
  if (type == "cylinder") {
    return new vyrCollide::Cylinder(number("radius"), number("height"));
  }
  if (type == "plane") {
    return new vyrCollide::Plane;
  }
  if (type == "heightField") {
    return makeHeightField(json);
  }
  if (type == "trimesh") {
    std::vector<vyr::Vec3> vertices;
    for (const Json& vertex : json.at("vertices")) {
      vertices.push_back(toVec3(vertex));
    }
    return new vyrCollide::Trimesh(vertices, json.at("indices").get<std::vector<unsigned int>>());
  }
  failOn("the shape type", type);
}

vyr::Constraint* makeConstraint(const std::string& type, vyr::Frame* frame1, vyr::Frame* frame2) {
  if (type == "hinge") {
    return new vyr::Hinge(frame1, frame2);
  }
  if (type == "prismatic") {
    return new vyr::Prismatic(frame1, frame2);
  }
  if (type == "distance") {
    return new vyr::Distance(frame1, frame2);
  }
  if (type == "suspension") {
    return new vyr::Suspension(frame1, frame2);
  }
  if (type == "lock") {
    return new vyr::Lock(frame1, frame2);
  }
  if (type == "ball") {
    return new vyr::Ball(frame1, frame2);
  }
  failOn("the constraint type", type);
}

void require(bool good, const char* what) {
  if (!good) {
    throw std::runtime_error(std::string(what) + " is refused");
  }
}

void readControl(vyr::Constraint1DOF& constraint, const Json& json) {
  constraint.setEnableMotor(json.at("motor").get<bool>());
  constraint.setEnableLock(json.at("lock").get<bool>());
  constraint.setEnableRange(json.at("limited").get<bool>());
  require(constraint.setMotorSpeed(toNumber(json.at("motorSpeed"))) &&
              constraint.setMotorForce(toNumber(json.at("motorForce"))) &&
              constraint.setLockPosition(toNumber(json.at("lockPosition"))) &&
              constraint.setLockForce(toNumber(json.at("lockForce"))) && constraint.setRange(toRange(json.at("range"))),
          "a constraint's motor, lock or range");
}

} // namespace

vyr::Material* SceneReader::materialAt(const Json& json) const {
  return json.get<int>() == -1 ? nullptr : partAt(m_materials, json, "material");
}

void SceneReader::readShapes() {
  for (const Json& json : m_json.at("materials")) {
    m_materials.emplace_back(new vyr::Material(json.at("name").get<std::string>()));
    vyr::Material& material = *m_materials.back();
    require(material.setDensity(json.at("density").get<double>()) &&
                material.setFriction(json.at("friction").get<double>()) &&
                material.setRestitution(json.at("restitution").get<double>()) &&
                material.setRollingFriction(json.at("rollingFriction").get<double>()),
            "a material");
  }
  for (const Json& json : m_json.at("shapes")) {
    m_shapes.emplace_back(makeShape(json));
    require(m_shapes.back()->isValid(), "a shape");
  }
}

void SceneReader::readGeometries() {
  for (const Json& json : m_json.at("geometries")) {
    m_geometries.emplace_back(
        new vyrCollide::Geometry(partAt(m_shapes, json.at("shape"), "shape"), json.at("name").get<std::string>()));
    vyrCollide::Geometry& geometry = *m_geometries.back();
    geometry.setMaterial(materialAt(json.at("material")));
    geometry.setLocalTransform(toMatrix(json.at("transform")));
    geometry.setSensor(json.at("sensor").get<bool>());
    geometry.setEnableCollisions(json.at("collides").get<bool>());
  }
}

void SceneReader::readBody(const Json& json) {
  m_bodies.emplace_back(new vyr::RigidBody(json.at("name").get<std::string>()));
  vyr::RigidBody& body = *m_bodies.back();
  // Static first: a plane goes into no other body.
  require(body.setMotionControl(vyr::RigidBody::STATIC), "a body");
  for (const Json& index : json.at("geometries")) {
    vyrCollide::Geometry* geometry = partAt(m_geometries, index, "geometry");
    require(body.add(geometry, geometry->getLocalTransform()), "a geometry of a body");
  }
  const auto control = static_cast<vyr::RigidBody::MotionControl>(json.at("motionControl").get<int>());
  require(body.setMotionControl(control), "a body's motion control");
  body.setEnableGravity(json.at("gravity").get<bool>());
  require(body.setLinearDamping(json.at("linearDamping").get<double>()) &&
              body.setAngularDamping(json.at("angularDamping").get<double>()),
          "a body's damping");
  require(json.at("mass").get<double>() > 0.0, "a body's mass");
  vyr::RigidBodyNative& native = *body.m_native;
  native.mass = json.at("mass").get<double>();
  native.center = toVec3(json.at("center"));
  native.inertia = toEngineMatrix(json.at("inertia"));
  const btVector3 diagonal(native.inertia[0][0], native.inertia[1][1], native.inertia[2][2]);
  require(diagonal.x() > 0.0 && diagonal.y() > 0.0 && diagonal.z() > 0.0 && native.inertia.determinant() > 0.0,
          "a body's inertia");
  native.userMass = json.at("massIsSet").get<bool>();
  native.userInertia = json.at("inertiaIsSet").get<bool>();
  body.applyMassProperties();
  body.setTransform(toMatrix(json.at("transform")));
  body.setVelocity(toVec3(json.at("velocity")));
  body.setAngularVelocity(toVec3(json.at("angularVelocity")));
}

vyr::ref_ptr<vyr::Frame> SceneReader::readFrame(const Json& json) const {
  const bool world = json.at("body").get<int>() == -1;
  return new vyr::Frame(world ? nullptr : partAt(m_bodies, json.at("body"), "body"), toMatrix(json.at("transform")));
}

void SceneReader::readConstraint(const Json& json) {
  const vyr::ref_ptr<vyr::Frame> frame1 = readFrame(json.at("frame1"));
  const vyr::ref_ptr<vyr::Frame> frame2 = readFrame(json.at("frame2"));
  m_constraints.emplace_back(makeConstraint(json.at("type").get<std::string>(), frame1.get(), frame2.get()));
  vyr::Constraint& constraint = *m_constraints.back();
  require(constraint.isValid(), "a constraint");
  constraint.setName(json.at("name").get<std::string>());
  constraint.setSolveType(static_cast<vyr::Constraint::SolveType>(json.at("solveType").get<int>()));
  constraint.setEnable(json.at("enable").get<bool>());
  constraint.setEnableCollisions(json.at("collides").get<bool>());
  constraint.setBreakForce(toNumber(json.at("breakForce")));
  if (auto* controlled = dynamic_cast<vyr::Constraint1DOF*>(&constraint)) {
    readControl(*controlled, json.at("control"));
  }
  if (auto* suspension = dynamic_cast<vyr::Suspension*>(&constraint)) {
    const Json& part = json.at("suspension");
    require(suspension->setStiffness(part.at("stiffness").get<double>()) &&
                suspension->setDamping(part.at("damping").get<double>()) &&
                suspension->setSteeringAngle(part.at("steering").get<double>()),
            "a suspension");
  }
  auto* lock = dynamic_cast<vyr::Lock*>(&constraint);
  if (lock != nullptr && json.contains("elastic")) {
    const Json& part = json.at("elastic");
    require(lock->setElasticity(part.at("stiffness").get<double>(), part.at("damping").get<double>()) &&
                lock->setPreload(toVec3(part.at("preload"))),
            "an elastic lock");
  }
}

void SceneReader::readParticles(const Json& json) {
  m_particleSystems.emplace_back(new vyr::ParticleSystem(json.at("name").get<std::string>()));
  vyr::ParticleSystem& system = *m_particleSystems.back();
  system.setMaterial(materialAt(json.at("material")));
  system.setDefaultColor(toVec4(json.at("defaultColor")));
  for (const Json& entry : json.at("particles")) {
    const btTransform pose = toEngineTransform(entry.at("engineTransform"));
    const vyr::Vec3 place(pose.getOrigin().x(), pose.getOrigin().y(), pose.getOrigin().z());
    const size_t index = system.add(place, toVec3(entry.at("velocity")), entry.at("radius").get<double>(),
                                    entry.at("mass").get<double>(), toNumber(entry.at("life")));
    require(index != vyr::ParticleContact::kNone, "a particle");
    system.m_particles[index].id = entry.at("id").get<uint64_t>();
    system.m_particles[index].initialLife = toNumber(entry.at("initialLife"));
    system.m_particles[index].color = toVec4(entry.at("color"));
    btRigidBody& engine = *system.m_native->bodies[index];
    engine.setWorldTransform(pose);
    engine.setInterpolationWorldTransform(pose);
    engine.updateInertiaTensor();
    engine.setAngularVelocity(toEngineVector(entry.at("angularVelocity")));
    engine.applyCentralForce(toEngineVector(entry.at("force")));
  }
  system.m_nextId = json.at("nextId").get<uint64_t>();
}

vyr::ref_ptr<Assembly> SceneReader::readAssembly(const Json& json) {
  vyr::ref_ptr<Assembly> assembly = new Assembly(json.at("name").get<std::string>());
  for (const Json& index : json.at("bodies")) {
    assembly->add(partAt(m_bodies, index, "body"));
  }
  for (const Json& index : json.at("geometries")) {
    assembly->add(partAt(m_geometries, index, "geometry"));
  }
  for (const Json& index : json.at("constraints")) {
    assembly->add(partAt(m_constraints, index, "constraint"));
  }
  for (const Json& frame : json.at("frames")) {
    assembly->add(readFrame(frame).get());
  }
  for (const Json& part : json.at("assemblies")) {
    assembly->add(readAssembly(part).get());
  }
  return assembly;
}

void SceneReader::parse(const std::string& text) {
  m_json = Json::parse(text);
  if (m_json.value("format", std::string()) != "vyr-scene") {
    throw std::runtime_error("it is no scene");
  }
  if (m_json.at("version").get<int>() != kSceneVersion) {
    throw std::runtime_error("its version " + m_json.at("version").dump() + " is not " + std::to_string(kSceneVersion));
  }
  readShapes();
  readGeometries();
  for (const Json& json : m_json.at("bodies")) {
    readBody(json);
  }
  for (const Json& index : m_json.at("freeGeometries")) {
    m_freeGeometries.emplace_back(partAt(m_geometries, index, "geometry"));
    require(m_freeGeometries.back()->getRigidBody() == nullptr, "a geometry that is free and a body's");
  }
  for (const Json& json : m_json.at("constraints")) {
    readConstraint(json);
  }
  for (const Json& json : m_json.at("particleSystems")) {
    readParticles(json);
  }
  for (const Json& list : m_json.at("spaces")) {
    m_spaces.emplace_back(new vyrCollide::Space);
    for (const Json& index : list) {
      m_spaces.back()->add(partAt(m_geometries, index, "geometry"));
    }
  }
  for (const Json& json : m_json.at("assemblies")) {
    m_assemblies.push_back(readAssembly(json));
  }
  checkOrder();
  checkState();
}

} // namespace vyrSDK
