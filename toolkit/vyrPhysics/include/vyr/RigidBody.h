/// A rigid body: geometries that move together.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Quat.h>
#include <vyr/Referenced.h>
#include <vyr/SPDMatrix3x3.h>
#include <vyr/Vec3.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrPhysics/export.h>

#include <memory>
#include <vector>

namespace vyrSDK {
class SceneReader;
}

namespace vyr {

struct RigidBodyNative;

/// A rigid body. Its frame is free: the centre of mass follows from the geometries and need not be its origin.
///
/// Mass, centre of mass and inertia come from the volumes and densities of the geometries (sensors left out) until
/// setMass or setInertia says otherwise; a body without volume has 1 kg and the inertia of its bounding box (without
/// any extent, of a cube of 1 m).
class VYRPHYSICS_EXPORT RigidBody : public Referenced {
public:
  enum MotionControl {
    STATIC = 1,     ///< never moves
    KINEMATICS = 2, ///< moves with the velocity that it was given, whatever it meets
    DYNAMICS = 3    ///< is moved by forces
  };

  explicit RigidBody(const String& name = String());

  void setName(const String& name) { m_name = name; }
  const String& getName() const { return m_name; }

  /// Adds a geometry (*retains*) at `local` (geometry to body, rotation and translation). False, with one error
  /// message, for null, an invalid geometry, one that has a body, or a plane in a body moved by forces.
  bool add(vyrCollide::Geometry* geometry, const AffineMatrix4x4& local = AffineMatrix4x4());

  /// Takes a geometry off. False when the body does not have it.
  bool remove(vyrCollide::Geometry* geometry);

  const std::vector<ref_ptr<vyrCollide::Geometry>>& getGeometries() const { return m_geometries; }

  /// *returns inner*. Nullable: the simulation that the body is in.
  vyrSDK::Simulation* getSimulation() const { return m_simulation; }

  /// Origin of the body's frame in the world, in m.
  Vec3 getPosition() const;
  void setPosition(const Vec3& position);

  /// Orientation, body to world.
  Quat getRotation() const;
  void setRotation(const Quat& rotation);

  /// Body to world, row vectors. Setting moves the body at once, without velocity; scale and shear are left out.
  AffineMatrix4x4 getTransform() const;
  void setTransform(const AffineMatrix4x4& transform);

  /// Centre of mass in the world, in m.
  Vec3 getCenterOfMass() const;

  /// Velocity of the centre of mass in the world, in m/s.
  Vec3 getVelocity() const;
  void setVelocity(const Vec3& velocity);

  /// Angular velocity in the world, in rad/s.
  Vec3 getAngularVelocity() const;
  void setAngularVelocity(const Vec3& velocity);

  /// Velocity in m/s of the point of the body that is at `point` (m), both in the world.
  Vec3 getVelocityAtPoint(const Vec3& point) const;

  /// Default: DYNAMICS. A body with a plane refuses DYNAMICS with one error message.
  bool setMotionControl(MotionControl control);
  MotionControl getMotionControl() const { return m_motionControl; }

  /// Mass in kg, whatever the motion control.
  double getMass() const;

  /// Gives the body a mass in kg, above 0; its inertia scales with it. Refused with one error message otherwise.
  bool setMass(double mass);

  /// Inertia about the centre of mass along the axes of the body's frame, in kg m^2.
  SPDMatrix3x3 getInertia() const;

  /// Gives the body an inertia (kg m^2, positive definite). Refused with one error message otherwise.
  bool setInertia(const SPDMatrix3x3& inertia);

  /// Computes mass, centre of mass and inertia anew from the geometries and forgets what was set.
  void updateMassProperties();

  /// Adds a force (N, world) at the centre of mass, for the next step. Nothing happens unless the body is DYNAMICS.
  void addForce(const Vec3& force);

  /// Adds a force (N, world) at a point (m, world), for the next step.
  void addForceAtPosition(const Vec3& force, const Vec3& point);

  /// Adds a torque (N m, world) for the next step.
  void addTorque(const Vec3& torque);

  /// Sum of the forces (N, world) added since the last step, gravity left out.
  Vec3 getForce() const;

  /// Sum of the torques (N m, world) added since the last step.
  Vec3 getTorque() const;

  /// Share of the velocity that is lost in a second, 0 to 1. Default: 0 for both. False outside the range.
  bool setLinearDamping(double damping);
  double getLinearDamping() const;
  bool setAngularDamping(double damping);
  double getAngularDamping() const;

  /// A body with gravity off floats. Default: true.
  void setEnableGravity(bool enable);
  bool getEnableGravity() const { return m_gravity; }

  /// Kinetic energy, translation and rotation, in J.
  double getKineticEnergy() const;

  /// The collision engine's side of the body. For the library itself.
  RigidBodyNative* getNative() const { return m_native.get(); }

protected:
  ~RigidBody() override;

private:
  friend class vyrSDK::SceneReader;
  friend class vyrSDK::Simulation;
  friend class vyrCollide::Geometry;

  /// Makes the engine's shape and mass again after a change of the geometries or of the motion control.
  void rebuild();
  void collectMassProperties();
  void applyMassProperties();
  void placeShapes();

  String m_name;
  std::vector<ref_ptr<vyrCollide::Geometry>> m_geometries;
  vyrSDK::Simulation* m_simulation = nullptr;
  MotionControl m_motionControl = DYNAMICS;
  bool m_gravity = true;
  std::unique_ptr<RigidBodyNative> m_native;
};

} // namespace vyr
