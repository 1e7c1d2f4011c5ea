// Turns a window position into a ray and asks the simulation what it meets.
#include "ScenePickHandler.h"

#include <vyrOSG/Conversions.h>

#include <osg/Viewport>

#include <cmath>

namespace vyrOSG {

namespace {

/// As far as the simulation's own rays reach (m).
constexpr double kReach = 1.0e5;

} // namespace

vyrSDK::PickResult ScenePickHandler::pick(float x, float y) {
  vyrSDK::PickResult result;
  osg::ref_ptr<osg::Camera> camera;
  if (!m_simulation || !m_camera.lock(camera) || !camera->getViewport() || !std::isfinite(x) || !std::isfinite(y))
    return result;

  const osg::Matrixd toWindow =
      camera->getViewMatrix() * camera->getProjectionMatrix() * camera->getViewport()->computeWindowMatrix();
  const osg::Matrixd toWorld = osg::Matrixd::inverse(toWindow);
  const osg::Vec3d near = osg::Vec3d(x, y, 0.0) * toWorld * m_inverse;
  const osg::Vec3d far = osg::Vec3d(x, y, 1.0) * toWorld * m_inverse;
  const osg::Vec3d eye = osg::Vec3d(0.0, 0.0, 0.0) * osg::Matrixd::inverse(camera->getViewMatrix()) * m_inverse;
  osg::Vec3d direction = far - near;
  if (!direction.valid() || direction.normalize() == 0.0)
    return result;

  const vyrSDK::RayHit hit = m_simulation->rayTest(toVyr(near), toVyr(direction), kReach);
  if (!hit.hit)
    return result;
  result.hit = true;
  result.geometry = hit.geometry;
  result.worldPoint = hit.point;
  result.distance = (hit.point - toVyr(eye)).length();
  if (hit.geometry)
    result.localPoint = hit.point * hit.geometry->getTransform().inverse();
  return result;
}

} // namespace vyrOSG
