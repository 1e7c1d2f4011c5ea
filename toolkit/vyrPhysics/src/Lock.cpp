/// A joint that makes two bodies one.
#include <vyr/Lock.h>

#include "BulletConvert.h"
#include "ConstraintNative.h"
#include "Validate.h"

namespace vyr {

Lock::Lock(Frame* frame1, Frame* frame2)
    : Constraint(frame1, frame2) {
  m_native->layout = JointLayout{{true, true, true}, JointLayout::FIXED, JointLayout::NONE};
}

Lock::~Lock() = default;

bool Lock::setElasticity(double stiffness, double damping) {
  if (!vyrPhysics::isPositive(stiffness, "stiffness of a lock") ||
      !vyrPhysics::isNotNegative(damping, "damping of a lock")) {
    return false;
  }
  m_native->layout.elastic = true;
  m_native->layout.turningStiffness = stiffness;
  m_native->layout.turningDamping = damping;
  return true;
}

bool Lock::isElastic() const {
  return m_native->layout.elastic;
}

double Lock::getStiffness() const {
  return m_native->layout.turningStiffness;
}

double Lock::getDamping() const {
  return m_native->layout.turningDamping;
}

Vec3 Lock::getPreload() const {
  return vyrPhysics::fromBullet(m_native->layout.preload);
}

bool Lock::setPreload(const Vec3& torque) {
  if (!vyrPhysics::isFinite(torque, "preload of a lock")) {
    return false;
  }
  m_native->layout.preload = vyrPhysics::toBullet(torque);
  return true;
}

Lock* Lock::create(RigidBody* body1, RigidBody* body2) {
  const Vec3 position = body1 != nullptr ? body1->getCenterOfMass() : Vec3();
  return new Lock(Frame::create(body1, position), Frame::create(body2, position));
}

} // namespace vyr
