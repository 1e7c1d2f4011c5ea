/// Trees: growth, rest, wind, loads and breaking.
#include <vyr/Notify.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Sphere.h>
#include <vyrModel/Tree.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using vyr::Vec3;
using vyrModel::Tree;
using vyrModel::TreeBranch;
using vyrModel::TreeParameters;

/// Counts the error messages while it lives.
class ErrorCounter {
public:
  ErrorCounter() { vyr::Notify::instance()->addSink(m_sink.get()); }
  ~ErrorCounter() { vyr::Notify::instance()->removeSink(m_sink.get()); }
  ErrorCounter(const ErrorCounter&) = delete;
  ErrorCounter& operator=(const ErrorCounter&) = delete;
  int get() const { return m_sink->count; }

private:
  struct Sink : vyr::NotifySink {
    void message(vyr::NotifyLevel level, const std::string&) override { count += level == vyr::NOTIFY_ERROR ? 1 : 0; }
    int count = 0;
  };
  vyr::ref_ptr<Sink> m_sink{new Sink};
};

/// A small tree on its own.
struct Stand {
  explicit Stand(const TreeParameters& parameters, unsigned int seed = 7) {
    tree->grow(parameters, seed);
    tree->addTo(simulation.get());
  }

  Vec3 tip() const {
    const TreeBranch& top = topBranch();
    return Vec3(0, 0, top.length) * top.body->getTransform();
  }

  const TreeBranch& topBranch() const {
    std::size_t top = 0;
    while (top + 1 < tree->getNumBranches() && tree->getBranches()[top + 1].level == 0) {
      ++top;
    }
    return tree->getBranches()[top];
  }

  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  vyr::ref_ptr<Tree> tree{new Tree};
};

TreeParameters pole(double height, double radius) {
  TreeParameters parameters;
  parameters.height = height;
  parameters.trunkRadius = radius;
  parameters.levels = 1;
  parameters.leavesPerMeter = 0;
  return parameters;
}

std::vector<Vec3> places(const Tree& tree) {
  std::vector<Vec3> result;
  for (const TreeBranch& branch : tree.getBranches()) {
    result.push_back(branch.body->getPosition());
  }
  return result;
}

TEST(Tree, EqualSeedsGiveEqualTreesOthersOthers) {
  const vyr::ref_ptr<Tree> a(new Tree);
  const vyr::ref_ptr<Tree> b(new Tree);
  const vyr::ref_ptr<Tree> c(new Tree);
  ASSERT_TRUE(a->grow(TreeParameters(), 3));
  ASSERT_TRUE(b->grow(TreeParameters(), 3));
  ASSERT_TRUE(c->grow(TreeParameters(), 4));
  EXPECT_EQ(places(*a), places(*b));
  EXPECT_EQ(a->getNumLeaves(), b->getNumLeaves());
  EXPECT_NE(places(*a), places(*c));
}

TEST(Tree, BranchesHangTogether) {
  const vyr::ref_ptr<Tree> tree(new Tree);
  ASSERT_TRUE(tree->grow(TreeParameters(), 5));
  EXPECT_GT(tree->getNumBranches(), 30u);
  EXPECT_GT(tree->getNumLeaves(), 200u);
  for (std::size_t i = 0; i < tree->getNumBranches(); ++i) {
    const TreeBranch& branch = tree->getBranches()[i];
    EXPECT_LT(branch.parent, static_cast<int>(i));
    EXPECT_GE(branch.radiusBegin, branch.radiusEnd);
    EXPECT_GT(branch.radiusEnd, 0);
    if (branch.parent >= 0) {
      const TreeBranch& parent = tree->getBranches()[branch.parent];
      EXPECT_EQ(branch.level, parent.level + (branch.continues ? 0 : 1));
      const Vec3 joint = Vec3(0, 0, branch.offset) * parent.body->getTransform();
      EXPECT_NEAR((joint - branch.body->getPosition()).length(), 0, 1e-9);
    }
  }
  EXPECT_EQ(tree->getBranch(tree->getNumBranches()), nullptr);
}

TEST(Tree, MassIsThatOfATaperedTrunk) {
  const vyr::ref_ptr<Tree> tree(new Tree);
  ASSERT_TRUE(tree->grow(pole(4, 0.1)));
  // A frustum from 0.1 m to 0.035 m: its four pieces are frustums of the same cone.
  const double volume = 3.14159265358979 / 3 * 4 * (0.1 * 0.1 + 0.1 * 0.035 + 0.035 * 0.035);
  EXPECT_NEAR(tree->getMass(), 850 * volume, 1e-6 * tree->getMass());
}

TEST(Tree, StandsAtRestAsItGrewAndTouchesNothingOfItself) {
  Stand stand{TreeParameters()};
  stand.simulation->add(new vyrCollide::Geometry(new vyrCollide::Plane));
  const std::vector<Vec3> before = places(*stand.tree);
  stand.simulation->stepTo(3);
  const std::vector<Vec3> after = places(*stand.tree);
  double farthest = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    farthest = std::max(farthest, (after[i] - before[i]).length());
  }
  EXPECT_LT(farthest, 0.05);
  EXPECT_TRUE(stand.simulation->getContacts().empty());
  EXPECT_EQ(stand.tree->getNumBroken(), 0u);
}

// Leaves weigh the same as bodies of their own, hang as they grew, and swing further than the twigs that carry them.
TEST(Tree, LeavesAreBodiesThatSwingOnTheirTwigs) {
  TreeParameters parameters;
  const vyr::ref_ptr<Tree> plain(new Tree);
  plain->grow(parameters, 7);
  EXPECT_EQ(plain->getNumLeafBodies(), 0u);
  parameters.leafBodies = 30;
  Stand stand(parameters);
  ASSERT_EQ(stand.tree->getNumLeafBodies(), 30u);
  EXPECT_EQ(stand.tree->getNumLeaves(), plain->getNumLeaves());
  EXPECT_NEAR(stand.tree->getMass(), plain->getMass(), 1e-9 * plain->getMass());
  // The sine of the angle between a twig and its leaves, at the most.
  const auto largestTurn = [&] {
    double largest = 0;
    for (const vyrModel::TreeLeafBody& leaves : stand.tree->getLeafBodies()) {
      const Vec3 twig = Vec3(0, 0, 1) * stand.tree->getBranch(leaves.branch)->body->getRotation();
      largest = std::max(largest, (twig ^ (Vec3(0, 0, 1) * leaves.body->getRotation())).length());
    }
    return largest;
  };
  stand.simulation->stepTo(4);
  EXPECT_LT(largestTurn(), 0.02);
  const double weight = stand.tree->getMass() * 9.80665;
  EXPECT_NEAR(stand.tree->getBranches()[0].joint->getForce().z(), weight, 0.01 * weight);
  stand.tree->setWind(Vec3(10, 0, 0));
  stand.simulation->stepTo(8);
  EXPECT_GT(largestTurn(), 0.1);
  EXPECT_EQ(stand.tree->getNumBroken(), 0u);

  // A twig that breaks takes its leaves with it.
  const vyrModel::TreeLeafBody& leaves = stand.tree->getLeafBodies()[0];
  const double before = leaves.body->getPosition().z();
  ASSERT_TRUE(stand.tree->breakBranch(leaves.branch));
  stand.simulation->stepTo(8.4);
  EXPECT_LT(leaves.body->getPosition().z(), before - 0.2);
  const Vec3 apart = leaves.body->getPosition() - stand.tree->getBranch(leaves.branch)->body->getPosition();
  EXPECT_LT(apart.length(), 1.0);

  EXPECT_TRUE(stand.tree->remove());
  EXPECT_TRUE(stand.simulation->getRigidBodies().empty());
  parameters.leafBodies = -1;
  const ErrorCounter errors;
  EXPECT_FALSE(stand.tree->grow(parameters, 7));
  EXPECT_EQ(errors.get(), 1);
}

TEST(Tree, SwaysWhenABallHitsIt) {
  Stand stand(pole(4, 0.05));
  const Vec3 calm = stand.tip();
  vyr::ref_ptr<vyr::RigidBody> ball(new vyr::RigidBody("ball"));
  ball->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.15)));
  ball->setMass(5);
  ball->setPosition(Vec3(-1, 0, 3.5));
  ball->setVelocity(Vec3(6, 0, 0));
  stand.simulation->add(ball.get());
  double farthest = 0;
  double back = 0;
  while (stand.simulation->getTime() < 3) {
    stand.simulation->step();
    farthest = std::max(farthest, stand.tip().x() - calm.x());
    back = std::min(back, stand.tip().x() - calm.x());
  }
  EXPECT_GT(farthest, 0.05);
  EXPECT_LT(back, -0.02);                 // it swings to the other side, too
  EXPECT_LT(ball->getPosition().x(), 10); // without the tree it would come to 17 m
  EXPECT_EQ(stand.tree->getNumBroken(), 0u);
}

TEST(Tree, RootCarriesTheWeight) {
  Stand stand{TreeParameters()};
  stand.simulation->stepTo(4);
  const double weight = stand.tree->getMass() * 9.80665;
  EXPECT_NEAR(stand.tree->getBranches()[0].joint->getForce().z(), weight, 0.01 * weight);
}

TEST(Tree, SwaysInTheWindAndComesBack) {
  TreeParameters parameters;
  parameters.stiffness = 3e8;
  Stand stand(parameters);
  stand.tree->setGustiness(0);
  const Vec3 calm = stand.tip();
  stand.tree->setWind(Vec3(6, 0, 0));
  stand.simulation->stepTo(6);
  const double bent = stand.tip().x() - calm.x();
  EXPECT_GT(bent, 0.02);
  EXPECT_LT(bent, 2.0);
  stand.tree->setWind(Vec3());
  stand.simulation->stepTo(20);
  EXPECT_NEAR(stand.tip().x(), calm.x(), 0.25 * bent);
}

TEST(Tree, GustsTravelWithTheWind) {
  const vyr::ref_ptr<Tree> tree(new Tree);
  EXPECT_EQ(tree->getWindAt(Vec3(1, 2, 3), 4), Vec3());
  tree->setWind(Vec3(5, 0, 0));
  EXPECT_NEAR(tree->getWindAt(Vec3(0, 0, 0), 1).x(), tree->getWindAt(Vec3(10, 0, 0), 3).x(), 1e-9);
  EXPECT_NE(tree->getWindAt(Vec3(), 1).x(), tree->getWindAt(Vec3(), 2).x());
  tree->setGustiness(0);
  EXPECT_EQ(tree->getWindAt(Vec3(1, 2, 3), 4), Vec3(5, 0, 0));
}

TEST(Tree, PoleBendsAsABeamDoes) {
  // Four pieces with springs at their lower ends under a force at the top: the angles add up as the moments say.
  TreeParameters parameters = pole(4, 0.06);
  parameters.damping = 1;
  Stand stand(parameters);
  // Enough for the chain of joints to converge to the closed form.
  stand.simulation->setNumIterations(200);
  stand.simulation->setGravity(Vec3());
  for (const TreeBranch& branch : stand.tree->getBranches()) {
    branch.joint->setPreload(Vec3());
  }
  const Vec3 before = stand.tip();
  const double force = 20;
  double expected = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const TreeBranch& branch = stand.tree->getBranches()[i];
    const double stiffness =
        parameters.stiffness * 3.14159265358979 / 4 * std::pow(branch.radiusBegin, 4) / branch.length;
    const double arm = before.z() - branch.body->getPosition().z();
    expected += force * arm / stiffness * arm;
  }
  for (int i = 0; i < 1200; ++i) {
    stand.topBranch().body->addForceAtPosition(Vec3(force, 0, 0), stand.tip());
    stand.simulation->step();
  }
  EXPECT_NEAR(stand.tip().x() - before.x(), expected, 0.05 * expected);
}

TEST(Tree, StressFollowsFromTheLoad) {
  Stand stand(pole(4, 0.06));
  stand.tree->setStrength(std::numeric_limits<double>::infinity());
  stand.simulation->setGravity(Vec3());
  for (const TreeBranch& branch : stand.tree->getBranches()) {
    branch.joint->setPreload(Vec3());
  }
  const double force = 20;
  for (int i = 0; i < 1200; ++i) {
    stand.topBranch().body->addForceAtPosition(Vec3(force, 0, 0), stand.tip());
    stand.simulation->step();
  }
  const double expected = 4 * force * stand.tip().z() / (3.14159265358979 * std::pow(0.06, 3));
  EXPECT_NEAR(stand.tree->getStress(0), expected, 0.05 * expected);
  EXPECT_EQ(stand.tree->getStress(99), 0);
}

TEST(Tree, BreaksUnderALoadAndFalls) {
  TreeParameters parameters = pole(4, 0.06);
  parameters.stiffness = 8e9;
  Stand stand(parameters);
  vyr::ref_ptr<vyr::RigidBody> hammer(new vyr::RigidBody);
  hammer->add(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(0.2, 0.2, 0.2))));
  hammer->setMass(500);
  hammer->setPosition(stand.tip() + Vec3(-0.6, 0, -0.3));
  hammer->setVelocity(Vec3(12, 0, 0));
  stand.simulation->add(hammer.get());
  stand.simulation->stepTo(2);
  EXPECT_GT(stand.tree->getNumBroken(), 0u);
  EXPECT_LT(stand.tip().z(), 3.0);
}

TEST(Tree, BrokenBranchFallsToTheGround) {
  Stand stand{TreeParameters()};
  stand.simulation->add(new vyrCollide::Geometry(new vyrCollide::Plane));
  std::size_t bough = 0;
  while (stand.tree->getBranches()[bough].level != 1) {
    ++bough;
  }
  const double before = stand.tree->getBranches()[bough].body->getPosition().z();
  const std::uint64_t shape = stand.tree->getShapeRevision();
  EXPECT_TRUE(stand.tree->breakBranch(bough));
  EXPECT_FALSE(stand.tree->breakBranch(bough));
  EXPECT_FALSE(stand.tree->breakBranch(100000));
  EXPECT_GT(stand.tree->getShapeRevision(), shape);
  stand.simulation->stepTo(3);
  EXPECT_LT(stand.tree->getBranches()[bough].body->getPosition().z(), before - 0.5);
  EXPECT_EQ(stand.tree->getNumBroken(), 1u);
}

TEST(Tree, LivesInTheSimulationAndLeavesItWhole) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<Tree> tree(new Tree);
  const vyr::observer_ptr<Tree> watched(tree.get());
  ASSERT_TRUE(tree->grow());
  ASSERT_TRUE(tree->addTo(simulation.get()));
  EXPECT_EQ(simulation->getRigidBodies().size(), tree->getNumBranches());
  EXPECT_EQ(tree->getSimulation(), simulation.get());
  tree = nullptr;
  ASSERT_TRUE(watched.valid());
  simulation->step();
  ASSERT_TRUE(watched->remove());
  EXPECT_FALSE(watched.valid());
  EXPECT_TRUE(simulation->getRigidBodies().empty());
  EXPECT_TRUE(simulation->getStepEventListeners().empty());
}

TEST(Tree, DiesWithItsSimulation) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const vyr::observer_ptr<Tree> tree(new Tree);
  tree->grow(pole(2, 0.05));
  ASSERT_TRUE(tree->addTo(simulation.get()));
  simulation = nullptr;
  EXPECT_FALSE(tree.valid());
}

TEST(Tree, OutlivesItsSimulationWhenHeld) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const vyr::ref_ptr<Tree> tree(new Tree);
  tree->grow(pole(2, 0.05));
  ASSERT_TRUE(tree->addTo(simulation.get()));
  simulation = nullptr;
  EXPECT_EQ(tree->getSimulation(), nullptr);
  EXPECT_FALSE(tree->remove());
  EXPECT_EQ(tree->getNumBranches(), 4u);
}

TEST(Tree, StandsWhereItIsPlaced) {
  const vyr::AffineMatrix4x4 place = vyr::AffineMatrix4x4::translate(3, 4, 5);
  Stand stand(pole(2, 0.05));
  EXPECT_FALSE(stand.tree->setTransform(place));
  ASSERT_TRUE(stand.tree->remove());
  ASSERT_TRUE(stand.tree->setTransform(place));
  ASSERT_TRUE(stand.tree->addTo(stand.simulation.get()));
  stand.simulation->stepTo(1);
  EXPECT_NEAR((stand.tree->getBranches()[0].body->getPosition() - Vec3(3, 4, 5)).length(), 0, 1e-3);
}

TEST(Tree, RefusesBadInput) {
  const vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const vyr::ref_ptr<Tree> tree(new Tree);
  const ErrorCounter errors;
  EXPECT_FALSE(tree->addTo(simulation.get()));
  EXPECT_FALSE(tree->addTo(nullptr));
  TreeParameters parameters;
  parameters.height = -1;
  EXPECT_FALSE(tree->grow(parameters));
  parameters = TreeParameters();
  parameters.trunkRadius = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(tree->grow(parameters));
  EXPECT_EQ(tree->getNumBranches(), 0u);
  EXPECT_FALSE(tree->setWind(Vec3(0, std::nan(""), 0)));
  EXPECT_FALSE(tree->setGustiness(2));
  EXPECT_FALSE(tree->setStrength(0));
  EXPECT_EQ(errors.get(), 7);
  ASSERT_TRUE(tree->grow(pole(2, 0.05)));
  ASSERT_TRUE(tree->addTo(simulation.get()));
  EXPECT_FALSE(tree->addTo(simulation.get()));
  EXPECT_FALSE(tree->grow());
  EXPECT_EQ(errors.get(), 9);
}

TEST(Tree, LimbsOfALargeCrownKeepApart) {
  TreeParameters parameters;
  parameters.levels = 4;
  parameters.height = 24;
  parameters.boughs = 16;
  parameters.branches = 8;
  parameters.leavesPerMeter = 0;
  const vyr::ref_ptr<Tree> tree(new Tree);
  ASSERT_TRUE(tree->grow(parameters, 1));
  const auto& branches = tree->getBranches();
  ASSERT_GT(branches.size(), 1000u);
  const int samples = 6;
  std::vector<Vec3> places;
  for (const TreeBranch& branch : branches) {
    for (int i = 0; i < samples; ++i) {
      places.push_back(Vec3(0, 0, branch.length * i / (samples - 1)) * branch.body->getTransform());
    }
  }
  const auto thickest = [](const TreeBranch& branch) { return std::max(branch.radiusBegin, branch.radiusEnd); };
  std::size_t touching = 0;
  for (std::size_t i = 0; i < branches.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (branches[i].parent == static_cast<int>(j)) {
        continue;
      }
      const double apart = thickest(branches[i]) + thickest(branches[j]);
      bool touches = false;
      for (int k = 0; k < samples * samples && !touches; ++k) {
        const Vec3 way = places[i * samples + static_cast<std::size_t>(k / samples)] -
                         places[j * samples + static_cast<std::size_t>(k % samples)];
        touches = way.length2() < apart * apart;
      }
      touching += touches ? 1 : 0;
    }
  }
  EXPECT_EQ(touching, 0u);
}

} // namespace
