/// Base of everything that ties two bodies together.
#pragma once

#include <vyr/Frame.h>
#include <vyr/Referenced.h>
#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrPhysics/export.h>

#include <limits>
#include <memory>

namespace vyr {

struct ConstraintNative;

/// A constraint between two frames, each fixed to a body or to the world.
///
/// A frame without body stands for the world. The frames are read when the constraint enters a simulation
/// and by updateFrames.
class VYRPHYSICS_EXPORT Constraint : public Referenced {
public:
  /// A force without limit.
  static constexpr double kUnlimited = std::numeric_limits<double>::infinity();

  /// How thoroughly the constraint is solved when the simulation's solver iterates (ITERATIVE): with the iterations of
  /// the simulation (ITERATIVE), twice as many (DIRECT_AND_ITERATIVE, default) or ten times as many (DIRECT). The
  /// simulation's MULTI solver solves all constraints directly. The values are flags.
  enum SolveType { DIRECT = 1, ITERATIVE = 4, DIRECT_AND_ITERATIVE = 5 };

  void setName(const String& name) { m_name = name; }
  const String& getName() const { return m_name; }

  /// *returns inner*. Nullable: the bodies; null for the world.
  RigidBody* getRigidBody1() const { return m_body1.get(); }
  RigidBody* getRigidBody2() const { return m_body2.get(); }

  /// *returns inner*. Never null: the frames in which the constraint acts.
  Frame* getFrame1() const { return m_frame1.get(); }
  Frame* getFrame2() const { return m_frame2.get(); }

  /// *returns inner*. Nullable: the simulation that the constraint is in.
  vyrSDK::Simulation* getSimulation() const { return m_simulation; }

  /// False for a constraint without any body that could move, or of a body with itself: no simulation takes it.
  bool isValid() const { return m_valid; }

  void setSolveType(SolveType type);
  SolveType getSolveType() const { return m_solveType; }

  /// A constraint that is not enabled does nothing. Default: true.
  void setEnable(bool enable);
  bool getEnable() const { return m_enable; }

  /// Two bodies that are tied together touch each other only if this is set. Default: false. Takes effect when the
  /// constraint enters a simulation.
  void setEnableCollisions(bool enable) { m_collide = enable; }
  bool getEnableCollisions() const { return m_collide; }

  /// The constraint gives way for good when its force exceeds this, in N. Default: unlimited.
  void setBreakForce(double force);
  double getBreakForce() const { return m_breakForce; }

  /// Force that the constraint put on the first body (or the world in its place) in the last step, world, N; its
  /// motor's and limits' part included.
  Vec3 getForce() const;

  /// Torque that the constraint put on the first body in the last step about its centre of mass, world, N m.
  Vec3 getTorque() const;

  /// Reads the frames anew, after a change of their local transforms.
  void updateFrames();

  /// The engine's side of the constraint. For the library itself.
  ConstraintNative* getNative() const { return m_native.get(); }

protected:
  Constraint(Frame* frame1, Frame* frame2);
  ~Constraint() override;

  std::unique_ptr<ConstraintNative> m_native;

private:
  friend class vyrSDK::Simulation;
  /// Makes the engine's object anew from the frames and settings.
  void createNative();
  void applySettings();
  /// Gives way when the force of the last step was too much.
  void checkBreak();

  String m_name;
  ref_ptr<Frame> m_frame1;
  ref_ptr<Frame> m_frame2;
  ref_ptr<RigidBody> m_body1;
  ref_ptr<RigidBody> m_body2;
  vyrSDK::Simulation* m_simulation = nullptr;
  SolveType m_solveType = DIRECT_AND_ITERATIVE;
  double m_breakForce = kUnlimited;
  bool m_valid = true;
  bool m_enable = true;
  bool m_collide = false;
};

} // namespace vyr
