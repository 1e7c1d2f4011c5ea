/// Base of constraints that leave one degree of freedom.
#include <vyr/Constraint1DOF.h>

#include <vyr/Notify.h>

#include "BulletConvert.h"
#include "ConstraintNative.h"

#include <cmath>

namespace vyr {

Constraint1DOF::~Constraint1DOF() = default;

bool Constraint1DOF::isRotational() const {
  return m_native->layout.coordinate == JointLayout::ANGLE;
}

double Constraint1DOF::getPosition() const {
  if (m_native->constraint) {
    return m_native->constraint->getPosition();
  }
  const btTransform first = vyrPhysics::toBullet(getFrame1()->getTransform());
  const btTransform second = vyrPhysics::toBullet(getFrame2()->getTransform());
  const btVector3 gap = first.getOrigin() - second.getOrigin();
  switch (m_native->layout.coordinate) {
  case JointLayout::ANGLE:
    return angleBetween(first, second);
  case JointLayout::SLIDE:
    return gap.dot(second.getBasis().getColumn(2));
  case JointLayout::DISTANCE:
    return gap.length();
  case JointLayout::NONE:
    break;
  }
  return 0.0;
}

double Constraint1DOF::getSpeed() const {
  return m_native->constraint ? m_native->constraint->getSpeed() : 0.0;
}

namespace {

bool isNumber(double value, const char* what) {
  if (std::isfinite(value)) {
    return true;
  }
  VYR_NOTIFY(NOTIFY_ERROR) << what << " of a constraint must be finite, not " << value;
  return false;
}

bool isForce(double value, const char* what) {
  if (value >= 0.0) {
    return true;
  }
  VYR_NOTIFY(NOTIFY_ERROR) << what << " of a constraint must be at least 0, not " << value;
  return false;
}

} // namespace

bool Constraint1DOF::setMotorSpeed(double speed) {
  if (!isNumber(speed, "motor speed")) {
    return false;
  }
  m_motorSpeed = speed;
  return true;
}

bool Constraint1DOF::setMotorForce(double force) {
  if (!isForce(force, "motor force")) {
    return false;
  }
  m_motorForce = force;
  return true;
}

bool Constraint1DOF::setLockPosition(double position) {
  if (!isNumber(position, "lock position")) {
    return false;
  }
  m_lockPosition = position;
  return true;
}

bool Constraint1DOF::setLockForce(double force) {
  if (!isForce(force, "lock force")) {
    return false;
  }
  m_lockForce = force;
  return true;
}

bool Constraint1DOF::setRange(const RangeReal& range) {
  if (!(range.lower() <= range.upper())) {
    VYR_NOTIFY(NOTIFY_ERROR) << "range of a constraint must not be " << range;
    return false;
  }
  m_range = range;
  return true;
}

double Constraint1DOF::getCurrentForce() const {
  if (!m_native->constraint) {
    return 0.0;
  }
  const btJointFeedback& feedback = m_native->feedback;
  return m_native->constraint->getShare(feedback.m_appliedForceBodyA, feedback.m_appliedTorqueBodyA);
}

} // namespace vyr
