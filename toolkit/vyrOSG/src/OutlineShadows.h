// Shadows as one picture of the casters' outline, projected on the grounds.
#pragma once

#include "LightCamera.h"

#include <osg/BoundingBox>
#include <osg/Light>
#include <osg/StateSet>
#include <osgShadow/ShadowTechnique>
#include <osgUtil/CullVisitor>

#include <memory>

namespace vyrOSG {

/// Draws the casters dark on white, as the light sees them; see-through casters throw lighter shadows. A picture has no
/// depth, and a caster would darken itself: so grounds receive and cast nothing, all else casts and receives nothing.
class OutlineShadows : public osgShadow::ShadowTechnique {
public:
  static constexpr int kResolution = 2048;

  /// @param light *retains*. @param unit the texture unit of the picture.
  OutlineShadows(osg::Light* light, unsigned int unit);

  /// The box (m) around what casts; before each frame. Not valid without any.
  void setBounds(const osg::BoundingBox& bounds) { m_bounds = bounds; }

  osg::Object* cloneType() const override { return new OutlineShadows(m_light.get(), m_unit); }
  osg::Object* clone(const osg::CopyOp&) const override { return cloneType(); }

  // Maps are made by the first cull that needs them, and hang on the technique alone.
  void init() override { _dirty = false; }
  void cleanSceneGraph() override {}
  void update(osg::NodeVisitor& visitor) override;
  void cull(osgUtil::CullVisitor& visitor) override;
  void resizeGLObjectBuffers(unsigned int maxSize) override;
  void releaseGLObjects(osg::State* state) const override;

private:
  void build();

  osg::ref_ptr<osg::Light> m_light;
  unsigned int m_unit;
  osg::BoundingBox m_bounds;
  std::unique_ptr<LightCamera> m_camera;
  osg::ref_ptr<osg::StateSet> m_state;
};

} // namespace vyrOSG
