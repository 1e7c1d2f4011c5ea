/// Soft ground in a simulation.
#include <vyr/RigidBody.h>
#include <vyrCollide/Box.h>
#include <vyrModel/Terrain.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using vyr::Vec3;

vyr::RealVector flat(std::size_t count) {
  return vyr::RealVector(count, 0.0);
}

vyr::ref_ptr<vyr::RigidBody> addBox(vyrSDK::Simulation& simulation, double mass, const Vec3& place) {
  vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody("load"));
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(0.3, 0.3, 0.3))));
  body->setMass(mass);
  body->setPosition(place);
  simulation.add(body.get());
  return body;
}

// The box ends on samples of the ground, or between them.
TEST(Terrain, CarriesABoxAndSinksAsFarAsItsPressureAsks) {
  for (const double load : {1000.0, 2000.0}) {
    for (const double x : {0.0, 0.03}) {
      vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
      vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(41, 41, 4, 4, flat(41 * 41)));
      ASSERT_TRUE(terrain->isValid());
      simulation->add(terrain.get());
      const auto box = addBox(*simulation, load, Vec3(x, 0, 0.301));
      const double mass = terrain->getMass();
      simulation->stepTo(6);
      // On 0.6 m x 0.6 m, 2000 kg are 54.5 kPa.
      const double pressure = load * 9.80665 / 0.36;
      const double expected = std::pow(pressure / terrain->getSoil().modulus, 1 / terrain->getSoil().exponent);
      EXPECT_NEAR(0.3 - box->getPosition().z(), expected, 0.2 * expected) << load << " kg, x " << x;
      EXPECT_GT(terrain->getSinkage(20, 20), 0.5 * expected);
      EXPECT_GT(terrain->getCompaction(20, 20), 1.01);
      EXPECT_NEAR(terrain->getMass(), mass, 1e-3 * mass);
      EXPECT_EQ(terrain->getSinkage(2, 2), 0);
    }
  }
}

TEST(Terrain, AHeavierBoxSinksDeeper) {
  const auto depth = [](double mass) {
    vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
    vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(41, 41, 4, 4, flat(41 * 41)));
    simulation->add(terrain.get());
    const auto box = addBox(*simulation, mass, Vec3(0, 0, 0.301));
    simulation->stepTo(4);
    return 0.3 - box->getPosition().z();
  };
  const double light = depth(1000);
  const double heavy = depth(3000);
  EXPECT_GT(heavy, 1.5 * light);
}

TEST(Terrain, CountsItsChangesByRows) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(41, 41, 4, 4, flat(41 * 41)));
  simulation->add(terrain.get());
  simulation->stepTo(0.1);
  EXPECT_EQ(terrain->getRevision(), 0u);
  const auto box = addBox(*simulation, 2000, Vec3(0, 0, 0.301));
  simulation->stepTo(1);
  EXPECT_GT(terrain->getRevision(), 0u);
  EXPECT_GT(terrain->getRowRevision(20), 0u);
  EXPECT_EQ(terrain->getRowRevision(0), 0u);
}

TEST(Terrain, ShowsThePressureThatCarriesTheLoad) {
  /// Remembers what it was to show.
  class Probe : public vyrModel::PressureFieldRenderer {
  public:
    void update(const vyrModel::PressureField& field) override { m_field = field; }
    vyrModel::PressureField m_field;
  };
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(41, 41, 4, 4, flat(41 * 41)));
  vyr::ref_ptr<Probe> probe(new Probe);
  terrain->setTransform(vyr::AffineMatrix4x4::translate(5, 0, 0));
  terrain->setPressureRenderer(probe.get());
  EXPECT_EQ(terrain->getPressureRenderer(), probe.get());
  simulation->add(terrain.get());
  simulation->step();
  EXPECT_TRUE(probe->m_field.empty());
  addBox(*simulation, 500, Vec3(5, 0, 0.3));
  simulation->stepTo(3);
  double force = 0;
  for (const vyrModel::PressureSample& sample : probe->m_field) {
    EXPECT_LT(std::abs(sample.position.x() - 5), 0.5);
    EXPECT_EQ(sample.normal, Vec3(0, 0, 1));
    force += sample.pressure * 0.1 * 0.1;
  }
  EXPECT_NEAR(force, 500 * 9.80665, 0.02 * 500 * 9.80665);
  terrain->setPressureRenderer(nullptr);
  EXPECT_EQ(probe->getReferenceCount(), 1);
}

TEST(Terrain, LeavesWithItsGeometry) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(5, 5, 4, 4, flat(25)));
  simulation->add(terrain.get());
  EXPECT_EQ(simulation->getGeometries().size(), 1u);
  simulation->remove(terrain.get());
  EXPECT_TRUE(simulation->getGeometries().empty());
}

TEST(Terrain, RefusesBadInput) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  vyrModel::Soil soil;
  soil.modulus = -1;
  const vyr::ref_ptr<vyrModel::Terrain> terrains[] = {new vyrModel::Terrain(0, 0, 4, 4, flat(0)),
                                                      new vyrModel::Terrain(5, 5, 0, 4, flat(25)),
                                                      new vyrModel::Terrain(1, 5, 4, 4, flat(5)),
                                                      new vyrModel::Terrain(5, 5, nan, 4, flat(25)),
                                                      new vyrModel::Terrain(5, 5, 4, 4, flat(24)),
                                                      new vyrModel::Terrain(5, 5, 4, 4, flat(25), -1),
                                                      new vyrModel::Terrain(5, 5, 4, 4, flat(25), 0.5, soil)};
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  for (const auto& terrain : terrains) {
    EXPECT_FALSE(terrain->isValid());
    EXPECT_EQ(terrain->getGeometry(), nullptr);
    EXPECT_EQ(terrain->getMass(), 0);
    EXPECT_EQ(terrain->getHeight(0, 0), 0);
    simulation->add(terrain.get());
  }
  simulation->step();
}

} // namespace
