/// A rod, rope or winch between two points.
#include <vyr/Distance.h>

#include "ConstraintNative.h"

namespace vyr {

Distance::Distance(Frame* frame1, Frame* frame2)
    : Constraint1DOF(frame1, frame2) {
  m_native->layout = JointLayout{{false, false, false}, JointLayout::FREE, JointLayout::DISTANCE};
  setLockPosition(getPosition());
  setEnableLock(true);
}

Distance::~Distance() = default;

Distance* Distance::create(RigidBody* body1, const Vec3& point1, RigidBody* body2, const Vec3& point2) {
  return new Distance(Frame::create(body1, point1), Frame::create(body2, point2));
}

} // namespace vyr
