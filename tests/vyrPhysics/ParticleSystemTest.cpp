/// Particles in the simulation.
#include "Scene.h"

#include <vyr/ParticleSystem.h>

#include <gtest/gtest.h>

#include <cmath>

TEST(ParticleSystem, ParticlesFallLandAndPress) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyrCollide::Geometry* ground = scene::ground();
  simulation->add(ground);
  vyr::ref_ptr<vyr::ParticleSystem> sand = new vyr::ParticleSystem("sand");
  EXPECT_EQ(sand->add(vyr::Vec3(0.0, 0.0, 1.0), vyr::Vec3(), 0.1, 2.0), 0u);
  EXPECT_TRUE(simulation->add(sand.get()));
  EXPECT_EQ(sand->add(vyr::Vec3(5.0, 0.0, 50.0), vyr::Vec3(1.0, 0.0, 0.0), 0.1, 1.0), 1u);
  simulation->stepTo(2.0);
  EXPECT_NEAR(sand->getPosition(0).z(), 0.1, 1e-3);
  EXPECT_NEAR(sand->getVelocity(1).z(), -2.0 * scene::kGravity, 1e-9);
  EXPECT_NEAR(sand->getPosition(1).x(), 7.0, 1e-9);
  ASSERT_EQ(sand->getContacts().size(), 1u);
  const vyr::ParticleContact& contact = sand->getContacts()[0];
  EXPECT_EQ(contact.particle1, 0u);
  EXPECT_EQ(contact.particle2, vyr::ParticleContact::kNone);
  EXPECT_EQ(contact.geometry, ground);
  EXPECT_NEAR(contact.normal.z(), 1.0, 1e-9);
  EXPECT_NEAR(contact.normalForce, 2.0 * scene::kGravity, 0.02);
  // Contacts of particles are their system's, not the simulation's.
  EXPECT_TRUE(simulation->getContacts().empty());
}

TEST(ParticleSystem, ParticlesCollideWithEachOther) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setGravity(vyr::Vec3());
  vyr::ref_ptr<vyr::ParticleSystem> gas = new vyr::ParticleSystem;
  vyr::ref_ptr<vyr::Material> steel = new vyr::Material("steel", 7850.0, 0.0, 1.0);
  gas->setMaterial(steel.get());
  gas->add(vyr::Vec3(-1.0, 0.0, 0.0), vyr::Vec3(2.0, 0.0, 0.0), 0.1, 1.0);
  gas->add(vyr::Vec3(1.0, 0.0, 0.0), vyr::Vec3(0.0, 0.0, 0.0), 0.1, 1.0);
  simulation->add(gas.get());
  simulation->stepTo(2.0);
  // An elastic push along the line of equal masses hands the velocity on.
  EXPECT_NEAR(gas->getVelocity(0).x(), 0.0, 1e-6);
  EXPECT_NEAR(gas->getVelocity(1).x(), 2.0, 1e-6);
}

TEST(ParticleSystem, ParticlesRollAndHaveColours) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::ground());
  vyr::ref_ptr<vyr::ParticleSystem> balls = new vyr::ParticleSystem;
  balls->setDefaultColor(vyr::Vec4(1.0, 0.0, 0.0, 1.0));
  balls->add(vyr::Vec3(0.0, 0.0, 0.5), vyr::Vec3(7.0, 0.0, 0.0), 0.5, 1.0);
  simulation->add(balls.get());
  simulation->stepTo(3.0);
  // A sliding ball ends rolling at 5/7 of its speed, with w = v / r about y.
  EXPECT_NEAR(balls->getVelocity(0).x(), 5.0, 0.05);
  EXPECT_NEAR(balls->getAngularVelocity(0).y(), 10.0, 0.1);
  EXPECT_LT(std::fabs(balls->getRotation(0).w()), 1.0);
  EXPECT_EQ(balls->getColor(0), vyr::Vec4(1.0, 0.0, 0.0, 1.0));
  EXPECT_TRUE(balls->setColor(0, vyr::Vec4(0.0, 1.0, 0.0, 0.5)));
  EXPECT_EQ(balls->getColor(0), vyr::Vec4(0.0, 1.0, 0.0, 0.5));
  EXPECT_FALSE(balls->setColor(1, vyr::Vec4()));
}

TEST(ParticleSystem, LivesRunOutAndIdsStay) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::ParticleSystem> sparks = new vyr::ParticleSystem;
  sparks->add(vyr::Vec3(), vyr::Vec3(), 0.1, 1.0, 0.55);
  sparks->add(vyr::Vec3(1.0, 0.0, 0.0), vyr::Vec3(), 0.1, 1.0);
  const uint64_t id = sparks->getId(1);
  simulation->add(sparks.get());
  simulation->stepTo(0.5);
  EXPECT_EQ(sparks->getNumParticles(), 2u);
  EXPECT_NEAR(sparks->getLife(0), 0.05, 1e-9);
  EXPECT_DOUBLE_EQ(sparks->getInitialLife(0), 0.55);
  simulation->stepTo(0.7);
  ASSERT_EQ(sparks->getNumParticles(), 1u);
  EXPECT_EQ(sparks->getId(0), id);
  EXPECT_EQ(sparks->findParticle(id), 0u);
  EXPECT_TRUE(sparks->remove(0));
  EXPECT_FALSE(sparks->remove(0));
  EXPECT_EQ(sparks->findParticle(id), vyr::ParticleContact::kNone);
  EXPECT_EQ(sparks->getId(0), 0u);
  simulation->step();
}

TEST(ParticleSystem, RefusesNumbersThatAreNone) {
  scene::Messages messages;
  vyr::ref_ptr<vyr::ParticleSystem> system = new vyr::ParticleSystem;
  const size_t none = vyr::ParticleContact::kNone;
  EXPECT_EQ(system->add(vyr::Vec3(std::nan(""), 0.0, 0.0), vyr::Vec3(), 0.1, 1.0), none);
  EXPECT_EQ(system->add(vyr::Vec3(), vyr::Vec3(), -0.1, 1.0), none);
  EXPECT_EQ(system->add(vyr::Vec3(), vyr::Vec3(), 0.1, 0.0), none);
  EXPECT_EQ(system->add(vyr::Vec3(), vyr::Vec3(), 0.1, 1.0, 0.0), none);
  EXPECT_EQ(messages.get().size(), 4u);
  EXPECT_EQ(system->getNumParticles(), 0u);
}

TEST(ParticleSystem, TwoRunsAgreeAndLeavingIsClean) {
  const auto run = [] {
    vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
    simulation->add(scene::ground());
    vyr::ref_ptr<vyr::ParticleSystem> heap = new vyr::ParticleSystem;
    simulation->add(heap.get());
    for (int i = 0; i < 60; ++i) {
      heap->add(vyr::Vec3(0.01 * (i % 3), 0.02 * (i % 5), 0.2 + 0.21 * i), vyr::Vec3(), 0.1, 1.0,
                i % 7 == 0 ? 1.0 : 9.0);
    }
    simulation->stepTo(3.0);
    const uint64_t hash = simulation->stateHash();
    EXPECT_EQ(heap->getNumParticles(), 51u);
    EXPECT_TRUE(simulation->remove(heap.get()));
    EXPECT_EQ(heap->getSimulation(), nullptr);
    simulation->step();
    return hash;
  };
  EXPECT_EQ(run(), run());
}
