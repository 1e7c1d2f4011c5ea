// A camera that looks at the scene along the shadow light's rays and draws what it sees into a texture.
#pragma once

#include <osg/BoundingBox>
#include <osg/Camera>
#include <osg/Light>
#include <osg/Matrixd>
#include <osg/Texture2D>
#include <osg/ref_ptr>
#include <osgShadow/ShadowedScene>

#include <vector>

namespace vyrOSG {

/// The eight corners of a box.
std::vector<osg::Vec3d> corners(const osg::BoundingBox& box);

/// The box around points in another frame.
osg::BoundingBoxd boundsIn(const osg::Matrixd& frame, const std::vector<osg::Vec3d>& points);

/// Draws casters along parallel rays, before the picture. A lamp's rays are taken as parallel too: from the lamp to the
/// middle of the casters.
class LightCamera {
public:
  /// @param scene *borrows*: what is drawn, less what its mask of casters leaves out.
  /// @param texture *retains*. @param buffer DEPTH_BUFFER or COLOR_BUFFER, into which it goes.
  LightCamera(osgShadow::ShadowedScene* scene, osg::Texture2D* texture, osg::Camera::BufferComponent buffer);

  /// From the scene to a frame that looks along the rays, with its origin in the middle of @p casters.
  static osg::Matrixd view(const osg::Light& light, const osg::BoundingBox& casters);

  /// Aims at a box of the light's frame. @return from the scene to the texture, 0 to 1 in each direction.
  osg::Matrixd aim(const osg::Matrixd& view, const osg::BoundingBoxd& box);

  osg::Camera* get() const { return m_camera.get(); }
  osg::Texture2D* getTexture() const { return m_texture.get(); }

private:
  osg::ref_ptr<osg::Camera> m_camera;
  osg::ref_ptr<osg::Texture2D> m_texture;
};

} // namespace vyrOSG
