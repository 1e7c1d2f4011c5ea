// Checks the drawings of particles, emitters and cars.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"

#include <vyrOSG/SimulationObject.h>
#include <vyrOSG/utils.h>

#include <vyr/ParticleSystem.h>
#include <vyr/RigidBodyEmitter.h>
#include <vyrCollide/Sphere.h>
#include <vyrUtil/SimpleCar.h>

#include <osgUtil/UpdateVisitor>

#include <gtest/gtest.h>

#include <limits>

namespace {

using vyrOSG::ParticleSystemDrawable;

class ParticleVisualTest : public testing::Test {
protected:
  void updateScene() {
    osgUtil::UpdateVisitor visitor;
    osg::ref_ptr<osg::FrameStamp> stamp = new osg::FrameStamp;
    visitor.setFrameStamp(stamp);
    m_group->accept(visitor);
  }

  size_t vertexCount(osg::Geode* geode) {
    return geode->getDrawable(0)->asGeometry()->getVertexArray()->getNumElements();
  }

  vyr::ref_ptr<vyrSDK::Simulation> m_simulation = new vyrSDK::Simulation;
  osg::ref_ptr<vyrOSG::Group> m_group = new vyrOSG::Group;
  vyr::ref_ptr<vyr::ParticleSystem> m_particles = new vyr::ParticleSystem("sand");
  CapturedMessages m_messages;
};

TEST_F(ParticleVisualTest, DrawsOneSquareAParticleAndFollowsTheirNumber) {
  m_particles->add(vyr::Vec3(1, 2, 3), vyr::Vec3(), 0.5, 1);
  osg::Geode* geode = vyrOSG::createVisual(m_particles.get(), m_group.get());
  ASSERT_NE(geode, nullptr);
  EXPECT_EQ(vertexCount(geode), 4u);
  EXPECT_EQ(geode->getDrawable(0)->getBoundingBox()._max, osg::Vec3(1.5f, 2.5f, 3.5f));
  m_particles->add(vyr::Vec3(5, 0, 0), vyr::Vec3(), 0.25, 1);
  updateScene();
  EXPECT_EQ(vertexCount(geode), 8u);
  m_particles = nullptr;
  updateScene();
  EXPECT_EQ(vertexCount(geode), 0u);
}

TEST_F(ParticleVisualTest, AParticleShrinksAtTheEndOfItsLife) {
  m_simulation->setGravity(vyr::Vec3(0, 0, 0));
  m_simulation->setTimeStep(0.01);
  m_particles->add(vyr::Vec3(0, 0, 0), vyr::Vec3(), 1, 1, 1.0);
  m_simulation->add(m_particles.get());
  osg::Geode* geode = vyrOSG::createVisual(m_particles.get(), m_group.get());
  auto size = [&] { return geode->getDrawable(0)->getBoundingBox().xMax(); };
  for (int i = 0; i < 80; ++i)
    m_simulation->step();
  updateScene();
  EXPECT_EQ(size(), 1);
  for (int i = 0; i < 13; ++i)
    m_simulation->step();
  updateScene();
  // 0.07 s are left of the last 0.15 s; one step more or less is the system's affair.
  EXPECT_NEAR(size(), 0.07 / 0.15, 0.07);
}

TEST_F(ParticleVisualTest, TrianglesAreIcosahedra) {
  m_particles->add(vyr::Vec3(0, 0, 0), vyr::Vec3(), 2, 1);
  osg::Geode* geode = vyrOSG::createVisual(m_particles.get(), m_group.get(), ParticleSystemDrawable::TRIANGLES);
  EXPECT_EQ(vertexCount(geode), 12u);
  const osg::Geometry* mesh = geode->getDrawable(0)->asGeometry();
  EXPECT_EQ(mesh->getPrimitiveSet(0)->getNumIndices(), 60u) << "20 triangles";
  for (const osg::Vec3& corner : static_cast<const osg::Vec3Array&>(*mesh->getVertexArray()))
    EXPECT_NEAR(corner.length(), 2, 1e-5);
}

TEST_F(ParticleVisualTest, TheShaderModeIsKeptAndChecked) {
  vyrOSG::createVisual(m_particles.get(), m_group.get(), ParticleSystemDrawable::SPRITES,
                       ParticleSystemDrawable::SIMPLE_SPRITES);
  ParticleSystemDrawable* drawable = vyrOSG::findParticleSystemDrawable(m_group.get());
  ASSERT_NE(drawable, nullptr);
  EXPECT_EQ(drawable->getParticleSystem(), m_particles.get());
  EXPECT_EQ(drawable->getParticleShaderMode(), ParticleSystemDrawable::SIMPLE_SPRITES);
  drawable->setParticleShaderMode(ParticleSystemDrawable::ALPHA_SPRITES);
  EXPECT_EQ(drawable->getParticleShaderMode(), ParticleSystemDrawable::ALPHA_SPRITES);
  EXPECT_EQ(drawable->getStateSet()->getRenderingHint(), osg::StateSet::TRANSPARENT_BIN);
  drawable->setParticleShaderMode(static_cast<ParticleSystemDrawable::ParticleShaderMode>(3));
  EXPECT_NE(m_messages.takeOne().find("3 is no shader mode"), std::string::npos);
  EXPECT_EQ(drawable->getParticleShaderMode(), ParticleSystemDrawable::ALPHA_SPRITES);
}

TEST_F(ParticleVisualTest, ASpriteIsARoundBallOfItsColor) {
  m_particles->setDefaultColor(vyr::Vec4(1, 0, 0, 1));
  m_particles->add(vyr::Vec3(0, 0, 0), vyr::Vec3(), 1, 1);
  vyrOSG::createVisual(m_particles.get(), m_group.get(), ParticleSystemDrawable::SPRITES,
                       ParticleSystemDrawable::SIMPLE_SPRITES);
  OffscreenViewer viewer(64, 64);
  if (!viewer.isReady())
    GTEST_SKIP() << viewer.describe();
  viewer.viewer()->setSceneData(m_group);
  // A ball of radius 1 at the distance 6 fills 2 asin(1/6) = 19.2 of 40 degrees: 31 of 64 pixels.
  viewer.camera()->setViewMatrixAsLookAt(osg::Vec3d(0, -6, 0), osg::Vec3d(), osg::Vec3d(0, 0, 1));
  viewer.draw();
  osg::ref_ptr<osg::Image> image = viewer.draw();
  auto isBall = [&](unsigned x, unsigned y) { return image->getColor(x, y).r() > image->getColor(x, y).b(); };
  EXPECT_TRUE(isBall(32, 32));
  EXPECT_TRUE(isBall(32, 45));
  EXPECT_TRUE(isBall(45, 32));
  EXPECT_FALSE(isBall(32, 49));
  EXPECT_FALSE(isBall(44, 44)) << "a corner of the square";
  EXPECT_TRUE(m_messages.take().empty());
}

TEST_F(ParticleVisualTest, TouchingParticlesAreJoinedByALine) {
  m_simulation->setGravity(vyr::Vec3(0, 0, 0));
  m_particles->add(vyr::Vec3(0, 0, 0), vyr::Vec3(0.5, 0, 0), 0.5, 1);
  m_particles->add(vyr::Vec3(0.99, 0, 0), vyr::Vec3(-0.5, 0, 0), 0.5, 1);
  m_particles->add(vyr::Vec3(9, 0, 0), vyr::Vec3(), 0.5, 1);
  m_simulation->add(m_particles.get());
  osg::Geode* graph = vyrOSG::createParticleContactGraph(m_particles.get(), m_group.get(), 0, 100);
  ASSERT_NE(graph, nullptr);
  m_simulation->step();
  updateScene();
  EXPECT_EQ(vertexCount(graph), 2u);
  EXPECT_EQ(vyrOSG::createParticleContactGraph(m_particles.get(), m_group.get(), 2, 1), nullptr);
  EXPECT_NE(m_messages.takeOne().find("from 2 N to 1 N"), std::string::npos);
}

TEST_F(ParticleVisualTest, PathsOfParticlesBeginWhenTheirSystemEntersASimulation) {
  m_particles->add(vyr::Vec3(0, 0, 0), vyr::Vec3(1, 0, 0), 0.1, 1);
  osg::Geode* paths = vyrOSG::createParticleTrajectoriesVisual(m_particles.get(), m_group.get(), 0, 3);
  updateScene();
  EXPECT_EQ(vertexCount(paths), 0u);
  m_simulation->add(m_particles.get());
  updateScene();
  m_simulation->step();
  updateScene();
  EXPECT_EQ(vertexCount(paths), 2u);
  for (int i = 0; i < 5; ++i)
    m_simulation->step();
  updateScene();
  EXPECT_EQ(vertexCount(paths), 3u);
}

TEST_F(ParticleVisualTest, BodiesOfAnEmitterComeAndGo) {
  vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter;
  emitter->setShape(new vyrCollide::Sphere(0.1));
  emitter->setRate(60);
  emitter->setLife(0.2);
  m_simulation->setTimeStep(1.0 / 60);
  m_simulation->add(emitter.get());
  osg::Group* visual = vyrOSG::createVisual(emitter.get(), m_group.get());
  ASSERT_NE(visual, nullptr);
  EXPECT_EQ(visual->getNumChildren(), 0u);
  for (int i = 0; i < 60; ++i) {
    m_simulation->step();
    updateScene();
    ASSERT_EQ(visual->getNumChildren(), emitter->getRigidBodies().size());
  }
  EXPECT_GT(emitter->getNumEmitted(), emitter->getRigidBodies().size()) << "some have left";
  EXPECT_GT(visual->getNumChildren(), 0u);
}

TEST_F(ParticleVisualTest, ACarIsDrawnWithItsFourWheels) {
  vyrUtil::SimpleCar* car = vyrOSG::createSimpleBoxCar(vyr::Vec3(4, 1.8, 1), 1000, m_simulation.get(), m_group.get());
  ASSERT_NE(car, nullptr);
  EXPECT_EQ(car->getSimulation(), m_simulation.get());
  ASSERT_EQ(m_group->getNumChildren(), 1u);
  for (size_t i = 0; i < 4; ++i) {
    vyrOSG::GeometryNode* wheel =
        vyrOSG::findGeometryNode(car->getWheel(i)->getGeometries().front().get(), m_group.get());
    ASSERT_NE(wheel, nullptr);
    EXPECT_NE(wheel->getRenderChild(vyrOSG::GeometryNode::RENDER_DATA), nullptr);
  }
  EXPECT_NE(vyrOSG::findGeometryNode(car->getChassis()->getGeometries().front().get(), m_group.get()), nullptr);
}

TEST_F(ParticleVisualTest, ACarOfNoSizeIsRefused) {
  EXPECT_EQ(vyrOSG::createSimpleBoxCar(vyr::Vec3(4, -1, 1), 1000, m_simulation.get(), m_group.get()), nullptr);
  EXPECT_NE(m_messages.takeOne().find("createSimpleBoxCar"), std::string::npos);
  EXPECT_EQ(m_group->getNumChildren(), 0u);
}

} // namespace
