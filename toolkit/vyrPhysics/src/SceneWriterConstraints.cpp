/// Writes constraints into a scene file.
#include "SceneWriter.h"

#include "BulletConvert.h"
#include "ConstraintNative.h"

#include <vyr/Ball.h>
#include <vyr/Constraint1DOF.h>
#include <vyr/Distance.h>
#include <vyr/Hinge.h>
#include <vyr/Lock.h>
#include <vyr/Prismatic.h>
#include <vyr/Suspension.h>

namespace vyrSDK {

namespace {

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

Json suspensionJson(const vyr::Suspension& suspension) {
  const vyr::JointConstraint::SpringMemory& memory = suspension.getNative()->constraint->getSpringMemory();
  return {{"stiffness", suspension.getStiffness()},
          {"damping", suspension.getDamping()},
          {"steering", suspension.getSteeringAngle()},
          {"lastKnown", memory.known},
          {"lastSpeed", memory.speed},
          {"lastForce", memory.force}};
}

} // namespace

Json SceneWriter::frameJson(const vyr::Frame& frame) const {
  return {{"body", indexOf(frame.getRigidBody())}, {"transform", toJson(frame.getLocalTransform())}};
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
    json["suspension"] = suspensionJson(*suspension);
  }
  const auto* lock = dynamic_cast<const vyr::Lock*>(&constraint);
  if (lock != nullptr && lock->isElastic()) {
    json["elastic"] = {
        {"stiffness", lock->getStiffness()}, {"damping", lock->getDamping()}, {"preload", toJson(lock->getPreload())}};
  }
  json["measured"] = {{"force", toJson(constraint.getForce())}, {"torque", toJson(constraint.getTorque())}};
  m_constraints.emplace(&constraint, static_cast<int>(m_constraints.size()));
  m_json["constraints"].push_back(json);
}

} // namespace vyrSDK
