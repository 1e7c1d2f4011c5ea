/// A car with a chassis and four sprung wheels that can be driven.
#pragma once

#include <vyr/Material.h>
#include <vyr/RigidBody.h>
#include <vyr/Suspension.h>
#include <vyr/Vec3.h>
#include <vyr/ref_ptr.h>
#include <vyrPhysics/export.h>
#include <vyrSDK/Assembly.h>

#include <array>
#include <cstddef>

namespace vyrSDK {
class CarType;
}

namespace vyrUtil {

/// A car that looks along x, with y to its left and z up. The rear wheels drive, the front wheels steer, all four
/// brake. It is an assembly: add it to a simulation as such.
class VYRPHYSICS_EXPORT SimpleCar : public vyrSDK::Assembly {
public:
  enum Wheel { FRONT_LEFT = 0, FRONT_RIGHT = 1, REAR_LEFT = 2, REAR_RIGHT = 3, NUM_WHEELS = 4 };

  /// `size`: edge lengths of the chassis in m, along x, y, z, each above 0. `mass`: of the chassis in kg, above 0; each
  /// wheel weighs 1/40 of it. `wheelRadius` in m, above 0. Otherwise one error message and an empty assembly.
  SimpleCar(const vyr::Vec3& size, double mass, double wheelRadius);

  /// The same with wheels of a third of the chassis's longest cross edge.
  SimpleCar(const vyr::Vec3& size, double mass);

  /// False when the constructor refused its arguments.
  bool isValid() const { return m_chassis.valid(); }

  /// *returns inner*. Nullable: null for an invalid car.
  vyr::RigidBody* getChassis() const { return m_chassis.get(); }
  vyr::RigidBody* getWheel(size_t wheel) const;
  vyr::Suspension* getSuspension(size_t wheel) const;

  double getWheelRadius() const { return m_wheelRadius; }

  /// -1 (full power backwards) to 1 (forwards); values outside are clamped. Default: 0: the car rolls freely.
  void setThrottle(double throttle);
  double getThrottle() const { return m_throttle; }

  /// -1 (full lock to the right) to 1 (to the left); values outside are clamped. Default: 0.
  void setSteering(double steering);
  double getSteering() const { return m_steering; }

  /// 0 to 1; values outside are clamped. The brake goes before the throttle. Default: 0.
  void setBrake(double brake);
  double getBrake() const { return m_brake; }

  /// Largest steering angle in rad, above 0 and below pi/2. Default: 0.6.
  bool setMaxSteeringAngle(double angle);
  double getMaxSteeringAngle() const { return m_maxSteeringAngle; }

  /// Torque of the engine at full throttle, both wheels together, in N m. Default: what speeds the car up with 3 m/s^2.
  bool setMaxTorque(double torque);
  double getMaxTorque() const { return m_maxTorque; }

  /// Torque of the brakes, all wheels together, in N m. Default: what slows the car down with 6 m/s^2.
  bool setMaxBrakeTorque(double torque);
  double getMaxBrakeTorque() const { return m_maxBrakeTorque; }

  /// Speed at which the engine stops pushing, in m/s, above 0. Default: 30.
  bool setMaxSpeed(double speed);
  double getMaxSpeed() const { return m_maxSpeed; }

  /// Speed along the chassis's x axis, in m/s.
  double getSpeed() const;

protected:
  ~SimpleCar() override;

private:
  friend class vyrSDK::CarType;

  /// Without parts, for a scene file to give.
  SimpleCar();
  void build(const vyr::Vec3& size, double mass);
  void applyControls();

  vyr::ref_ptr<vyr::RigidBody> m_chassis;
  std::array<vyr::ref_ptr<vyr::RigidBody>, NUM_WHEELS> m_wheels;
  std::array<vyr::ref_ptr<vyr::Suspension>, NUM_WHEELS> m_suspensions;
  double m_wheelRadius = 0.0;
  double m_throttle = 0.0;
  double m_steering = 0.0;
  double m_brake = 0.0;
  double m_maxSteeringAngle = 0.6;
  double m_maxTorque = 0.0;
  double m_maxBrakeTorque = 0.0;
  double m_maxSpeed = 30.0;
};

} // namespace vyrUtil
