/// Takes over the view of another camera while the scene is culled.
#include "FollowingCamera.h"

namespace vyrOSG {

FollowingCamera::FollowingCamera(double aspectRatio)
    : m_aspectRatio(aspectRatio) {}

void FollowingCamera::accept(osg::NodeVisitor& visitor) {
  if (visitor.getVisitorType() == osg::NodeVisitor::CULL_VISITOR) {
    osg::ref_ptr<const osg::Camera> reference;
    if (m_reference.lock(reference))
      follow(*reference);
  }
  osg::Camera::accept(visitor);
}

/// The height of the view stays, the width follows from the own picture: nothing looks stretched.
void FollowingCamera::follow(const osg::Camera& reference) {
  setViewMatrix(reference.getViewMatrix());
  setClearColor(reference.getClearColor());
  double fovy, aspectRatio, left, right, bottom, top, zNear, zFar;
  if (reference.getProjectionMatrixAsPerspective(fovy, aspectRatio, zNear, zFar)) {
    setProjectionMatrixAsPerspective(fovy, m_aspectRatio, zNear, zFar);
  } else if (reference.getProjectionMatrixAsOrtho(left, right, bottom, top, zNear, zFar)) {
    const double center = 0.5 * (left + right);
    const double halfWidth = 0.5 * (top - bottom) * m_aspectRatio;
    setProjectionMatrixAsOrtho(center - halfWidth, center + halfWidth, bottom, top, zNear, zFar);
  } else {
    setProjectionMatrix(reference.getProjectionMatrix());
  }
}

} // namespace vyrOSG
