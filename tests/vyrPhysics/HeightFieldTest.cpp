/// Height fields: samples, surface, ground that changes.
#include "Scene.h"

#include <vyrCollide/HeightField.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// A field of 5 x 4 samples over 8 m x 6 m with heights that have no symmetry.
vyrCollide::HeightField* bumpyField() {
  vyr::RealVector heights;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 5; ++column) {
      heights.push_back(0.3 * column - 0.2 * row + 0.1 * ((3 * column + 5 * row) % 7));
    }
  }
  return new vyrCollide::HeightField(5, 4, 8.0, 6.0, heights);
}

} // namespace

TEST(HeightField, SurfaceIsWhereRaysMeetIt) {
  vyr::ref_ptr<vyrCollide::HeightField> field = bumpyField();
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(new vyrCollide::Geometry(field.get()));
  for (double x = -3.7; x < 4.0; x += 0.59) {
    for (double y = -2.8; y < 3.0; y += 0.53) {
      const vyrSDK::RayHit hit = simulation->rayTest(vyr::Vec3(x, y, 20.0), vyr::Vec3(0.0, 0.0, -1.0));
      ASSERT_TRUE(hit.hit) << x << ' ' << y;
      EXPECT_NEAR(hit.point.z(), field->getSurfaceHeight(x, y), 1e-9) << x << ' ' << y;
    }
  }
}

TEST(HeightField, SamplesLieOnTheGrid) {
  vyr::ref_ptr<vyrCollide::HeightField> field = bumpyField();
  EXPECT_EQ(field->getVertex(0, 0), vyr::Vec3(-4.0, -3.0, field->getHeight(0, 0)));
  EXPECT_EQ(field->getVertex(4, 3), vyr::Vec3(4.0, 3.0, field->getHeight(4, 3)));
  EXPECT_DOUBLE_EQ(field->getSurfaceHeight(4.0, 3.0), field->getHeight(4, 3));
  EXPECT_DOUBLE_EQ(field->getHeight(5, 0), 0.0);
  EXPECT_FALSE(field->setHeight(5, 0, 1.0));
  EXPECT_FALSE(field->setHeight(0, 4, 1.0));
  EXPECT_FALSE(field->setHeight(0, 0, std::nan("")));
  EXPECT_EQ(field->getRevision(), 0u);
  EXPECT_TRUE(field->setHeight(1, 2, 0.75));
  EXPECT_DOUBLE_EQ(field->getHeights()[2 * 5 + 1], 0.75);
  EXPECT_EQ(field->getRevision(), 1u);
}

TEST(HeightField, CarriesABall) {
  vyr::ref_ptr<vyrCollide::HeightField> field = new vyrCollide::HeightField(5, 5, 8.0, 8.0, vyr::RealVector(25, 1.0));
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(new vyrCollide::Geometry(field.get()));
  vyr::ref_ptr<vyr::RigidBody> ball = scene::body(new vyrCollide::Sphere(0.5), vyr::Vec3(0.3, 0.7, 1.5));
  simulation->add(ball.get());
  simulation->stepTo(2.0);
  EXPECT_NEAR(ball->getPosition().z(), 1.5, 5e-3);
}

TEST(HeightField, GroundThatSinksFarLetsTheBallFollow) {
  vyr::ref_ptr<vyrCollide::HeightField> field = new vyrCollide::HeightField(5, 5, 8.0, 8.0, vyr::RealVector(25, 0.0));
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(new vyrCollide::Geometry(field.get()));
  vyr::ref_ptr<vyr::RigidBody> ball = scene::body(new vyrCollide::Sphere(0.5), vyr::Vec3(0.3, 0.7, 0.5));
  simulation->add(ball.get());
  simulation->stepTo(0.5);
  // Far below the range that the field had when it entered the simulation.
  EXPECT_TRUE(field->setHeights(vyr::RealVector(25, -3.0)));
  simulation->stepTo(3.0);
  EXPECT_NEAR(ball->getPosition().z(), -2.5, 5e-3);
}

TEST(HeightField, RefusesWhatIsNoGrid) {
  scene::Messages messages;
  vyr::ref_ptr<vyrCollide::HeightField> field = new vyrCollide::HeightField(1, 5, 1.0, 1.0, vyr::RealVector(5, 0.0));
  EXPECT_FALSE(field->isValid());
  field = new vyrCollide::HeightField(3, 3, 1.0, 1.0, vyr::RealVector(8, 0.0));
  EXPECT_FALSE(field->isValid());
  field = new vyrCollide::HeightField(3, 3, -1.0, 1.0, vyr::RealVector(9, 0.0));
  EXPECT_FALSE(field->isValid());
  field = new vyrCollide::HeightField(3, 3, 1.0, 1.0, vyr::RealVector(9, std::nan("")));
  EXPECT_FALSE(field->isValid());
  EXPECT_EQ(messages.get().size(), 4u);
  EXPECT_DOUBLE_EQ(field->getSurfaceHeight(0.0, 0.0), 0.0);
  EXPECT_FALSE(field->getBounds().isValid());
}
