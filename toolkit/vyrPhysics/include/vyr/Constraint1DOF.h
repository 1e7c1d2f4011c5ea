/// Base of constraints that leave one degree of freedom, which may be driven, limited, locked and measured.
#pragma once

#include <vyr/Constraint.h>
#include <vyr/Range.h>

namespace vyr {

/// A constraint with one coordinate: an angle in rad (hinge) or a distance in m (prismatic, distance). Position, speed
/// and force are those of the first frame relative to the second: a positive motor speed lets the position grow.
///
/// Forces are in N for distances and N m for angles.
class VYRPHYSICS_EXPORT Constraint1DOF : public Constraint {
public:
  /// True when the coordinate is an angle.
  bool isRotational() const;

  /// Position in rad or m. Angles count whole turns while the constraint is in a simulation.
  double getPosition() const;

  /// Rate of the position in rad/s or m/s.
  double getSpeed() const;

  /// Drives the coordinate towards the motor speed. Default: false.
  void setEnableMotor(bool enable) { m_motor = enable; }
  bool getEnableMotor() const { return m_motor; }

  /// Speed that the motor works towards, in rad/s or m/s. Default: 0.
  bool setMotorSpeed(double speed);
  double getMotorSpeed() const { return m_motorSpeed; }

  /// The most that the motor pushes, at least 0, infinity allowed. Default: infinity.
  bool setMotorForce(double force);
  double getMotorForce() const { return m_motorForce; }

  /// Holds the coordinate at the lock position; a lock goes before the motor. Default: false.
  void setEnableLock(bool enable) { m_lock = enable; }
  bool getEnableLock() const { return m_lock; }

  /// Where the lock holds, in rad or m. Default: 0.
  bool setLockPosition(double position);
  double getLockPosition() const { return m_lockPosition; }

  /// The most that the lock holds with, at least 0, infinity allowed. Default: infinity.
  bool setLockForce(double force);
  double getLockForce() const { return m_lockForce; }

  /// Keeps the coordinate within a range. Default: false.
  void setEnableRange(bool enable) { m_limited = enable; }
  bool getEnableRange() const { return m_limited; }

  /// The range in rad or m, lower end first, infinities allowed. Refused with one error message when the ends are the
  /// wrong way round or not numbers.
  bool setRange(const RangeReal& range);
  const RangeReal& getRange() const { return m_range; }

  /// What motor, lock and range together pushed along the coordinate in the last step, on the first body.
  double getCurrentForce() const;

protected:
  using Constraint::Constraint;
  ~Constraint1DOF() override;

private:
  bool m_motor = false;
  bool m_lock = false;
  bool m_limited = false;
  double m_motorSpeed = 0.0;
  double m_motorForce = kUnlimited;
  double m_lockPosition = 0.0;
  double m_lockForce = kUnlimited;
  RangeReal m_range{-kUnlimited, kUnlimited};
};

} // namespace vyr
