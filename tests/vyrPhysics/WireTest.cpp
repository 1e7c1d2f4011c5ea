/// Wires against the catenary, against hanging weights and against the pendulum.
#include <vyr/RigidBody.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Box.h>
#include <vyrSDK/Simulation.h>
#include <vyrWire/Wire.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using vyr::Vec3;

const double kG = 9.80665;

struct World {
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};

  vyr::ref_ptr<vyrWire::Wire> addWire(double length, std::size_t segments, double massPerLength) const {
    vyr::ref_ptr<vyrWire::Wire> wire(new vyrWire::Wire(length, segments, massPerLength));
    simulation->add(wire.get());
    return wire;
  }
  vyr::ref_ptr<vyr::RigidBody> addWeight(double mass, const Vec3& place) const {
    vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody("weight"));
    body->add(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(0.1, 0.1, 0.1))));
    body->setMass(mass);
    body->setPosition(place);
    simulation->add(body.get());
    return body;
  }
  void run(double seconds) const { simulation->stepTo(simulation->getTime() + seconds); }
};

/// The catenary's parameter a for a wire of length `length` over the span `span`: 2 a sinh(span / (2 a)) = length.
/// Source: E. H. Lockwood, "A Book of Curves", 1961, chapter 13.
double catenaryParameter(double length, double span) {
  double low = 0.01;
  double high = 1000;
  for (int i = 0; i < 200; ++i) {
    const double a = 0.5 * (low + high);
    (2 * a * std::sinh(span / (2 * a)) > length ? low : high) = a;
  }
  return low;
}

TEST(Wire, HangsAsACatenary) {
  const World world;
  const auto wire = world.addWire(10, 50, 2);
  wire->attachBegin(nullptr, Vec3(-4, 0, 10));
  wire->attachEnd(nullptr, Vec3(4, 0, 10));
  wire->setDamping(2);
  world.run(20);
  const double a = catenaryParameter(10, 8);
  const double sag = a * (std::cosh(4 / a) - 1);
  double lowest = 10;
  for (const Vec3& node : wire->getNodes()) {
    lowest = std::min(lowest, node.z());
    EXPECT_NEAR(node.y(), 0, 1e-9);
  }
  EXPECT_NEAR(10 - lowest, sag, 0.02 * sag);
  const double endTension = 2 * kG * a * std::cosh(4 / a);
  EXPECT_NEAR(wire->getBeginTension(), endTension, 0.03 * endTension);
  EXPECT_NEAR(wire->getEndTension(), endTension, 0.03 * endTension);
  const double middleTension = 2 * kG * a;
  EXPECT_NEAR(wire->getTension(25), middleTension, 0.03 * middleTension);
}

TEST(Wire, KeepsItsLength) {
  const World world;
  const auto wire = world.addWire(5, 40, 1);
  wire->attachBegin(nullptr, Vec3(0, 0, 10));
  for (std::size_t i = 1; i <= 40; ++i) {
    wire->setNode(i, Vec3(static_cast<double>(i) * 0.125, 0, 10));
  }
  world.run(3);
  double length = 0;
  for (std::size_t i = 0; i < 40; ++i) {
    length += (wire->getNodes()[i + 1] - wire->getNodes()[i]).length();
  }
  EXPECT_NEAR(length, 5, 1e-3);
}

TEST(Wire, HoldsAWeight) {
  const World world;
  const auto weight = world.addWeight(200, Vec3(0, 0, 5));
  const auto wire = world.addWire(3, 12, 0.5);
  wire->attachBegin(nullptr, Vec3(0, 0, 8.1));
  wire->attachEnd(weight.get(), Vec3(0, 0, 0.1));
  world.run(5);
  EXPECT_NEAR(weight->getPosition().z(), 5, 2e-3);
  EXPECT_NEAR(weight->getPosition().x(), 0, 1e-6);
  EXPECT_NEAR(wire->getEndTension(), 200 * kG, 0.03 * 200 * kG);
  EXPECT_NEAR(wire->getBeginTension(), 201.5 * kG, 0.03 * 201.5 * kG);
}

TEST(Wire, ASwingingWeightKeepsItsEnergyAndItsPeriod) {
  const World world;
  const double amplitude = 0.5;
  const auto weight = world.addWeight(50, Vec3(3 * std::sin(amplitude), 0, -3 * std::cos(amplitude)));
  const auto wire = world.addWire(3, 10, 0.01);
  wire->setDamping(0);
  wire->attachBegin(nullptr, Vec3());
  wire->attachEnd(weight.get(), Vec3());
  // Heights at the turning points tell the energy.
  double highest = -3;
  int crossings = 0;
  double firstCrossing = 0;
  double lastCrossing = 0;
  double previous = weight->getPosition().x();
  while (world.simulation->getTime() < 30) {
    world.simulation->step();
    const double x = weight->getPosition().x();
    if (previous > 0 && x <= 0) {
      lastCrossing = world.simulation->getTime();
      firstCrossing = crossings == 0 ? lastCrossing : firstCrossing;
      ++crossings;
    }
    previous = x;
    if (world.simulation->getTime() > 26) {
      highest = std::max(highest, weight->getPosition().z());
    }
  }
  const double start = -3 * std::cos(amplitude);
  EXPECT_NEAR(highest, start, 0.05 * (3 + start));
  // The period of a pendulum of amplitude A: 2 pi sqrt(l/g) (1 + 1/16 A^2 + 11/3072 A^4 + ...).
  // Source: the series of the complete elliptic integral, Abramowitz and Stegun, 17.3.11.
  const double series = 1 + amplitude * amplitude / 16 + 11 * std::pow(amplitude, 4) / 3072;
  const double period = 2 * std::acos(-1.0) * std::sqrt(3 / kG) * series;
  EXPECT_NEAR((lastCrossing - firstCrossing) / (crossings - 1), period, 0.01 * period);
}

TEST(Wire, StretchesByItsStiffness) {
  const World world;
  const auto weight = world.addWeight(100, Vec3(0, 0, -2));
  const auto wire = world.addWire(2, 8, 0.01);
  wire->setStretchStiffness(1e5);
  wire->attachBegin(nullptr, Vec3());
  wire->attachEnd(weight.get(), Vec3());
  weight->setLinearDamping(0.9);
  world.run(10);
  // F L / (E A) = 980.665 * 2 / 1e5 m.
  EXPECT_NEAR(-2 - weight->getPosition().z(), 0.0196, 0.001);
}

TEST(Wire, BendingStiffnessKeepsASlackWireFlatter) {
  const auto lowestPlace = [](double stiffness) {
    const World world;
    const auto wire = world.addWire(1, 10, 0.5);
    wire->setBendStiffness(stiffness);
    wire->setDamping(1);
    wire->attachBegin(nullptr, Vec3(0, 0, 1));
    wire->attachEnd(nullptr, Vec3(0.4, 0, 1));
    world.run(5);
    double lowest = 1;
    for (const Vec3& node : wire->getNodes()) {
      lowest = std::min(lowest, node.z());
    }
    return lowest;
  };
  EXPECT_GT(lowestPlace(2.0), lowestPlace(0) + 0.005);
}

TEST(Wire, LosesItsEndWhenTheBodyDies) {
  const World world;
  const auto wire = world.addWire(2, 8, 1);
  {
    const auto weight = world.addWeight(1, Vec3(0, 0, -2));
    wire->attachBegin(nullptr, Vec3());
    wire->attachEnd(weight.get(), Vec3());
    world.simulation->remove(weight.get());
  }
  world.run(0.5);
  for (const Vec3& node : wire->getNodes()) {
    EXPECT_TRUE(node.isFinite());
  }
}

TEST(Wire, RefusesBadInput) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  vyr::ref_ptr<vyrWire::Wire> wire(new vyrWire::Wire(-1, 10, 1));
  EXPECT_FALSE(wire->isValid());
  wire->attachBegin(nullptr, Vec3());
  wire->pre(vyr::TimeStamp());
  EXPECT_EQ(wire->getNumSegments(), 0u);
  EXPECT_EQ(wire->getEndTension(), 0);
  EXPECT_FALSE(vyr::ref_ptr<vyrWire::Wire>(new vyrWire::Wire(nan, 10, 1))->isValid());
  EXPECT_FALSE(vyr::ref_ptr<vyrWire::Wire>(new vyrWire::Wire(1, 0, 1))->isValid());
  EXPECT_FALSE(vyr::ref_ptr<vyrWire::Wire>(new vyrWire::Wire(1, 10, 1, -0.01))->isValid());
  EXPECT_FALSE(vyr::ref_ptr<vyrWire::Wire>(new vyrWire::Wire(1, 10, 0))->isValid());
  vyr::ref_ptr<vyrWire::Wire> good(new vyrWire::Wire(1, 10, 1));
  EXPECT_FALSE(good->setDamping(nan));
  EXPECT_FALSE(good->setStretchStiffness(-1));
  EXPECT_FALSE(good->setNumSubSteps(0));
  EXPECT_FALSE(good->setNode(11, Vec3()));
}

TEST(Wire, IsRepeatable) {
  const auto run = [] {
    const World world;
    const auto weight = world.addWeight(10, Vec3(2, 0.3, 0));
    const auto wire = world.addWire(2.2, 20, 0.2);
    wire->attachBegin(nullptr, Vec3());
    wire->attachEnd(weight.get(), Vec3(0.1, 0.1, 0));
    world.run(3);
    EXPECT_TRUE(weight->getPosition().isFinite());
    EXPECT_LT((weight->getPosition()).length(), 2.4);
    return world.simulation->stateHash();
  };
  EXPECT_EQ(run(), run());
}

} // namespace
