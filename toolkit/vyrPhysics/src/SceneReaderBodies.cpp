/// Reads geometries, bodies and particles from a scene file, and follows references to them.
#include "SceneReader.h"

#include "BulletConvert.h"
#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"
#include "SceneParse.h"

#include <vyr/SPDMatrix3x3.h>

#include <cmath>

namespace vyrSDK {

vyr::RigidBody* SceneReader::bodyAt(const SceneValue& value) const {
  if (value.isNumber() && value.integer(-1, 1LL << 53) == -1) {
    return nullptr;
  }
  return partAt(m_bodies, value, "body");
}

vyr::Constraint* SceneReader::constraintAt(const SceneValue& value) const {
  return partAt(m_constraints, value, "constraint");
}

vyrCollide::Geometry* SceneReader::geometryAt(const SceneValue& value) const {
  const SceneValue place = value[std::size_t(1)];
  vyr::RigidBody* body = bodyAt(value[std::size_t(0)]);
  return partAt(body != nullptr ? body->getGeometries() : m_geometries, place, "geometry");
}

vyrCollide::Shape* SceneReader::shapeAt(const SceneValue& value) {
  if (!value.isObject()) {
    if (!value.isNumber()) {
      value.fail("must be a shape or the place of one in \"shapes\"");
    }
    const long long index = value.integer(0, 1LL << 53);
    if (index >= static_cast<long long>(m_shapes.size())) {
      value.fail("there is no shape " + std::to_string(index) + ", the file has " + std::to_string(m_shapes.size()));
    }
    return m_shapes[static_cast<std::size_t>(index)].get();
  }
  // Places in the file's list stay what they are: a shape within a part is not counted.
  const vyr::ref_ptr<vyrCollide::Shape> shape = makeShape(value);
  m_ownShapes.push_back(shape);
  return shape.get();
}

vyr::Material* SceneReader::materialAt(const SceneValue& value) {
  if (value.isObject()) {
    m_ownMaterials.push_back(makeMaterial(value));
    return m_ownMaterials.back().get();
  }
  if (value.isNumber() && value.integer(-1, 1LL << 53) == -1) {
    return nullptr;
  }
  return partAt(m_materials, value, "material");
}

template <class Part>
void SceneReader::readLook(Part& part, const SceneValue& value) {
  const bool has = value.has("visual");
  if (m_visuals == nullptr) {
    if (has) {
      value["visual"].skip();
    }
  } else if (has) {
    const SceneValue look = value["visual"];
    m_visuals->read(part, &look);
  } else {
    m_visuals->read(part, nullptr);
  }
}

template void SceneReader::readLook(StepEventListener& part, const SceneValue& value);

vyr::ref_ptr<vyrCollide::Geometry> SceneReader::readGeometry(const SceneValue& value) {
  std::string name;
  value.get("name", name);
  vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(shapeAt(value["shape"]), name);
  geometry->setMaterial(value.has("material") ? materialAt(value["material"]) : nullptr);
  geometry->setLocalTransform(readPlace(value));
  bool sensor = false;
  bool collides = true;
  value.get("sensor", sensor);
  value.get("collides", collides);
  geometry->setSensor(sensor);
  geometry->setEnableCollisions(collides);
  readLook(*geometry, value);
  return geometry;
}

namespace {

vyr::RigidBody::MotionControl readMotionControl(const SceneValue& value) {
  if (!value.isText()) {
    return static_cast<vyr::RigidBody::MotionControl>(value.integer(1, 3));
  }
  const std::string word = value.text();
  if (word == "static") {
    return vyr::RigidBody::STATIC;
  }
  if (word == "kinematic") {
    return vyr::RigidBody::KINEMATICS;
  }
  if (word != "dynamic") {
    value.fail("must be \"static\", \"kinematic\" or \"dynamic\", not \"" + word + "\"");
  }
  return vyr::RigidBody::DYNAMICS;
}

void requireShare(const SceneValue& value, const char* key, double number) {
  if (number < 0 || number > 1) {
    value[key].fail("must be from 0 to 1");
  }
}

btTransform toEngineTransform(const SceneValue& value) {
  const std::vector<double> v = value.numbers(12);
  return btTransform(btMatrix3x3(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]), btVector3(v[9], v[10], v[11]));
}

/// Whether two poses are the same but for rounding.
bool isClose(const btTransform& first, const btTransform& second) {
  constexpr double kRounding = 1e-9;
  double difference = 0;
  for (int row = 0; row < 3; ++row) {
    difference = std::max(difference, (first.getBasis()[row] - second.getBasis()[row]).length());
  }
  const double scale = 1 + second.getOrigin().length();
  return difference < kRounding && (first.getOrigin() - second.getOrigin()).length() < kRounding * scale;
}

} // namespace

void SceneReader::readMass(vyr::RigidBody& body, const SceneValue& value) const {
  if (!value.has("inertia")) {
    if (value.has("mass")) {
      body.setMass(value["mass"].positive());
    }
    return;
  }
  // All of it: what a simulation wrote.
  vyr::RigidBodyNative& native = *body.m_native;
  native.mass = value["mass"].positive();
  native.center = value["center"].vec3();
  const std::vector<double> i = value["inertia"].numbers(9);
  native.inertia = btMatrix3x3(i[0], i[1], i[2], i[3], i[4], i[5], i[6], i[7], i[8]);
  // Sylvester's criterion.
  if (!(i[0] > 0 && i[0] * i[4] - i[1] * i[3] > 0 && native.inertia.determinant() > 0)) {
    value["inertia"].fail("must be positive definite");
  }
  value.get("massIsSet", native.userMass);
  value.get("inertiaIsSet", native.userInertia);
  body.applyMassProperties();
}

BodyState SceneReader::readBodyState(vyr::RigidBody& body, const SceneValue& value) const {
  BodyState state;
  vyr::Vec3 force;
  vyr::Vec3 torque;
  value.get("force", force);
  value.get("torque", torque);
  state.force = vyrPhysics::toBullet(force);
  state.torque = vyrPhysics::toBullet(torque);
  state.engineTransform = body.m_native->body->getWorldTransform();
  if (value.has("engineTransform")) {
    // The last bits of the pose. A pose that was edited goes before them.
    const btTransform exact = toEngineTransform(value["engineTransform"]);
    if (isClose(exact, state.engineTransform)) {
      state.engineTransform = exact;
    }
  }
  state.hasActivation = value.has("activation");
  value.getInteger("activation", state.activation, 0, 10);
  value.get("restTime", state.restTime);
  return state;
}

void SceneReader::readBody(const SceneValue& value) {
  std::string name;
  value.get("name", name);
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody(name);
  m_bodies.push_back(body);
  const auto control =
      value.has("motionControl") ? readMotionControl(value["motionControl"]) : vyr::RigidBody::DYNAMICS;
  // Static first: a plane goes into no other body.
  body->setMotionControl(vyr::RigidBody::STATIC);
  if (value.has("geometries")) {
    const SceneValue list = value["geometries"];
    for (std::size_t i = 0; i < list.size(); ++i) {
      const vyr::ref_ptr<vyrCollide::Geometry> geometry = readGeometry(list[i]);
      if (control == vyr::RigidBody::DYNAMICS && geometry->getShape()->getType() == vyrCollide::Shape::PLANE) {
        list[i]["shape"].fail("a plane cannot be in a body that forces move");
      }
      body->add(geometry.get(), geometry->getLocalTransform());
    }
  }
  body->setMotionControl(control);
  bool gravity = true;
  double linear = 0;
  double angular = 0;
  value.get("gravity", gravity);
  value.get("linearDamping", linear);
  value.get("angularDamping", angular);
  requireShare(value, "linearDamping", linear);
  requireShare(value, "angularDamping", angular);
  body->setEnableGravity(gravity);
  body->setLinearDamping(linear);
  body->setAngularDamping(angular);
  readMass(*body, value);
  vyr::Vec3 velocity;
  vyr::Vec3 spin;
  value.get("velocity", velocity);
  value.get("angularVelocity", spin);
  body->setTransform(readPlace(value));
  body->setVelocity(velocity);
  body->setAngularVelocity(spin);
  m_bodyStates.push_back(readBodyState(*body, value));
  readLook(*body, value);
}

void SceneReader::readParticles(const SceneValue& value) {
  std::string name;
  value.get("name", name);
  m_particleSystems.emplace_back(new vyr::ParticleSystem(name));
  vyr::ParticleSystem& system = *m_particleSystems.back();
  system.setMaterial(value.has("material") ? materialAt(value["material"]) : nullptr);
  vyr::Vec4 color = system.getDefaultColor();
  value.get("defaultColor", color);
  system.setDefaultColor(color);
  const std::size_t count = value.has("particles") ? value["particles"].size() : 0;
  for (std::size_t i = 0; i < count; ++i) {
    const SceneValue entry = value["particles"][i];
    btTransform pose = btTransform::getIdentity();
    vyr::Vec3 place;
    vyr::Vec3 velocity;
    vyr::Vec3 spin;
    vyr::Vec3 force;
    if (entry.has("engineTransform")) {
      pose = toEngineTransform(entry["engineTransform"]);
      place = vyrPhysics::fromBullet(pose.getOrigin());
    }
    entry.get("position", place);
    pose.setOrigin(vyrPhysics::toBullet(place));
    entry.get("velocity", velocity);
    entry.get("angularVelocity", spin);
    entry.get("force", force);
    double life = vyr::Constraint::kUnlimited;
    entry.getLimit("life", life);
    if (!(life > 0)) {
      entry["life"].fail("must be above 0");
    }
    const std::size_t index = system.add(place, velocity, entry["radius"].positive(), entry["mass"].positive(), life);
    auto& particle = system.m_particles[index];
    entry.get("id", particle.id);
    entry.getLimit("initialLife", particle.initialLife);
    entry.get("color", particle.color);
    btRigidBody& engine = *system.m_native->bodies[index];
    engine.setWorldTransform(pose);
    engine.setInterpolationWorldTransform(pose);
    engine.updateInertiaTensor();
    engine.setAngularVelocity(vyrPhysics::toBullet(spin));
    engine.applyCentralForce(vyrPhysics::toBullet(force));
  }
  value.get("nextId", system.m_nextId);
  readLook(system, value);
}

} // namespace vyrSDK
