/// A joint that lets one body turn about an axis of the other.
#include <vyr/Hinge.h>

#include "ConstraintNative.h"

namespace vyr {

Hinge::Hinge(Frame* frame1, Frame* frame2)
    : Constraint1DOF(frame1, frame2) {
  m_native->layout = JointLayout{{true, true, true}, JointLayout::ABOUT_Z, JointLayout::ANGLE};
}

Hinge::~Hinge() = default;

Hinge* Hinge::create(RigidBody* body1, RigidBody* body2, const Vec3& position, const Vec3& axis) {
  return new Hinge(Frame::create(body1, position, axis), Frame::create(body2, position, axis));
}

} // namespace vyr
