/// Cars, wires and emitters in scene files; and state that is given back to the parts themselves.
#include "SceneFuture.h"

#include <vyr/Hinge.h>
#include <vyr/RigidBodyEmitter.h>
#include <vyrUtil/SimpleCar.h>
#include <vyrWire/Wire.h>

#include <cstdio>
#include <unistd.h>

namespace {

vyr::ref_ptr<vyrUtil::SimpleCar> addCar(vyrSDK::Simulation& simulation) {
  vyr::ref_ptr<vyrUtil::SimpleCar> car = new vyrUtil::SimpleCar(vyr::Vec3(4.0, 1.6, 0.6), 1200.0, 0.35);
  car->transform(vyr::AffineMatrix4x4::translate(0.0, 0.0, 0.7));
  car->setName("red car");
  simulation.add(car.get());
  return car;
}

/// Crates that hang, swing and fall, with all that has a memory.
vyr::ref_ptr<vyrSDK::Simulation> busyScene() {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::ground());
  vyr::RigidBody* load = scene::body(new vyrCollide::Box(0.2, 0.2, 0.2), vyr::Vec3(3.0, 6.0, 5.0));
  simulation->add(load);
  vyr::ref_ptr<vyrWire::Wire> wire = new vyrWire::Wire(4.0, 20, 0.5, 0.02);
  wire->setBendStiffness(0.1);
  wire->attachBegin(nullptr, vyr::Vec3(0.0, 6.0, 6.0));
  wire->attachEnd(load, vyr::Vec3(0.0, 0.0, 0.2));
  simulation->add(wire.get());
  vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter(7);
  emitter->setName("pebble");
  emitter->setShape(new vyrCollide::Sphere(0.1), new vyr::Material("stone", 2600.0, 0.7, 0.1));
  emitter->setTransform(vyr::AffineMatrix4x4::translate(-4.0, 0.0, 3.0));
  emitter->setRate(17.0);
  emitter->setLife(1.1);
  simulation->add(emitter.get());
  vyr::RigidBody* arm = scene::body(new vyrCollide::Box(0.5, 0.1, 0.1), vyr::Vec3(0.5, -20.0, 5.0));
  vyr::Hinge* hinge = vyr::Hinge::create(arm, nullptr, vyr::Vec3(0.0, -20.0, 5.0), vyr::Vec3(0.0, 1.0, 0.0));
  hinge->setEnableMotor(true);
  hinge->setMotorSpeed(5.0);
  simulation->add(hinge);
  return simulation;
}

class SceneRestore : public ::testing::Test {
protected:
  ~SceneRestore() override { std::remove(path.c_str()); }

  const std::string path = ::testing::TempDir() + "vyrPhysics_restore" + std::to_string(getpid()) + ".json";
};

} // namespace

TEST(SceneTypes, ACarComesBackAsACarAndGoesOnInEveryBit) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::ground());
  auto car = addCar(*simulation);
  car->setThrottle(0.4);
  car->setSteering(0.2);
  car->setMaxSpeed(12.0);
  simulation->stepTo(2.0);
  auto copy = scene::expectSameFuture(*simulation, 100);
  ASSERT_EQ(copy->getAssemblies().size(), 1u);
  auto* read = dynamic_cast<vyrUtil::SimpleCar*>(copy->getAssemblies()[0].get());
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->getName(), "red car");
  EXPECT_DOUBLE_EQ(read->getThrottle(), 0.4);
  EXPECT_DOUBLE_EQ(read->getMaxSpeed(), 12.0);
  EXPECT_DOUBLE_EQ(read->getMaxTorque(), car->getMaxTorque());
  EXPECT_EQ(read->getWheel(vyrUtil::SimpleCar::REAR_LEFT)->getName(), "rear left wheel");
  // Both are driven on alike.
  for (vyrUtil::SimpleCar* driven : {car.get(), read}) {
    driven->setThrottle(-1.0);
    driven->setSteering(-0.7);
  }
  const double speed = read->getSpeed();
  for (int i = 0; i < 100; ++i) {
    simulation->step();
    copy->step();
  }
  EXPECT_EQ(copy->stateHash(), simulation->stateHash());
  EXPECT_LT(read->getSpeed(), speed - 1.0);
}

TEST(SceneTypes, WiresAndEmittersGoOnInEveryBit) {
  auto simulation = busyScene();
  simulation->stepTo(100.0 / 60.0);
  auto copy = scene::expectSameFuture(*simulation, 100);
  ASSERT_EQ(copy->getStepEventListeners().size(), 2u);
  auto* wire = dynamic_cast<vyrWire::Wire*>(copy->getStepEventListeners()[0].get());
  auto* emitter = dynamic_cast<vyr::RigidBodyEmitter*>(copy->getStepEventListeners()[1].get());
  ASSERT_NE(wire, nullptr);
  ASSERT_NE(emitter, nullptr);
  EXPECT_GT(wire->getEndTension(), 1.0);
  EXPECT_GT(emitter->getNumEmitted(), 50u);
  EXPECT_LT(emitter->getRigidBodies().size(), 25u) << "old ones leave";
}

TEST(SceneTypes, ReadingReplacesListenersOfTheFileAndKeepsOthers) {
  struct Counter : vyrSDK::StepEventListener {
    void post(const vyr::TimeStamp&) override { ++steps; }
    int steps = 0;
  };
  auto simulation = busyScene();
  vyr::ref_ptr<Counter> counter = new Counter;
  simulation->add(static_cast<vyrSDK::StepEventListener*>(counter.get()));
  ASSERT_TRUE(simulation->fromText(simulation->toText()));
  EXPECT_EQ(simulation->getStepEventListeners().size(), 3u);
  simulation->step();
  EXPECT_EQ(counter->steps, 1);
}

TEST(SceneTypes, EmittersThatCallAFunctionAreLeftOut) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter;
  emitter->setGeometryFactory(
      [](const std::function<double()>&) { return new vyrCollide::Geometry(new vyrCollide::Sphere(0.1)); });
  simulation->add(emitter.get());
  EXPECT_NE(simulation->toText().find("\"listeners\": []"), std::string::npos);
}

TEST_F(SceneRestore, GivesThePartsTheirStateInEveryBit) {
  auto simulation = busyScene();
  simulation->stepTo(50.0 / 60.0);
  simulation->remove(simulation->getStepEventListeners()[1].get());
  auto car = addCar(*simulation);
  car->setThrottle(0.5);
  vyr::ref_ptr<vyr::ParticleSystem> sand = new vyr::ParticleSystem("sand");
  simulation->add(sand.get());
  sand->add(vyr::Vec3(0.0, 9.0, 1.0), vyr::Vec3(), 0.1, 0.5);
  for (int i = 0; i < 60; ++i) {
    simulation->step();
  }
  ASSERT_TRUE(simulation->write(path));
  const vyr::ref_ptr<vyr::RigidBody> kept = simulation->getRigidBodies()[0];
  const uint64_t saved = simulation->stateHash();
  const auto goOn = [&] {
    for (int i = 0; i < 100; ++i) {
      simulation->step();
    }
    return simulation->stateHash();
  };
  const uint64_t after = goOn();
  car->setBrake(1.0);
  simulation->setGravity(vyr::Vec3());
  ASSERT_TRUE(simulation->restore(path));
  EXPECT_EQ(simulation->stateHash(), saved);
  EXPECT_EQ(simulation->getRigidBodies()[0].get(), kept.get()) << "the parts are the same ones";
  EXPECT_DOUBLE_EQ(car->getThrottle(), 0.5);
  EXPECT_DOUBLE_EQ(car->getBrake(), 0.0);
  EXPECT_EQ(sand->getNumParticles(), 1u);
  EXPECT_EQ(goOn(), after);
}

TEST_F(SceneRestore, OtherPartsAreRefused) {
  auto simulation = busyScene();
  ASSERT_TRUE(simulation->write(path));
  simulation->getRigidBodies()[0]->setName("renamed");
  const uint64_t before = simulation->stateHash();
  scene::Messages messages;
  EXPECT_FALSE(simulation->restore(path));
  simulation->add(scene::body(new vyrCollide::Sphere(1.0)));
  EXPECT_FALSE(simulation->restore(path));
  simulation->clear();
  EXPECT_FALSE(simulation->restore(path));
  ASSERT_EQ(messages.get().size(), 3u);
  EXPECT_NE(messages.get()[0].find("\"renamed\""), std::string::npos) << messages.get()[0];
  EXPECT_NE(messages.get()[1].find("it has 2 bodies, the simulation 3"), std::string::npos) << messages.get()[1];
  EXPECT_NE(before, 0u);
}
