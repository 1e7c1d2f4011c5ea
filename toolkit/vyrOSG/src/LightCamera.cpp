// Sets up the camera that looks along the light, and aims it.
#include "LightCamera.h"

#include <osg/NodeCallback>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

/// Lets the camera see the scene without being its parent: scripts that ask nodes for their parents meet no stranger.
class CastersOf : public osg::NodeCallback {
public:
  explicit CastersOf(osgShadow::ShadowedScene* scene)
      : m_scene(scene) {}

  void operator()(osg::Node*, osg::NodeVisitor* visitor) override { m_scene->osg::Group::traverse(*visitor); }

private:
  osgShadow::ShadowedScene* m_scene;
};

} // namespace

std::vector<osg::Vec3d> corners(const osg::BoundingBox& box) {
  std::vector<osg::Vec3d> points;
  for (unsigned int i = 0; i < 8; ++i)
    points.push_back(osg::Vec3d(box.corner(i)));
  return points;
}

osg::BoundingBoxd boundsIn(const osg::Matrixd& frame, const std::vector<osg::Vec3d>& points) {
  osg::BoundingBoxd box;
  for (const osg::Vec3d& point : points)
    box.expandBy(point * frame);
  return box;
}

LightCamera::LightCamera(osgShadow::ShadowedScene* scene, osg::Texture2D* texture, osg::Camera::BufferComponent buffer)
    : m_camera(new osg::Camera)
    , m_texture(texture) {
  m_camera->setReferenceFrame(osg::Camera::ABSOLUTE_RF_INHERIT_VIEWPOINT);
  m_camera->setRenderOrder(osg::Camera::PRE_RENDER);
  m_camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
  m_camera->setComputeNearFarMode(osg::Camera::DO_NOT_COMPUTE_NEAR_FAR);
  m_camera->setCullingMode(m_camera->getCullingMode() & ~osg::CullSettings::SMALL_FEATURE_CULLING);
  m_camera->setViewport(0, 0, texture->getTextureWidth(), texture->getTextureHeight());
  m_camera->setClearMask(buffer == osg::Camera::DEPTH_BUFFER ? GL_DEPTH_BUFFER_BIT : GL_COLOR_BUFFER_BIT);
  m_camera->setClearColor(osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
  m_camera->attach(buffer, texture);
  m_camera->setCullCallback(new CastersOf(scene));
}

osg::Matrixd LightCamera::view(const osg::Light& light, const osg::BoundingBox& casters) {
  const osg::Vec4 place = light.getPosition();
  const osg::Vec3d middle(casters.center());
  osg::Vec3d toLight(place.x(), place.y(), place.z());
  if (place.w() != 0.0f)
    toLight = toLight / place.w() - middle;
  if (!(toLight.normalize() > 0.0))
    toLight = osg::Vec3d(0.0, 0.0, 1.0);
  const osg::Vec3d up = std::fabs(toLight.z()) < 0.9 ? osg::Vec3d(0.0, 0.0, 1.0) : osg::Vec3d(0.0, 1.0, 0.0);
  return osg::Matrixd::lookAt(middle + toLight, middle, up);
}

osg::Matrixd LightCamera::aim(const osg::Matrixd& view, const osg::BoundingBoxd& box) {
  // A box without width, as of a flat thing seen from its edge, still needs a projection.
  constexpr double kLeast = 1e-3;
  const osg::Vec3d half(std::max(0.5 * (box.xMax() - box.xMin()), kLeast),
                        std::max(0.5 * (box.yMax() - box.yMin()), kLeast),
                        std::max(0.5 * (box.zMax() - box.zMin()), kLeast) * 1.01);
  const osg::Vec3d middle = box.center();
  const osg::Matrixd projection =
      osg::Matrixd::ortho(middle.x() - half.x(), middle.x() + half.x(), middle.y() - half.y(), middle.y() + half.y(),
                          -middle.z() - half.z(), -middle.z() + half.z());
  m_camera->setViewMatrix(view);
  m_camera->setProjectionMatrix(projection);
  return view * projection * osg::Matrixd::translate(1.0, 1.0, 1.0) * osg::Matrixd::scale(0.5, 0.5, 0.5);
}

} // namespace vyrOSG
