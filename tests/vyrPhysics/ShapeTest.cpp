/// Shapes: sizes that no body can have, bounds.
#include "Scene.h"

#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

/// Makes the shape and counts the messages it causes.
template <class Shape, class... Arguments>
void expectRefused(Arguments... arguments) {
  scene::Messages messages;
  vyr::ref_ptr<Shape> shape = new Shape(arguments...);
  EXPECT_FALSE(shape->isValid());
  EXPECT_EQ(messages.get().size(), 1u);
  EXPECT_DOUBLE_EQ(shape->getVolume(), 0.0);
}

} // namespace

TEST(Shape, RefusesSizesThatNoBodyCanHave) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  for (double bad : {-1.0, 0.0, nan, infinity}) {
    expectRefused<vyrCollide::Sphere>(bad);
    expectRefused<vyrCollide::Box>(bad, 1.0, 1.0);
    expectRefused<vyrCollide::Box>(1.0, 1.0, bad);
    expectRefused<vyrCollide::Cylinder>(bad, 1.0);
    expectRefused<vyrCollide::Cylinder>(1.0, bad);
    expectRefused<vyrCollide::Capsule>(bad, 1.0);
    expectRefused<vyrCollide::Capsule>(1.0, bad);
  }
}

TEST(Shape, HasBounds) {
  vyr::ref_ptr<vyrCollide::Capsule> capsule = new vyrCollide::Capsule(0.5, 2.0);
  const vyrCollide::Bounds bounds = capsule->getBounds();
  EXPECT_EQ(bounds.max, vyr::Vec3(0.5, 0.5, 1.5));
  EXPECT_EQ(bounds.min, vyr::Vec3(-0.5, -0.5, -1.5));
  EXPECT_EQ(bounds.getSize(), vyr::Vec3(1.0, 1.0, 3.0));
  EXPECT_TRUE(bounds.isValid());
  EXPECT_FALSE(vyrCollide::Bounds().isValid());
}

TEST(Shape, IsSharedByGeometries) {
  vyr::ref_ptr<vyrCollide::Sphere> sphere = new vyrCollide::Sphere(0.5);
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::ground());
  vyr::ref_ptr<vyr::RigidBody> left = scene::body(sphere.get(), vyr::Vec3(-2.0, 0.0, 0.5));
  vyr::ref_ptr<vyr::RigidBody> right = scene::body(sphere.get(), vyr::Vec3(2.0, 0.0, 0.5));
  simulation->add(left.get());
  simulation->add(right.get());
  simulation->stepTo(0.5);
  ASSERT_EQ(simulation->getContacts().size(), 2u);
  for (const vyrSDK::Contact& contact : simulation->getContacts()) {
    vyr::RigidBody* body = contact.geometry1->getRigidBody() != nullptr ? contact.geometry1->getRigidBody()
                                                                        : contact.geometry2->getRigidBody();
    EXPECT_NEAR(contact.point.x(), body->getPosition().x(), 1e-6);
  }
}
