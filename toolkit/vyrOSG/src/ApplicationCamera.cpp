// Where the application's camera stands and what it follows.
#include "ApplicationParts.h"
#include "SceneBounds.h"

#include <vyr/Notify.h>
#include <vyrOSG/Conversions.h>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

/// From the front right and above: shows three faces of a box, and the ground as ground.
const osg::Vec3d kDefaultDirection(-0.55, 1.0, -0.50);

/// What an empty scene, or one of nothing but endless planes, is looked at as (m, from the origin).
constexpr float kEmptyExtent = 3.0f;

constexpr double kFitMargin = 1.10;

/// The distance from the middle of the box at which, looking along the unit vector @p direction with z up, every corner
/// is inside the view.
double fitDistance(const osg::BoundingBox& box, const osg::Vec3d& direction, double fieldOfView, double aspect) {
  osg::Vec3d right = direction ^ osg::Vec3d(0.0, 0.0, 1.0);
  right.normalize();
  const osg::Vec3d up = right ^ direction;
  const double tangent = std::tan(osg::DegreesToRadians(0.5 * fieldOfView));
  double distance = 1.0e-3;
  for (unsigned i = 0; i < 8; ++i) {
    const osg::Vec3d corner = osg::Vec3d(box.corner(i)) - osg::Vec3d(box.center());
    const double aside = std::max(std::fabs(corner * right) / (tangent * aspect), std::fabs(corner * up) / tangent);
    distance = std::max(distance, kFitMargin * aside - corner * direction);
  }
  return distance;
}

} // namespace

void ExampleApplication::setCameraHome(const vyr::Vec3& eye, const vyr::Vec3& center, const vyr::Vec3& up) {
  if (!eye.isFinite() || !center.isFinite() || !up.isFinite() || (center - eye).length() == 0.0 ||
      ((center - eye) ^ up).length() == 0.0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setCameraHome: eye (" << eye << "), center (" << center << ") and up (" << up
                                  << ") give no view";
    return;
  }
  m_parts->homeEye = toOsg(eye);
  m_parts->homeCenter = toOsg(center);
  m_parts->homeUp = toOsg(up);
  m_cameraHomeSet = true;
  m_parts->viewWasChosen = true;
  placeHome();
}

void ExampleApplication::placeHome() {
  if (!m_viewer.valid())
    return;
  m_parts->manipulator->setHomePosition(m_parts->homeEye, m_parts->homeCenter, m_parts->homeUp);
  setView(m_parts->homeEye, m_parts->homeCenter, m_parts->homeUp);
}

void ExampleApplication::setView(const osg::Vec3d& eye, const osg::Vec3d& center, const osg::Vec3d& up) {
  // Other manipulators than the application's own are scripts' business: they keep the view that they have.
  if (m_viewer->getCameraManipulator() == m_parts->manipulator.get())
    m_parts->manipulator->setTransformation(eye, center, up);
  m_viewer->getCamera()->setViewMatrixAsLookAt(eye, center, up);
}

void ExampleApplication::updateView() {
  osg::Vec3d eye;
  osg::Vec3d center;
  osg::Vec3d up;
  if (m_parts->orbit.getView(getTimeStamp(), eye, center, up))
    setView(eye, center, up);
}

void ExampleApplication::fitSceneIntoView() {
  if (!m_viewer.valid())
    return;
  osg::BoundingBox box = measureScene(m_sceneRoot.get());
  if (!box.valid())
    box.set(-kEmptyExtent, -kEmptyExtent, 0.0f, kEmptyExtent, kEmptyExtent, kEmptyExtent);
  osg::Vec3d direction = kDefaultDirection;
  if (m_parts->viewWasChosen) {
    const osg::Vec3d looking = toOsg(getViewDirection());
    if (looking.length2() > 0.0 && std::fabs(looking.z()) < 0.99)
      direction = looking;
  }
  direction.normalize();
  double fieldOfView = 40.0;
  double aspect = 1.0;
  double near = 0.0;
  double far = 0.0;
  m_viewer->getCamera()->getProjectionMatrixAsPerspective(fieldOfView, aspect, near, far);
  const osg::Vec3d center = box.center();
  const osg::Vec3d eye = center - direction * fitDistance(box, direction, fieldOfView, aspect);
  m_parts->viewWasChosen = true;
  m_parts->manipulator->setHomePosition(eye, center, osg::Vec3d(0.0, 0.0, 1.0));
  setView(eye, center, osg::Vec3d(0.0, 0.0, 1.0));
}

void ExampleApplication::centerScene() {
  const osg::BoundingBox box = measureScene(m_sceneRoot.get());
  if (!m_viewer.valid() || !box.valid())
    return;
  osg::Vec3d eye;
  osg::Vec3d center;
  osg::Vec3d up;
  m_viewer->getCamera()->getViewMatrixAsLookAt(eye, center, up);
  if ((osg::Vec3d(box.center()) - eye).length() > 0.0)
    setView(eye, box.center(), osg::Vec3d(0.0, 0.0, 1.0));
}

CameraData ExampleApplication::getCameraData() const {
  return CameraData(static_cast<const osgViewer::Viewer*>(m_viewer.get()));
}

void ExampleApplication::applyCameraData(const CameraData& data) {
  if (!m_viewer.valid() || !data.valid)
    return;
  data.applyTo(m_viewer->getCamera());
  setView(toOsg(data.eye), toOsg(data.center), toOsg(data.up));
}

vyr::Vec3 ExampleApplication::getViewDirection() {
  if (!m_viewer.valid())
    return vyr::Vec3(0.0, 1.0, 0.0);
  osg::Vec3d eye;
  osg::Vec3d center;
  osg::Vec3d up;
  m_viewer->getCamera()->getViewMatrixAsLookAt(eye, center, up);
  return toVyr(center - eye).normalized();
}

void ExampleApplication::setOrbitCamera(vyrOSG::GeometryNode* node, double distance, double height, double speed,
                                        int flags) {
  if (!std::isfinite(distance) || !std::isfinite(height) || !std::isfinite(speed) || distance <= 0.0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setOrbitCamera: a distance of " << distance << " m, a height of " << height
                                  << " m and " << speed << " turns a second give no orbit";
    return;
  }
  m_parts->orbit.circle(node, distance, height, speed, (flags & 1) != 0);
}

void ExampleApplication::setOrbitCamera(vyrOSG::GeometryNode* node, const vyr::Vec3& eye, const vyr::Vec3& center,
                                        const vyr::Vec3& up, int flags) {
  if (!eye.isFinite() || !center.isFinite() || !up.isFinite() || ((center - eye) ^ up).length() == 0.0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setOrbitCamera: eye (" << eye << "), center (" << center << ") and up (" << up
                                  << ") give no view";
    return;
  }
  m_parts->orbit.follow(node, eye, center, up, (flags & 1) != 0);
}

} // namespace vyrOSG
