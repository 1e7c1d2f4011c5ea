// Checks the plain scene nodes: names, children, and the additions that are refused.
#include <vyrOSG/Group.h>
#include <vyrOSG/Node.h>

#include <gtest/gtest.h>

namespace {

TEST(Node, SetNameChangesGetName) {
  osg::ref_ptr<vyrOSG::Node> node = new vyrOSG::Node;
  node->setName("lamp");
  EXPECT_EQ(node->getName(), "lamp");
}

TEST(Group, KeepsChildrenInOrder) {
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  osg::ref_ptr<osg::Node> first = new osg::Node;
  osg::ref_ptr<osg::Node> second = new osg::Node;
  EXPECT_TRUE(group->addChild(first));
  EXPECT_TRUE(group->addChild(second));
  EXPECT_EQ(group->getNumChildren(), 2u);
  EXPECT_EQ(group->getChild(0), first.get());
  EXPECT_EQ(group->getChild(1), second.get());
  EXPECT_EQ(group->getChild(2), nullptr);
  EXPECT_TRUE(group->containsNode(second));
  EXPECT_TRUE(group->removeChild(first));
  EXPECT_FALSE(group->removeChild(first.get()));
  EXPECT_FALSE(group->containsNode(first));
  EXPECT_EQ(group->getNumChildren(), 1u);
}

TEST(Group, ReplaceChildPutsTheNewOneInTheOldPlace) {
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  osg::ref_ptr<osg::Node> oldChild = new osg::Node;
  osg::ref_ptr<osg::Node> newChild = new osg::Node;
  group->addChild(oldChild);
  EXPECT_TRUE(group->replaceChild(oldChild, newChild));
  EXPECT_EQ(group->getChild(0), newChild.get());
  EXPECT_FALSE(group->replaceChild(oldChild, newChild));
  EXPECT_FALSE(group->replaceChild(newChild, nullptr));
}

TEST(Group, RefusesNullAndItsOwnAncestors) {
  osg::ref_ptr<vyrOSG::Group> outer = new vyrOSG::Group;
  osg::ref_ptr<vyrOSG::Group> inner = new vyrOSG::Group;
  EXPECT_FALSE(outer->addChild(nullptr));
  EXPECT_FALSE(outer->addChild(outer));
  EXPECT_TRUE(outer->addChild(inner));
  EXPECT_FALSE(inner->addChild(outer));
  EXPECT_EQ(inner->getNumChildren(), 0u);
}

} // namespace
