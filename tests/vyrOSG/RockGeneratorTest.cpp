// Rocks: forms, mass, places and visuals.
#include "CapturedMessages.h"

#include <vyrCollide/Box.h>
#include <vyrCollide/Plane.h>
#include <vyrOSG/RockGenerator.h>
#include <vyrOSG/utils.h>
#include <vyrSDK/Simulation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using vyr::Vec3;
using vyrOSG::RockGenerator;

struct Quarry {
  vyr::ref_ptr<RockGenerator> generator{new RockGenerator};
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  vyr::ref_ptr<vyrSDK::Assembly> assembly{new vyrSDK::Assembly};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  vyr::ref_ptr<vyr::Material> stone{new vyr::Material("stone", 2500, 0.8)};

  void generate(int count, double low, double high, double seed = 0) {
    generator->generateRocks(assembly.get(), simulation->getSpace(), count, group.get(), low, high, stone.get(), 0, 1,
                             1, seed);
  }
};

TEST(RockGenerator, EveryFormIsARockOfItsRadius) {
  const vyr::ref_ptr<vyr::Material> stone(new vyr::Material("stone", 2500));
  for (int type = 0; type < RockGenerator::NUM_ROCK_TYPES; ++type) {
    const vyr::ref_ptr<vyr::RigidBody> rock(
        RockGenerator::createRock(static_cast<RockGenerator::RockType>(type), 0.5, stone.get(), 9));
    ASSERT_TRUE(rock);
    const std::size_t parts[] = {2, 3, 4, 5, 1, 1, 1};
    EXPECT_EQ(parts[type], rock->getGeometries().size()) << type;
    for (const auto& geometry : rock->getGeometries()) {
      const vyrCollide::Bounds bounds = geometry->getWorldBounds();
      EXPECT_LE(std::max(bounds.max.length(), bounds.min.length()), 0.5 * std::sqrt(3.0) + 0.05);
      EXPECT_EQ(stone.get(), geometry->getMaterial());
    }
    // Between a splinter's share of the ball and the whole ball.
    const double ball = 2500 * 4.18879 * 0.125;
    EXPECT_GT(rock->getMass(), 0.05 * ball) << type;
    EXPECT_LT(rock->getMass(), 0.85 * ball) << type;
  }
}

TEST(RockGenerator, CompositesWeighTheirOverlapOnce) {
  const vyr::ref_ptr<vyr::Material> stone(new vyr::Material("stone", 1000));
  const vyr::ref_ptr<vyr::RigidBody> rock(
      RockGenerator::createRock(RockGenerator::COMPOSITE_FOUR, 0.5, stone.get(), 2));
  double sum = 0;
  for (const auto& geometry : rock->getGeometries())
    sum += 1000 * geometry->getShape()->getVolume();
  EXPECT_LT(rock->getMass(), 0.95 * sum);
  EXPECT_GT(rock->getMass(), 0.4 * sum);
}

TEST(RockGenerator, RocksStandClearOfEachOtherAndOfTheScene) {
  Quarry quarry;
  const vyr::ref_ptr<vyrCollide::Geometry> wall(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(0.3, 0.3, 2))));
  quarry.simulation->add(wall.get());
  quarry.simulation->getSpace()->add(wall.get());
  quarry.generate(40, 0.1, 0.25);
  quarry.simulation->add(quarry.assembly.get());
  EXPECT_EQ(40u, quarry.simulation->getRigidBodies().size());
  quarry.simulation->setGravity(Vec3());
  quarry.simulation->step();
  for (const vyrSDK::Contact& contact : quarry.simulation->getContacts())
    EXPECT_LE(contact.depth, 0) << "rocks overlap";
  for (const auto& body : quarry.simulation->getRigidBodies()) {
    EXPECT_LE(std::abs(body->getPosition().x()), 1);
    EXPECT_LE(std::abs(body->getPosition().y()), 1);
    EXPECT_GT(body->getPosition().z(), 0);
  }
}

TEST(RockGenerator, RocksFallAndComeToRest) {
  Quarry quarry;
  quarry.generate(14, 0.15, 0.3);
  quarry.simulation->add(quarry.assembly.get());
  quarry.simulation->add(new vyrCollide::Geometry(new vyrCollide::Plane));
  quarry.simulation->stepTo(6);
  for (const auto& body : quarry.simulation->getRigidBodies()) {
    EXPECT_GT(body->getPosition().z(), 0);
    EXPECT_LT(body->getPosition().z(), 1.5);
    EXPECT_LT(body->getVelocity().length(), 0.3);
  }
}

TEST(RockGenerator, EqualSeedsGiveEqualHeaps) {
  Quarry a, b, c;
  a.generate(10, 0.1, 0.2, 5);
  b.generate(10, 0.1, 0.2, 5);
  c.generate(10, 0.1, 0.2, 6);
  EXPECT_EQ(a.assembly->getRigidBodies()[9]->getPosition(), b.assembly->getRigidBodies()[9]->getPosition());
  EXPECT_EQ(a.assembly->getRigidBodies()[9]->getMass(), b.assembly->getRigidBodies()[9]->getMass());
  EXPECT_NE(a.assembly->getRigidBodies()[9]->getPosition(), c.assembly->getRigidBodies()[9]->getPosition());
}

TEST(RockGenerator, DrawsEachBlock) {
  Quarry quarry;
  quarry.generate(7, 0.2, 0.2);
  std::size_t blocks = 0;
  for (const auto& body : quarry.assembly->getRigidBodies()) {
    for (const auto& geometry : body->getGeometries()) {
      vyrOSG::GeometryNode* node = vyrOSG::findGeometryNode(geometry.get(), quarry.group.get());
      ASSERT_NE(nullptr, node);
      EXPECT_NE(nullptr, node->getRenderChild(vyrOSG::GeometryNode::RENDER_DATA));
      ++blocks;
    }
  }
  EXPECT_EQ(2u + 3 + 4 + 5 + 1 + 1 + 1, blocks);
  EXPECT_EQ(blocks, quarry.simulation->getSpace()->getGeometries().size());
}

TEST(RockGenerator, RefusesBadInput) {
  CapturedMessages messages;
  Quarry quarry;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  quarry.generate(-1, 0.1, 0.2);
  quarry.generate(5, -0.1, 0.2);
  quarry.generate(5, 0.3, 0.2);
  quarry.generate(5, 0.1, nan);
  quarry.generate(5, 0.1, 0.2, nan);
  EXPECT_EQ(5u, messages.take().size());
  EXPECT_TRUE(quarry.assembly->getRigidBodies().empty());
  EXPECT_EQ(nullptr, RockGenerator::createRock(RockGenerator::NUM_ROCK_TYPES, 1, nullptr, 0));
  EXPECT_EQ(nullptr, RockGenerator::createRock(RockGenerator::MAYA_ROCK1, -1, nullptr, 0));
  EXPECT_EQ(2u, messages.take().size());
  quarry.generate(0, 0.1, 0.2);
  quarry.generator->generateRocks(nullptr, nullptr, 5, nullptr, 0.1, 0.2, nullptr);
  EXPECT_TRUE(messages.errors().empty());
  quarry.generator->generateRocks(quarry.assembly.get(), nullptr, 5, nullptr, 0.1, 0.2, nullptr);
  EXPECT_EQ(5u, quarry.assembly->getRigidBodies().size());
}

TEST(RockGenerator, GivesUpWhereThereIsNoRoom) {
  CapturedMessages messages;
  Quarry quarry;
  // The whole area lies behind a wall without end.
  const vyr::ref_ptr<vyrCollide::Geometry> wall(new vyrCollide::Geometry(new vyrCollide::Plane));
  wall->setLocalTransform(vyr::AffineMatrix4x4(vyr::Quat(Vec3(0, 0, 1), Vec3(1, 0, 0)), Vec3(10, 0, 0)));
  quarry.simulation->getSpace()->add(wall.get());
  quarry.generate(3, 0.1, 0.2);
  EXPECT_TRUE(quarry.assembly->getRigidBodies().empty());
  EXPECT_EQ(1u, messages.errors().size());
}

} // namespace
