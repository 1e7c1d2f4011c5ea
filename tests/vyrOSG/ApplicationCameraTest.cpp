// Looks through the application's camera: home, fit, orbit, picking, pictures.
#include "ApplicationFixture.h"
#include "CapturedMessages.h"

#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/ImageCapture.h>
#include <vyrOSG/SceneDecorator.h>

#include <osgDB/ReadFile>

using vyrOSG::CameraData;
using vyrOSG::ExampleApplication;
using vyrOSG::LaunchOptions;

namespace {

/// Tests that draw: skipped where no context can be had.
class ApplicationCamera : public ApplicationTest {
protected:
  void SetUp() override {
    if (!useEgl())
      GTEST_SKIP() << "no EGL context on this machine";
    ASSERT_TRUE(init());
    ASSERT_TRUE(app->setupViewer(true, true));
    app->addScene(script(), "fall", 0, true);
    app->createNextScene();
  }

  /// Where a point of the simulation is in the picture, in pixels from the lower left.
  osg::Vec3d project(const vyr::Vec3& point) {
    const osg::Camera& camera = *app->getCamera();
    return osg::Vec3d(point[0], point[1], point[2]) * camera.getViewMatrix() * camera.getProjectionMatrix() *
           camera.getViewport()->computeWindowMatrix();
  }
};

TEST_F(ApplicationCamera, HomeIsWhereItWasPut) {
  EXPECT_FALSE(app->isCameraHomeSet());
  app->setCameraHome(vyr::Vec3(0, -5, 2), vyr::Vec3(0, 0, 2));
  EXPECT_TRUE(app->isCameraHomeSet());
  app->step();
  const CameraData data = app->getCameraData();
  ASSERT_TRUE(data.valid);
  EXPECT_NEAR(0.0, (data.eye - vyr::Vec3(0, -5, 2)).length(), 1e-6);
  EXPECT_NEAR(0.0, (data.center - vyr::Vec3(0, 0, 2)).length(), 1e-6);
  EXPECT_NEAR(0.0, (app->getViewDirection() - vyr::Vec3(0, 1, 0)).length(), 1e-9);
}

TEST_F(ApplicationCamera, ImpossibleHomesAreErrors) {
  CapturedMessages messages;
  app->setCameraHome(vyr::Vec3(1, 1, 1), vyr::Vec3(1, 1, 1));
  app->setCameraHome(vyr::Vec3(0, 0, 5), vyr::Vec3(0, 0, 0));
  EXPECT_EQ(2u, messages.take().size());
  EXPECT_FALSE(app->isCameraHomeSet());
}

TEST_F(ApplicationCamera, FittingShowsTheWholeBoxAndFillsThePicture) {
  app->fitSceneIntoView();
  double low = 1e9;
  double high = -1e9;
  for (int i = 0; i < 8; ++i) {
    const osg::Vec3d corner =
        project(box->getPosition() + vyr::Vec3(i & 1 ? 0.5 : -0.5, i & 2 ? 0.5 : -0.5, i & 4 ? 0.5 : -0.5));
    EXPECT_GT(corner.x(), 0);
    EXPECT_LT(corner.x(), 160);
    low = std::min(low, corner.y());
    high = std::max(high, corner.y());
  }
  EXPECT_GT(low, 0);
  EXPECT_LT(high, 120);
  EXPECT_GT(high - low, 80) << "the box of 1 m is what the picture is about, not the endless plane";
}

TEST_F(ApplicationCamera, CenteringTurnsWithoutMoving) {
  app->setCameraHome(vyr::Vec3(3, -5, 2), vyr::Vec3(3, 0, 2));
  app->centerScene();
  const CameraData data = app->getCameraData();
  EXPECT_NEAR(0.0, (data.eye - vyr::Vec3(3, -5, 2)).length(), 1e-6);
  EXPECT_NEAR(80.0, project(box->getPosition()).x(), 0.01);
  EXPECT_NEAR(60.0, project(box->getPosition()).y(), 0.01);
}

TEST_F(ApplicationCamera, CameraDataIsAppliedAndStays) {
  CameraData data = app->getCameraData();
  data.eye = vyr::Vec3(0, -9, 1);
  data.center = vyr::Vec3(0, 0, 1);
  data.fieldOfView = 25;
  app->applyCameraData(data);
  app->step();
  const CameraData after = app->getCameraData();
  EXPECT_NEAR(0.0, (after.eye - data.eye).length(), 1e-6);
  EXPECT_NEAR(25.0, after.fieldOfView, 1e-6);
}

TEST_F(ApplicationCamera, PicksTheExactPoint) {
  app->setCameraHome(vyr::Vec3(0, -5, 1.5), vyr::Vec3(0, 0, 1.5));
  const vyr::Vec3 target(0.3, -0.5, 1.7);
  const osg::Vec3d window = project(target);
  const vyrSDK::PickResult result =
      app->getPickHandler()->pick(static_cast<float>(window.x()), static_cast<float>(window.y()));
  ASSERT_TRUE(result.hit);
  EXPECT_EQ(box->getGeometries()[0].get(), result.geometry.get());
  EXPECT_NEAR(0.0, (result.worldPoint - target).length(), 1e-4);
  EXPECT_NEAR(0.0, (result.localPoint - vyr::Vec3(0.3, -0.5, 0.2)).length(), 1e-4);
  EXPECT_NEAR((target - vyr::Vec3(0, -5, 1.5)).length(), result.distance, 1e-4);
}

TEST_F(ApplicationCamera, PickingTheSkyHitsNothing) {
  app->setCameraHome(vyr::Vec3(0, -5, 1.5), vyr::Vec3(0, 0, 1.5));
  EXPECT_FALSE(app->getPickHandler()->pick(5, 115).hit);
}

TEST_F(ApplicationCamera, PickingFollowsTheCoordinateSystem) {
  app->setCoordinateSystemTransform(vyr::AffineMatrix4x4::translate(0, 0, 10));
  app->setCameraHome(vyr::Vec3(0, -5, 11.5), vyr::Vec3(0, 0, 11.5));
  const vyrSDK::PickResult result = app->getPickHandler()->pick(80, 60);
  ASSERT_TRUE(result.hit);
  EXPECT_NEAR(1.5, result.worldPoint.z(), 0.05) << "in the simulation's coordinates";
}

TEST_F(ApplicationCamera, TheOrbitCameraFollowsItsNode) {
  osg::ref_ptr<vyrOSG::GeometryNode> node = new vyrOSG::GeometryNode(box->getGeometries()[0].get());
  app->getScene()->addChild(node.get());
  LaunchOptions::process().addShot("0:" + (folder / "a.png"));
  app->setOrbitCamera(node.get(), vyr::Vec3(0, -4, 1), vyr::Vec3(0, 0, 0), vyr::Vec3(0, 0, 1));
  app->takeScreenShot(vyr::String(folder / "a.png"));
  EXPECT_NEAR(0.0, (app->getCameraData().eye - vyr::Vec3(0, -4, 2.5)).length(), 1e-6);
  box->setPosition(vyr::Vec3(7, 0, 3));
  app->takeScreenShot(vyr::String(folder / "a.png"));
  EXPECT_NEAR(0.0, (app->getCameraData().eye - vyr::Vec3(7, -4, 4)).length(), 1e-6);
  app->setOrbitCamera(node.get(), 2.0, 1.0, 0.5);
  app->takeScreenShot(vyr::String(folder / "a.png"));
  const vyr::Vec3 offset = app->getCameraData().eye - vyr::Vec3(7, 0, 3);
  EXPECT_NEAR(1.0, offset.z(), 1e-6);
  EXPECT_NEAR(2.0, std::hypot(offset.x(), offset.y()), 1e-6);
  CapturedMessages messages;
  app->setOrbitCamera(node.get(), -2.0, 1.0, 0.5);
  EXPECT_EQ(1u, messages.take().size());
}

TEST_F(ApplicationCamera, ScreenShotsHaveTheSizeAndTheScene) {
  app->takeScreenShot(vyr::String(folder / "new-folder/shot.png"));
  const osg::ref_ptr<osg::Image> picture = osgDB::readRefImageFile(folder / "new-folder/shot.png");
  ASSERT_TRUE(picture.valid());
  EXPECT_EQ(160, picture->s());
  EXPECT_EQ(120, picture->t());
  const osg::Vec3d middle = project(box->getPosition());
  const osg::Vec4 onBox = picture->getColor(static_cast<unsigned>(middle.x()), static_cast<unsigned>(middle.y()));
  const osg::Vec4 sky = picture->getColor(2, 118);
  EXPECT_GT((onBox - sky).length(), 0.1);
}

TEST_F(ApplicationCamera, APictureThatCannotBeWrittenIsOneErrorAndExitCodeOne) {
  CapturedMessages messages;
  app->takeScreenShot(vyr::String("/proc/no-folder/shot.png"));
  EXPECT_NE(std::string::npos, messages.takeOne().find("/proc/no-folder/shot.png"));
  EXPECT_EQ(1, LaunchOptions::process().getFailure());
}

TEST_F(ApplicationCamera, ShotsAreTakenAtTheirTimesAndEndTheRun) {
  LaunchOptions::process().addShot("0.2:" + (folder / "late.png"));
  LaunchOptions::process().addShot("0:" + (folder / "early.png"));
  app->setCameraHome(vyr::Vec3(0, -5, 1.5), vyr::Vec3(0, 0, 1.5));
  EXPECT_EQ(0, app->run());
  EXPECT_NEAR(0.2, app->getTimeStamp(), 1e-9);
  EXPECT_TRUE(osgDB::readRefImageFile(folder / "early.png").valid());
  EXPECT_TRUE(osgDB::readRefImageFile(folder / "late.png").valid());
}

TEST_F(ApplicationCamera, AShotBehindTheEndOfTheRunIsAFailure) {
  CapturedMessages messages;
  LaunchOptions::process().addShot("5:" + (folder / "never.png"));
  LaunchOptions::process().steps = 3;
  EXPECT_EQ(1, app->run());
  EXPECT_NE(std::string::npos, messages.takeOne().find("never.png"));
}

TEST_F(ApplicationCamera, CapturesKeepTheSimulationsPace) {
  app->getImageCapture()->setDirectoryPath(folder / "frames");
  app->getImageCapture()->setFps(20);
  app->getImageCapture()->startCapture();
  app->stopAfter(0.5);
  EXPECT_EQ(0, app->run());
  EXPECT_EQ(10u, TemporaryFolder::countFiles(folder / "frames"));
}

TEST_F(ApplicationCamera, FilmsAreRecordedByTheLaunchOptions) {
  LaunchOptions::process().record = folder / "film/%03d.png";
  LaunchOptions::process().fps = 10;
  app->stopAfter(0.4);
  EXPECT_EQ(0, app->run());
  EXPECT_EQ(4u, TemporaryFolder::countFiles(folder / "film"));
}

TEST_F(ApplicationCamera, DebugLinesAreDrawn) {
  app->setCameraHome(vyr::Vec3(0, -5, 1.5), vyr::Vec3(0, 0, 1.5));
  app->takeScreenShot(vyr::String(folder / "plain.png"));
  EXPECT_TRUE(app->setEnableDebugRenderer(true));
  app->setEnableTextDebugRendering(true);
  EXPECT_TRUE(app->getEnableTextDebugRendering());
  app->takeScreenShot(vyr::String(folder / "debug.png"));
  const osg::ref_ptr<osg::Image> plain = osgDB::readRefImageFile(folder / "plain.png");
  const osg::ref_ptr<osg::Image> debug = osgDB::readRefImageFile(folder / "debug.png");
  int changed = 0;
  for (unsigned y = 0; y < 120; ++y)
    for (unsigned x = 0; x < 160; ++x)
      changed += (plain->getColor(x, y) - debug->getColor(x, y)).length() > 0.2f ? 1 : 0;
  EXPECT_GT(changed, 100);
  EXPECT_LT(changed, 160 * 120 / 2);
}

TEST_F(ApplicationCamera, AScenesErrorIsShownOnTheDisplay) {
  CapturedMessages messages;
  app->addScene(script(), "missing", '2', false);
  EXPECT_FALSE(app->createSceneByKey('2'));
  EXPECT_EQ("there is no function missing", app->getSceneDecorator()->getText(0));
  EXPECT_FALSE(app->getAutoStepping());
}

} // namespace
