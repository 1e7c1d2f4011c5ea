/// A wheel's joint.
#include <vyr/Suspension.h>

#include "ConstraintNative.h"
#include "Validate.h"

namespace vyr {

Suspension::Suspension(Frame* wheel, Frame* chassis)
    : Constraint1DOF(wheel, chassis) {
  JointLayout& layout = m_native->layout;
  layout = JointLayout{{false, true, true}, JointLayout::ABOUT_Z, JointLayout::ANGLE};
  layout.sprung = true;
  layout.stiffness = 30000.0;
  layout.damping = 2000.0;
}

Suspension::~Suspension() = default;

bool Suspension::setStiffness(double stiffness) {
  if (!vyrPhysics::isPositive(stiffness, "stiffness of a suspension")) {
    return false;
  }
  m_native->layout.stiffness = stiffness;
  return true;
}

double Suspension::getStiffness() const {
  return m_native->layout.stiffness;
}

bool Suspension::setDamping(double damping) {
  if (!vyrPhysics::isNotNegative(damping, "damping of a suspension")) {
    return false;
  }
  m_native->layout.damping = damping;
  return true;
}

double Suspension::getDamping() const {
  return m_native->layout.damping;
}

bool Suspension::setSteeringAngle(double angle) {
  if (!std::isfinite(angle)) {
    VYR_NOTIFY(NOTIFY_ERROR) << "steering angle must be finite, not " << angle;
    return false;
  }
  m_native->layout.steering = angle;
  updateFrames();
  return true;
}

double Suspension::getSteeringAngle() const {
  return m_native->layout.steering;
}

double Suspension::getDisplacement() const {
  if (m_native->constraint) {
    return m_native->constraint->getDisplacement();
  }
  const AffineMatrix4x4 chassis = getFrame2()->getTransform();
  const Vec3 up = chassis.transform3x3(Vec3(1.0, 0.0, 0.0));
  return up * (getFrame1()->getPosition() - chassis.getTranslate());
}

} // namespace vyr
