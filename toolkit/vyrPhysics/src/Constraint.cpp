/// Base of everything that ties two bodies together.
#include <vyr/Constraint.h>

#include <vyr/Constraint1DOF.h>
#include <vyr/Notify.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "ConstraintNative.h"
#include "RigidBodyNative.h"
#include "Validate.h"

namespace vyr {

Constraint::Constraint(Frame* frame1, Frame* frame2)
    : m_native(std::make_unique<ConstraintNative>())
    , m_frame1(frame1 != nullptr ? frame1 : new Frame)
    , m_frame2(frame2 != nullptr ? frame2 : new Frame)
    , m_body1(m_frame1->getRigidBody())
    , m_body2(m_frame2->getRigidBody()) {
  const bool finite = m_frame1->getLocalTransform().isFinite() && m_frame2->getLocalTransform().isFinite();
  m_valid = finite && m_body1.get() != m_body2.get();
  if (!m_valid) {
    VYR_NOTIFY(NOTIFY_ERROR)
        << "a constraint needs two finite frames, of two different bodies or of a body and the world";
  }
}

Constraint::~Constraint() = default;

void Constraint::createNative() {
  const auto engineBody = [this](RigidBody* body) -> btRigidBody& {
    return body != nullptr ? *body->getNative()->body : m_native->world;
  };
  const auto* control = dynamic_cast<const Constraint1DOF*>(this);
  m_native->constraint = std::make_unique<JointConstraint>(engineBody(m_body1.get()), engineBody(m_body2.get()),
                                                           m_native->layout, control);
  m_native->feedback = btJointFeedback{};
  updateFrames();
}

void Constraint::updateFrames() {
  if (!m_native->constraint) {
    return;
  }
  const auto engineFrame = [](const RigidBody* body, const Frame& frame) {
    const btTransform local = vyrPhysics::toBullet(frame.getLocalTransform());
    const bool moved = body != nullptr && body->getNative()->hasOffset;
    return moved ? body->getNative()->offset.inverse() * local : local;
  };
  btTransform frame2 = engineFrame(m_body2.get(), *m_frame2);
  if (m_native->layout.steering != 0.0) {
    frame2 = frame2 * btTransform(btQuaternion(btVector3(1.0, 0.0, 0.0), m_native->layout.steering));
  }
  m_native->constraint->setFrames(engineFrame(m_body1.get(), *m_frame1), frame2);
}

void Constraint::setSolveType(SolveType type) {
  m_solveType = type;
  applySettings();
}

void Constraint::setEnable(bool enable) {
  m_enable = enable;
  applySettings();
}

void Constraint::setBreakForce(double force) {
  if (force > 0.0) {
    m_breakForce = force;
  } else {
    VYR_NOTIFY(NOTIFY_ERROR) << "break force of the constraint '" << m_name << "' must be above 0, not " << force;
  }
}

void Constraint::applySettings() {
  if (!m_native->constraint || m_simulation == nullptr) {
    return;
  }
  JointConstraint& native = *m_native->constraint;
  native.setEnabled(m_enable);
  native.setJointFeedback(&m_native->feedback);
  if (!m_enable) {
    m_native->feedback = btJointFeedback{};
  }
  const int factor = m_solveType == DIRECT ? 10 : m_solveType == ITERATIVE ? 1 : 2;
  native.setOverrideNumSolverIterations(factor * m_simulation->getNumIterations());
}

void Constraint::checkBreak() {
  if (m_enable && getForce().length() > m_breakForce) {
    setEnable(false);
  }
}

Vec3 Constraint::getForce() const {
  return vyrPhysics::fromBullet(m_native->feedback.m_appliedForceBodyA);
}

Vec3 Constraint::getTorque() const {
  return vyrPhysics::fromBullet(m_native->feedback.m_appliedTorqueBodyA);
}

} // namespace vyr
