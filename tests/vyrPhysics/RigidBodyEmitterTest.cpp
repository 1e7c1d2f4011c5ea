/// Emitters of bodies.
#include "Scene.h"

#include <vyr/RigidBodyEmitter.h>

#include <gtest/gtest.h>

#include <cmath>

TEST(RigidBodyEmitter, EmitsAtItsRateWithinItsRegion) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter(7);
  emitter->setShape(new vyrCollide::Sphere(0.01));
  EXPECT_TRUE(emitter->setRate(20.0));
  EXPECT_TRUE(emitter->setRegion(vyrCollide::Bounds{vyr::Vec3(-1.0, -2.0, 0.0), vyr::Vec3(1.0, 2.0, 0.0)}));
  emitter->setTransform(vyr::AffineMatrix4x4::translate(0.0, 0.0, 10.0));
  simulation->add(emitter.get());
  simulation->stepTo(3.0);
  EXPECT_EQ(emitter->getNumEmitted(), 60u);
  ASSERT_EQ(emitter->getRigidBodies().size(), 60u);
  EXPECT_EQ(simulation->getRigidBodies().size(), 60u);
  double farthest = 0.0;
  for (const auto& body : emitter->getRigidBodies()) {
    EXPECT_LE(std::fabs(body->getPosition().x()), 1.0 + 0.05);
    EXPECT_NEAR(body->getPosition().z(), 10.0, 0.05);
    farthest = std::max(farthest, std::fabs(body->getPosition().y()));
  }
  EXPECT_GT(farthest, 1.0);
}

TEST(RigidBodyEmitter, SeedDecidesEverything) {
  const auto run = [](uint64_t seed) {
    vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
    simulation->add(scene::ground());
    vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter(seed);
    emitter->setGeometryFactory([](const std::function<double()>& random) {
      const double half = 0.05 + 0.1 * random();
      return new vyrCollide::Geometry(new vyrCollide::Box(half, half, half));
    });
    emitter->setTransform(vyr::AffineMatrix4x4::translate(0.0, 0.0, 2.0));
    emitter->setVelocity(vyr::Vec3(1.0, 0.0, 0.0));
    simulation->add(emitter.get());
    simulation->stepTo(2.0);
    return simulation->stateHash();
  };
  EXPECT_EQ(run(3), run(3));
  EXPECT_NE(run(3), run(4));
}

TEST(RigidBodyEmitter, BodiesLeaveAtTheEndOfTheirLife) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter;
  emitter->setShape(new vyrCollide::Sphere(0.1));
  emitter->setRate(60.0);
  emitter->setMaximum(30);
  EXPECT_TRUE(emitter->setLife(1.0));
  simulation->add(emitter.get());
  simulation->stepTo(0.9);
  EXPECT_EQ(emitter->getRigidBodies().size(), 30u);
  simulation->stepTo(1.25);
  EXPECT_LT(emitter->getRigidBodies().size(), 30u);
  EXPECT_GT(emitter->getRigidBodies().size(), 0u);
  simulation->stepTo(1.6);
  EXPECT_TRUE(emitter->getRigidBodies().empty());
  EXPECT_TRUE(simulation->getRigidBodies().empty());
  EXPECT_EQ(emitter->getNumEmitted(), 30u);
}

TEST(RigidBodyEmitter, RefusesNumbersThatAreNoneAndPauses) {
  scene::Messages messages;
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter;
  EXPECT_FALSE(emitter->setRate(-1.0));
  EXPECT_FALSE(emitter->setLife(std::nan("")));
  EXPECT_FALSE(emitter->setRegion(vyrCollide::Bounds()));
  EXPECT_EQ(messages.get().size(), 3u);
  simulation->add(emitter.get());
  simulation->stepTo(1.0);
  EXPECT_EQ(emitter->getNumEmitted(), 0u);
  emitter->setShape(new vyrCollide::Sphere(0.1));
  emitter->setEnable(false);
  simulation->stepTo(2.0);
  EXPECT_EQ(emitter->getNumEmitted(), 0u);
}
