// Pressure from contacts, against weights and closed forms.
#include "CapturedMessages.h"

#include <vyrCollide/Box.h>
#include <vyrCollide/Sphere.h>
#include <vyrOSG/PressureFromContacts.h>
#include <vyrSDK/GeometryFilter.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using vyr::Vec3;
using vyrOSG::PressureAtlas;
using vyrOSG::PressureFromContacts;

const double kGravity = 9.80665;

/// A table of 2 m by 2 m, its top at z = 0, and an atlas over it.
struct Table {
  explicit Table(const Vec3& gravity = Vec3(0, 0, -kGravity)) {
    simulation->setGravity(gravity);
    vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody("table"));
    body->add(top.get());
    body->setPosition(Vec3(0, 0, -0.1));
    body->setMotionControl(vyr::RigidBody::STATIC);
    simulation->add(body.get());
  }

  vyr::ref_ptr<vyrCollide::Geometry> add(vyrCollide::Shape* shape, double mass, const Vec3& place) {
    vyr::ref_ptr<vyrCollide::Geometry> geometry(new vyrCollide::Geometry(shape));
    vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody);
    body->add(geometry.get());
    body->setMass(mass);
    body->setPosition(place);
    simulation->add(body.get());
    return geometry;
  }

  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  vyr::ref_ptr<vyrCollide::Geometry> top{new vyrCollide::Geometry(new vyrCollide::Box(Vec3(1, 1, 0.1)), "top")};
  vyr::ref_ptr<PressureAtlas> atlas{new PressureAtlas(top.get(), 50)};
};

TEST(PressureFromContacts, AddsUpToTheWeightOfAStack) {
  Table table;
  const vyr::ref_ptr<PressureFromContacts> generator(
      new PressureFromContacts(table.simulation.get(), table.atlas.get(), 2e-5, PressureFromContacts::NORMAL_FORCE));
  for (int i = 0; i < 4; ++i)
    table.add(new vyrCollide::Box(Vec3(0.25, 0.25, 0.25)), 100, Vec3(0, 0, 0.25 + 0.5 * i));
  table.simulation->stepTo(3);
  const double weight = 400 * kGravity;
  EXPECT_NEAR(weight, table.atlas->getForce(), 0.01 * weight);
}

TEST(PressureFromContacts, IsEvenUnderABoxAndNoneBeside) {
  Table table;
  PressureFromContacts* generator =
      new PressureFromContacts(table.simulation.get(), table.atlas.get(), 2e-5, PressureFromContacts::NORMAL_FORCE);
  EXPECT_EQ(1, generator->getReferenceCount());
  table.add(new vyrCollide::Box(Vec3(0.3, 0.2, 0.25)), 120, Vec3(0, 0, 0.25));
  table.simulation->stepTo(2);
  const double expected = 120 * kGravity / (0.6 * 0.4);
  for (std::size_t i = 0; i < table.atlas->getNumTexels(); ++i) {
    const PressureAtlas::Texel& texel = table.atlas->getTexels()[i];
    const bool under =
        texel.normal.z() > 0.5 && std::abs(texel.position.x()) < 0.28 && std::abs(texel.position.y()) < 0.18;
    const bool beside =
        texel.normal.z() < 0.5 || std::abs(texel.position.x()) > 0.33 || std::abs(texel.position.y()) > 0.23;
    if (under) {
      EXPECT_NEAR(expected, table.atlas->getPressure(i), 0.08 * expected);
    }
    if (beside) {
      EXPECT_EQ(0, table.atlas->getPressure(i));
    }
  }
}

TEST(PressureFromContacts, LeansWithAnEccentricLoad) {
  // A cube of 1 m and 100 kg that is pushed with H at its upper edge tips with the moment H * 1 m: linear pressure with
  // p = N / A +- 6 H / b^3 at the edges.
  Table table;
  const vyr::ref_ptr<PressureFromContacts> generator(
      new PressureFromContacts(table.simulation.get(), table.atlas.get(), 2e-5, PressureFromContacts::NORMAL_FORCE));
  const auto cube = table.add(new vyrCollide::Box(Vec3(0.5, 0.5, 0.5)), 100, Vec3(0, 0, 0.5));
  const double push = 100;
  for (int i = 0; i < 120; ++i) {
    cube->getRigidBody()->addForceAtPosition(Vec3(push, 0, 0), cube->getRigidBody()->getPosition() + Vec3(0, 0, 0.5));
    table.simulation->step();
  }
  const double mean = 100 * kGravity;
  const double slope = 12 * push;
  // The blow of the sudden push moves the cube a little.
  const double middle = cube->getRigidBody()->getPosition().x();
  for (std::size_t i = 0; i < table.atlas->getNumTexels(); ++i) {
    const PressureAtlas::Texel& texel = table.atlas->getTexels()[i];
    const double x = texel.position.x() - middle;
    if (texel.normal.z() > 0.5 && std::abs(x) < 0.47 && std::abs(texel.position.y()) < 0.47) {
      EXPECT_NEAR(mean + slope * x, table.atlas->getPressure(i), 0.1 * mean);
    }
  }
}

TEST(PressureFromContacts, RangeFactorSpreadsAPoint) {
  Table table;
  const vyr::ref_ptr<PressureFromContacts> generator(
      new PressureFromContacts(table.simulation.get(), table.atlas.get(), 1e-4, PressureFromContacts::NORMAL_FORCE));
  table.add(new vyrCollide::Sphere(0.3), 100, Vec3(0, 0, 0.3));
  table.simulation->stepTo(2);
  const double weight = 100 * kGravity;
  EXPECT_NEAR(weight, table.atlas->getForce(), 0.01 * weight);
  double area = 0;
  for (std::size_t texel : table.atlas->getPressedTexels())
    area += table.atlas->getTexels()[texel].area;
  EXPECT_NEAR(1e-4 * weight, area, 0.15 * 1e-4 * weight);
}

TEST(PressureFromContacts, ChoosesTheForce) {
  // A block on a table that leans by 15 degrees: friction carries W sin, the table W cos.
  const double angle = 15 * 3.14159265358979 / 180;
  Table table(Vec3(kGravity * std::sin(angle), 0, -kGravity * std::cos(angle)));
  vyr::ref_ptr<PressureFromContacts> generators[3];
  vyr::ref_ptr<PressureAtlas> atlases[3];
  for (int type = 0; type < 3; ++type) {
    atlases[type] = new PressureAtlas(table.top.get(), 20);
    generators[type] = new PressureFromContacts(table.simulation.get(), atlases[type].get(), 2e-5,
                                                static_cast<PressureFromContacts::ForceType>(type));
  }
  table.add(new vyrCollide::Box(Vec3(0.3, 0.3, 0.1)), 50, Vec3(0, 0, 0.1));
  table.simulation->stepTo(2);
  const double weight = 50 * kGravity;
  EXPECT_NEAR(weight * std::sin(angle), atlases[0]->getForce(), 0.03 * weight);
  EXPECT_NEAR(weight * std::cos(angle), atlases[1]->getForce(), 0.02 * weight);
  EXPECT_NEAR(weight, atlases[2]->getForce(), 0.03 * weight);
}

TEST(PressureFromContacts, FiltersChooseTheContacts) {
  Table table;
  const vyr::ref_ptr<PressureFromContacts> generator(
      new PressureFromContacts(table.simulation.get(), table.atlas.get()));
  const auto first = table.add(new vyrCollide::Box(Vec3(0.2, 0.2, 0.2)), 10, Vec3(-0.5, 0, 0.2));
  const auto second = table.add(new vyrCollide::Box(Vec3(0.2, 0.2, 0.2)), 20, Vec3(0.5, 0, 0.2));
  generator->addFilter(nullptr);
  generator->addFilter(new vyrSDK::GeometryFilter(second.get()));
  table.simulation->stepTo(2);
  EXPECT_NEAR(20 * kGravity, table.atlas->getForce(), 0.02 * 20 * kGravity);
  generator->addFilter(new vyrSDK::GeometryFilter(first.get()));
  table.simulation->step();
  EXPECT_NEAR(30 * kGravity, table.atlas->getForce(), 0.02 * 30 * kGravity);
}

TEST(PressureFromContacts, PressesOnMovingBodiesToo) {
  Table table;
  const auto cube = table.add(new vyrCollide::Box(Vec3(0.2, 0.2, 0.2)), 30, Vec3(0.3, 0.4, 0.2));
  cube->getRigidBody()->setRotation(vyr::Quat(0.4, Vec3(0, 0, 1)));
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(cube.get()));
  const vyr::ref_ptr<PressureFromContacts> generator(
      new PressureFromContacts(table.simulation.get(), atlas.get(), 2e-5, PressureFromContacts::NORMAL_FORCE));
  table.simulation->stepTo(2);
  EXPECT_NEAR(30 * kGravity, atlas->getForce(), 0.01 * 30 * kGravity);
  for (std::size_t texel : atlas->getPressedTexels())
    EXPECT_NEAR(-0.2, atlas->getTexels()[texel].position.z(), 1e-6);
}

TEST(PressureFromContacts, SurvivesWhatGoesBeforeIt) {
  CapturedMessages messages;
  const vyr::ref_ptr<PressureFromContacts> alone(new PressureFromContacts(nullptr, nullptr));
  alone->generate();
  EXPECT_EQ(2e-5, alone->getRangeFactor());
  EXPECT_EQ(PressureFromContacts::TOTAL_FORCE, alone->getForceType());
  vyr::ref_ptr<PressureFromContacts> generator;
  {
    Table table;
    generator = new PressureFromContacts(table.simulation.get(), table.atlas.get());
    table.add(new vyrCollide::Box(Vec3(0.2, 0.2, 0.2)), 10, Vec3(0, 0, 0.2));
    table.simulation->stepTo(1);
    EXPECT_GT(generator->getAtlas()->getForce(), 0);
  }
  generator->generate();
  EXPECT_EQ(0, generator->getAtlas()->getForce());
  EXPECT_EQ(nullptr, generator->getAtlas()->getGeometry());
  EXPECT_TRUE(messages.errors().empty());
  generator->setRangeFactor(-1);
  generator->setRangeFactor(std::numeric_limits<double>::infinity());
  EXPECT_EQ(2u, messages.errors().size());
  EXPECT_EQ(2e-5, generator->getRangeFactor());
}

TEST(PressureFromContacts, LivesInTheSimulation) {
  Table table;
  const vyr::observer_ptr<PressureFromContacts> generator(
      new PressureFromContacts(table.simulation.get(), table.atlas.get()));
  ASSERT_TRUE(generator.valid());
  table.simulation->clear();
  EXPECT_FALSE(generator.valid());
}

} // namespace
