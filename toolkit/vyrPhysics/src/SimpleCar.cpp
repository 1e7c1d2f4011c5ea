/// A car with a chassis and four sprung wheels.
#include <vyrUtil/SimpleCar.h>

#include <vyr/Frame.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/Geometry.h>

#include "Validate.h"

#include <algorithm>
#include <cmath>

namespace vyrUtil {

SimpleCar::SimpleCar(const vyr::Vec3& size, double mass, double wheelRadius)
    : Assembly("car")
    , m_wheelRadius(wheelRadius) {
  if (vyrPhysics::isPositive(size.x(), "length of a car") && vyrPhysics::isPositive(size.y(), "width of a car") &&
      vyrPhysics::isPositive(size.z(), "height of a car") && vyrPhysics::isPositive(mass, "mass of a car") &&
      vyrPhysics::isPositive(wheelRadius, "wheel radius of a car")) {
    build(size, mass);
  }
}

SimpleCar::SimpleCar()
    : Assembly("car") {}

SimpleCar::SimpleCar(const vyr::Vec3& size, double mass)
    : SimpleCar(size, mass, std::max(size.y(), size.z()) / 3.0) {}

SimpleCar::~SimpleCar() = default;

void SimpleCar::build(const vyr::Vec3& size, double mass) {
  m_chassis = new vyr::RigidBody("chassis");
  m_chassis->add(new vyrCollide::Geometry(new vyrCollide::Box(size * 0.5), "chassis"));
  m_chassis->setMass(mass);
  add(m_chassis.get());

  vyr::ref_ptr<vyr::Material> rubber = new vyr::Material("rubber", 1100.0, 1.0, 0.0);
  const double width = 0.5 * m_wheelRadius;
  vyr::ref_ptr<vyrCollide::Cylinder> tyre = new vyrCollide::Cylinder(m_wheelRadius, width);
  const char* const names[NUM_WHEELS] = {"front left wheel", "front right wheel", "rear left wheel",
                                         "rear right wheel"};
  // The spring carries a quarter of the chassis with a sag of a tenth of the radius, and swings without overshoot.
  const double share = 0.25 * mass;
  const double stiffness = share * 9.80665 / (0.1 * m_wheelRadius);
  const double damping = 1.4 * std::sqrt(stiffness * share);
  for (int i = 0; i < NUM_WHEELS; ++i) {
    const bool front = i == FRONT_LEFT || i == FRONT_RIGHT;
    const bool left = i == FRONT_LEFT || i == REAR_LEFT;
    const vyr::Vec3 place((front ? 0.5 : -0.5) * size.x() - (front ? 1.0 : -1.0) * m_wheelRadius,
                          (left ? 1.0 : -1.0) * (0.5 * size.y() + 0.75 * width), -0.5 * size.z());
    // Turns the cylinder's axis, z, to the car's left, y: about x by -90 degrees.
    const vyr::Quat lay(-std::acos(0.0), vyr::Vec3(1.0, 0.0, 0.0));
    m_wheels[static_cast<size_t>(i)] = new vyr::RigidBody(names[i]);
    vyr::RigidBody* wheel = m_wheels[static_cast<size_t>(i)].get();
    auto* geometry = new vyrCollide::Geometry(tyre.get(), names[i]);
    geometry->setMaterial(rubber.get());
    wheel->add(geometry);
    wheel->setMass(mass / 40.0);
    wheel->setTransform(vyr::AffineMatrix4x4(lay, place));
    add(wheel);
    // Second frame: x upright, y ahead... z along the axle to the left; rows are the axes.
    const vyr::AffineMatrix4x4 upright(0.0, 0.0, 1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, place.x(), place.y(),
                                       place.z(), 1.0);
    m_suspensions[static_cast<size_t>(i)] =
        new vyr::Suspension(new vyr::Frame(wheel), new vyr::Frame(m_chassis.get(), upright));
    vyr::Suspension* suspension = m_suspensions[static_cast<size_t>(i)].get();
    suspension->setStiffness(stiffness);
    suspension->setDamping(damping);
    add(suspension);
  }
  const double total = mass * (1.0 + NUM_WHEELS / 40.0);
  m_maxTorque = 3.0 * total * m_wheelRadius;
  m_maxBrakeTorque = 6.0 * total * m_wheelRadius;
}

vyr::RigidBody* SimpleCar::getWheel(size_t wheel) const {
  return wheel < m_wheels.size() ? m_wheels[wheel].get() : nullptr;
}

vyr::Suspension* SimpleCar::getSuspension(size_t wheel) const {
  return wheel < m_suspensions.size() ? m_suspensions[wheel].get() : nullptr;
}

void SimpleCar::applyControls() {
  if (!isValid()) {
    return;
  }
  for (size_t i = 0; i < m_suspensions.size(); ++i) {
    const bool front = i == FRONT_LEFT || i == FRONT_RIGHT;
    vyr::Suspension& suspension = *m_suspensions[i];
    suspension.setSteeringAngle(front ? m_steering * m_maxSteeringAngle : 0.0);
    const bool drives = !front && m_throttle != 0.0;
    suspension.setEnableMotor(m_brake > 0.0 || drives);
    if (m_brake > 0.0) {
      suspension.setMotorSpeed(0.0);
      suspension.setMotorForce(m_brake * m_maxBrakeTorque / NUM_WHEELS);
    } else if (drives) {
      // The axle points left: a wheel that rolls ahead turns positively about it.
      suspension.setMotorSpeed((m_throttle > 0.0 ? 1.0 : -1.0) * m_maxSpeed / m_wheelRadius);
      suspension.setMotorForce(std::fabs(m_throttle) * m_maxTorque / 2.0);
    }
  }
}

namespace {

double limited(double value, double low) {
  return std::isfinite(value) ? std::clamp(value, low, 1.0) : 0.0;
}

} // namespace

void SimpleCar::setThrottle(double throttle) {
  m_throttle = limited(throttle, -1.0);
  applyControls();
}

void SimpleCar::setSteering(double steering) {
  m_steering = limited(steering, -1.0);
  applyControls();
}

void SimpleCar::setBrake(double brake) {
  m_brake = limited(brake, 0.0);
  applyControls();
}

bool SimpleCar::setMaxSteeringAngle(double angle) {
  if (!vyrPhysics::isPositive(angle, "steering angle of a car") || angle >= std::acos(0.0)) {
    return false;
  }
  m_maxSteeringAngle = angle;
  applyControls();
  return true;
}

bool SimpleCar::setMaxTorque(double torque) {
  if (!vyrPhysics::isNotNegative(torque, "torque of a car")) {
    return false;
  }
  m_maxTorque = torque;
  applyControls();
  return true;
}

bool SimpleCar::setMaxBrakeTorque(double torque) {
  if (!vyrPhysics::isNotNegative(torque, "brake torque of a car")) {
    return false;
  }
  m_maxBrakeTorque = torque;
  applyControls();
  return true;
}

bool SimpleCar::setMaxSpeed(double speed) {
  if (!vyrPhysics::isPositive(speed, "top speed of a car")) {
    return false;
  }
  m_maxSpeed = speed;
  applyControls();
  return true;
}

double SimpleCar::getSpeed() const {
  if (!isValid()) {
    return 0.0;
  }
  return m_chassis->getVelocity() * (vyr::Vec3(1.0, 0.0, 0.0) * m_chassis->getRotation());
}

} // namespace vyrUtil
