/// Frames that are read back from the graphics card.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"

#include <gtest/gtest.h>
#include <osg/Geode>
#include <osg/Geometry>

namespace {

/// A red square that fills the upper half of the view of a camera at the origin of an orthographic projection.
osg::ref_ptr<osg::Node> upperHalf() {
  osg::ref_ptr<osg::Geometry> square =
      osg::createTexturedQuadGeometry(osg::Vec3(-1, 0, 0), osg::Vec3(2, 0, 0), osg::Vec3(0, 1, 0));
  square->setColorArray(new osg::Vec4Array(1, std::vector<osg::Vec4>{osg::Vec4(1, 0, 0, 1)}.data()),
                        osg::Array::BIND_OVERALL);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(square.get());
  geode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  return geode;
}

TEST(FrameGrabber, ReadsTheFrameThatWasAskedFor) {
  const CapturedMessages messages;
  OffscreenViewer screen(40, 30);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  screen.viewer()->setSceneData(upperHalf());
  screen.camera()->setProjectionMatrixAsOrtho2D(-1, 1, -1, 1);
  screen.camera()->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
  screen.viewer()->frame();
  EXPECT_EQ(screen.grabber()->getImage(), nullptr);

  const osg::ref_ptr<osg::Image> image = screen.draw();
  ASSERT_TRUE(image);
  EXPECT_FALSE(screen.grabber()->isRequested());
  EXPECT_EQ(image->s(), 40);
  EXPECT_EQ(image->t(), 30);
  EXPECT_EQ(image->getColor(20u, 5u), osg::Vec4(0, 0, 1, 1));
  EXPECT_EQ(image->getColor(20u, 25u), osg::Vec4(1, 0, 0, 1));

  screen.grabber()->clear();
  screen.viewer()->frame();
  EXPECT_EQ(screen.grabber()->getImage(), nullptr);
}

TEST(FrameGrabber, ANewPictureLeavesTheOldOneAlone) {
  const CapturedMessages messages;
  OffscreenViewer screen(8, 8);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  screen.viewer()->setSceneData(new osg::Group);
  const osg::ref_ptr<osg::Image> blue = screen.draw();
  screen.camera()->setClearColor(osg::Vec4(0, 1, 0, 1));
  const osg::ref_ptr<osg::Image> green = screen.draw();
  ASSERT_TRUE(blue && green);
  EXPECT_NE(blue, green);
  EXPECT_EQ(blue->getColor(4u, 4u), osg::Vec4(0, 0, 1, 1));
  EXPECT_EQ(green->getColor(4u, 4u), osg::Vec4(0, 1, 0, 1));
}

TEST(FrameGrabber, InstallRunsBesideOtherCallbacks) {
  EXPECT_EQ(vyrOSG::FrameGrabber::install(nullptr), nullptr);
  const osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  vyrOSG::FrameGrabber* first = vyrOSG::FrameGrabber::install(camera.get());
  vyrOSG::FrameGrabber* second = vyrOSG::FrameGrabber::install(camera.get());
  ASSERT_TRUE(first && second);
  EXPECT_EQ(camera->getFinalDrawCallback(), first);
  EXPECT_EQ(first->getNestedCallback(), second);
}

} // namespace
