// Checks that geometry nodes follow their geometry, leave with it and choose between their render children.
#include "CapturedMessages.h"

#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/utils.h>

#include <vyrCollide/Box.h>
#include <vyrCollide/HeightField.h>
#include <vyrSDK/Simulation.h>

#include <osg/ComputeBoundsVisitor>
#include <osgUtil/UpdateVisitor>

#include <gtest/gtest.h>

namespace {

using vyrOSG::GeometryNode;

vyr::ref_ptr<vyrCollide::Geometry> makeBox() {
  return new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(1, 2, 3)), "box");
}

void updateScene(osg::Node* root) {
  osgUtil::UpdateVisitor visitor;
  osg::ref_ptr<osg::FrameStamp> stamp = new osg::FrameStamp;
  visitor.setFrameStamp(stamp);
  root->accept(visitor);
}

osg::BoundingBox drawnBounds(osg::Node* node) {
  osg::ComputeBoundsVisitor visitor;
  visitor.setTraversalMode(osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN);
  node->accept(visitor);
  return visitor.getBoundingBox();
}

TEST(GeometryNode, WithoutGeometryIsEmpty) {
  osg::ref_ptr<GeometryNode> node = new GeometryNode;
  EXPECT_EQ(node->getGeometry(), nullptr);
  EXPECT_EQ(node->getNumChildren(), 0u);
  EXPECT_TRUE(node->getAutoRemove());
  EXPECT_EQ(node->getSelectedRenderChild(), GeometryNode::RENDER_DATA);
}

TEST(GeometryNode, DrawsItsGeometryInTheSizeOfTheShape) {
  vyr::ref_ptr<vyrCollide::Geometry> geometry = makeBox();
  osg::ref_ptr<GeometryNode> node = new GeometryNode(geometry.get());
  EXPECT_EQ(node->getName(), "box");
  const osg::BoundingBox bounds = drawnBounds(node);
  EXPECT_EQ(bounds._min, osg::Vec3(-1, -2, -3));
  EXPECT_EQ(bounds._max, osg::Vec3(1, 2, 3));
}

TEST(GeometryNode, FollowsTheBodyInTheUpdateTraversal) {
  vyr::ref_ptr<vyrCollide::Geometry> geometry = makeBox();
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  body->add(geometry.get(), vyr::AffineMatrix4x4::translate(0, 0, 1));
  osg::ref_ptr<vyrOSG::Group> root = new vyrOSG::Group;
  osg::ref_ptr<GeometryNode> node = new GeometryNode(geometry.get());
  root->addChild(node.get());
  body->setPosition(vyr::Vec3(5, 6, 7));
  updateScene(root);
  EXPECT_EQ(node->getMatrix().getTrans(), osg::Vec3d(5, 6, 8));
}

TEST(GeometryNode, LeavesItsParentsWhenTheGeometryIsDestroyed) {
  vyr::ref_ptr<vyrCollide::Geometry> geometry = makeBox();
  osg::ref_ptr<vyrOSG::Group> root = new vyrOSG::Group;
  osg::ref_ptr<osg::Group> second = new osg::Group;
  root->addChild(second.get());
  osg::ref_ptr<osg::Node> before = new osg::Node;
  osg::ref_ptr<osg::Node> after = new osg::Node;
  osg::ref_ptr<GeometryNode> node = new GeometryNode(geometry.get());
  root->addChild(before.get());
  root->addChild(node.get());
  root->addChild(after.get());
  second->addChild(node.get());
  geometry = nullptr;
  EXPECT_EQ(node->getGeometry(), nullptr);
  updateScene(root);
  EXPECT_FALSE(drawnBounds(node).valid());
  updateScene(root);
  EXPECT_EQ(node->getNumParents(), 0u);
  EXPECT_TRUE(root->containsNode(before));
  EXPECT_TRUE(root->containsNode(after));
}

TEST(GeometryNode, StaysWithoutAutoRemove) {
  vyr::ref_ptr<vyrCollide::Geometry> geometry = makeBox();
  osg::ref_ptr<vyrOSG::Group> root = new vyrOSG::Group;
  osg::ref_ptr<GeometryNode> node = new GeometryNode(geometry.get());
  node->setAutoRemove(false);
  root->addChild(node.get());
  geometry = nullptr;
  updateScene(root);
  updateScene(root);
  EXPECT_EQ(node->getNumParents(), 1u);
  EXPECT_TRUE(drawnBounds(node).valid());
}

TEST(GeometryNode, IsNotDrawnWhileItsBodyIsOutOfTheSimulation) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyrCollide::Geometry> geometry = makeBox();
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  body->add(geometry.get());
  osg::ref_ptr<vyrOSG::Group> root = new vyrOSG::Group;
  osg::ref_ptr<GeometryNode> node = new GeometryNode(geometry.get());
  root->addChild(node.get());
  updateScene(root);
  EXPECT_TRUE(drawnBounds(root).valid()) << "not in a simulation yet";
  simulation->add(body.get());
  updateScene(root);
  EXPECT_TRUE(drawnBounds(root).valid());
  simulation->remove(body.get());
  updateScene(root);
  EXPECT_FALSE(drawnBounds(root).valid());
  simulation->add(body.get());
  updateScene(root);
  EXPECT_TRUE(drawnBounds(root).valid());
}

TEST(GeometryNode, DrawsTheSelectedRenderChildAndTheOtherOneWhereItIsMissing) {
  vyr::ref_ptr<vyrCollide::Geometry> geometry = makeBox();
  osg::ref_ptr<GeometryNode> node = new GeometryNode(geometry.get());
  osg::Node* shape = node->getRenderChild(GeometryNode::GEOMETRY_DATA);
  ASSERT_NE(shape, nullptr);
  EXPECT_EQ(node->getRenderChild(GeometryNode::RENDER_DATA), nullptr);
  EXPECT_TRUE(node->containsNode(shape));

  osg::ref_ptr<vyrOSG::Node> model = new vyrOSG::Node;
  node->setRenderChild(GeometryNode::RENDER_DATA, model.get());
  EXPECT_EQ(node->getRenderChild(GeometryNode::RENDER_DATA), model.get());
  EXPECT_TRUE(node->containsNode(model));
  EXPECT_FALSE(node->containsNode(shape));

  node->selectRenderChild(GeometryNode::GEOMETRY_DATA);
  EXPECT_EQ(node->getSelectedRenderChild(), GeometryNode::GEOMETRY_DATA);
  EXPECT_FALSE(node->containsNode(model));
  EXPECT_TRUE(node->containsNode(shape));
}

TEST(GeometryNode, RefusesANumberThatIsNoRenderFlag) {
  CapturedMessages messages;
  osg::ref_ptr<GeometryNode> node = new GeometryNode;
  node->selectRenderChild(static_cast<GeometryNode::RenderFlag>(3));
  EXPECT_NE(messages.takeOne().find("3 is no render flag"), std::string::npos);
  EXPECT_EQ(node->getSelectedRenderChild(), GeometryNode::RENDER_DATA);
  EXPECT_EQ(node->getRenderChild(static_cast<GeometryNode::RenderFlag>(0)), nullptr);
}

TEST(GeometryNode, RemoveFromParentsLeavesNoParent) {
  osg::ref_ptr<GeometryNode> node = new GeometryNode;
  osg::ref_ptr<vyrOSG::Group> first = new vyrOSG::Group;
  osg::ref_ptr<vyrOSG::Group> second = new vyrOSG::Group;
  first->addChild(node.get());
  second->addChild(node.get());
  node->removeFromParents();
  EXPECT_EQ(node->getNumParents(), 0u);
  EXPECT_EQ(first->getNumChildren() + second->getNumChildren(), 0u);
}

TEST(GeometryNode, FollowsChangesOfAHeightField) {
  vyr::RealVector heights;
  heights.assign(9, 0.0);
  vyr::ref_ptr<vyrCollide::HeightField> field = new vyrCollide::HeightField(3, 3, 2, 2, heights);
  vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(field.get());
  osg::ref_ptr<GeometryNode> node = new GeometryNode(geometry.get());
  EXPECT_EQ(drawnBounds(node).zMax(), 0);
  field->setHeight(1, 1, 0.5);
  node->update();
  EXPECT_EQ(drawnBounds(node).zMax(), 0.5f);
}

} // namespace
