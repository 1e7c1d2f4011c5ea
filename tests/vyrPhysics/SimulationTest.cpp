/// The simulation: repeatability, clock, listeners, removal, rays.
#include "Scene.h"

#include <vyr/observer_ptr.h>
#include <vyrCollide/Cylinder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

/// A heap of boxes, balls and cylinders that falls together.
uint64_t runHeap(vyrSDK::Simulation::SolverType solver, int steps) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setSolver(solver);
  simulation->add(scene::ground());
  for (int i = 0; i < 12; ++i) {
    vyrCollide::Shape* shape = nullptr;
    if (i % 3 == 0) {
      shape = new vyrCollide::Box(0.3, 0.2, 0.25);
    } else if (i % 3 == 1) {
      shape = new vyrCollide::Sphere(0.25);
    } else {
      shape = new vyrCollide::Cylinder(0.2, 0.4);
    }
    simulation->add(scene::body(shape, vyr::Vec3(0.1 * (i % 4), 0.07 * (i % 5), 0.5 + 0.45 * i)));
  }
  for (int i = 0; i < steps; ++i) {
    simulation->step();
  }
  return simulation->stateHash();
}

/// Calls what it is given.
class Script : public vyrSDK::StepEventListener {
public:
  std::function<void()> onPre;
  std::function<void()> onPost;
  std::function<void()> onLast;
  vyrSDK::Simulation* simulation = nullptr;

  void pre(const vyr::TimeStamp& time) override { call(onPre, "pre", time); }
  void post(const vyr::TimeStamp& time) override { call(onPost, "post", time); }
  void last(const vyr::TimeStamp& time) override { call(onLast, "last", time); }
  void simulationChanged(vyrSDK::Simulation* inSimulation) override { simulation = inSimulation; }

  std::vector<std::string> calls;
  std::vector<double> times;

private:
  void call(const std::function<void()>& function, const char* name, const vyr::TimeStamp& time) {
    calls.emplace_back(name);
    times.push_back(time.seconds());
    if (function) {
      function();
    }
  }
};

class Gui : public vyrSDK::GuiEventListener {
public:
  explicit Gui(bool uses)
      : m_uses(uses) {}
  bool keyboard(int, unsigned int, float, float, bool) override {
    ++events;
    return m_uses;
  }
  void update(float, float) override { ++updates; }

  int events = 0;
  int updates = 0;

private:
  bool m_uses;
};

} // namespace

TEST(Simulation, TwoRunsAgreeInEveryBit) {
  EXPECT_EQ(runHeap(vyrSDK::Simulation::ITERATIVE, 300), runHeap(vyrSDK::Simulation::ITERATIVE, 300));
  EXPECT_EQ(runHeap(vyrSDK::Simulation::MULTI, 60), runHeap(vyrSDK::Simulation::MULTI, 60));
  EXPECT_NE(runHeap(vyrSDK::Simulation::ITERATIVE, 300), runHeap(vyrSDK::Simulation::ITERATIVE, 299));
}

TEST(Simulation, RunsAgreeWhateverWasAllocatedBetween) {
  const uint64_t first = runHeap(vyrSDK::Simulation::ITERATIVE, 200);
  vyr::ref_ptr<vyrSDK::Simulation> other = new vyrSDK::Simulation;
  other->add(scene::ground());
  for (int i = 0; i < 7; ++i) {
    other->add(scene::body(new vyrCollide::Sphere(0.3), vyr::Vec3(0.0, 0.1 * i, 0.4 + i)));
  }
  other->stepTo(0.5);
  EXPECT_EQ(runHeap(vyrSDK::Simulation::ITERATIVE, 200), first);
}

TEST(Simulation, ClockCountsSteps) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  EXPECT_DOUBLE_EQ(simulation->getTimeStep(), 1.0 / 60.0);
  EXPECT_EQ(simulation->getGravity(), vyr::Vec3(0.0, 0.0, -9.80665));
  for (int i = 0; i < 600; ++i) {
    simulation->step();
  }
  EXPECT_DOUBLE_EQ(simulation->getTime(), 10.0);
  EXPECT_EQ(simulation->getTimeStamp().steps(), 600u);
  scene::Messages messages;
  EXPECT_FALSE(simulation->setTimeStep(0.0));
  EXPECT_FALSE(simulation->setTimeStep(std::nan("")));
  EXPECT_FALSE(simulation->setNumIterations(0));
  EXPECT_FALSE(simulation->setNumIterations(2147483647));
  simulation->setGravity(vyr::Vec3(std::nan(""), 0.0, 0.0));
  EXPECT_EQ(messages.get().size(), 5u);
  EXPECT_EQ(simulation->getGravity(), vyr::Vec3(0.0, 0.0, -9.80665));
}

TEST(Simulation, CallsListenersInOrder) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<Script> script = new Script;
  EXPECT_TRUE(simulation->add(script.get()));
  EXPECT_EQ(script->simulation, simulation.get());
  simulation->step();
  EXPECT_EQ(script->calls, (std::vector<std::string>{"pre", "post", "last"}));
  EXPECT_EQ(script->times, (std::vector<double>{0.0, 1.0 / 60.0, 1.0 / 60.0}));
  EXPECT_TRUE(simulation->remove(script.get()));
  EXPECT_EQ(script->simulation, nullptr);
  EXPECT_FALSE(simulation->remove(script.get()));
  simulation->step();
  EXPECT_EQ(script->calls.size(), 3u);
}

TEST(Simulation, RefusesAStepWithinAStep) {
  scene::Messages messages;
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<Script> script = new Script;
  bool inner = true;
  script->onPost = [&] { inner = simulation->step(); };
  simulation->add(script.get());
  EXPECT_TRUE(simulation->step());
  EXPECT_FALSE(inner);
  EXPECT_EQ(messages.get().size(), 1u);
  EXPECT_EQ(simulation->getTimeStamp().steps(), 1u);
}

TEST(Simulation, ListenersMayRemoveWhatTouches) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::ground());
  vyr::ref_ptr<vyr::RigidBody> below = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5), vyr::Vec3(0.0, 0.0, 0.5));
  vyr::ref_ptr<vyr::RigidBody> above = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5), vyr::Vec3(0.0, 0.0, 1.5));
  vyr::observer_ptr<vyr::RigidBody> watch = below.get();
  simulation->add(below.get());
  simulation->add(above.get());
  vyr::ref_ptr<Script> script = new Script;
  vyr::ref_ptr<Script> never = new Script;
  script->onPost = [&] {
    if (simulation->getTime() > 0.5 && below) {
      EXPECT_EQ(simulation->getContacts().size(), 8u);
      EXPECT_TRUE(simulation->remove(below.get()));
      below = nullptr;
      EXPECT_EQ(simulation->getContacts().size(), 0u);
      simulation->remove(never.get());
      simulation->remove(script.get());
    }
  };
  simulation->add(script.get());
  simulation->add(never.get());
  simulation->stepTo(0.49);
  never->calls.clear();
  simulation->stepTo(0.53);
  EXPECT_FALSE(watch.valid());
  EXPECT_EQ(script->getReferenceCount(), 1);
  simulation->stepTo(2.0);
  EXPECT_NEAR(above->getPosition().z(), 0.5, 2e-3);
}

TEST(Simulation, SteppingGoesOnAfterAnExceptionOfAListener) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<Script> script = new Script;
  script->onPre = [] { throw 42; };
  simulation->add(script.get());
  EXPECT_THROW(simulation->step(), int);
  script->onPre = nullptr;
  EXPECT_TRUE(simulation->step());
}

TEST(Simulation, RefusesWhatItHasAndWhatIsNothing) {
  scene::Messages messages;
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyrSDK::Simulation> other = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(1.0));
  EXPECT_TRUE(simulation->add(body.get()));
  EXPECT_FALSE(simulation->add(body.get()));
  EXPECT_FALSE(other->add(body.get()));
  EXPECT_FALSE(simulation->add(static_cast<vyr::RigidBody*>(nullptr)));
  EXPECT_EQ(messages.get().size(), 3u);
  EXPECT_FALSE(other->remove(body.get()));
  EXPECT_FALSE(simulation->remove(static_cast<vyr::RigidBody*>(nullptr)));
  EXPECT_EQ(simulation->getRigidBodies().size(), 1u);
}

TEST(Simulation, LetsGoOfEverythingWhenItDies) {
  vyr::ref_ptr<vyr::RigidBody> body = scene::body(new vyrCollide::Sphere(1.0));
  vyr::ref_ptr<vyrCollide::Geometry> ground = scene::ground();
  {
    vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
    simulation->add(body.get());
    simulation->add(ground.get());
    simulation->step();
    EXPECT_EQ(body->getSimulation(), simulation.get());
  }
  EXPECT_EQ(body->getSimulation(), nullptr);
  EXPECT_EQ(ground->getSimulation(), nullptr);
  EXPECT_EQ(body->getReferenceCount(), 1);
  EXPECT_EQ(ground->getReferenceCount(), 1);
}

TEST(Simulation, RaysMeetTheNearestGeometry) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyrCollide::Geometry* ground = scene::ground();
  simulation->add(ground);
  vyr::ref_ptr<vyr::RigidBody> pair = new vyr::RigidBody;
  auto* left = new vyrCollide::Geometry(new vyrCollide::Sphere(0.5));
  auto* right = new vyrCollide::Geometry(new vyrCollide::Box(0.5, 0.5, 0.5));
  pair->add(left, vyr::AffineMatrix4x4::translate(-1.0, 0.0, 0.0));
  pair->add(right, vyr::AffineMatrix4x4::translate(1.0, 0.0, 0.0));
  pair->setPosition(vyr::Vec3(0.0, 0.0, 3.0));
  simulation->add(pair.get());
  const vyr::Vec3 down(0.0, 0.0, -2.0);
  vyrSDK::RayHit hit = simulation->rayTest(vyr::Vec3(-1.0, 0.0, 10.0), down);
  ASSERT_TRUE(hit.hit);
  EXPECT_EQ(hit.geometry, left);
  EXPECT_NEAR(hit.distance, 6.5, 1e-3);
  EXPECT_NEAR(hit.normal.z(), 1.0, 1e-3);
  hit = simulation->rayTest(vyr::Vec3(1.2, 0.3, 10.0), down);
  EXPECT_EQ(hit.geometry, right);
  EXPECT_NEAR(hit.distance, 6.5, 1e-3);
  hit = simulation->rayTest(vyr::Vec3(0.0, 0.0, 10.0), down);
  EXPECT_EQ(hit.geometry, ground);
  EXPECT_NEAR(hit.point.z(), 0.0, 1e-9);
  EXPECT_FALSE(simulation->rayTest(vyr::Vec3(0.0, 0.0, 10.0), down, 5.0).hit);
  EXPECT_FALSE(simulation->rayTest(vyr::Vec3(0.0, 0.0, 10.0), vyr::Vec3(0.0, 0.0, 1.0)).hit);
  EXPECT_FALSE(simulation->rayTest(vyr::Vec3(0.0, 0.0, 10.0), vyr::Vec3()).hit);
  right->setSensor(true);
  hit = simulation->rayTest(vyr::Vec3(1.2, 0.3, 10.0), down);
  EXPECT_EQ(hit.geometry, ground);
}

TEST(Simulation, LongRaysAreAsExactAsShortOnes) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("crate");
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(0.7, 0.7, 0.7))));
  body->setRotation(vyr::Quat(0.4, vyr::Vec3(0.0, 0.0, 1.0)));
  simulation->add(body.get());
  const vyr::Vec3 level(0.0, 1.0, 0.0);
  for (const double length : {20.0, 1.0e3, 1.0e5}) {
    const vyrSDK::RayHit hit = simulation->rayTest(vyr::Vec3(0.0, -10.0, 0.695), level, length);
    ASSERT_TRUE(hit.hit) << length;
    EXPECT_NEAR(hit.distance, 10.0 - 0.7 / std::cos(0.4), 1e-3) << length;
    EXPECT_FALSE(simulation->rayTest(vyr::Vec3(0.0, -10.0, 0.705), level, length).hit) << length;
  }
}

// A net of slanted rays over a turned crate: whatever they meet lies on its surface, at its outline too.
TEST(Simulation, GrazingRaysMeetNothingBesideTheShape) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("crate");
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(0.7, 0.7, 0.7))));
  body->setRotation(vyr::Quat(0.4, vyr::Vec3(0.0, 0.0, 1.0)));
  simulation->add(body.get());
  const vyr::Vec3 eye(6.9, -11.2, 4.8);
  int hits = 0;
  for (int row = -60; row <= 60; ++row) {
    for (int column = -60; column <= 60; ++column) {
      const vyr::Vec3 aim(column * 0.025, 0.0, row * 0.025);
      const vyrSDK::RayHit hit = simulation->rayTest(eye, aim - eye, 1.0e5);
      if (!hit.hit)
        continue;
      ++hits;
      const vyr::Vec3 local = hit.point * body->getTransform().inverse();
      const double outermost = std::max({std::fabs(local.x()), std::fabs(local.y()), std::fabs(local.z())});
      ASSERT_NEAR(outermost, 0.7, 1e-6) << row << " " << column;
    }
  }
  EXPECT_GT(hits, 3000);
}

TEST(Simulation, GuiEventsStopAtTheListenerThatUsesThem) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<Gui> first = new Gui(false);
  vyr::ref_ptr<Gui> second = new Gui(true);
  vyr::ref_ptr<Gui> third = new Gui(true);
  simulation->add(first.get());
  simulation->add(second.get());
  simulation->add(third.get());
  EXPECT_TRUE(simulation->keyboard('a', 0, 0.0F, 0.0F, true));
  EXPECT_FALSE(simulation->mouse(1, 0.0F, 0.0F, true));
  EXPECT_FALSE(simulation->mouseMotion(0, 0.0F, 0.0F));
  simulation->updateGui(0.0F, 0.0F);
  EXPECT_EQ(first->events, 1);
  EXPECT_EQ(second->events, 1);
  EXPECT_EQ(third->events, 0);
  EXPECT_EQ(third->updates, 1);
  EXPECT_TRUE(simulation->remove(second.get()));
  EXPECT_TRUE(simulation->keyboard('a', 0, 0.0F, 0.0F, true));
  EXPECT_EQ(third->events, 1);
}

TEST(Simulation, SleepingBodiesWakeWhenTheirSupportGoes) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setEnableSleeping(true);
  vyr::ref_ptr<vyrCollide::Geometry> ground = scene::ground();
  simulation->add(ground.get());
  vyr::ref_ptr<vyr::RigidBody> box = scene::body(new vyrCollide::Box(0.5, 0.5, 0.5), vyr::Vec3(0.0, 0.0, 0.5));
  simulation->add(box.get());
  simulation->stepTo(5.0);
  EXPECT_EQ(box->getVelocity(), vyr::Vec3());
  simulation->remove(ground.get());
  simulation->stepTo(6.0);
  EXPECT_LT(box->getPosition().z(), -3.0);
}

TEST(Assembly, EntersAndLeavesAsOne) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyrSDK::Assembly> outer = new vyrSDK::Assembly("outer");
  vyr::ref_ptr<vyrSDK::Assembly> inner = new vyrSDK::Assembly("inner");
  vyr::ref_ptr<vyr::RigidBody> first = scene::body(new vyrCollide::Sphere(0.1));
  vyr::ref_ptr<vyr::RigidBody> second = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(1.0, 0.0, 0.0));
  second->setName("second");
  EXPECT_TRUE(outer->add(first.get()));
  EXPECT_TRUE(inner->add(second.get()));
  EXPECT_TRUE(outer->add(inner.get()));
  EXPECT_FALSE(inner->add(outer.get()));
  EXPECT_FALSE(outer->add(outer.get()));
  EXPECT_TRUE(simulation->add(outer.get()));
  EXPECT_EQ(simulation->getRigidBodies().size(), 2u);
  EXPECT_EQ(outer->findRigidBody("second"), second.get());
  outer->transform(vyr::AffineMatrix4x4::translate(0.0, 5.0, 0.0));
  EXPECT_EQ(second->getPosition(), vyr::Vec3(1.0, 5.0, 0.0));
  vyr::ref_ptr<vyr::RigidBody> late = scene::body(new vyrCollide::Sphere(0.1));
  inner->add(late.get());
  EXPECT_EQ(late->getSimulation(), simulation.get());
  EXPECT_TRUE(simulation->remove(outer.get()));
  EXPECT_TRUE(simulation->getRigidBodies().empty());
  EXPECT_EQ(late->getSimulation(), nullptr);
}
