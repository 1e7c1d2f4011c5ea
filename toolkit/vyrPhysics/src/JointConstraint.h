/// One joint for the engine's solver from which all constraints of the toolkit are made.
#pragma once

#include <BulletDynamics/ConstraintSolver/btTypedConstraint.h>
#include <BulletDynamics/Dynamics/btRigidBody.h>

namespace vyr {

class Constraint1DOF;

/// What a joint holds, and which coordinate it leaves to be controlled.
struct JointLayout {
  enum Turning { FREE, ABOUT_Z, FIXED };
  enum Coordinate { NONE, ANGLE, SLIDE, DISTANCE };

  bool held[3] = {false, false, false}; ///< along x, y, z of the second frame
  Turning turning = FREE;
  Coordinate coordinate = NONE;
  bool sprung = false; ///< along x of the second frame, where nothing is held then
  double stiffness = 0.0;
  double damping = 0.0;
  double steering = 0.0; ///< turns the second frame about its x axis, rad
  bool elastic = false;  ///< a FIXED turning gives way like a spring
  double turningStiffness = 0.0;
  double turningDamping = 0.0;
  btVector3 preload{0.0, 0.0, 0.0}; ///< torque on the first body at rest, along the axes of the second frame
};

/// The joint. Rows of the engine's system are J v = c with limits on the impulse; body A is the first body.
class JointConstraint : public btTypedConstraint {
public:
  /// `control`: *borrows*. Nullable: what drives the coordinate. Frames are in the engine's frames of the bodies.
  JointConstraint(btRigidBody& bodyA, btRigidBody& bodyB, const JointLayout& layout, const Constraint1DOF* control);

  void setFrames(const btTransform& frameA, const btTransform& frameB);

  /// What the spring's next step needs to know of the last one.
  struct SpringMemory {
    bool known = false;
    double speed = 0.0; ///< m/s
    double force = 0.0; ///< N
  };
  const SpringMemory& getSpringMemory() const { return m_spring; }
  void setSpringMemory(const SpringMemory& memory) { m_spring = memory; }

  /// Position of the coordinate in rad or m; angles go on counting over turns.
  double getPosition() const;
  /// Sets the turns to those of an angle that was read before.
  void setTurns(double angle) { m_angle = angle; }
  double getSpeed() const;

  /// Part of a force and torque on body A, world, that acts along the coordinate.
  double getShare(const btVector3& force, const btVector3& torque) const;

  /// Distance along x of the second frame, m.
  double getDisplacement() const;

  void getInfo1(btConstraintInfo1* info) override;
  void getInfo2(btConstraintInfo2* info) override;
  void setParam(int, btScalar, int) override {}
  btScalar getParam(int, int) const override { return 0.0; }

private:
  struct State;
  class Rows;

  State getState() const;
  bool hasDrive() const;
  bool hasLimit() const;
  void addHeld(const State& state, Rows& rows) const;
  void addTurning(const State& state, Rows& rows) const;
  void addElasticTurning(const btVector3& axis, double angle, double preload, Rows& rows) const;
  void addSpring(const State& state, Rows& rows);
  void addControl(const State& state, Rows& rows) const;

  const JointLayout& m_layout;
  const Constraint1DOF* m_control;
  btTransform m_frameA = btTransform::getIdentity();
  btTransform m_frameB = btTransform::getIdentity();
  double m_angle = 0.0; ///< last angle with its turns
  SpringMemory m_spring;
};

/// Angle about z from the second frame to the first, -pi to pi.
double angleBetween(const btTransform& first, const btTransform& second);

} // namespace vyr
