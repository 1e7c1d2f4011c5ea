/// A joint that makes two bodies one.
#include <vyr/Lock.h>

#include "ConstraintNative.h"

namespace vyr {

Lock::Lock(Frame* frame1, Frame* frame2)
    : Constraint(frame1, frame2) {
  m_native->layout = JointLayout{{true, true, true}, JointLayout::FIXED, JointLayout::NONE};
}

Lock::~Lock() = default;

Lock* Lock::create(RigidBody* body1, RigidBody* body2) {
  const Vec3 position = body1 != nullptr ? body1->getCenterOfMass() : Vec3();
  return new Lock(Frame::create(body1, position), Frame::create(body2, position));
}

} // namespace vyr
