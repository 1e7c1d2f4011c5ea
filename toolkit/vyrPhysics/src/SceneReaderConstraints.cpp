/// Reads constraints from a scene file.
#include "SceneReader.h"

#include "SceneParse.h"

#include <vyr/Ball.h>
#include <vyr/Constraint1DOF.h>
#include <vyr/Distance.h>
#include <vyr/Hinge.h>
#include <vyr/Lock.h>
#include <vyr/Prismatic.h>
#include <vyr/Suspension.h>

namespace vyrSDK {

namespace {

vyr::ref_ptr<vyr::Constraint> makeConstraint(const SceneValue& value, vyr::Frame* frame1, vyr::Frame* frame2) {
  const std::string type = value["type"].text();
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
  if (type != "ball") {
    value["type"].fail("there is no constraint \"" + type + "\"");
  }
  return new vyr::Ball(frame1, frame2);
}

double readForce(const SceneValue& value, const char* key, double usual) {
  double force = usual;
  value.getLimit(key, force);
  if (!(force >= 0)) {
    value[key].fail("must be at least 0");
  }
  return force;
}

void readSuspension(vyr::Suspension& suspension, const SceneValue& value, ConstraintState& outState) {
  double stiffness = suspension.getStiffness();
  double damping = suspension.getDamping();
  double steering = suspension.getSteeringAngle();
  value.getPositive("stiffness", stiffness);
  value.getNotNegative("damping", damping);
  value.get("steering", steering);
  suspension.setStiffness(stiffness);
  suspension.setDamping(damping);
  suspension.setSteeringAngle(steering);
  value.get("lastKnown", outState.spring.known);
  value.get("lastSpeed", outState.spring.speed);
  value.get("lastForce", outState.spring.force);
}

void readElasticity(vyr::Lock& lock, const SceneValue& value) {
  vyr::Vec3 preload;
  value.get("preload", preload);
  lock.setElasticity(value["stiffness"].positive(), value["damping"].notNegative());
  lock.setPreload(preload);
}

} // namespace

static void readControl(vyr::Constraint1DOF& constraint, const SceneValue& value, ConstraintState& outState) {
  bool motor = constraint.getEnableMotor();
  bool lock = constraint.getEnableLock();
  bool limited = constraint.getEnableRange();
  double motorSpeed = constraint.getMotorSpeed();
  double lockPosition = constraint.getLockPosition();
  value.get("motor", motor);
  value.get("lock", lock);
  value.get("limited", limited);
  value.get("motorSpeed", motorSpeed);
  value.get("lockPosition", lockPosition);
  constraint.setMotorSpeed(motorSpeed);
  constraint.setMotorForce(readForce(value, "motorForce", constraint.getMotorForce()));
  constraint.setLockPosition(lockPosition);
  constraint.setLockForce(readForce(value, "lockForce", constraint.getLockForce()));
  if (value.has("range")) {
    constraint.setRange(value["range"].range());
  }
  constraint.setEnableMotor(motor);
  constraint.setEnableLock(lock);
  constraint.setEnableRange(limited);
  outState.hasPosition = value.has("position");
  value.get("position", outState.position);
}

ConstraintState readConstraintState(vyr::Constraint& constraint, const SceneValue& value) {
  ConstraintState state;
  bool enable = constraint.getEnable();
  value.get("enable", enable);
  double breakForce = constraint.getBreakForce();
  value.getLimit("breakForce", breakForce);
  if (!(breakForce > 0)) {
    value["breakForce"].fail("must be above 0");
  }
  constraint.setBreakForce(breakForce);
  if (value.has("solveType")) {
    const long long type = value["solveType"].integer(0, 7);
    constraint.setSolveType(static_cast<vyr::Constraint::SolveType>(type));
  }
  if (auto* controlled = dynamic_cast<vyr::Constraint1DOF*>(&constraint)) {
    if (value.has("control")) {
      readControl(*controlled, value["control"], state);
    }
  }
  auto* suspension = dynamic_cast<vyr::Suspension*>(&constraint);
  if (suspension != nullptr && value.has("suspension")) {
    readSuspension(*suspension, value["suspension"], state);
  }
  auto* lock = dynamic_cast<vyr::Lock*>(&constraint);
  if (lock != nullptr && value.has("elastic")) {
    readElasticity(*lock, value["elastic"]);
  }
  constraint.setEnable(enable);
  if (value.has("measured")) {
    value["measured"].get("force", state.force);
    value["measured"].get("torque", state.torque);
  }
  return state;
}

vyr::ref_ptr<vyr::Frame> SceneReader::readFrame(const SceneValue& owner, const char* key,
                                                const vyr::Frame* first) const {
  if (owner.has(key)) {
    return makeFrame(owner[key], *this, first);
  }
  return first != nullptr ? new vyr::Frame(nullptr, first->getTransform()) : new vyr::Frame;
}

void SceneReader::readConstraint(const SceneValue& value) {
  const vyr::ref_ptr<vyr::Frame> frame1 = readFrame(value, "frame1", nullptr);
  const vyr::ref_ptr<vyr::Frame> frame2 = readFrame(value, "frame2", frame1.get());
  if (frame1->getRigidBody() == frame2->getRigidBody()) {
    value.fail("must hold two different bodies, or a body and the world");
  }
  const vyr::ref_ptr<vyr::Constraint> constraint = makeConstraint(value, frame1.get(), frame2.get());
  if (!constraint->isValid()) {
    value.fail("holds nothing that could move");
  }
  std::string name;
  bool collides = false;
  value.get("name", name);
  value.get("collides", collides);
  constraint->setName(name);
  constraint->setEnableCollisions(collides);
  m_constraints.push_back(constraint);
  m_constraintValues.push_back(value);
  m_constraintStates.push_back(readConstraintState(*constraint, value));
}

} // namespace vyrSDK
