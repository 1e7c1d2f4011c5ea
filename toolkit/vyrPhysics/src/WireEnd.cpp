/// What the ends of wires hang on: bodies that go through the small steps as copies.
#include <vyrWire/Wire.h>

#include <algorithm>
#include <cmath>

namespace vyrWire {

namespace {

/// The share by which what moved a body otherwise than the wire may change from step to step without being a blow, and
/// the differences in m/s^2 and rad/s^2 that are none in any case.
const double kSteady = 0.5;
const double kSteadyMotion = 20;
const double kSteadyTurning = 50;

/// How many times more than the wire all else may pull for the wire to set right the body's path.
const double kOwnShare = 4;

/// How far, as a share of what the step's own forces did, a body's velocity may end from the copy's for the body to
/// have moved like it.
const double kSameMotion = 0.05;

/// The inverse of a positive definite matrix, by cofactors.
vyr::SPDMatrix3x3 inverse(const vyr::SPDMatrix3x3& m) {
  const double xx = m(1, 1) * m(2, 2) - m(1, 2) * m(1, 2);
  const double xy = m(0, 2) * m(1, 2) - m(0, 1) * m(2, 2);
  const double xz = m(0, 1) * m(1, 2) - m(0, 2) * m(1, 1);
  const double yy = m(0, 0) * m(2, 2) - m(0, 2) * m(0, 2);
  const double yz = m(0, 1) * m(0, 2) - m(0, 0) * m(1, 2);
  const double zz = m(0, 0) * m(1, 1) - m(0, 1) * m(0, 1);
  return vyr::SPDMatrix3x3(xx, xy, xz, yy, yz, zz) * (1 / (m(0, 0) * xx + m(0, 1) * xy + m(0, 2) * xz));
}

/// What the next step may expect, from what the last two brought: the newest, unless it was a blow. Differences of
/// `unit` are none.
vyr::Vec3 expected(const vyr::Vec3& newest, const vyr::Vec3& older, double unit) {
  const double play = unit + kSteady * std::max(newest.length(), older.length());
  return (newest - older).length() < play ? newest : vyr::Vec3();
}

} // namespace

vyr::Vec3 Wire::End::answer(const vyr::Vec3& direction) const {
  // 1/m d + (I^-1 (r x d)) x r with the lever r: what a force does at the point where it acts.
  const vyr::Vec3 lever = rotation * arm;
  const vyr::Vec3 turn = turned(lever ^ direction);
  return direction * inverseMass + (turn ^ lever);
}

vyr::Vec3 Wire::End::turned(const vyr::Vec3& torque) const {
  return rotation * (inverseInertia * (rotation.conj() * torque));
}

vyr::Vec3 Wire::End::freePlace(double h) const {
  const vyr::Quat turn(angularVelocity.length() * h, angularVelocity);
  return place + velocity * h + (rotation * turn) * arm;
}

void Wire::End::advance(double h) {
  const vyr::Vec3 force = impulse / h;
  const vyr::Vec3 torque = (rotation * arm) ^ force;
  linear += force;
  angular += torque;
  velocity += force * inverseMass;
  angularVelocity += turned(torque);
  place += velocity * h;
  rotation = rotation * vyr::Quat(angularVelocity.length() * h, angularVelocity);
  rotation.normalize();
  impulse = vyr::Vec3();
}

void Wire::beginStep(End& end, std::size_t node) {
  if (end.onBody && !end.body) {
    end = End();
  }
  end.inverseMass = 0;
  end.linear = end.angular = end.impulse = vyr::Vec3();
  m_inverseMasses[node] = end.fastened ? 0 : 2 / (m_massPerLength * m_segmentLength);
  if (!end.fastened) {
    return;
  }
  m_places[node] = placeOf(end);
  m_velocities[node] = end.onBody ? end.body->getVelocityAtPoint(m_places[node]) : vyr::Vec3();
  if (!end.onBody || end.body->getMotionControl() != vyr::RigidBody::DYNAMICS) {
    return;
  }
  const vyr::RigidBody& body = *end.body;
  end.inverseMass = 1 / body.getMass();
  end.inverseInertia = inverse(body.getInertia());
  end.place = body.getCenterOfMass();
  end.rotation = body.getRotation();
  end.arm = end.rotation.conj() * (m_places[node] - end.place);
  end.velocity = body.getVelocity();
  end.angularVelocity = body.getAngularVelocity();
  // Forces known before the step, other wires' among them, and those that only the last steps can tell.
  end.gravity = body.getEnableGravity() ? m_simulation->getGravity() : vyr::Vec3();
  end.known = end.gravity + body.getForce() * end.inverseMass;
  end.knownTurn = end.turned(body.getTorque());
  end.acceleration = end.known + expected(end.others[0], end.others[1], kSteadyMotion);
  end.turning = end.knownTurn + expected(end.otherTurns[0], end.otherTurns[1], kSteadyTurning);
  end.startPlace = end.place;
  end.startRotation = end.rotation;
  end.startVelocity = end.velocity;
  end.startAngular = end.angularVelocity;
}

void Wire::endStep(End& end, double dt) {
  if (end.inverseMass == 0) {
    return;
  }
  end.body->addForce(end.linear / dt);
  end.body->addTorque(end.angular / dt);
}

void Wire::finishStep(End& end, double dt) {
  vyr::RigidBody& body = *end.body;
  const vyr::Vec3 gained = body.getVelocity() - end.startVelocity;
  const vyr::Vec3 turnGained = body.getAngularVelocity() - end.startAngular;
  const vyr::Vec3 own = end.linear * end.inverseMass;
  end.others[1] = end.others[0];
  end.otherTurns[1] = end.otherTurns[0];
  end.others[0] = (gained - own) / dt - end.known;
  end.otherTurns[0] = (turnGained - end.turned(end.angular)) / dt - end.knownTurn;
  // The body's step went all its way with the new velocity, the copy went through it little by little. A body that
  // something else stopped, or that another wire has set right already, stays where it is; and a wire that hardly pulls
  // leaves it to the others, whose small steps may be others.
  const vyr::Vec3 large = end.startPlace + body.getVelocity() * dt;
  const double play = kSameMotion * (own.length() + end.acceleration.length() * dt);
  if ((body.getVelocity() - end.velocity).length() > play ||
      (body.getCenterOfMass() - large).length() > 0.01 * play * dt) {
    return;
  }
  if ((end.acceleration - end.gravity).length() * dt > kOwnShare * own.length()) {
    return;
  }
  const vyr::Vec3 place = end.place + (body.getCenterOfMass() - (end.startPlace + end.velocity * dt));
  const vyr::Quat copied = end.startRotation * vyr::Quat(end.angularVelocity.length() * dt, end.angularVelocity);
  const vyr::Quat rotation = body.getRotation() * (copied.inverse() * end.rotation);
  // The frame's origin is where it must be for the centre of mass to be at its place.
  const vyr::Vec3 inner = body.getRotation().conj() * (body.getPosition() - body.getCenterOfMass());
  body.setTransform(vyr::AffineMatrix4x4(rotation, place + rotation * inner));
}

vyr::SPDMatrix3x3 Wire::massAt(const End& end) {
  const vyr::Vec3 x = end.answer(vyr::Vec3(1, 0, 0));
  const vyr::Vec3 y = end.answer(vyr::Vec3(0, 1, 0));
  const vyr::Vec3 z = end.answer(vyr::Vec3(0, 0, 1));
  return inverse(vyr::SPDMatrix3x3(x.x(), x.y(), x.z(), y.y(), y.z(), z.z()));
}

} // namespace vyrWire
