// Reads cameras and writes them back.
#include <vyrOSG/CameraData.h>

#include <gtest/gtest.h>
#include <osg/Camera>
#include <osgGA/TrackballManipulator>
#include <osgViewer/Viewer>

using vyrOSG::CameraData;

namespace {

TEST(CameraData, ReadsACamera) {
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  camera->setProjectionMatrixAsPerspective(50.0, 2.0, 0.5, 200.0);
  camera->setViewMatrixAsLookAt(osg::Vec3d(1, -3, 2), osg::Vec3d(1, 5, 2), osg::Vec3d(0, 0, 1));
  const CameraData data(camera.get());
  EXPECT_TRUE(data.valid);
  EXPECT_NEAR(50.0, data.fieldOfView, 1e-9);
  EXPECT_NEAR(2.0, data.aspectRatio, 1e-9);
  EXPECT_NEAR(0.5, data.nearClippingPlane, 1e-9);
  EXPECT_NEAR(200.0, data.farClippingPlane, 1e-6);
  EXPECT_NEAR(0.0, (data.eye - vyr::Vec3(1, -3, 2)).length(), 1e-9);
  // The view is along y, and the centre stands one metre before the eye.
  EXPECT_NEAR(0.0, (data.center - vyr::Vec3(1, -2, 2)).length(), 1e-9);
  EXPECT_NEAR(0.0, (data.up - vyr::Vec3(0, 0, 1)).length(), 1e-9);
}

TEST(CameraData, AppliesWhatItRead) {
  osg::ref_ptr<osg::Camera> from = new osg::Camera;
  from->setProjectionMatrixAsPerspective(35.0, 1.5, 0.2, 90.0);
  from->setViewMatrixAsLookAt(osg::Vec3d(4, 4, 4), osg::Vec3d(0, 0, 0), osg::Vec3d(0, 0, 1));
  osg::ref_ptr<osg::Camera> to = new osg::Camera;
  CameraData(from.get()).applyTo(to.get());
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      EXPECT_NEAR(from->getViewMatrix()(row, column), to->getViewMatrix()(row, column), 1e-9);
      EXPECT_NEAR(from->getProjectionMatrix()(row, column), to->getProjectionMatrix()(row, column), 1e-6);
    }
  }
}

TEST(CameraData, NothingGivesARecordThatIsNotValidAndChangesNothing) {
  const CameraData none(static_cast<const osg::Camera*>(nullptr));
  EXPECT_FALSE(none.valid);
  EXPECT_FALSE(CameraData(static_cast<const osgViewer::Viewer*>(nullptr)).valid);
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  const osg::Matrixd before = camera->getViewMatrix();
  none.applyTo(camera.get());
  none.applyTo(nullptr);
  EXPECT_EQ(before, camera->getViewMatrix());
}

TEST(CameraData, AnOrthographicCameraIsNotValid) {
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  camera->setProjectionMatrixAsOrtho(-1, 1, -1, 1, 0.1, 10);
  EXPECT_FALSE(CameraData(camera.get()).valid);
}

TEST(CameraData, AViewersCentreIsItsManipulators) {
  osg::ref_ptr<osgViewer::Viewer> viewer = new osgViewer::Viewer;
  viewer->getCamera()->setProjectionMatrixAsPerspective(40, 1, 1, 100);
  osg::ref_ptr<osgGA::TrackballManipulator> manipulator = new osgGA::TrackballManipulator;
  viewer->setCameraManipulator(manipulator.get(), false);
  manipulator->setTransformation(osg::Vec3d(0, -7, 0), osg::Vec3d(0, 0, 0), osg::Vec3d(0, 0, 1));
  viewer->getCamera()->setViewMatrix(manipulator->getInverseMatrix());
  const CameraData data(viewer.get());
  EXPECT_NEAR(0.0, (data.center - vyr::Vec3(0, 0, 0)).length(), 1e-6);
  EXPECT_NEAR(0.0, (data.eye - vyr::Vec3(0, -7, 0)).length(), 1e-6);
}

} // namespace
