/// Rigid bodies: state, refusals, motion control.
#include "Scene.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(RigidBody, KeepsItsStateOutsideOfASimulation) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  body->setPosition(vyr::Vec3(1.0, 2.0, 3.0));
  body->setRotation(vyr::Quat(0.5, vyr::Vec3(0.0, 1.0, 0.0)));
  body->setVelocity(vyr::Vec3(4.0, 5.0, 6.0));
  body->setAngularVelocity(vyr::Vec3(7.0, 8.0, 9.0));
  EXPECT_EQ(body->getName(), "b");
  EXPECT_EQ(body->getPosition(), vyr::Vec3(1.0, 2.0, 3.0));
  EXPECT_EQ(body->getVelocity(), vyr::Vec3(4.0, 5.0, 6.0));
  EXPECT_EQ(body->getAngularVelocity(), vyr::Vec3(7.0, 8.0, 9.0));
  double angle = 0.0;
  vyr::Vec3 axis;
  body->getRotation().getRotate(angle, axis);
  EXPECT_NEAR(angle, 0.5, 1e-12);
  EXPECT_NEAR(axis.y(), 1.0, 1e-12);
  EXPECT_EQ(body->getSimulation(), nullptr);
}

TEST(RigidBody, TransformGoesInAndOut) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  const vyr::AffineMatrix4x4 pose(vyr::Quat(1.2, vyr::Vec3(0.3, -0.4, 0.5)), vyr::Vec3(1.0, 2.0, 3.0));
  body->setTransform(vyr::AffineMatrix4x4::scale(vyr::Vec3(2.0, 3.0, 4.0)) * pose);
  for (int i = 0; i < 16; ++i) {
    EXPECT_NEAR(body->getTransform().ptr()[i], pose.ptr()[i], 1e-12) << i;
  }
}

TEST(RigidBody, PoseSurvivesAMoveOfTheCentreOfMass) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  body->setTransform(vyr::AffineMatrix4x4(vyr::Quat(0.7, vyr::Vec3(1.0, 1.0, 0.0)), vyr::Vec3(1.0, 0.0, 0.0)));
  const vyr::AffineMatrix4x4 before = body->getTransform();
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(0.1, 0.2, 0.3)),
            vyr::AffineMatrix4x4(vyr::Quat(0.4, vyr::Vec3(0.0, 1.0, 1.0)), vyr::Vec3(3.0, 2.0, 1.0)));
  for (int i = 0; i < 16; ++i) {
    EXPECT_NEAR(body->getTransform().ptr()[i], before.ptr()[i], 1e-12) << i;
  }
}

TEST(RigidBody, RefusesNumbersThatAreNone) {
  scene::Messages messages;
  const double nan = std::nan("");
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(1.0));
  const double mass = body->getMass();
  body->setPosition(vyr::Vec3(nan, 0.0, 0.0));
  body->setVelocity(vyr::Vec3(0.0, nan, 0.0));
  body->setAngularVelocity(vyr::Vec3(0.0, nan, 0.0));
  body->setRotation(vyr::Quat(0.0, 0.0, 0.0, 0.0));
  body->addForce(vyr::Vec3(nan, 0.0, 0.0));
  EXPECT_FALSE(body->setMass(nan));
  EXPECT_FALSE(body->setMass(-1.0));
  EXPECT_FALSE(body->setInertia(vyr::SPDMatrix3x3(vyr::Vec3(1.0, -1.0, 1.0))));
  EXPECT_EQ(messages.get().size(), 8u);
  EXPECT_EQ(body->getPosition(), vyr::Vec3());
  EXPECT_EQ(body->getVelocity(), vyr::Vec3());
  EXPECT_EQ(body->getForce(), vyr::Vec3());
  EXPECT_DOUBLE_EQ(body->getMass(), mass);
}

TEST(RigidBody, WithAPlaneIsNotMovedByForces) {
  scene::Messages messages;
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  vyr::ref_ptr<vyrCollide::Geometry> plane = new vyrCollide::Geometry(new vyrCollide::Plane);
  EXPECT_FALSE(body->add(plane.get()));
  EXPECT_TRUE(body->setMotionControl(vyr::RigidBody::STATIC));
  EXPECT_TRUE(body->add(plane.get()));
  EXPECT_FALSE(body->setMotionControl(vyr::RigidBody::DYNAMICS));
  EXPECT_EQ(body->getMotionControl(), vyr::RigidBody::STATIC);
  EXPECT_FALSE(body->setMotionControl(static_cast<vyr::RigidBody::MotionControl>(7)));
  EXPECT_EQ(messages.get().size(), 3u);
}

TEST(RigidBody, ChangesMotionControlWhileInASimulation) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(1.0), vyr::Vec3(0.0, 0.0, 5.0));
  body->setMotionControl(vyr::RigidBody::STATIC);
  simulation->add(body.get());
  simulation->stepTo(1.0);
  EXPECT_EQ(body->getPosition(), vyr::Vec3(0.0, 0.0, 5.0));
  body->setMotionControl(vyr::RigidBody::DYNAMICS);
  simulation->step();
  EXPECT_NEAR(body->getVelocity().z(), -scene::kGravity / 60.0, 1e-12);
}

TEST(RigidBody, UserMassOutlivesNewGeometries) {
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  body->setMass(6.0);
  EXPECT_NEAR(body->getInertia()(0, 0), 1.0, 1e-12);
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(0.5, 0.5, 0.5)));
  EXPECT_DOUBLE_EQ(body->getMass(), 6.0);
  body->updateMassProperties();
  EXPECT_DOUBLE_EQ(body->getMass(), 2000.0);
  EXPECT_TRUE(body->setInertia(vyr::SPDMatrix3x3(vyr::Vec3(1.0, 2.0, 3.0))));
  EXPECT_DOUBLE_EQ(body->getInertia()(2, 2), 3.0);
}

TEST(RigidBody, KineticEnergyOfASpinningBlock) {
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  body->setMass(6.0);
  body->setVelocity(vyr::Vec3(0.0, 2.0, 0.0));
  body->setAngularVelocity(vyr::Vec3(0.0, 0.0, 4.0));
  EXPECT_NEAR(body->getKineticEnergy(), 0.5 * 6.0 * 4.0 + 0.5 * 1.0 * 16.0, 1e-9);
}

TEST(RigidBody, DampingTakesItsShare) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(1.0));
  EXPECT_TRUE(body->setLinearDamping(0.75));
  EXPECT_FALSE(body->setLinearDamping(1.5));
  body->setVelocity(vyr::Vec3(8.0, 0.0, 0.0));
  simulation->add(body.get());
  simulation->stepTo(1.0);
  EXPECT_NEAR(body->getVelocity().x(), 2.0, 1e-9);
}
