/// Geometries: place, bounds, lifetime.
#include "Scene.h"

#include <vyr/observer_ptr.h>
#include <vyrSDK/PickHandler.h>
#include <vyrSDK/PickResult.h>
#include <vyrSDK/SimulationObject.h>

#include <gtest/gtest.h>

#include <cmath>

TEST(Geometry, OfAnInvalidShapeIsRefusedEverywhere) {
  scene::Messages messages;
  vyr::ref_ptr<vyrCollide::Geometry> none = new vyrCollide::Geometry(nullptr);
  vyr::ref_ptr<vyrCollide::Geometry> bad = new vyrCollide::Geometry(new vyrCollide::Sphere(-1.0));
  EXPECT_FALSE(none->isValid());
  EXPECT_FALSE(bad->isValid());
  EXPECT_EQ(bad->getShape(), nullptr);
  EXPECT_EQ(messages.get().size(), 3u); // the radius, and one for each geometry
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  EXPECT_FALSE(body->add(bad.get()));
  EXPECT_FALSE(simulation->add(bad.get()));
  EXPECT_TRUE(body->getGeometries().empty());
}

TEST(Geometry, StandsWhereBodyAndLocalTransformSay) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  auto* geometry = new vyrCollide::Geometry(new vyrCollide::Box(0.5, 0.5, 0.5));
  body->add(geometry, vyr::AffineMatrix4x4::translate(1.0, 0.0, 0.0));
  body->setTransform(
      vyr::AffineMatrix4x4(vyr::Quat(std::acos(0.0), vyr::Vec3(0.0, 0.0, 1.0)), vyr::Vec3(0.0, 0.0, 2.0)));
  const vyr::Vec3 place = geometry->getTransform().getTranslate();
  EXPECT_NEAR((place - vyr::Vec3(0.0, 1.0, 2.0)).length(), 0.0, 1e-12);
  const vyrCollide::Bounds bounds = geometry->getWorldBounds();
  EXPECT_NEAR((bounds.min - vyr::Vec3(-0.5, 0.5, 1.5)).length(), 0.0, 1e-12);
  EXPECT_NEAR((bounds.max - vyr::Vec3(0.5, 1.5, 2.5)).length(), 0.0, 1e-12);
}

TEST(Geometry, BelongsToOneBody) {
  scene::Messages messages;
  vyr::ref_ptr<vyr::RigidBody> first = new vyr::RigidBody;
  vyr::ref_ptr<vyr::RigidBody> second = new vyr::RigidBody;
  vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(new vyrCollide::Sphere(1.0));
  EXPECT_TRUE(first->add(geometry.get()));
  EXPECT_EQ(geometry->getRigidBody(), first.get());
  EXPECT_FALSE(second->add(geometry.get()));
  EXPECT_EQ(messages.get().size(), 1u);
  EXPECT_TRUE(first->remove(geometry.get()));
  EXPECT_FALSE(first->remove(geometry.get()));
  EXPECT_TRUE(second->add(geometry.get()));
  second = nullptr;
  EXPECT_EQ(geometry->getRigidBody(), nullptr);
}

// The edge of a turned crate and the rim of a ball, from near and far: alone and in the simulation they are met alike.
TEST(Geometry, IsMetByARayAsInTheSimulation) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> crate = new vyr::RigidBody;
  vyr::ref_ptr<vyrCollide::Geometry> box = new vyrCollide::Geometry(new vyrCollide::Box(0.7, 0.7, 0.7));
  crate->add(box.get());
  crate->setRotation(vyr::Quat(0.4, vyr::Vec3(0.0, 0.0, 1.0)));
  simulation->add(crate.get());
  vyr::ref_ptr<vyrCollide::Geometry> ball = new vyrCollide::Geometry(new vyrCollide::Sphere(0.5));
  ball->setLocalTransform(vyr::AffineMatrix4x4::translate(5.0, 0.0, 0.0));
  simulation->add(ball.get());
  const vyr::Vec3 level(0.0, 2.0, 0.0);
  for (const double length : {20.0, 1.0e5}) {
    double distance = 0.0;
    ASSERT_TRUE(box->rayTest(vyr::Vec3(0.0, -10.0, 0.6999), level, length, distance)) << length;
    EXPECT_NEAR(distance, 10.0 - 0.7 / std::cos(0.4), 1e-9) << length;
    EXPECT_EQ(distance, simulation->rayTest(vyr::Vec3(0.0, -10.0, 0.6999), level, length).distance) << length;
    EXPECT_FALSE(box->rayTest(vyr::Vec3(0.0, -10.0, 0.7001), level, length, distance)) << length;
    ASSERT_TRUE(ball->rayTest(vyr::Vec3(5.3, -10.0, 0.0), level, length, distance)) << length;
    EXPECT_NEAR(distance, 9.6, 1e-3) << length; // curved shapes: to a share of their size
    EXPECT_EQ(distance, simulation->rayTest(vyr::Vec3(5.3, -10.0, 0.0), level, length).distance) << length;
    EXPECT_FALSE(ball->rayTest(vyr::Vec3(5.501, -10.0, 0.0), level, length, distance)) << length;
  }
  double distance = 7.0;
  EXPECT_FALSE(box->rayTest(vyr::Vec3(), level, 20.0, distance)); // begins inside
  EXPECT_FALSE(box->rayTest(vyr::Vec3(0.0, -10.0, 0.0), vyr::Vec3(), 20.0, distance));
  EXPECT_FALSE(box->rayTest(vyr::Vec3(0.0, -10.0, 0.0), level, -1.0, distance));
  EXPECT_FALSE(box->rayTest(vyr::Vec3(0.0, std::nan(""), 0.0), level, 20.0, distance));
  EXPECT_EQ(distance, 7.0);
}

TEST(Geometry, ThatDiesIsForgottenByThosePointingAtIt) {
  vyrSDK::PickResult pick;
  vyr::observer_ptr<vyrCollide::Geometry> observer;
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(1.0));
  simulation->add(body.get());
  observer = body->getGeometries()[0].get();
  pick.geometry = body->getGeometries()[0].get();
  const vyrSDK::PickResult copy = pick;
  simulation->step();
  simulation->remove(body.get());
  EXPECT_TRUE(observer.valid());
  body = nullptr;
  EXPECT_FALSE(observer.valid());
  EXPECT_FALSE(pick.geometry.valid());
  EXPECT_FALSE(copy.geometry.valid());
}

TEST(SimulationObject, HoldsAndSharesItsParts) {
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(1.0));
  vyrCollide::Geometry* geometry = body->getGeometries()[0].get();
  const int before = geometry->getReferenceCount();
  {
    const vyrSDK::SimulationObject object(geometry, body.get());
    const vyrSDK::SimulationObject copy = object;
    EXPECT_EQ(copy.getGeometry(), geometry);
    EXPECT_EQ(copy.getRigidBody(), body.get());
    EXPECT_EQ(geometry->getReferenceCount(), before + 2);
    EXPECT_EQ(body->getReferenceCount(), 3);
  }
  EXPECT_EQ(geometry->getReferenceCount(), before);
  EXPECT_EQ(body->getReferenceCount(), 1);
  const vyrSDK::SimulationObject empty;
  EXPECT_EQ(empty.getGeometry(), nullptr);
  EXPECT_EQ(empty.getRigidBody(), nullptr);
}

TEST(Space, TakesItsGeometriesInAndOut) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyrCollide::Space> space = new vyrCollide::Space;
  vyr::ref_ptr<vyrCollide::Geometry> early = new vyrCollide::Geometry(new vyrCollide::Sphere(1.0));
  vyr::ref_ptr<vyrCollide::Geometry> late = new vyrCollide::Geometry(new vyrCollide::Sphere(1.0));
  EXPECT_TRUE(space->add(early.get()));
  EXPECT_FALSE(space->add(early.get()));
  EXPECT_TRUE(simulation->add(space.get()));
  EXPECT_EQ(early->getSimulation(), simulation.get());
  EXPECT_TRUE(space->add(late.get()));
  EXPECT_EQ(simulation->getGeometries().size(), 2u);
  EXPECT_TRUE(space->remove(early.get()));
  EXPECT_EQ(early->getSimulation(), nullptr);
  EXPECT_TRUE(simulation->remove(space.get()));
  EXPECT_TRUE(simulation->getGeometries().empty());
  EXPECT_TRUE(simulation->getSpace()->add(late.get()));
  EXPECT_EQ(simulation->getGeometries().size(), 1u);
}
