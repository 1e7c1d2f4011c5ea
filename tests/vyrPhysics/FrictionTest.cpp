/// Friction, against Coulomb's law.
#include "Scene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// Distance (m) that a box slides down a slope of `degrees` in 2 s, with the friction coefficient `friction`.
double slide(double degrees, double friction, vyr::FrictionModel::SolveType model = vyr::FrictionModel::SPLIT) {
  const double angle = degrees * 3.14159265358979323846 / 180.0;
  vyr::ref_ptr<vyr::Material> material = new vyr::Material("wood", 600.0, friction);
  const vyr::AffineMatrix4x4 slope = vyr::AffineMatrix4x4::rotate(angle, vyr::Vec3(0.0, 1.0, 0.0));
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setFrictionModel(model);
  simulation->add(scene::ground(material.get(), slope));
  vyr::ref_ptr<vyr::RigidBody> box = scene::body(new vyrCollide::Box(0.5, 0.5, 0.1), vyr::Vec3(), material.get());
  const vyr::AffineMatrix4x4 start = vyr::AffineMatrix4x4::translate(0.0, 0.0, 0.1) * slope;
  box->setTransform(start);
  simulation->add(box.get());
  simulation->stepTo(2.0);
  return (box->getPosition() - start.getTranslate()).length();
}

} // namespace

TEST(Friction, BoxSticksBelowTheFrictionAngle) {
  // tan 26.57 degrees = 0.5
  EXPECT_LT(slide(25.5, 0.5), 2e-3);
}

TEST(Friction, BoxSlidesAboveTheFrictionAngleAsCoulombSays) {
  const double angle = 30.0 * 3.14159265358979323846 / 180.0;
  const double acceleration = scene::kGravity * (std::sin(angle) - 0.5 * std::cos(angle));
  // s = a t^2 / 2; the box needs a few steps to settle on the slope.
  EXPECT_NEAR(slide(30.0, 0.5), 0.5 * acceleration * 4.0, 0.03 * 0.5 * acceleration * 4.0);
}

TEST(Friction, EveryModelKeepsTheBoxBelowTheAngle) {
  using Model = vyr::FrictionModel;
  for (Model::SolveType model :
       {Model::NOT_DEFINED, Model::DIRECT, Model::ITERATIVE, Model::SPLIT, Model::DIRECT_AND_ITERATIVE}) {
    EXPECT_LT(slide(20.0, 0.5, model), 5e-3) << "model " << model;
  }
}

TEST(Friction, ForceOnASlopeIsTheWeightsShare) {
  const double angle = 15.0 * 3.14159265358979323846 / 180.0;
  const vyr::AffineMatrix4x4 slope = vyr::AffineMatrix4x4::rotate(angle, vyr::Vec3(0.0, 1.0, 0.0));
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::ground(nullptr, slope));
  vyr::ref_ptr<vyr::RigidBody> box = scene::body(new vyrCollide::Box(0.5, 0.5, 0.1));
  box->setTransform(vyr::AffineMatrix4x4::translate(0.0, 0.0, 0.1) * slope);
  simulation->add(box.get());
  simulation->stepTo(3.0);
  const double weight = box->getMass() * scene::kGravity;
  double normal = 0.0;
  vyr::Vec3 total;
  for (const vyrSDK::Contact& contact : simulation->getContacts()) {
    normal += contact.normalForce;
    const bool first = contact.geometry1->getRigidBody() == box.get();
    total += contact.getForce() * (first ? 1.0 : -1.0);
  }
  EXPECT_NEAR(normal, weight * std::cos(angle), 0.005 * weight);
  // Together the forces hold the box against gravity: friction points up the slope.
  EXPECT_NEAR((total - vyr::Vec3(0.0, 0.0, weight)).length(), 0.0, 0.01 * weight);
}

TEST(Material, CombinesAPairOfMaterials) {
  vyr::ref_ptr<vyr::Material> ice = new vyr::Material("ice", 917.0, 0.0, 0.0);
  vyr::ref_ptr<vyr::Material> rubber = new vyr::Material("rubber", 1100.0, 0.9, 0.8);
  vyr::ref_ptr<vyr::Material> steel = new vyr::Material("steel", 7850.0, 0.4, 0.3);
  EXPECT_DOUBLE_EQ(vyr::Material::combineFriction(*ice, *rubber), 0.0);
  EXPECT_DOUBLE_EQ(vyr::Material::combineFriction(*steel, *rubber), 0.6);
  EXPECT_DOUBLE_EQ(vyr::Material::combineFriction(*steel, *steel), 0.4);
  EXPECT_DOUBLE_EQ(vyr::Material::combineRestitution(*steel, *rubber), 0.8);
}

TEST(Material, RefusesImpossibleValues) {
  scene::Messages messages;
  vyr::ref_ptr<vyr::Material> material = new vyr::Material("m");
  EXPECT_FALSE(material->setDensity(0.0));
  EXPECT_FALSE(material->setDensity(std::nan("")));
  EXPECT_FALSE(material->setFriction(-0.1));
  EXPECT_FALSE(material->setRestitution(1.5));
  EXPECT_FALSE(material->setRollingFriction(-1.0));
  EXPECT_EQ(messages.get().size(), 5u);
  EXPECT_DOUBLE_EQ(material->getDensity(), 1000.0);
  EXPECT_DOUBLE_EQ(material->getFriction(), 0.5);
  EXPECT_DOUBLE_EQ(material->getRestitution(), 0.0);
}
