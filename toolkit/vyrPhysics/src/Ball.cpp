/// A joint that holds a point of one body at a point of the other.
#include <vyr/Ball.h>

#include "ConstraintNative.h"

namespace vyr {

Ball::Ball(Frame* frame1, Frame* frame2)
    : Constraint(frame1, frame2) {
  m_native->layout = JointLayout{{true, true, true}, JointLayout::FREE, JointLayout::NONE};
}

Ball::~Ball() = default;

Ball* Ball::create(RigidBody* body1, RigidBody* body2, const Vec3& position) {
  return new Ball(Frame::create(body1, position), Frame::create(body2, position));
}

} // namespace vyr
