// Trees in the scene graph.
#include "CapturedMessages.h"

#include <vyrOSG/Tree.h>
#include <vyrOSG/TreeRenderer.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Geode>
#include <osg/Geometry>
#include <osgUtil/UpdateVisitor>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using vyr::Vec3;
using vyr::Vec4;

osg::BoundingBox boundsOf(osg::Node* node) {
  osg::ComputeBoundsVisitor visitor;
  node->accept(visitor);
  return visitor.getBoundingBox();
}

vyr::ref_ptr<vyrModel::Tree> grown() {
  vyr::ref_ptr<vyrModel::Tree> tree(new vyrModel::Tree);
  tree->grow(vyrModel::TreeParameters(), 3);
  return tree;
}

TEST(TreeRenderer, DrawsTheTreeWhereItStands) {
  const osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const auto tree = grown();
  tree->setTransform(vyr::AffineMatrix4x4::translate(10, 0, 0));
  const vyr::ref_ptr<vyrOSG::TreeRenderer> renderer(new vyrOSG::TreeRenderer(tree.get(), group.get()));
  const osg::BoundingBox box = boundsOf(group.get());
  EXPECT_NEAR(10, box.center().x(), 1.5);
  EXPECT_NEAR(0, box.zMin(), 0.1);
  EXPECT_NEAR(6, box.zMax(), 1.5);
}

TEST(TreeRenderer, FollowsStepsAndFrames) {
  const osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const auto tree = grown();
  const vyr::ref_ptr<vyrOSG::TreeRenderer> renderer(new vyrOSG::TreeRenderer(tree.get(), group.get()));
  tree->addTo(simulation.get());
  simulation->add(static_cast<vyrSDK::StepEventListener*>(renderer.get()));
  const osg::BoundingBox calm = boundsOf(group.get());
  tree->setGustiness(0);
  tree->setWind(Vec3(25, 0, 0));
  simulation->stepTo(2);
  const osg::BoundingBox bent = boundsOf(group.get());
  EXPECT_GT(bent.xMax(), calm.xMax() + 0.02f);
  // Without being a listener, it follows with the frames.
  simulation->remove(static_cast<vyrSDK::StepEventListener*>(renderer.get()));
  tree->remove();
  tree->setTransform(vyr::AffineMatrix4x4::translate(0, 100, 0));
  osgUtil::UpdateVisitor frame;
  group->accept(frame);
  EXPECT_GT(boundsOf(group.get()).yMin(), 90);
}

TEST(TreeRenderer, SetColorChangesGetColorAndTheLeaves) {
  CapturedMessages messages;
  const osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const auto tree = grown();
  const vyr::ref_ptr<vyrOSG::TreeRenderer> renderer(new vyrOSG::TreeRenderer(tree.get(), group.get()));
  const Vec4 autumn(0.8, 0.3, 0.1, 1);
  renderer->setColor(autumn);
  EXPECT_EQ(autumn, renderer->getColor());
  const auto* geode = static_cast<osg::Geode*>(renderer->getNode()->getChild(0));
  const auto& colors = *static_cast<const osg::Vec4Array*>(geode->getDrawable(1)->asGeometry()->getColorArray());
  ASSERT_FALSE(colors.empty());
  for (const osg::Vec4& color : colors)
    EXPECT_GT(color.r(), color.g());
  renderer->setColor(Vec4(std::nan(""), 0, 0, 1));
  EXPECT_EQ(autumn, renderer->getColor());
  EXPECT_EQ(1u, messages.errors().size());
}

TEST(TreeRenderer, DrawsNothingWithoutATree) {
  const osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  auto tree = grown();
  const vyr::ref_ptr<vyrOSG::TreeRenderer> renderer(new vyrOSG::TreeRenderer(tree.get(), group.get()));
  EXPECT_EQ(1u, renderer->getNode()->getNumChildren());
  tree = nullptr;
  renderer->update();
  EXPECT_EQ(0u, renderer->getNode()->getNumChildren());
  renderer->setColor(Vec4(1, 1, 1, 1));
  const vyr::ref_ptr<vyrOSG::TreeRenderer> none(new vyrOSG::TreeRenderer(nullptr, nullptr));
  none->update();
  EXPECT_EQ(0u, none->getNode()->getNumChildren());
}

TEST(TreeRenderer, LeavesTheGroupAndOutlivesIt) {
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const auto tree = grown();
  vyr::ref_ptr<vyrOSG::TreeRenderer> renderer(new vyrOSG::TreeRenderer(tree.get(), group.get()));
  EXPECT_EQ(1u, group->getNumChildren());
  renderer = nullptr;
  EXPECT_EQ(0u, group->getNumChildren());
  renderer = new vyrOSG::TreeRenderer(tree.get(), group.get());
  group = nullptr;
  renderer->update();
}

TEST(TreeRenderer, FollowsBreaksAndBareTrees) {
  const osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const auto tree = grown();
  const vyr::ref_ptr<vyrOSG::TreeRenderer> renderer(new vyrOSG::TreeRenderer(tree.get(), group.get()));
  tree->addTo(simulation.get());
  const osg::ref_ptr<osg::Node> before = renderer->getNode()->getChild(0);
  ASSERT_TRUE(tree->breakBranch(2));
  renderer->update();
  EXPECT_NE(before.get(), renderer->getNode()->getChild(0));
  EXPECT_TRUE(boundsOf(group.get()).valid());
  vyrModel::TreeParameters bare;
  bare.leavesPerMeter = 0;
  const vyr::ref_ptr<vyrModel::Tree> winter(new vyrModel::Tree);
  winter->grow(bare);
  const vyr::ref_ptr<vyrOSG::TreeRenderer> other(new vyrOSG::TreeRenderer(winter.get(), group.get()));
  EXPECT_TRUE(boundsOf(other->getNode()).valid());
}

TEST(Tree, DrawsItselfFromGrowthOn) {
  const osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<vyrOSG::Tree> tree(new vyrOSG::Tree(group.get()));
  EXPECT_EQ(1, tree->getReferenceCount());
  EXPECT_FALSE(boundsOf(group.get()).valid());
  ASSERT_TRUE(tree->grow());
  EXPECT_TRUE(boundsOf(group.get()).valid());
  tree->setColor(Vec4(1, 0.5, 0, 1));
  EXPECT_EQ(Vec4(1, 0.5, 0, 1), tree->getColor());
  EXPECT_EQ(tree->getColor(), tree->getRenderer()->getColor());
  ASSERT_TRUE(tree->addTo(simulation.get()));
  EXPECT_EQ(2u, simulation->getStepEventListeners().size());
  simulation->step();
  const vyr::observer_ptr<vyrOSG::Tree> watched(tree.get());
  tree = nullptr;
  ASSERT_TRUE(watched.valid());
  watched->remove();
  EXPECT_FALSE(watched.valid());
  EXPECT_TRUE(simulation->getStepEventListeners().empty());
  EXPECT_EQ(0u, group->getNumChildren());
}

TEST(Tree, ComesBackToAClearedSimulation) {
  const osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const vyr::ref_ptr<vyrOSG::Tree> tree(new vyrOSG::Tree(group.get()));
  tree->grow();
  ASSERT_TRUE(tree->addTo(simulation.get()));
  simulation->clear();
  EXPECT_EQ(nullptr, tree->getSimulation());
  ASSERT_TRUE(tree->addTo(simulation.get()));
  EXPECT_EQ(2u, simulation->getStepEventListeners().size());
  simulation->step();
}

} // namespace
