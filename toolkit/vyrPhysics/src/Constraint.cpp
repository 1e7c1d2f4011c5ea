/// Base of everything that ties two bodies together.
#include <vyr/Constraint.h>

#include <vyr/Notify.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "ConstraintNative.h"
#include "Validate.h"

#include <limits>

namespace vyr {

Constraint::Constraint(Frame* frame1, Frame* frame2)
    : m_native(std::make_unique<ConstraintNative>())
    , m_frame1(frame1 != nullptr ? frame1 : new Frame)
    , m_frame2(frame2 != nullptr ? frame2 : new Frame)
    , m_body1(m_frame1->getRigidBody())
    , m_body2(m_frame2->getRigidBody())
    , m_breakForce(std::numeric_limits<double>::infinity()) {
  const bool finite = m_frame1->getLocalTransform().isFinite() && m_frame2->getLocalTransform().isFinite();
  m_valid = finite && m_body1.get() != m_body2.get();
  if (!m_valid) {
    VYR_NOTIFY(NOTIFY_ERROR)
        << "a constraint needs two finite frames, of two different bodies or of a body and the world";
  }
}

Constraint::~Constraint() = default;

void Constraint::setSolveType(SolveType type) {
  m_solveType = type;
  applySettings();
}

void Constraint::setEnable(bool enable) {
  m_enable = enable;
  applySettings();
}

bool Constraint::getEnable() const {
  return m_enable && (!m_native->constraint || m_native->constraint->isEnabled());
}

void Constraint::setBreakForce(double force) {
  if (force > 0.0) {
    m_breakForce = force;
    applySettings();
  } else {
    VYR_NOTIFY(NOTIFY_ERROR) << "break force of the constraint '" << m_name << "' must be above 0, not " << force;
  }
}

void Constraint::applySettings() {
  if (!m_native->constraint || m_simulation == nullptr) {
    return;
  }
  btTypedConstraint& native = *m_native->constraint;
  native.setEnabled(m_enable);
  native.setJointFeedback(&m_native->feedback);
  const int iterations = m_simulation->getNumIterations();
  const int factor = m_solveType == DIRECT ? 10 : m_solveType == ITERATIVE ? 1 : 2;
  native.setOverrideNumSolverIterations(factor * iterations);
  const bool unlimited = !(m_breakForce < SIMD_INFINITY);
  native.setBreakingImpulseThreshold(unlimited ? SIMD_INFINITY : m_breakForce * m_simulation->getTimeStep());
}

Vec3 Constraint::getForce() const {
  return vyrPhysics::fromBullet(m_body1 ? m_native->feedback.m_appliedForceBodyA
                                        : -m_native->feedback.m_appliedForceBodyB);
}

Vec3 Constraint::getTorque() const {
  return vyrPhysics::fromBullet(m_body1 ? m_native->feedback.m_appliedTorqueBodyA
                                        : -m_native->feedback.m_appliedTorqueBodyB);
}

} // namespace vyr
