/// Writes bodies and particles into a scene file.
#include "SceneWriter.h"

#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"

namespace vyrSDK {

namespace {

const char* motionControlWord(vyr::RigidBody::MotionControl control) {
  switch (control) {
  case vyr::RigidBody::STATIC:
    return "static";
  case vyr::RigidBody::KINEMATICS:
    return "kinematic";
  case vyr::RigidBody::DYNAMICS:
    break;
  }
  return "dynamic";
}

} // namespace

template <class Part>
void SceneWriter::addLook(const Part& part, Json& json) const {
  Json look = Json::object();
  SceneRecord record(&look);
  if (m_visuals != nullptr && m_visuals->write(part, m_folder, record)) {
    json["visual"] = look;
  }
}

void SceneWriter::addBody(const vyr::RigidBody& body) {
  const vyr::RigidBodyNative& native = *body.getNative();
  const btRigidBody& engine = *native.body;
  const int index = static_cast<int>(m_bodies.size());
  m_bodies.emplace(&body, index);
  Json geometries = Json::array();
  for (const auto& geometry : body.getGeometries()) {
    geometries.push_back(geometryJson(*geometry, index, static_cast<int>(geometries.size())));
  }
  Json json = {{"name", std::string(body.getName())},
               {"motionControl", motionControlWord(body.getMotionControl())},
               {"geometries", geometries},
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
               {"restTime", engine.getDeactivationTime()}};
  addLook(body, json);
  m_json["bodies"].push_back(std::move(json));
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
  Json json = {{"name", std::string(particles.getName())},
               {"material", indexOf(particles.getMaterial())},
               {"defaultColor", toJson(particles.getDefaultColor())},
               {"nextId", particles.m_nextId},
               {"particles", list}};
  addLook(particles, json);
  m_json["particleSystems"].push_back(std::move(json));
}

} // namespace vyrSDK
