/// The car drives, steers and brakes.
#include "Scene.h"

#include <vyrUtil/SimpleCar.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct Drive {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyrUtil::SimpleCar> car = new vyrUtil::SimpleCar(vyr::Vec3(4.0, 1.6, 0.6), 1200.0, 0.35);

  Drive() {
    simulation->setTimeStep(1.0 / 120.0);
    vyr::ref_ptr<vyr::Material> road = new vyr::Material("road", 2400.0, 1.0, 0.0);
    simulation->add(scene::ground(road.get()));
    car->transform(vyr::AffineMatrix4x4::translate(0.0, 0.0, 0.66));
    simulation->add(car.get());
    simulation->stepTo(2.0);
  }
};

} // namespace

TEST(SimpleCar, StandsOnItsWheels) {
  Drive drive;
  EXPECT_EQ(drive.simulation->getRigidBodies().size(), 5u);
  EXPECT_EQ(drive.simulation->getConstraints().size(), 4u);
  EXPECT_LT(drive.car->getChassis()->getVelocity().length(), 0.01);
  for (size_t wheel = 0; wheel < vyrUtil::SimpleCar::NUM_WHEELS; ++wheel) {
    EXPECT_NEAR(drive.car->getWheel(wheel)->getPosition().z(), 0.35, 5e-3);
    // The springs sag by a tenth of the radius under the chassis.
    EXPECT_NEAR(drive.car->getSuspension(wheel)->getDisplacement(), 0.035, 3e-3);
  }
}

TEST(SimpleCar, ThrottleSpeedsItUpAndBrakeStopsIt) {
  Drive drive;
  drive.car->setThrottle(0.5);
  drive.simulation->stepTo(5.0);
  // Half of 3 m/s^2 for 3 s, less what turns the wheels.
  EXPECT_NEAR(drive.car->getSpeed(), 4.5, 0.5);
  EXPECT_NEAR(drive.car->getChassis()->getPosition().y(), 0.0, 0.05);
  drive.car->setThrottle(0.0);
  drive.car->setBrake(1.0);
  drive.simulation->stepTo(7.0);
  EXPECT_NEAR(drive.car->getSpeed(), 0.0, 0.05);
  drive.car->setBrake(0.0);
  drive.car->setThrottle(-0.5);
  drive.simulation->stepTo(9.0);
  EXPECT_LT(drive.car->getSpeed(), -2.0);
}

TEST(SimpleCar, SteeringTurnsItOnACircle) {
  Drive drive;
  drive.car->setMaxSpeed(4.0);
  drive.car->setSteering(0.3);
  drive.car->setThrottle(0.5);
  drive.simulation->stepTo(8.0);
  const vyr::RigidBody* chassis = drive.car->getChassis();
  const double rate = chassis->getAngularVelocity().z();
  EXPECT_GT(rate, 0.05); // to the left
  // Wheel base 4 - 2 * 0.35 m; single-track model R = L / tan(angle), slip widens it.
  const double radius = drive.car->getSpeed() / rate;
  EXPECT_NEAR(radius, 3.3 / std::tan(0.3 * 0.6), 0.25 * 3.3 / std::tan(0.3 * 0.6));
  const vyr::Vec3 up = vyr::Vec3(0.0, 0.0, 1.0) * chassis->getRotation();
  EXPECT_GT(up.z(), 0.98);
}

TEST(SimpleCar, RefusesSizesThatAreNone) {
  scene::Messages messages;
  vyr::ref_ptr<vyrUtil::SimpleCar> car = new vyrUtil::SimpleCar(vyr::Vec3(-1.0, 1.0, 1.0), 1000.0);
  EXPECT_FALSE(car->isValid());
  EXPECT_EQ(car->getChassis(), nullptr);
  EXPECT_EQ(car->getWheel(0), nullptr);
  EXPECT_EQ(car->getWheel(9), nullptr);
  car = new vyrUtil::SimpleCar(vyr::Vec3(1.0, 1.0, 1.0), std::nan(""));
  EXPECT_FALSE(car->isValid());
  car->setThrottle(1.0);
  EXPECT_EQ(messages.get().size(), 2u);
}
