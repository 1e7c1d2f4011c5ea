/// A coordinate frame, fixed to a body or to the world.
#include <vyr/Frame.h>

#include <vyr/RigidBody.h>

#include "BulletConvert.h"

#include <cmath>

namespace vyr {

Frame::Frame(RigidBody* body, const AffineMatrix4x4& local)
    : m_body(body)
    , m_local(local) {}

Frame::~Frame() = default;

RigidBody* Frame::getRigidBody() const {
  return m_body.get();
}

void Frame::setRigidBody(RigidBody* body) {
  m_body = body;
}

AffineMatrix4x4 Frame::getTransform() const {
  return m_body ? m_local * m_body->getTransform() : m_local;
}

Vec3 Frame::getPosition() const {
  return getTransform().getTranslate();
}

Vec3 Frame::getAxis() const {
  return getTransform().transform3x3(Vec3(0.0, 0.0, 1.0)).normalized();
}

Frame* Frame::create(RigidBody* body, const Vec3& position, const Vec3& axis) {
  Vec3 z = axis.normalized();
  if (!(z.length2() > 0.0)) {
    z = Vec3(0.0, 0.0, 1.0);
  }
  // Across the axis: the world's x where that is far enough from it, else the world's y.
  const Vec3 helper = std::fabs(z.x()) < 0.9 ? Vec3(1.0, 0.0, 0.0) : Vec3(0.0, 1.0, 0.0);
  const Vec3 x = (helper - z * (helper * z)).normalized();
  const Vec3 y = z ^ x;
  const AffineMatrix4x4 world(x.x(), x.y(), x.z(), 0.0, y.x(), y.y(), y.z(), 0.0, z.x(), z.y(), z.z(), 0.0,
                              position.x(), position.y(), position.z(), 1.0);
  return new Frame(body, body != nullptr ? world * body->getTransform().inverse() : world);
}

} // namespace vyr
