// Reads cameras into records and writes them back.
#include <vyrOSG/CameraData.h>

#include <vyrOSG/Conversions.h>

#include <osg/Camera>
#include <osgGA/CameraManipulator>
#include <osgViewer/Viewer>

#include <cmath>

namespace vyrOSG {

namespace {

constexpr double kLookDistance = 1.0;

void readCamera(const osg::Camera& camera, double lookDistance, CameraData& data) {
  if (!camera.getProjectionMatrixAsPerspective(data.fieldOfView, data.aspectRatio, data.nearClippingPlane,
                                               data.farClippingPlane))
    return;
  osg::Vec3d eye;
  osg::Vec3d center;
  osg::Vec3d up;
  camera.getViewMatrixAsLookAt(eye, center, up, lookDistance);
  data.eye = toVyr(eye);
  data.center = toVyr(center);
  data.up = toVyr(up);
  data.valid = data.eye.isFinite() && data.center.isFinite();
}

} // namespace

CameraData::CameraData()
    : nearClippingPlane(0.1)
    , farClippingPlane(1000.0)
    , fieldOfView(40.0)
    , aspectRatio(16.0 / 9.0)
    , valid(false)
    , eye(0.0, 0.0, 0.0)
    , center(0.0, 1.0, 0.0)
    , up(0.0, 0.0, 1.0) {}

CameraData::CameraData(const osg::Camera* camera)
    : CameraData() {
  if (camera)
    readCamera(*camera, kLookDistance, *this);
}

CameraData::CameraData(const osgViewer::Viewer* viewer)
    : CameraData() {
  if (!viewer)
    return;
  const osgGA::CameraManipulator* manipulator = viewer->getCameraManipulator();
  const double distance = manipulator ? manipulator->getFusionDistanceValue() : 0.0;
  readCamera(*viewer->getCamera(), distance > 0.0 && std::isfinite(distance) ? distance : kLookDistance, *this);
}

void CameraData::applyTo(osg::Camera* camera) const {
  if (!camera || !valid)
    return;
  camera->setProjectionMatrixAsPerspective(fieldOfView, aspectRatio, nearClippingPlane, farClippingPlane);
  camera->setViewMatrixAsLookAt(toOsg(eye), toOsg(center), toOsg(up));
}

} // namespace vyrOSG
