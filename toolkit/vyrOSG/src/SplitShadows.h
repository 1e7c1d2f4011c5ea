// Shadows from one map for each of three slices of the view, so that they are as sharp far away as near by.
#pragma once

#include "LightCamera.h"

#include <osg/BoundingBox>
#include <osg/Light>
#include <osg/StateSet>
#include <osg/observer_ptr>
#include <osgShadow/ShadowTechnique>
#include <osgUtil/CullVisitor>

#include <map>
#include <memory>
#include <vector>

namespace vyrOSG {

/// Slices the part of the view in which there is something, and fits each map to what of the scene lies in its slice.
///
/// Source: F. Zhang, H. Sun, L. Xu, L. K. Lun, "Parallel-split shadow maps for large-scale virtual environments", VRCIA
/// 2006, section 3 (the practical split scheme: a mean of the logarithmic and the uniform one).
class SplitShadows : public osgShadow::ShadowTechnique {
public:
  static constexpr int kSlices = 3;
  static constexpr int kResolution = 2048;

  /// @param light *retains*. @param unit the first of three texture units for the maps.
  SplitShadows(osg::Light* light, unsigned int unit);

  /// The box (m) around everything that casts or receives, but endless planes; before each frame.
  void setBounds(const osg::BoundingBox& bounds) { m_bounds = bounds; }

  osg::Object* cloneType() const override { return new SplitShadows(m_light.get(), m_unit); }
  osg::Object* clone(const osg::CopyOp&) const override { return cloneType(); }

  // Maps are made by the first cull that needs them, and hang on the technique alone.
  void init() override { _dirty = false; }
  void cleanSceneGraph() override {}
  void update(osg::NodeVisitor& visitor) override;
  void cull(osgUtil::CullVisitor& visitor) override;
  void resizeGLObjectBuffers(unsigned int maxSize) override;
  void releaseGLObjects(osg::State* state) const override;

private:
  /// What one camera of the picture needs: cameras that draw into textures have slices of their own.
  struct View {
    osg::observer_ptr<osg::Camera> camera;
    std::vector<LightCamera> slices;
    std::vector<bool> used;
    osg::ref_ptr<osg::StateSet> state;
  };

  View& viewOf(osg::Camera* camera);
  void place(View& view, const osg::Matrixd& toEye, const osg::Matrixd& projection) const;

  osg::ref_ptr<osg::Light> m_light;
  unsigned int m_unit;
  osg::BoundingBox m_bounds;
  std::map<const osg::Camera*, View> m_views;
};

} // namespace vyrOSG
