/// Constraints, against closed forms.
#include "Scene.h"

#include <vyr/Ball.h>
#include <vyr/Distance.h>
#include <vyr/Hinge.h>
#include <vyr/Lock.h>
#include <vyr/Prismatic.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

const double kPi = 3.14159265358979323846;

/// Period of a pendulum that swings to `amplitude` (rad), with inertia about the pivot.
/// Source: T = 2 pi sqrt(I / (m g L)) / agm(1, cos(amplitude / 2)); Gauss's form of the elliptic integral.
double pendulumPeriod(double inertia, double mass, double length, double amplitude) {
  double a = 1.0;
  double b = std::cos(0.5 * amplitude);
  for (int i = 0; i < 20; ++i) {
    const double mean = 0.5 * (a + b);
    b = std::sqrt(a * b);
    a = mean;
  }
  return 2.0 * kPi * std::sqrt(inertia / (mass * scene::kGravity * length)) / a;
}

/// Mean time between passes of `value` through zero upwards, over the given number of periods.
double measurePeriod(vyrSDK::Simulation& simulation, const std::function<double()>& value, int periods) {
  double first = -1.0;
  double last = -1.0;
  int passes = 0;
  double before = value();
  while (passes <= periods && simulation.getTime() < 60.0) {
    simulation.step();
    const double now = value();
    if (before < 0.0 && now >= 0.0) {
      // Between the steps on a straight line.
      last = simulation.getTime() - simulation.getTimeStep() * now / (now - before);
      first = passes == 0 ? last : first;
      ++passes;
    }
    before = now;
  }
  return (last - first) / (passes - 1);
}

vyr::ref_ptr<vyrSDK::Simulation> fineSimulation() {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setTimeStep(1.0 / 500.0);
  return simulation;
}

} // namespace

TEST(Hinge, PendulumHasItsPeriod) {
  for (double degrees : {5.0, 60.0, 120.0}) {
    auto simulation = fineSimulation();
    const double amplitude = degrees * kPi / 180.0;
    const double r = 0.1;
    vyr::ref_ptr<vyr::RigidBody> bob =
        scene::body(new vyrCollide::Sphere(r), vyr::Vec3(std::sin(amplitude), 0.0, -std::cos(amplitude)));
    vyr::ref_ptr<vyr::Hinge> hinge = vyr::Hinge::create(bob.get(), nullptr, vyr::Vec3(), vyr::Vec3(0.0, 1.0, 0.0));
    ASSERT_TRUE(simulation->add(hinge.get()));
    const double mass = bob->getMass();
    const double inertia = mass * (1.0 + 0.4 * r * r);
    const double expected = pendulumPeriod(inertia, mass, 1.0, amplitude);
    const double measured = measurePeriod(
        *simulation, [&bob] { return bob->getPosition().x(); }, 4);
    EXPECT_NEAR(measured, expected, 0.005 * expected) << degrees << " degrees";
    EXPECT_NEAR(bob->getPosition().length(), 1.0, 1e-3);
    EXPECT_NEAR(bob->getPosition().y(), 0.0, 1e-6);
  }
}

TEST(Ball, PendulumHasItsPeriod) {
  auto simulation = fineSimulation();
  const double amplitude = 60.0 * kPi / 180.0;
  vyr::ref_ptr<vyr::RigidBody> bob =
      scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(std::sin(amplitude), 0.0, -std::cos(amplitude)));
  ASSERT_TRUE(simulation->add(vyr::Ball::create(bob.get(), nullptr, vyr::Vec3())));
  const double mass = bob->getMass();
  const double expected = pendulumPeriod(mass * (1.0 + 0.4 * 0.01), mass, 1.0, amplitude);
  EXPECT_NEAR(measurePeriod(
                  *simulation, [&bob] { return bob->getPosition().x(); }, 4),
              expected, 0.005 * expected);
}

TEST(Distance, PendulumOnARodHasItsPeriod) {
  auto simulation = fineSimulation();
  const double amplitude = 30.0 * kPi / 180.0;
  const vyr::Vec3 start(std::sin(amplitude), 0.0, -std::cos(amplitude));
  vyr::ref_ptr<vyr::RigidBody> bob = scene::body(new vyrCollide::Sphere(0.1), start);
  // The rod holds the bob's centre: the bob does not turn, and its own inertia does not count.
  vyr::ref_ptr<vyr::Distance> rod = vyr::Distance::create(bob.get(), start, nullptr, vyr::Vec3());
  ASSERT_TRUE(simulation->add(rod.get()));
  const double mass = bob->getMass();
  const double expected = pendulumPeriod(mass, mass, 1.0, amplitude);
  EXPECT_NEAR(measurePeriod(
                  *simulation, [&bob] { return bob->getPosition().x(); }, 4),
              expected, 0.005 * expected);
  EXPECT_NEAR(rod->getPosition(), 1.0, 1e-3);
}

TEST(Distance, RopeGoesSlackAndHoldsAtItsLength) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> load = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(0.0, 0.0, -0.2));
  vyr::ref_ptr<vyr::Distance> rope = vyr::Distance::create(load.get(), load->getPosition(), nullptr, vyr::Vec3());
  rope->setEnableLock(false);
  rope->setEnableRange(true);
  EXPECT_TRUE(rope->setRange(vyr::RangeReal(0.0, 1.0)));
  simulation->add(rope.get());
  simulation->stepTo(0.2);
  EXPECT_NEAR(rope->getCurrentForce(), 0.0, 1e-9);
  EXPECT_NEAR(load->getVelocity().z(), -scene::kGravity * 0.2, 1e-9);
  simulation->stepTo(3.0);
  EXPECT_NEAR(rope->getPosition(), 1.0, 1e-3);
  // Pulls the load up: along the line from the world to the load it is negative.
  EXPECT_NEAR(rope->getCurrentForce(), -load->getMass() * scene::kGravity, 1e-3 * load->getMass() * scene::kGravity);
}

TEST(Hinge, MotorReachesItsSpeedWithItsTorque) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> wheel = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  vyr::ref_ptr<vyr::Hinge> hinge = vyr::Hinge::create(wheel.get(), nullptr, vyr::Vec3(), vyr::Vec3(0.0, 0.0, 1.0));
  hinge->setEnableMotor(true);
  EXPECT_TRUE(hinge->setMotorSpeed(3.0));
  EXPECT_TRUE(hinge->setMotorForce(100.0));
  simulation->add(hinge.get());
  simulation->stepTo(1.0);
  // M t / I with I = 1000 / 6
  EXPECT_NEAR(hinge->getSpeed(), 100.0 * 1.0 / (1000.0 / 6.0), 1e-6);
  EXPECT_NEAR(hinge->getCurrentForce(), 100.0, 1e-6);
  simulation->stepTo(8.0);
  EXPECT_NEAR(hinge->getSpeed(), 3.0, 1e-6);
  EXPECT_NEAR(hinge->getCurrentForce(), 0.0, 1e-3);
  EXPECT_NEAR(wheel->getAngularVelocity().z(), 3.0, 1e-6);
  // Several turns are counted: 5 s up to speed (7.5 rad), then 3 s at 3 rad/s.
  EXPECT_NEAR(hinge->getPosition(), 16.5, 0.1);
}

TEST(Hinge, LockHoldsAWeightAtItsAngle) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> arm = scene::body(new vyrCollide::Box(0.5, 0.1, 0.1), vyr::Vec3(0.5, 0.0, 0.0));
  vyr::ref_ptr<vyr::Hinge> hinge = vyr::Hinge::create(arm.get(), nullptr, vyr::Vec3(), vyr::Vec3(0.0, 1.0, 0.0));
  hinge->setEnableLock(true);
  simulation->add(hinge.get());
  simulation->stepTo(5.0);
  EXPECT_NEAR(hinge->getPosition(), 0.0, 1e-3);
  // The weight turns the arm positively about y (z to x), the lock holds against it: m g L.
  EXPECT_NEAR(hinge->getCurrentForce(), -arm->getMass() * scene::kGravity * 0.5,
              2e-3 * arm->getMass() * scene::kGravity);
  EXPECT_NEAR(hinge->getForce().z(), arm->getMass() * scene::kGravity, 2e-3 * arm->getMass() * scene::kGravity);
  EXPECT_TRUE(hinge->setLockPosition(-0.5));
  simulation->stepTo(8.0);
  EXPECT_NEAR(hinge->getPosition(), -0.5, 2e-3);
}

TEST(Hinge, RangeStopsAtBothEnds) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  vyr::ref_ptr<vyr::RigidBody> door = scene::body(new vyrCollide::Box(0.5, 0.1, 0.5), vyr::Vec3(0.5, 0.0, 0.0));
  vyr::ref_ptr<vyr::Hinge> hinge = vyr::Hinge::create(door.get(), nullptr, vyr::Vec3(), vyr::Vec3(0.0, 0.0, 1.0));
  hinge->setEnableRange(true);
  EXPECT_TRUE(hinge->setRange(vyr::RangeReal(-0.5, 1.0)));
  hinge->setEnableMotor(true);
  hinge->setMotorSpeed(2.0);
  hinge->setMotorForce(50.0);
  simulation->add(hinge.get());
  double most = 0.0;
  for (int i = 0; i < 300; ++i) {
    simulation->step();
    most = std::max(most, hinge->getPosition());
  }
  EXPECT_NEAR(hinge->getPosition(), 1.0, 5e-3);
  EXPECT_LT(most, 1.01);
  hinge->setMotorSpeed(-2.0);
  simulation->stepTo(10.0);
  EXPECT_NEAR(hinge->getPosition(), -0.5, 5e-3);
}

TEST(Hinge, RangeBeyondATurnCountsTurns) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  vyr::ref_ptr<vyr::RigidBody> reel = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  vyr::ref_ptr<vyr::Hinge> hinge = vyr::Hinge::create(reel.get(), nullptr, vyr::Vec3(), vyr::Vec3(0.0, 0.0, 1.0));
  hinge->setEnableRange(true);
  hinge->setRange(vyr::RangeReal(0.0, 3.0 * kPi));
  hinge->setEnableMotor(true);
  hinge->setMotorSpeed(4.0);
  hinge->setMotorForce(1000.0);
  simulation->add(hinge.get());
  simulation->stepTo(6.0);
  EXPECT_NEAR(hinge->getPosition(), 3.0 * kPi, 0.01);
}

TEST(Prismatic, MotorLiftsAWeight) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> cabin = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  vyr::ref_ptr<vyr::Prismatic> lift =
      vyr::Prismatic::create(cabin.get(), nullptr, vyr::Vec3(), vyr::Vec3(0.0, 0.0, 1.0));
  lift->setEnableMotor(true);
  lift->setMotorSpeed(0.5);
  simulation->add(lift.get());
  simulation->stepTo(4.0);
  EXPECT_NEAR(lift->getSpeed(), 0.5, 1e-6);
  EXPECT_NEAR(lift->getPosition(), 2.0, 1e-3);
  EXPECT_NEAR(lift->getCurrentForce(), 1000.0 * scene::kGravity, 1.0);
  EXPECT_NEAR(cabin->getPosition().x(), 0.0, 1e-6);
  EXPECT_NEAR(std::fabs(cabin->getRotation().w()), 1.0, 1e-9);
}

TEST(Prismatic, SlidesFreelyAlongASlope) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  const vyr::Vec3 axis(std::cos(0.5), 0.0, -std::sin(0.5));
  vyr::ref_ptr<vyr::RigidBody> sledge = scene::body(new vyrCollide::Box(0.2, 0.1, 0.1));
  vyr::ref_ptr<vyr::Prismatic> rail = vyr::Prismatic::create(sledge.get(), nullptr, vyr::Vec3(), axis);
  simulation->add(rail.get());
  simulation->stepTo(1.0);
  EXPECT_NEAR(rail->getSpeed(), scene::kGravity * std::sin(0.5), 1e-3);
  EXPECT_NEAR((sledge->getPosition() ^ axis).length(), 0.0, 1e-3);
}

TEST(Lock, MakesTwoBodiesOne) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> wall = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  wall->setMotionControl(vyr::RigidBody::STATIC);
  vyr::ref_ptr<vyr::RigidBody> shelf = scene::body(new vyrCollide::Box(0.5, 0.5, 0.1), vyr::Vec3(1.0, 0.0, 0.0));
  vyr::ref_ptr<vyr::Lock> lock = vyr::Lock::create(shelf.get(), wall.get());
  simulation->add(lock.get());
  EXPECT_EQ(simulation->getRigidBodies().size(), 2u);
  simulation->stepTo(5.0);
  EXPECT_NEAR((shelf->getPosition() - vyr::Vec3(1.0, 0.0, 0.0)).length(), 0.0, 1e-3);
  EXPECT_NEAR(lock->getForce().z(), shelf->getMass() * scene::kGravity, 1e-3 * shelf->getMass() * scene::kGravity);
  EXPECT_NEAR(std::fabs(shelf->getRotation().w()), 1.0, 1e-6);
}

TEST(Constraint, HoldsTogetherBodiesWithDisplacedCentres) {
  // A dumbbell whose frame is at one end, hung on the other end: the engine's frame is not the user's.
  auto simulation = fineSimulation();
  vyr::ref_ptr<vyr::RigidBody> bar = new vyr::RigidBody("bar");
  bar->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.1)));
  bar->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.2)), vyr::AffineMatrix4x4::translate(0.0, 0.0, -1.0));
  bar->setPosition(vyr::Vec3(0.0, 0.0, 3.0));
  vyr::ref_ptr<vyr::Ball> ball = vyr::Ball::create(bar.get(), nullptr, vyr::Vec3(0.0, 0.0, 3.0));
  simulation->add(ball.get());
  simulation->stepTo(2.0);
  EXPECT_NEAR((bar->getPosition() - vyr::Vec3(0.0, 0.0, 3.0)).length(), 0.0, 1e-3);
  EXPECT_NEAR(ball->getForce().z(), bar->getMass() * scene::kGravity, 1e-3 * bar->getMass() * scene::kGravity);
}

TEST(Constraint, DirectSolverHoldsAChain) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setSolver(vyrSDK::Simulation::MULTI);
  std::vector<vyr::ref_ptr<vyr::RigidBody>> links;
  for (int i = 0; i < 10; ++i) {
    links.emplace_back(scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(0.0, 0.0, -0.3 * (i + 1))));
    vyr::RigidBody* above = i > 0 ? links[static_cast<size_t>(i) - 1].get() : nullptr;
    simulation->add(vyr::Ball::create(links.back().get(), above, vyr::Vec3(0.0, 0.0, -0.3 * i)));
  }
  simulation->stepTo(1.0);
  const double weight = links[0]->getMass() * scene::kGravity;
  EXPECT_NEAR(simulation->getConstraints()[0]->getForce().z(), 10.0 * weight, 1e-6 * weight);
  EXPECT_NEAR(simulation->getConstraints()[9]->getForce().z(), weight, 1e-6 * weight);
  EXPECT_NEAR(links[9]->getPosition().z(), -3.0, 1e-6);
}

TEST(Constraint, SolveTypeDecidesHowWellAChainHolds) {
  const auto sag = [](vyr::Constraint::SolveType type) {
    vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
    simulation->setNumIterations(4);
    vyr::ref_ptr<vyr::RigidBody> above;
    for (int i = 0; i < 20; ++i) {
      vyr::ref_ptr<vyr::RigidBody> link = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(0.0, 0.0, -0.3 * (i + 1)));
      vyr::Ball* ball = vyr::Ball::create(link.get(), above.get(), vyr::Vec3(0.0, 0.0, -0.3 * i));
      ball->setSolveType(type);
      simulation->add(ball);
      above = link;
    }
    simulation->stepTo(1.0);
    return -6.0 - above->getPosition().z();
  };
  EXPECT_LT(sag(vyr::Constraint::DIRECT), 0.5 * sag(vyr::Constraint::ITERATIVE));
}

TEST(Constraint, BreaksWhenItsForceIsTooMuch) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> load = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5));
  vyr::ref_ptr<vyr::Ball> strong = vyr::Ball::create(load.get(), nullptr, vyr::Vec3(0.0, 0.0, 0.5));
  strong->setBreakForce(12000.0);
  simulation->add(strong.get());
  simulation->stepTo(1.0);
  EXPECT_TRUE(strong->getEnable());
  strong->setBreakForce(9000.0);
  simulation->stepTo(2.0);
  EXPECT_FALSE(strong->getEnable());
  EXPECT_LT(load->getPosition().z(), -4.0);
}

TEST(Constraint, LeavesWithItsBody) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> a = scene::body(new vyrCollide::Sphere(0.1));
  vyr::ref_ptr<vyr::RigidBody> b = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(1.0, 0.0, 0.0));
  vyr::ref_ptr<vyr::Hinge> hinge = vyr::Hinge::create(a.get(), b.get(), vyr::Vec3(), vyr::Vec3(0.0, 1.0, 0.0));
  simulation->add(hinge.get());
  EXPECT_EQ(hinge->getSimulation(), simulation.get());
  simulation->step();
  simulation->remove(b.get());
  EXPECT_TRUE(simulation->getConstraints().empty());
  EXPECT_EQ(hinge->getSimulation(), nullptr);
  simulation->step();
  EXPECT_EQ(hinge->getRigidBody2(), b.get());
}

TEST(Constraint, RefusesOneBodyTwiceAndNumbersThatAreNone) {
  scene::Messages messages;
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(0.1));
  vyr::ref_ptr<vyr::Ball> self = vyr::Ball::create(body.get(), body.get(), vyr::Vec3());
  EXPECT_FALSE(self->isValid());
  EXPECT_FALSE(simulation->add(self.get()));
  vyr::ref_ptr<vyr::Ball> nothing = new vyr::Ball(nullptr, nullptr);
  EXPECT_FALSE(nothing->isValid());
  vyr::ref_ptr<vyr::Hinge> hinge = vyr::Hinge::create(body.get(), nullptr, vyr::Vec3(), vyr::Vec3());
  EXPECT_TRUE(hinge->isValid());
  EXPECT_FALSE(hinge->setMotorSpeed(std::nan("")));
  EXPECT_FALSE(hinge->setMotorForce(-1.0));
  EXPECT_FALSE(hinge->setRange(vyr::RangeReal(1.0, 0.0)));
  EXPECT_FALSE(hinge->setLockForce(std::nan("")));
  EXPECT_EQ(messages.get().size(), 7u);
}

TEST(Frame, StandsWhereBodyAndLocalTransformSay) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  body->setPosition(vyr::Vec3(0.0, 0.0, 2.0));
  vyr::ref_ptr<vyr::Frame> frame = vyr::Frame::create(body.get(), vyr::Vec3(1.0, 0.0, 2.0), vyr::Vec3(0.0, 3.0, 0.0));
  EXPECT_NEAR((frame->getPosition() - vyr::Vec3(1.0, 0.0, 2.0)).length(), 0.0, 1e-12);
  EXPECT_NEAR((frame->getAxis() - vyr::Vec3(0.0, 1.0, 0.0)).length(), 0.0, 1e-12);
  EXPECT_NEAR((frame->getLocalTransform().getTranslate() - vyr::Vec3(1.0, 0.0, 0.0)).length(), 0.0, 1e-12);
  body = nullptr;
  EXPECT_EQ(frame->getRigidBody(), nullptr);
}

namespace {

/// A ball on a weightless arm of 1 m along x, held to the world by an elastic lock at the origin.
struct ElasticArm {
  ElasticArm(double stiffness, double damping) {
    body = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(1.0, 0.0, 0.0));
    lock = new vyr::Lock(vyr::Frame::create(body.get(), vyr::Vec3()), vyr::Frame::create(nullptr, vyr::Vec3()));
    lock->setElasticity(stiffness, damping);
  }

  /// How far the arm hangs below the horizontal, in rad.
  double getAngle() const { return std::atan2(-body->getPosition().z(), body->getPosition().x()); }

  vyr::ref_ptr<vyr::RigidBody> body;
  vyr::ref_ptr<vyr::Lock> lock;
};

} // namespace

TEST(Lock, ElasticArmSagsAsItsStiffnessSays) {
  for (double stiffness : {100.0, 1.0e3, 1.0e5}) {
    auto simulation = fineSimulation();
    const ElasticArm arm(stiffness, 0.3 * std::sqrt(stiffness));
    ASSERT_TRUE(simulation->add(arm.lock.get()));
    simulation->stepTo(20.0);
    // stiffness * angle = m g cos(angle), by iteration.
    double angle = 0.0;
    for (int i = 0; i < 100; ++i) {
      angle = arm.body->getMass() * scene::kGravity * std::cos(angle) / stiffness;
    }
    // The solver lets the joint's origin hang by a fraction of a millimetre, too.
    EXPECT_NEAR(arm.getAngle(), angle, 0.01 * angle + 3e-4) << stiffness;
  }
}

TEST(Lock, ElasticArmSwingsWithItsPeriod) {
  auto simulation = fineSimulation();
  simulation->setGravity(vyr::Vec3());
  const ElasticArm arm(1.0e3, 0.0);
  ASSERT_TRUE(simulation->add(arm.lock.get()));
  arm.body->setVelocity(vyr::Vec3(0.0, 0.0, 0.5));
  arm.body->setAngularVelocity(vyr::Vec3(0.0, -0.5, 0.0));
  const double mass = arm.body->getMass();
  const double period = 2.0 * kPi * std::sqrt(mass * (1.0 + 0.4 * 0.1 * 0.1) / 1.0e3);
  const double measured = measurePeriod(
      *simulation, [&arm] { return arm.body->getPosition().z(); }, 3);
  EXPECT_NEAR(measured, period, 0.02 * period);
}

TEST(Lock, PreloadCarriesTheArm) {
  auto simulation = fineSimulation();
  const ElasticArm arm(100.0, 5.0);
  // Gravity turns the arm about y; the joint turns it back.
  ASSERT_TRUE(arm.lock->setPreload(vyr::Vec3(0.0, -arm.body->getMass() * scene::kGravity, 0.0)));
  ASSERT_TRUE(simulation->add(arm.lock.get()));
  simulation->stepTo(2.0);
  EXPECT_NEAR(arm.getAngle(), 0.0, 1e-3);
}

TEST(Lock, RefusesImpossibleElasticity) {
  const scene::Messages messages;
  const ElasticArm arm(1.0, 0.0);
  EXPECT_FALSE(arm.lock->setElasticity(0.0, 1.0));
  EXPECT_FALSE(arm.lock->setElasticity(1.0, -1.0));
  EXPECT_FALSE(arm.lock->setPreload(vyr::Vec3(0.0, std::nan(""), 0.0)));
  EXPECT_EQ(messages.get().size(), 3u);
}
