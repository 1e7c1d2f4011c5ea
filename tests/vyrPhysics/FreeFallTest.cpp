/// Motion without contacts, against closed forms.
#include "Scene.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(FreeFall, FollowsTheSemiImplicitEulerScheme) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> ball = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(0.0, 0.0, 100.0));
  ASSERT_TRUE(simulation->add(ball.get()));
  const int steps = 120;
  const double dt = simulation->getTimeStep();
  for (int i = 0; i < steps; ++i) {
    ASSERT_TRUE(simulation->step());
  }
  // v_n = -g n dt, z_n = z_0 - g dt^2 n (n + 1) / 2: velocity first, then position with the new velocity.
  EXPECT_NEAR(ball->getVelocity().z(), -scene::kGravity * steps * dt, 1e-11);
  EXPECT_NEAR(ball->getPosition().z(), 100.0 - scene::kGravity * dt * dt * steps * (steps + 1) / 2.0, 1e-10);
  // The scheme is off the parabola by g t dt / 2.
  const double t = simulation->getTime();
  EXPECT_DOUBLE_EQ(t, steps * dt);
  EXPECT_NEAR(ball->getPosition().z(), 100.0 - 0.5 * scene::kGravity * t * t, 0.5 * scene::kGravity * t * dt + 1e-9);
}

TEST(FreeFall, BodyWithoutGravityFliesStraight) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> ball = scene::body(new vyrCollide::Sphere(0.1));
  ball->setEnableGravity(false);
  ball->setVelocity(vyr::Vec3(1.0, 2.0, 3.0));
  simulation->add(ball.get());
  simulation->stepTo(1.0);
  EXPECT_NEAR((ball->getPosition() - vyr::Vec3(1.0, 2.0, 3.0)).length(), 0.0, 1e-12);
}

TEST(FreeFall, ForcesActForOneStep) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  vyr::ref_ptr<vyr::RigidBody> box = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  ASSERT_DOUBLE_EQ(box->getMass(), 1000.0);
  simulation->add(box.get());
  box->addForce(vyr::Vec3(6000.0, 0.0, 0.0));
  EXPECT_DOUBLE_EQ(box->getForce().x(), 6000.0);
  simulation->step();
  simulation->step();
  // F dt / m = 6000 / 60 / 1000
  EXPECT_NEAR(box->getVelocity().x(), 0.1, 1e-12);
  EXPECT_DOUBLE_EQ(box->getForce().x(), 0.0);
}

TEST(FreeFall, OffCentreForceTurnsTheBody) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  vyr::ref_ptr<vyr::RigidBody> box = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  simulation->add(box.get());
  box->addForceAtPosition(vyr::Vec3(0.0, 100.0, 0.0), vyr::Vec3(0.5, 0.0, 0.0));
  simulation->step();
  // Torque 50 N m about z, I = m a^2 / 6 = 1000 / 6.
  EXPECT_NEAR(box->getAngularVelocity().z(), 50.0 / (1000.0 / 6.0) / 60.0, 1e-12);
}

TEST(FreeFall, KinematicBodyMovesAsTold) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> belt = scene::body(new vyrCollide::Box(1.0, 1.0, 0.1));
  belt->setMotionControl(vyr::RigidBody::KINEMATICS);
  belt->setVelocity(vyr::Vec3(0.5, 0.0, 0.0));
  belt->setAngularVelocity(vyr::Vec3(0.0, 0.0, 0.3));
  simulation->add(belt.get());
  simulation->stepTo(2.0);
  EXPECT_NEAR((belt->getPosition() - vyr::Vec3(1.0, 0.0, 0.0)).length(), 0.0, 1e-12);
  double angle = 0.0;
  vyr::Vec3 axis;
  belt->getRotation().getRotate(angle, axis);
  EXPECT_NEAR(angle, 0.6, 1e-9);
  EXPECT_DOUBLE_EQ(belt->getVelocity().x(), 0.5);
}

TEST(FreeFall, SpinningTopKeepsItsAngularMomentum) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  simulation->setTimeStep(1.0 / 1000.0);
  vyr::ref_ptr<vyr::RigidBody> box = scene::body(new vyrCollide::Box(0.1, 0.2, 0.3));
  box->setAngularVelocity(vyr::Vec3(1.0, 0.5, 2.0));
  simulation->add(box.get());
  const auto momentum = [&box] {
    const vyr::Quat turn = box->getRotation();
    return (box->getInertia() * (box->getAngularVelocity() * turn.inverse())) * turn;
  };
  const vyr::Vec3 before = momentum();
  simulation->stepTo(1.0);
  EXPECT_LT((momentum() - before).length(), 0.01 * before.length());
}
