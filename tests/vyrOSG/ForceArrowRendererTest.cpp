// Checks that arrows have the length and direction of the forces that a simulation measures.
#include "CapturedMessages.h"

#include <vyrOSG/ForceArrowRenderer.h>
#include <vyrOSG/OSGSceneRoot.h>
#include <vyrOSG/SimulationObject.h>

#include <vyr/Prismatic.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/MatrixTransform>

#include <gtest/gtest.h>

#include <limits>

namespace {

class ForceArrowRendererTest : public testing::Test {
protected:
  ForceArrowRendererTest() { vyrOSG::OSGSceneRoot::create(m_root.get()); }
  ~ForceArrowRendererTest() override { vyrOSG::OSGSceneRoot::set(nullptr); }

  osg::BoundingBox drawn() {
    osg::ComputeBoundsVisitor visitor;
    visitor.setTraversalMode(osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN);
    m_root->accept(visitor);
    return visitor.getBoundingBox();
  }

  vyr::ref_ptr<vyrSDK::Simulation> m_simulation = new vyrSDK::Simulation;
  osg::ref_ptr<vyrOSG::Group> m_root = new vyrOSG::Group;
  vyr::ref_ptr<vyrOSG::ForceArrowRenderer> m_renderer = new vyrOSG::ForceArrowRenderer;
  CapturedMessages m_messages;
};

TEST_F(ForceArrowRendererTest, ABoxAtRestShowsItsWeight) {
  using Object = vyrOSG::SimulationObject;
  Object ground = Object::createPlane("ground", vyr::AffineMatrix4x4(), nullptr, m_simulation.get());
  Object box = Object::createBox("box", vyr::AffineMatrix4x4::translate(3, 0, 0.5), vyr::Vec3(1, 1, 1), nullptr,
                                 m_simulation.get());
  m_renderer->setScale(1.0 / 9806.65);
  m_renderer->add(box.body.get(), vyr::Vec3(0, 0, 0.5));
  for (int i = 0; i < 240; ++i)
    m_simulation->step();
  // 1 m^3 of 1000 kg/m^3 is carried with 9806.65 N, so the arrow on top of it is 1 m long.
  const osg::BoundingBox bounds = drawn();
  EXPECT_NEAR(bounds.zMin(), 1, 0.02);
  EXPECT_NEAR(bounds.zMax(), 2, 0.04);
  EXPECT_NEAR(bounds.center().x(), 3, 0.05);
}

TEST_F(ForceArrowRendererTest, AppliedForcesAreDrawnAlongThemselves) {
  m_simulation->setGravity(vyr::Vec3(0, 0, 0));
  vyrOSG::SimulationObject ball = vyrOSG::SimulationObject::createSphere("b", vyr::AffineMatrix4x4(), 0.5, nullptr,
                                                                         m_simulation.get(), vyr::RigidBody::DYNAMICS);
  m_renderer->setScale(0.01);
  m_renderer->setArrowRadius(0.001);
  m_renderer->add(ball.body.get(), vyr::Vec3());
  ball.body->addForce(vyr::Vec3(0, 300, 0));
  m_simulation->step();
  EXPECT_NEAR(drawn().yMax(), 3, 0.01);
  EXPECT_NEAR(drawn().xMax(), 0.002, 0.01);
}

TEST_F(ForceArrowRendererTest, ForcesThatLaterListenersAddAreSeen) {
  class Pusher : public vyrSDK::StepEventListener {
  public:
    explicit Pusher(vyr::RigidBody* body)
        : m_body(body) {}
    void pre(const vyr::TimeStamp&) override { m_body->addForce(vyr::Vec3(0, 300, 0)); }

  private:
    vyr::observer_ptr<vyr::RigidBody> m_body;
  };
  m_simulation->setGravity(vyr::Vec3(0, 0, 0));
  vyrOSG::SimulationObject ball =
      vyrOSG::SimulationObject::createSphere("b", vyr::AffineMatrix4x4(), 5, nullptr, m_simulation.get());
  m_renderer->setScale(0.01);
  m_renderer->setSmoothFactor(1);
  m_renderer->add(ball.body.get(), vyr::Vec3());
  m_simulation->add(new Pusher(ball.body.get()));
  const size_t listeners = m_simulation->getStepEventListeners().size();
  m_simulation->step();
  m_simulation->step();
  EXPECT_NEAR(drawn().yMax(), 3, 0.1);
  EXPECT_EQ(m_simulation->getStepEventListeners().size(), listeners);
}

TEST_F(ForceArrowRendererTest, TheFirstValueCountsFullyAndLaterOnesByTheFactor) {
  m_simulation->setGravity(vyr::Vec3(0, 0, 0));
  vyrOSG::SimulationObject ball =
      vyrOSG::SimulationObject::createSphere("b", vyr::AffineMatrix4x4(), 5, nullptr, m_simulation.get());
  m_renderer->setScale(0.01);
  m_renderer->setSmoothFactor(0.25);
  m_renderer->add(ball.body.get(), vyr::Vec3());
  ball.body->addForce(vyr::Vec3(0, 400, 0));
  m_simulation->step();
  EXPECT_NEAR(drawn().yMax(), 4, 0.01);
  m_simulation->step();
  EXPECT_NEAR(drawn().yMax(), 3, 0.01) << "0.25 * 0 + 0.75 * 4";
}

TEST_F(ForceArrowRendererTest, AConstraintShowsTheWeightThatHangsOnIt) {
  vyrOSG::SimulationObject load =
      vyrOSG::SimulationObject::createSphere("load", vyr::AffineMatrix4x4(), 0.5, nullptr, m_simulation.get());
  load.body->setMass(10);
  // A slide across: it carries the load, which may only move along x.
  vyr::ref_ptr<vyr::Prismatic> slide =
      new vyr::Prismatic(vyr::Frame::create(load.body.get(), vyr::Vec3(), vyr::Vec3(1, 0, 0)),
                         vyr::Frame::create(nullptr, vyr::Vec3(), vyr::Vec3(1, 0, 0)));
  m_simulation->add(slide.get());
  vyrOSG::Constraint1DOFObserverVector constraints;
  constraints.push_back(vyr::observer_ptr<vyr::Constraint1DOF>(slide.get()));
  m_renderer->setScale(1 / 98.0665);
  m_renderer->add(constraints, vyr::Vec3());
  for (int i = 0; i < 120; ++i)
    m_simulation->step();
  EXPECT_NEAR(drawn().zMax(), 1, 0.05);
  EXPECT_TRUE(m_renderer->remove(slide.get()));
  EXPECT_FALSE(drawn().valid());
  EXPECT_FALSE(m_renderer->remove(slide.get()));
}

TEST_F(ForceArrowRendererTest, ArrowsLeaveWithTheirBodyAndWithTheRenderer) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  m_renderer->add(body.get(), vyr::Vec3());
  EXPECT_EQ(m_renderer->getArrowGroup()->getNumChildren(), 1u);
  body = nullptr;
  m_renderer->update(0, 0);
  EXPECT_EQ(m_renderer->getArrowGroup()->getNumChildren(), 0u);
  EXPECT_EQ(m_root->getNumChildren(), 1u);
  m_renderer = nullptr;
  EXPECT_EQ(m_root->getNumChildren(), 0u);
}

TEST_F(ForceArrowRendererTest, TheSimulationForgetsTheRenderer) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  m_simulation->add(body.get());
  m_renderer->add(body.get(), vyr::Vec3());
  EXPECT_EQ(m_simulation->getStepEventListeners().size(), 1u);
  m_renderer = nullptr;
  EXPECT_TRUE(m_simulation->getStepEventListeners().empty());
}

TEST_F(ForceArrowRendererTest, SettersRefuseWhatIsNoPositiveNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  m_renderer->setSmoothFactor(1.5);
  EXPECT_NE(m_messages.takeOne().find("setSmoothFactor: 1.5"), std::string::npos);
  m_renderer->setScale(0);
  EXPECT_NE(m_messages.takeOne().find("setScale: 0"), std::string::npos);
  m_renderer->setConeLength(-1);
  EXPECT_NE(m_messages.takeOne().find("setConeLength: -1"), std::string::npos);
  m_renderer->setArrowRadius(nan);
  EXPECT_NE(m_messages.takeOne().find("setArrowRadius: nan"), std::string::npos);
  EXPECT_EQ(m_renderer->getSmoothFactor(), 0.2);
  EXPECT_EQ(m_renderer->getScale(), 0.0001);
  EXPECT_EQ(m_renderer->getConeLength(), 0.2);
  EXPECT_EQ(m_renderer->getArrowRadius(), 0.03);
}

} // namespace
