/// What heavy loads do to light wires: the tension of every step against statics, swinging and blows.
#include <vyr/RigidBody.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Plane.h>
#include <vyrSDK/Simulation.h>
#include <vyrWire/Wire.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

namespace {

using vyr::Vec3;
using Body = vyr::ref_ptr<vyr::RigidBody>;
using Rope = vyr::ref_ptr<vyrWire::Wire>;

const double kG = 9.80665;
const double kLength = 6;
const double kTop = 9.8;

struct Range {
  double low = 1e300;
  double high = -1e300;
  void add(double value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

struct Crane {
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};

  Body addBox(double mass, const Vec3& halfSize, const Vec3& place) const {
    Body body(new vyr::RigidBody("box"));
    body->add(new vyrCollide::Geometry(new vyrCollide::Box(halfSize)));
    body->setMass(mass);
    body->setPosition(place);
    simulation->add(body.get());
    return body;
  }
  Rope addWire(double length, std::size_t segments, double massPerLength, vyr::RigidBody* from, const Vec3& top,
               vyr::RigidBody* to, const Vec3& bottom, int subSteps, double damping) const {
    Rope wire(new vyrWire::Wire(length, segments, massPerLength));
    wire->attachBegin(from, top);
    wire->attachEnd(to, bottom);
    wire->setNumSubSteps(subSteps);
    wire->setDamping(damping);
    simulation->add(wire.get());
    return wire;
  }
  /// The end tensions of the steps from `from` s to `until` s.
  Range tensions(const Rope& wire, double from, double until) const {
    Range range;
    while (simulation->getTime() < until) {
      simulation->step();
      if (simulation->getTime() > from) {
        range.add(wire->getEndTension());
      }
    }
    return range;
  }
};

/// A box of edges 1.2, 1.2 and 1 m under a wire of 6 m, lifted so that `slack` m of the wire are loose.
Body addLoad(const Crane& crane, double mass, double slack = 0) {
  return crane.addBox(mass, Vec3(0.6, 0.6, 0.5), Vec3(0, 0, kTop - kLength - 0.5 + slack));
}

/// Small steps, damping, segments.
class WireLoad : public testing::TestWithParam<std::tuple<int, double, int>> {
protected:
  int subSteps() const { return std::get<0>(GetParam()); }
  double damping() const { return std::get<1>(GetParam()); }
  std::size_t segments() const { return static_cast<std::size_t>(std::get<2>(GetParam())); }
};

TEST_P(WireLoad, HangsStillWithItsWeightInEveryStep) {
  for (const double ratio : {1.0, 10.0, 111.0, 1000.0}) {
    const Crane crane;
    const double mass = ratio * kLength * 1.2;
    const Body load = addLoad(crane, mass);
    const Rope wire = crane.addWire(kLength, segments(), 1.2, nullptr, Vec3(0, 0, kTop), load.get(), Vec3(0, 0, 0.5),
                                    subSteps(), damping());
    const Range tension = crane.tensions(wire, 0, 3);
    EXPECT_GT(tension.low, 0.999 * mass * kG) << ratio;
    EXPECT_LT(tension.high, 1.001 * mass * kG) << ratio;
    EXPECT_NEAR(load->getPosition().z(), kTop - kLength - 0.5, 1e-4) << ratio;
  }
}

TEST_P(WireLoad, HangsStillUnderAPointBesideItsMiddle) {
  // The load hangs askew, its centre of mass right under the fastening.
  const Crane crane;
  const double angle = std::atan2(0.4, 0.5);
  const Body load = crane.addBox(800, Vec3(0.6, 0.6, 0.5), Vec3(0, 0, kTop - kLength - std::hypot(0.4, 0.5)));
  load->setRotation(vyr::Quat(-angle, Vec3(0, 1, 0)));
  const Rope wire = crane.addWire(kLength, segments(), 1.2, nullptr, Vec3(0, 0, kTop), load.get(), Vec3(0.4, 0, 0.5),
                                  subSteps(), damping());
  const Range tension = crane.tensions(wire, 1, 4);
  EXPECT_GT(tension.low, 0.97 * 800 * kG);
  EXPECT_LT(tension.high, 1.03 * 800 * kG);
}

TEST_P(WireLoad, SwingsWithItsCentripetalForce) {
  // A load let go at the angle A: the tension is m g cos(A) at the ends and m g (3 - 2 cos(A)) at the bottom, here with
  // room for the load's own turning about its fastening.
  const Crane crane;
  const double angle = 0.15;
  const double arm = kLength + 0.5;
  const Body load =
      crane.addBox(800, Vec3(0.6, 0.6, 0.5), Vec3(arm * std::sin(angle), 0, kTop - arm * std::cos(angle)));
  load->setRotation(vyr::Quat(-angle, Vec3(0, 1, 0)));
  const Rope wire = crane.addWire(kLength, segments(), 1.2, nullptr, Vec3(0, 0, kTop), load.get(), Vec3(0, 0, 0.5),
                                  subSteps(), damping());
  const Range tension = crane.tensions(wire, 0, 6);
  EXPECT_NEAR(tension.low, 800 * kG * std::cos(angle), 0.015 * 800 * kG);
  EXPECT_NEAR(tension.high, 800 * kG * (3 - 2 * std::cos(angle)), 0.015 * 800 * kG);
}

TEST_P(WireLoad, IsCaughtWithItsMomentum) {
  // A load that falls 0.3 m into a wire that does not stretch gives up m v in one step or little more: the mean
  // tensions of the steps, times the step, add up to m v and the weight, and none is above that.
  const Crane crane;
  const double fall = 0.3;
  const double dt = crane.simulation->getTimeStep();
  const Body load = addLoad(crane, 800, fall);
  const Rope wire = crane.addWire(kLength, segments(), 1.2, nullptr, Vec3(0, 0, kTop), load.get(), Vec3(0, 0, 0.5),
                                  subSteps(), damping());
  const double blow = 800 * (std::sqrt(2 * kG * fall) / dt + kG);
  const Range tension = crane.tensions(wire, 0, 1.5);
  EXPECT_GE(tension.low, -0.001 * 800 * kG);
  EXPECT_LT(tension.high, 1.1 * blow);
  const Range after = crane.tensions(wire, 1.5, 3);
  EXPECT_GT(after.low, 0.97 * 800 * kG);
  EXPECT_LT(after.high, 1.03 * 800 * kG);
  EXPECT_NEAR(load->getPosition().z(), kTop - kLength - 0.5, 5e-3);
}

TEST_P(WireLoad, IsCaughtByAStretchingWireNoHarderThanASpringCatches) {
  // Energy: the wire is a spring of E A / L; the peak is m g (1 + sqrt(1 + v^2 E A / (L m g^2))).
  const Crane crane;
  const double stiffness = 2e6;
  const Body load = addLoad(crane, 800, 0.3);
  const Rope wire = crane.addWire(kLength, segments(), 1.2, nullptr, Vec3(0, 0, kTop), load.get(), Vec3(0, 0, 0.5),
                                  subSteps(), damping());
  ASSERT_TRUE(wire->setStretchStiffness(stiffness));
  const double peak = 800 * kG * (1 + std::sqrt(1 + 2 * 0.3 * stiffness / (kLength * 800 * kG)));
  const Range tension = crane.tensions(wire, 0, 3);
  EXPECT_LT(tension.high, 1.05 * peak);
  EXPECT_GT(tension.high, 0.6 * peak);
  EXPECT_GE(tension.low, -0.001 * 800 * kG);
}

TEST_P(WireLoad, SlewsWithAHandLineBelowIt) {
  // A jib slews with the load for 5 s and stops; a light wire that nobody holds hangs from the load, too.
  const Crane crane;
  const Body jib = crane.addBox(1, Vec3(5.5, 0.25, 0.2), Vec3(3, 0, 10));
  jib->setMotionControl(vyr::RigidBody::KINEMATICS);
  const Body load = crane.addBox(800, Vec3(0.6, 0.6, 0.5), Vec3(8, 0, 3.3));
  const Rope wire = crane.addWire(kLength, segments(), 1.2, jib.get(), Vec3(5, 0, -0.2), load.get(), Vec3(0, 0, 0.5),
                                  subSteps(), damping());
  Rope line(new vyrWire::Wire(2.4, 16, 0.3));
  line->attachBegin(load.get(), Vec3(0.6, 0.6, -0.5));
  line->setDamping(0.5);
  crane.simulation->add(line.get());
  Range tension;
  const double omega = -0.22;
  const double radius = 8;
  const double weight = (800 + 2.4 * 0.3) * kG;
  while (crane.simulation->getTime() < 30) {
    const double time = crane.simulation->getTime();
    const bool stops = time > 5 - 1e-6 && time < 5 + 1e-6;
    const double turning = time < 5 - 1e-6 ? omega : 0;
    const double angle = omega * std::min(time, 5.0);
    jib->setVelocity(Vec3(-3 * std::sin(angle), 3 * std::cos(angle), 0) * turning);
    jib->setAngularVelocity(Vec3(0, 0, turning));
    Vec3 lean = wire->getNodes().front() - wire->getNodes().back();
    crane.simulation->step();
    if (stops) {
      // The jib stops at once: of its end's velocity, the part along the leaning wire is taken from the load, too.
      lean.z() = 0;
      const double blow = 800 * radius * std::fabs(omega) * lean.length() / kLength / crane.simulation->getTimeStep();
      EXPECT_LT(wire->getEndTension(), 1.2 * weight + blow);
    } else if (time > 1) {
      tension.add(wire->getEndTension());
    }
  }
  // The load moves with up to 1.76 m/s against the jib, and twice that when the stop meets the swing; its swinging
  // about the jib's end adds m v^2 / L at most. Without damping the wire rings after the stop like a string.
  const double swing = std::pow(2 * radius * omega, 2) / (kLength + 0.5) / kG;
  const double ringing = damping() > 1 ? 0.02 : 0.2;
  EXPECT_GT(tension.low, (1 - swing - ringing) * weight);
  EXPECT_LT(tension.high, (1 + swing + ringing) * weight);
}

INSTANTIATE_TEST_SUITE_P(Steps, WireLoad,
                         testing::Combine(testing::Values(1, 16, 64), testing::Values(3.0, 0.0), testing::Values(24)));
INSTANTIATE_TEST_SUITE_P(Fine, WireLoad, testing::Values(std::make_tuple(16, 0.05, 120)));

TEST(WireSlings, ShareALoad) {
  const Crane crane;
  const Body load = crane.addBox(800, Vec3(1, 1, 0.2), Vec3(0, 0, 3));
  const double height = std::sqrt(3.0 * 3.0 - 2);
  std::vector<Rope> slings;
  for (const double x : {-1.0, 1.0}) {
    for (const double y : {-1.0, 1.0}) {
      slings.push_back(
          crane.addWire(3, 12, 1.2, nullptr, Vec3(0, 0, 3.2 + height), load.get(), Vec3(x, y, 0.2), 16, 1));
    }
  }
  const double share = 0.25 * 800 * kG * 3 / height;
  for (int step = 0; step < 360; ++step) {
    crane.simulation->step();
    for (const Rope& sling : slings) {
      if (step > 60) {
        ASSERT_NEAR(sling->getEndTension(), share, 0.03 * share) << step;
      }
    }
  }
}

TEST(WireHoist, LiftsALoadFromTheGroundAndSetsItDown) {
  const Crane crane;
  const Body ground(new vyr::RigidBody("ground"));
  ground->setMotionControl(vyr::RigidBody::STATIC);
  ground->add(new vyrCollide::Geometry(new vyrCollide::Plane));
  crane.simulation->add(ground.get());
  const Body load = crane.addBox(800, Vec3(0.6, 0.6, 0.5), Vec3(0, 0, 0.5));
  const Body hook = crane.addBox(1, Vec3(0.1, 0.1, 0.1), Vec3(0, 0, 6.9));
  hook->setMotionControl(vyr::RigidBody::KINEMATICS);
  const Rope wire = crane.addWire(kLength, 24, 1.2, hook.get(), Vec3(), load.get(), Vec3(0, 0, 0.5), 16, 0.5);
  // A slack wire leaves the load where it stands.
  Range tension = crane.tensions(wire, 0, 1);
  EXPECT_LT(tension.high, 0.01 * 800 * kG);
  EXPECT_NEAR(load->getPosition().z(), 0.5, 1e-3);
  hook->setVelocity(Vec3(0, 0, 0.4));
  // The blow of a load that gets 0.4 m/s within a step or two.
  tension = crane.tensions(wire, 1, 2.2);
  EXPECT_LT(tension.high, 800 * (0.4 * 60 + kG) * 1.1);
  tension = crane.tensions(wire, 2.2, 4);
  EXPECT_GT(tension.low, 0.97 * 800 * kG);
  EXPECT_LT(tension.high, 1.03 * 800 * kG);
  hook->setVelocity(Vec3(0, 0, -0.4));
  crane.tensions(wire, 4, 7);
  hook->setVelocity(Vec3());
  tension = crane.tensions(wire, 8, 9);
  EXPECT_GE(tension.low, -0.001 * 800 * kG);
  EXPECT_LT(tension.high, 0.01 * 800 * kG);
  EXPECT_NEAR(load->getPosition().z(), 0.5, 2e-3);
}

} // namespace
