/// The simulation: clock, step, settings.
#include <vyrSDK/Simulation.h>

#include <vyr/Constraint1DOF.h>
#include <vyr/Notify.h>

#include "BulletConvert.h"
#include "Find.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"
#include "Validate.h"

#include <LinearMath/btTransformUtil.h>

namespace vyrSDK {

using vyrPhysics::toBullet;

namespace {

// No scene needs more; a step would not end in anybody's patience.
constexpr int kMostIterations = 100000;

} // namespace

Simulation::Simulation()
    : m_native(std::make_unique<SimulationNative>())
    , m_space(new vyrCollide::Space)
    , m_gravity(0.0, 0.0, -9.80665) {
  m_space->m_simulation = this;
  m_native->world.setGravity(toBullet(m_gravity));
  updateSolver();
}

Simulation::~Simulation() {
  clear();
  m_space->m_simulation = nullptr;
}

void Simulation::updateSolver() {
  using Model = vyr::FrictionModel;
  SimulationNative& native = *m_native;
  const bool direct = m_solver == MULTI || m_frictionModel == Model::DIRECT;
  native.world.setConstraintSolver(direct ? static_cast<btConstraintSolver*>(&native.multi) : &native.iterative);
  btContactSolverInfo& info = native.world.getSolverInfo();
  // The direct solver takes all of the scene at once; it has no use for batches of islands.
  info.m_minimumSolverBatchSize = direct ? 1 : 128;
  info.m_numIterations = m_frictionModel == Model::DIRECT_AND_ITERATIVE ? 2 * m_iterations : m_iterations;
  const bool inTurn = m_frictionModel == Model::ITERATIVE || m_frictionModel == Model::DIRECT_AND_ITERATIVE;
  if (inTurn) {
    info.m_solverMode |= SOLVER_INTERLEAVE_CONTACT_AND_FRICTION_CONSTRAINTS;
  } else {
    info.m_solverMode &= ~SOLVER_INTERLEAVE_CONTACT_AND_FRICTION_CONSTRAINTS;
  }
  for (const auto& constraint : m_constraints) {
    constraint->applySettings();
  }
}

bool Simulation::setTimeStep(double dt) {
  if (!vyrPhysics::isPositive(dt, "time step")) {
    return false;
  }
  m_clock.setTimeStep(dt);
  return true;
}

void Simulation::setGravity(const vyr::Vec3& gravity) {
  if (!vyrPhysics::isFinite(gravity, "gravity")) {
    return;
  }
  m_gravity = gravity;
  m_native->world.setGravity(toBullet(gravity));
  for (const auto& body : m_bodies) {
    body->setEnableGravity(body->getEnableGravity());
    body->getNative()->body->activate();
  }
}

void Simulation::setTime(double time, uint64_t steps) {
  if (std::isfinite(time)) {
    m_clock.reset(time, steps);
  }
}

void Simulation::setSolver(SolverType type) {
  m_solver = type == MULTI ? MULTI : ITERATIVE;
  updateSolver();
}

bool Simulation::setNumIterations(int iterations) {
  if (iterations < 1 || iterations > kMostIterations) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the solver needs 1 to " << kMostIterations << " iterations, not " << iterations;
    return false;
  }
  m_iterations = iterations;
  updateSolver();
  return true;
}

void Simulation::setFrictionModel(vyr::FrictionModel::SolveType model) {
  m_frictionModel = model;
  updateSolver();
}

void Simulation::setEnableSleeping(bool enable) {
  m_sleeping = enable;
  for (const auto& body : m_bodies) {
    if (body->getMotionControl() != vyr::RigidBody::STATIC) {
      body->getNative()->body->forceActivationState(enable ? ACTIVE_TAG : DISABLE_DEACTIVATION);
    }
  }
}

void Simulation::moveKinematicBodies() {
  for (const auto& body : m_bodies) {
    vyr::RigidBodyNative& native = *body->getNative();
    if (body->getMotionControl() == vyr::RigidBody::KINEMATICS) {
      btTransform moved;
      btTransformUtil::integrateTransform(native.body->getWorldTransform(), toBullet(native.velocity),
                                          toBullet(native.angularVelocity), getTimeStep(), moved);
      // The engine derives the velocity from the difference to the place it remembers.
      native.body->setWorldTransform(moved);
    }
  }
}

void Simulation::wakeDrivenBodies() {
  for (const auto& constraint : m_constraints) {
    const auto* driven = dynamic_cast<const vyr::Constraint1DOF*>(constraint.get());
    if (driven != nullptr && driven->getEnableMotor() && driven->getMotorSpeed() != 0.0) {
      for (const vyr::RigidBody* body : {constraint->getRigidBody1(), constraint->getRigidBody2()}) {
        if (body != nullptr) {
          body->getNative()->body->activate();
        }
      }
    }
  }
}

void Simulation::advance() {
  moveKinematicBodies();
  if (m_sleeping) {
    wakeDrivenBodies();
  }
  m_native->contactsValid = false;
  const double dt = getTimeStep();
  m_native->world.stepSimulation(dt, 0, dt);
  m_clock.advance();
  for (const auto& constraint : m_constraints) {
    constraint->checkBreak();
  }
  for (const auto& particles : m_particleSystems) {
    particles->age(dt);
  }
}

namespace {

/// Says that a step is under way, and stops saying so however the step ends.
class StepMark {
public:
  explicit StepMark(bool& flag)
      : m_flag(flag) {
    m_flag = true;
  }
  ~StepMark() { m_flag = false; }
  StepMark(const StepMark&) = delete;
  StepMark& operator=(const StepMark&) = delete;

private:
  bool& m_flag;
};

} // namespace

bool Simulation::step() {
  if (m_stepping) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a step cannot be made within a step";
    return false;
  }
  const StepMark mark(m_stepping);
  // Listeners may add and remove listeners: each round runs over a copy and leaves out those that have gone.
  const auto call = [this](void (StepEventListener::*event)(const vyr::TimeStamp&)) {
    const auto listeners = m_stepListeners;
    for (const auto& listener : listeners) {
      if (vyrPhysics::contains(m_stepListeners, listener.get())) {
        (listener.get()->*event)(m_clock);
      }
    }
  };
  call(&StepEventListener::pre);
  advance();
  call(&StepEventListener::post);
  call(&StepEventListener::last);
  return true;
}

void Simulation::stepTo(double time) {
  if (!std::isfinite(time)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a simulation cannot step to the time " << time << " s";
    return;
  }
  // Half a step of slack: the clock's rounding must not cost or add a step.
  while (getTime() < time - 0.5 * getTimeStep() && step()) {
  }
}

const std::vector<Contact>& Simulation::getContacts() const {
  if (!m_native->contactsValid) {
    gatherContacts(*m_native, getTimeStep());
  }
  return m_native->contacts;
}

bool Simulation::keyboard(int key, unsigned int modifiers, float x, float y, bool down) {
  const auto listeners = m_guiListeners;
  for (const auto& listener : listeners) {
    if (listener->keyboard(key, modifiers, x, y, down)) {
      return true;
    }
  }
  return false;
}

bool Simulation::mouse(int button, float x, float y, bool down) {
  const auto listeners = m_guiListeners;
  for (const auto& listener : listeners) {
    if (listener->mouse(button, x, y, down)) {
      return true;
    }
  }
  return false;
}

bool Simulation::mouseMotion(int buttons, float x, float y) {
  const auto listeners = m_guiListeners;
  for (const auto& listener : listeners) {
    if (listener->mouseMotion(buttons, x, y)) {
      return true;
    }
  }
  return false;
}

void Simulation::updateGui(float x, float y) {
  const auto listeners = m_guiListeners;
  for (const auto& listener : listeners) {
    listener->update(x, y);
  }
}

} // namespace vyrSDK
