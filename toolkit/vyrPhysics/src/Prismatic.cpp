/// A joint that lets one body slide along an axis of the other.
#include <vyr/Prismatic.h>

#include "ConstraintNative.h"

namespace vyr {

Prismatic::Prismatic(Frame* frame1, Frame* frame2)
    : Constraint1DOF(frame1, frame2) {
  m_native->layout = JointLayout{{true, true, false}, JointLayout::FIXED, JointLayout::SLIDE};
}

Prismatic::~Prismatic() = default;

Prismatic* Prismatic::create(RigidBody* body1, RigidBody* body2, const Vec3& position, const Vec3& axis) {
  return new Prismatic(Frame::create(body1, position, axis), Frame::create(body2, position, axis));
}

} // namespace vyr
