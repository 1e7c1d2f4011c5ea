/// Scene files: what was written goes on as if it had never been away.
#include "SceneFuture.h"

#include <vyr/Ball.h>
#include <vyr/Distance.h>
#include <vyr/Hinge.h>
#include <vyr/Lock.h>
#include <vyr/Prismatic.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Trimesh.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include <string>
#include <unistd.h>

namespace {

vyrCollide::Trimesh* wedge() {
  return new vyrCollide::Trimesh({vyr::Vec3(-1.0, -1.0, 0.0), vyr::Vec3(1.0, -1.0, 0.0), vyr::Vec3(1.0, 1.0, 0.0),
                                  vyr::Vec3(-1.0, 1.0, 0.0), vyr::Vec3(0.0, 0.0, 0.8)},
                                 {0, 2, 1, 0, 3, 2, 0, 1, 4, 1, 2, 4, 2, 3, 4, 3, 0, 4});
}

/// Everything that a scene can hold, some of it in contact and some of it in motion.
vyr::ref_ptr<vyrSDK::Simulation> fullScene() {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::Material> rubber = new vyr::Material("rubber", 1100.0, 0.9, 0.6);
  simulation->add(scene::ground(rubber.get()));
  vyr::ref_ptr<vyrCollide::Box> shared = new vyrCollide::Box(0.2, 0.25, 0.3);
  for (int i = 0; i < 4; ++i) {
    vyr::RigidBody* box = scene::body(shared.get(), vyr::Vec3(0.01 * i, 0.0, 0.3 + 0.62 * i), rubber.get());
    box->setName("box " + std::to_string(i));
    simulation->add(box);
  }
  simulation->add(scene::body(new vyrCollide::Capsule(0.1, 0.3), vyr::Vec3(0.1, 1.0, 2.0)));
  simulation->add(scene::body(new vyrCollide::Cylinder(0.2, 0.3), vyr::Vec3(0.1, 1.0, 1.0)));

  auto* dumbbell = new vyr::RigidBody("dumbbell");
  dumbbell->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.2)), vyr::AffineMatrix4x4::translate(0.0, 0.5, 0.0));
  dumbbell->add(new vyrCollide::Geometry(new vyrCollide::Box(0.1, 0.2, 0.3)),
                vyr::AffineMatrix4x4(vyr::Quat(0.3, vyr::Vec3(1.0, 2.0, 3.0)), vyr::Vec3(0.0, -0.5, 0.0)));
  dumbbell->setPosition(vyr::Vec3(3.0, 0.0, 0.6));
  simulation->add(dumbbell);

  vyr::RealVector heights;
  for (int i = 0; i < 25; ++i) {
    heights.push_back(0.1 * ((7 * i) % 5));
  }
  vyr::ref_ptr<vyrCollide::HeightField> field = new vyrCollide::HeightField(5, 5, 4.0, 4.0, heights);
  auto* hill = new vyrCollide::Geometry(field.get(), "hill");
  hill->setLocalTransform(vyr::AffineMatrix4x4::translate(10.0, 0.0, 1.0));
  simulation->add(hill);
  field->setHeight(2, 2, 0.35);
  simulation->add(scene::body(new vyrCollide::Sphere(0.3), vyr::Vec3(10.1, 0.2, 2.0)));
  vyr::RigidBody* roof = scene::body(wedge(), vyr::Vec3(0.0, 5.0, 0.0));
  roof->setMotionControl(vyr::RigidBody::STATIC);
  simulation->add(roof);
  simulation->add(scene::body(wedge(), vyr::Vec3(0.1, 5.3, 2.0)));
  vyr::RigidBody* belt = scene::body(new vyrCollide::Box(1.0, 1.0, 0.1), vyr::Vec3(0.0, -5.0, 0.5));
  belt->setMotionControl(vyr::RigidBody::KINEMATICS);
  belt->setVelocity(vyr::Vec3(0.1, 0.0, 0.0));
  belt->setAngularVelocity(vyr::Vec3(0.0, 0.0, 0.7));
  simulation->add(belt);
  simulation->add(scene::body(new vyrCollide::Box(0.2, 0.2, 0.2), vyr::Vec3(0.2, -5.0, 0.8)));
  return simulation;
}

void addConstraints(vyrSDK::Simulation& simulation) {
  vyr::RigidBody* arm = scene::body(new vyrCollide::Box(0.5, 0.1, 0.1), vyr::Vec3(0.5, 20.0, 5.0));
  vyr::Hinge* hinge = vyr::Hinge::create(arm, nullptr, vyr::Vec3(0.0, 20.0, 5.0), vyr::Vec3(0.0, 1.0, 0.0));
  hinge->setEnableMotor(true);
  hinge->setMotorSpeed(5.0);
  hinge->setName("winch");
  simulation.add(hinge);
  vyr::RigidBody* bob = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(2.0, 20.0, 5.0));
  simulation.add(vyr::Ball::create(bob, arm, vyr::Vec3(1.0, 20.0, 5.0)));
  vyr::RigidBody* load = scene::body(new vyrCollide::Sphere(0.1), vyr::Vec3(2.0, 20.0, 4.0));
  simulation.add(vyr::Distance::create(load, load->getPosition(), bob, bob->getPosition()));
  vyr::RigidBody* slider = scene::body(new vyrCollide::Box(0.1, 0.1, 0.1), vyr::Vec3(5.0, 20.0, 5.0));
  vyr::Prismatic* rail = vyr::Prismatic::create(slider, nullptr, slider->getPosition(), vyr::Vec3(1.0, 0.0, -0.2));
  rail->setEnableRange(true);
  rail->setRange(vyr::RangeReal(-vyr::Constraint::kUnlimited, 2.0));
  rail->setBreakForce(1.0e6);
  simulation.add(rail);
  vyr::RigidBody* rider = scene::body(new vyrCollide::Box(0.1, 0.1, 0.1), vyr::Vec3(5.0, 20.0, 5.3));
  simulation.add(vyr::Lock::create(rider, slider));
  vyr::RigidBody* twig = scene::body(new vyrCollide::Box(0.5, 0.05, 0.05), vyr::Vec3(0.5, 25.0, 5.0));
  vyr::Lock* joint = vyr::Lock::create(twig, nullptr);
  joint->setElasticity(80.0, 0.5);
  joint->setPreload(vyr::Vec3(0.0, -3.0, 0.5));
  simulation.add(joint);
}

} // namespace

TEST(SceneFile, FullSceneGoesOnInEveryBit) {
  auto simulation = fullScene();
  simulation->stepTo(0.7);
  scene::expectSameFuture(*simulation, 240);
}

TEST(SceneFile, SceneAtRestGoesOnInEveryBit) {
  auto simulation = fullScene();
  simulation->stepTo(6.0);
  scene::expectSameFuture(*simulation, 120);
}

TEST(SceneFile, ConstraintsGoOnInEveryBit) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  addConstraints(*simulation);
  simulation->stepTo(2.0);
  ASSERT_EQ(simulation->getConstraints().size(), 6u);
  scene::expectSameFuture(*simulation, 240);
}

TEST(SceneFile, ParticlesAndRemovalsGoOnInEveryBit) {
  auto simulation = fullScene();
  vyr::ref_ptr<vyr::ParticleSystem> sand = new vyr::ParticleSystem("sand");
  simulation->add(sand.get());
  for (int i = 0; i < 20; ++i) {
    sand->add(vyr::Vec3(-3.0 + 0.01 * i, 0.0, 0.2 + 0.15 * i), vyr::Vec3(), 0.07, 0.5, i % 4 == 0 ? 0.6 : 50.0);
  }
  simulation->stepTo(0.5);
  // Removal moves the engine's objects about.
  simulation->remove(simulation->getRigidBodies()[1].get());
  simulation->add(scene::body(new vyrCollide::Sphere(0.2), vyr::Vec3(0.0, 0.0, 4.0)));
  simulation->stepTo(1.2);
  ASSERT_EQ(sand->getNumParticles(), 15u);
  scene::expectSameFuture(*simulation, 120);
}

TEST(SceneFile, DirectSolverGoesOnInEveryBit) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setSolver(vyrSDK::Simulation::MULTI);
  simulation->add(scene::ground());
  simulation->add(scene::body(new vyrCollide::Box(0.25, 0.25, 0.25), vyr::Vec3(0.0, 0.0, 0.25)));
  simulation->add(scene::body(new vyrCollide::Box(0.25, 0.25, 0.25), vyr::Vec3(0.0, 0.0, 0.75)));
  simulation->stepTo(0.5);
  scene::expectSameFuture(*simulation, 60);
}

TEST(SceneFile, KeepsNamesSettingsAndGroups) {
  auto simulation = fullScene();
  addConstraints(*simulation);
  simulation->setGravity(vyr::Vec3(0.0, 0.0, -1.62));
  simulation->setTimeStep(1.0 / 120.0);
  simulation->setNumIterations(17);
  simulation->setEnableSleeping(true);
  vyr::ref_ptr<vyrSDK::Assembly> outer = new vyrSDK::Assembly("outer");
  vyr::ref_ptr<vyrSDK::Assembly> inner = new vyrSDK::Assembly("inner");
  inner->add(simulation->findRigidBody("box 2"));
  inner->add(vyr::Frame::create(simulation->findRigidBody("box 2"), vyr::Vec3(1.0, 2.0, 3.0)));
  outer->add(inner.get());
  simulation->add(outer.get());
  simulation->stepTo(0.3);
  const std::string path = ::testing::TempDir() + "vyrPhysics_scene" + std::to_string(getpid()) + ".json";
  ASSERT_TRUE(simulation->write(path));
  vyr::ref_ptr<vyrSDK::Simulation> copy = new vyrSDK::Simulation;
  copy->add(scene::body(new vyrCollide::Sphere(1.0)));
  ASSERT_TRUE(copy->read(path));
  std::remove(path.c_str());
  EXPECT_EQ(copy->getRigidBodies().size(), simulation->getRigidBodies().size());
  EXPECT_EQ(copy->getGravity(), vyr::Vec3(0.0, 0.0, -1.62));
  EXPECT_DOUBLE_EQ(copy->getTimeStep(), 1.0 / 120.0);
  EXPECT_DOUBLE_EQ(copy->getTime(), simulation->getTime());
  EXPECT_EQ(copy->getNumIterations(), 17);
  EXPECT_TRUE(copy->getEnableSleeping());
  EXPECT_EQ(copy->getConstraints()[0]->getName(), "winch");
  ASSERT_EQ(copy->getAssemblies().size(), 1u);
  vyr::RigidBody* box = copy->getAssemblies()[0]->findRigidBody("box 2");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->getGeometries()[0]->getMaterial()->getName(), "rubber");
  // Shared parts stay shared.
  EXPECT_EQ(box->getGeometries()[0]->getShape(), copy->findRigidBody("box 0")->getGeometries()[0]->getShape());
  ASSERT_EQ(copy->getAssemblies()[0]->getAssemblies()[0]->getFrames().size(), 1u);
  EXPECT_EQ(copy->getAssemblies()[0]->getAssemblies()[0]->getFrames()[0]->getRigidBody(), box);
}
