// Checks how a transform combines its matrix and its scale.
#include "CapturedMessages.h"

#include <vyrOSG/Transform.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(Transform, SetNameChangesGetName) {
  osg::ref_ptr<vyrOSG::Transform> transform = new vyrOSG::Transform;
  transform->setName("arm");
  EXPECT_EQ(transform->getName(), "arm");
}

TEST(Transform, ScalesFirstThenMovesWhateverTheOrderOfTheCalls) {
  const vyr::AffineMatrix4x4 turnAndMove(vyr::Quat(1.5707963267948966, vyr::Vec3(0, 0, 1)), vyr::Vec3(10, 0, 0));
  for (bool scaleFirst : {true, false}) {
    osg::ref_ptr<vyrOSG::Transform> transform = new vyrOSG::Transform;
    if (scaleFirst)
      transform->setScale(vyr::Vec3(2, 3, 4));
    transform->setMatrix(turnAndMove);
    if (!scaleFirst)
      transform->setScale(vyr::Vec3(2, 3, 4));
    // (1, 1, 1) is scaled to (2, 3, 4), turned by 90 degrees to (-3, 2, 4), moved to (7, 2, 4).
    const osg::Vec3d place = osg::Vec3d(1, 1, 1) * transform->getMatrix();
    EXPECT_NEAR(place.x(), 7, 1e-12);
    EXPECT_NEAR(place.y(), 2, 1e-12);
    EXPECT_NEAR(place.z(), 4, 1e-12);
  }
}

TEST(Transform, ASecondScaleReplacesTheFirst) {
  osg::ref_ptr<vyrOSG::Transform> transform = new vyrOSG::Transform;
  transform->setScale(vyr::Vec3(2, 2, 2));
  transform->setScale(vyr::Vec3(3, 3, 3));
  EXPECT_NEAR((osg::Vec3d(1, 0, 0) * transform->getMatrix()).x(), 3, 1e-12);
}

TEST(Transform, RefusesAScaleThatIsZeroOrNoNumber) {
  CapturedMessages messages;
  osg::ref_ptr<vyrOSG::Transform> transform = new vyrOSG::Transform;
  transform->setScale(vyr::Vec3(1, 0, 1));
  EXPECT_NE(messages.takeOne().find("zero or not finite"), std::string::npos);
  transform->setScale(vyr::Vec3(1, 1, std::numeric_limits<double>::quiet_NaN()));
  EXPECT_NE(messages.takeOne().find("zero or not finite"), std::string::npos);
  EXPECT_EQ(transform->getScale(), vyr::Vec3(1, 1, 1));
  EXPECT_TRUE(transform->getMatrix().isIdentity());
}

TEST(Transform, AddChildTakesNodesOfBothKinds) {
  osg::ref_ptr<vyrOSG::Transform> transform = new vyrOSG::Transform;
  osg::ref_ptr<vyrOSG::Node> own = new vyrOSG::Node;
  osg::ref_ptr<osg::Node> plain = new osg::Node;
  EXPECT_TRUE(transform->addChild(own.get()));
  EXPECT_TRUE(transform->addChild(plain.get()));
  EXPECT_EQ(transform->getNumChildren(), 2u);
}

} // namespace
