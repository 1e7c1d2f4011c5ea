/// One joint for the engine's solver from which all constraints of the toolkit are made.
#include "JointConstraint.h"

#include <vyr/Constraint1DOF.h>

#include <algorithm>
#include <cmath>

namespace vyr {

double angleBetween(const btTransform& first, const btTransform& second) {
  const btVector3 x = first.getBasis().getColumn(0);
  return std::atan2(x.dot(second.getBasis().getColumn(1)), x.dot(second.getBasis().getColumn(0)));
}

/// Frames and arms in the world.
struct JointConstraint::State {
  btTransform frameA;
  btTransform frameB;
  btVector3 gap;  ///< from the second frame's origin to the first's
  btVector3 armA; ///< from the centre of body A to the first frame's origin
  btVector3 armB; ///< from the centre of body B to the first frame's origin: the held axes turn with body B

  btVector3 axis(int i) const { return frameB.getBasis().getColumn(i); }

  /// Direction of the line between the origins; along z while they coincide.
  btVector3 line() const { return gap.length2() > 1.0e-18 ? gap.normalized() : axis(2); }
};

/// Writes rows one after another.
class JointConstraint::Rows {
public:
  explicit Rows(btConstraintInfo2& info)
      : m_info(info) {}

  double getRate() const { return m_info.fps * m_info.erp; }
  double getStepsPerSecond() const { return m_info.fps; }

  /// Relative velocity of the bodies' points along `n` shall be `speed`.
  void addLinear(const btVector3& n, const State& state, double speed, double low, double high) {
    const btVector3 turnA = state.armA.cross(n);
    const btVector3 turnB = -state.armB.cross(n);
    set(m_info.m_J1linearAxis, n);
    set(m_info.m_J1angularAxis, turnA);
    set(m_info.m_J2linearAxis, -n);
    set(m_info.m_J2angularAxis, turnB);
    finish(speed, low, high);
  }

  /// Relative angular velocity along `n` shall be `speed`.
  void addAngular(const btVector3& n, double speed, double low, double high) {
    set(m_info.m_J1angularAxis, n);
    set(m_info.m_J2angularAxis, -n);
    finish(speed, low, high);
  }

  /// As above, giving way by `softness` times the impulse (in rad/s per N m s). The engine multiplies its own measure
  /// of softness with the impulse, not with the velocity: it is `softness` over the row's `inverseInertia`.
  void addSoftAngular(const btVector3& n, double speed, double softness, double inverseInertia) {
    m_info.cfm[m_row * m_info.rowskip] = softness / inverseInertia;
    addAngular(n, speed, -SIMD_INFINITY, SIMD_INFINITY);
  }

private:
  void set(btScalar* block, const btVector3& v) const {
    for (int i = 0; i < 3; ++i) {
      block[m_row * m_info.rowskip + i] = v[i];
    }
  }

  void finish(double speed, double low, double high) {
    const int at = m_row * m_info.rowskip;
    m_info.m_constraintError[at] = speed;
    m_info.m_lowerLimit[at] = std::max(low, -SIMD_INFINITY);
    m_info.m_upperLimit[at] = std::min(high, SIMD_INFINITY);
    ++m_row;
  }

  btConstraintInfo2& m_info;
  int m_row = 0;
};

JointConstraint::JointConstraint(btRigidBody& bodyA, btRigidBody& bodyB, const JointLayout& layout,
                                 const Constraint1DOF* control)
    : btTypedConstraint(MAX_CONSTRAINT_TYPE, bodyA, bodyB)
    , m_layout(layout)
    , m_control(control) {}

void JointConstraint::setFrames(const btTransform& frameA, const btTransform& frameB) {
  m_frameA = frameA;
  m_frameB = frameB;
}

JointConstraint::State JointConstraint::getState() const {
  State state;
  state.frameA = m_rbA.getWorldTransform() * m_frameA;
  state.frameB = m_rbB.getWorldTransform() * m_frameB;
  state.gap = state.frameA.getOrigin() - state.frameB.getOrigin();
  state.armA = state.frameA.getOrigin() - m_rbA.getWorldTransform().getOrigin();
  state.armB = state.frameA.getOrigin() - m_rbB.getWorldTransform().getOrigin();
  return state;
}

double JointConstraint::getPosition() const {
  const State state = getState();
  switch (m_layout.coordinate) {
  case JointLayout::ANGLE: {
    const double angle = angleBetween(state.frameA, state.frameB);
    return angle + SIMD_2_PI * std::round((m_angle - angle) / SIMD_2_PI);
  }
  case JointLayout::SLIDE:
    return state.gap.dot(state.axis(2));
  case JointLayout::DISTANCE:
    return state.gap.length();
  case JointLayout::NONE:
    break;
  }
  return 0.0;
}

double JointConstraint::getSpeed() const {
  const State state = getState();
  if (m_layout.coordinate == JointLayout::ANGLE) {
    return state.axis(2).dot(m_rbA.getAngularVelocity() - m_rbB.getAngularVelocity());
  }
  const btVector3 n = m_layout.coordinate == JointLayout::DISTANCE ? state.line() : state.axis(2);
  return n.dot(m_rbA.getVelocityInLocalPoint(state.armA) - m_rbB.getVelocityInLocalPoint(state.armB));
}

double JointConstraint::getShare(const btVector3& force, const btVector3& torque) const {
  const State state = getState();
  switch (m_layout.coordinate) {
  case JointLayout::ANGLE:
    // The engine's torque is about the centre of mass: the force at the joint turns the body, too.
    return state.axis(2).dot(torque - state.armA.cross(force));
  case JointLayout::SLIDE:
    return state.axis(2).dot(force);
  case JointLayout::DISTANCE:
    return state.line().dot(force);
  case JointLayout::NONE:
    break;
  }
  return 0.0;
}

double JointConstraint::getDisplacement() const {
  const State state = getState();
  return state.gap.dot(state.axis(0));
}

bool JointConstraint::hasDrive() const {
  return m_control != nullptr && (m_control->getEnableLock() || m_control->getEnableMotor());
}

bool JointConstraint::hasLimit() const {
  return m_control != nullptr && m_control->getEnableRange() &&
         (std::isfinite(m_control->getRange().lower()) || std::isfinite(m_control->getRange().upper()));
}

void JointConstraint::getInfo1(btConstraintInfo1* info) {
  if (m_layout.coordinate == JointLayout::ANGLE) {
    m_angle = getPosition();
  }
  info->m_numConstraintRows = static_cast<int>(std::count(m_layout.held, m_layout.held + 3, true));
  info->m_numConstraintRows += m_layout.turning == JointLayout::FIXED ? 3 : 0;
  info->m_numConstraintRows += m_layout.turning == JointLayout::ABOUT_Z ? 2 : 0;
  info->m_numConstraintRows += m_layout.sprung ? 1 : 0;
  info->m_numConstraintRows += hasDrive() ? 1 : 0;
  info->m_numConstraintRows += hasLimit() ? 1 : 0;
  info->nub = 0;
}

void JointConstraint::getInfo2(btConstraintInfo2* info) {
  // The whole of the relative velocity counts, not the share that the engine leaves by default.
  info->m_damping = 1.0;
  Rows rows(*info);
  const State state = getState();
  addHeld(state, rows);
  addTurning(state, rows);
  addSpring(state, rows);
  addControl(state, rows);
}

void JointConstraint::addHeld(const State& state, Rows& rows) const {
  for (int i = 0; i < 3; ++i) {
    if (m_layout.held[i]) {
      const btVector3 n = state.axis(i);
      rows.addLinear(n, state, -rows.getRate() * n.dot(state.gap), -SIMD_INFINITY, SIMD_INFINITY);
    }
  }
}

void JointConstraint::addTurning(const State& state, Rows& rows) const {
  if (m_layout.turning == JointLayout::FREE) {
    return;
  }
  btVector3 error;
  if (m_layout.turning == JointLayout::ABOUT_Z) {
    error = state.axis(2).cross(state.frameA.getBasis().getColumn(2));
  } else {
    // Small rotation that leads from the second frame to the first.
    btQuaternion turn = state.frameA.getRotation() * state.frameB.getRotation().inverse();
    turn = turn.w() < 0.0 ? -turn : turn;
    error = btVector3(turn.x(), turn.y(), turn.z()) * 2.0;
  }
  const int count = m_layout.turning == JointLayout::FIXED ? 3 : 2;
  for (int i = 0; i < count; ++i) {
    if (m_layout.elastic) {
      addElasticTurning(state.axis(i), error.dot(state.axis(i)), m_layout.preload[i], rows);
      continue;
    }
    rows.addAngular(state.axis(i), -rows.getRate() * error.dot(state.axis(i)), -SIMD_INFINITY, SIMD_INFINITY);
  }
}

void JointConstraint::addElasticTurning(const btVector3& axis, double angle, double preload, Rows& rows) const {
  const double dt = 1.0 / rows.getStepsPerSecond();
  const double inverseInertia = axis.dot((m_rbA.getInvInertiaTensorWorld() + m_rbB.getInvInertiaTensorWorld()) * axis);
  // The solver's iteration converges only while softness < inverse inertia; more damping keeps it there.
  const double leastFactor = 1.0 / (0.8 * inverseInertia * dt);
  const double factor = std::max(m_layout.turningDamping + dt * m_layout.turningStiffness, leastFactor);
  // Source: Catto, Soft Constraints, GDC 2011: gamma = 1 / (h (d + h k)), bias = k C / (d + h k).
  const double stretch = m_layout.turningStiffness * angle - preload;
  rows.addSoftAngular(axis, -stretch / factor, 1.0 / (dt * factor), inverseInertia);
}

void JointConstraint::addSpring(const State& state, Rows& rows) {
  if (!m_layout.sprung) {
    return;
  }
  const btVector3 n = state.axis(0);
  const double dt = 1.0 / rows.getStepsPerSecond();
  const double displacement = n.dot(state.gap);
  const double speed = n.dot(m_rbA.getVelocityInLocalPoint(state.armA) - m_rbB.getVelocityInLocalPoint(state.armB));
  const btVector3 turnA = state.armA.cross(n);
  const btVector3 turnB = state.armB.cross(n);
  const double inverseMass = m_rbA.getInvMass() + m_rbB.getInvMass() +
                             turnA.dot(m_rbA.getInvInertiaTensorWorld() * turnA) +
                             turnB.dot(m_rbB.getInvInertiaTensorWorld() * turnB);
  // What else moves the two apart (gravity, the road) is taken from the last step; without it, the spring would carry
  // less than its displacement says.
  const double others = m_spring.known ? (speed - m_spring.speed) / dt - m_spring.force * inverseMass : 0.0;
  const double guess = speed + others * dt;
  // The force at the end of the step, when it acts through all of the step: stable however stiff.
  const double force = -(m_layout.stiffness * (displacement + guess * dt) + m_layout.damping * guess) /
                       (1.0 + (m_layout.damping + m_layout.stiffness * dt) * dt * inverseMass);
  m_spring = SpringMemory{true, speed, force};
  rows.addLinear(n, state, 0.0, force * dt, force * dt);
}

void JointConstraint::addControl(const State& state, Rows& rows) const {
  if (m_control == nullptr) {
    return;
  }
  const auto add = [&](double speed, double low, double high) {
    const double dt = 1.0 / rows.getStepsPerSecond();
    if (m_layout.coordinate == JointLayout::ANGLE) {
      rows.addAngular(state.axis(2), speed, low * dt, high * dt);
    } else {
      const bool slide = m_layout.coordinate == JointLayout::SLIDE;
      rows.addLinear(slide ? state.axis(2) : state.line(), state, speed, low * dt, high * dt);
    }
  };
  const double position = getPosition();
  if (m_control->getEnableLock()) {
    const double force = m_control->getLockForce();
    add(-rows.getRate() * (position - m_control->getLockPosition()), -force, force);
  } else if (m_control->getEnableMotor()) {
    const double force = m_control->getMotorForce();
    add(m_control->getMotorSpeed(), -force, force);
  }
  if (hasLimit()) {
    const double below = position - m_control->getRange().lower();
    const double above = m_control->getRange().upper() - position;
    // Before the end is reached: no faster than just to it. Behind it: back at the usual rate.
    const auto rate = [&rows](double room) { return room > 0.0 ? rows.getStepsPerSecond() : rows.getRate(); };
    if (below < above) {
      add(-below * rate(below), 0.0, Constraint::kUnlimited);
    } else {
      add(above * rate(above), -Constraint::kUnlimited, 0.0);
    }
  }
}

} // namespace vyr
