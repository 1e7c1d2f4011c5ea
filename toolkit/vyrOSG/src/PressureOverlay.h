// Shows the pressures of one atlas on its geometry.
#pragma once

#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/PressureAtlas.h>

#include <vyr/ref_ptr.h>

#include <osg/Image>
#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <osgSim/ColorRange>

#include <cstddef>
#include <vector>

namespace vyrOSG {

/// A coloured copy of a geometry's surface under a group. It leaves the group when it is destroyed.
class PressureOverlay {
public:
  /// @param atlas (*retains*), valid. @param group (*observes*). @param replaceVisual hides the geometry's own visual
  /// under the group; else the colours lie over it and are clear where nothing presses.
  PressureOverlay(PressureAtlas* atlas, vyrOSG::Group* group, bool replaceVisual);
  ~PressureOverlay();
  PressureOverlay(const PressureOverlay&) = delete;
  PressureOverlay& operator=(const PressureOverlay&) = delete;

  PressureAtlas* getAtlas() const { return m_atlas.get(); }

  /// Colours the atlas's pressures of now.
  void showAtlas(const osgSim::ColorRange& range);

  /// Colours other pressures (Pa), one a texel; texels beyond the list have none.
  void showValues(const std::vector<double>& values, const osgSim::ColorRange& range);

  /// The colour shown for a texel.
  osg::Vec4 getColor(std::size_t texel) const;

private:
  void makePixelLists();
  void paint(std::size_t texel, const osg::Vec4& color);
  void erase();
  void followForm();

  vyr::ref_ptr<PressureAtlas> m_atlas;
  osg::observer_ptr<vyrOSG::Group> m_group;
  osg::observer_ptr<vyrOSG::GeometryNode> m_hidden;
  osg::ref_ptr<vyrOSG::GeometryNode> m_node;
  osg::ref_ptr<osg::Geode> m_geode;
  osg::ref_ptr<osg::Image> m_image;
  osg::Vec4 m_bare;
  unsigned int m_revision = 0;
  std::vector<std::size_t> m_painted;
  // The pixels of texel t are from m_pixelBegin[t] on.
  std::vector<std::size_t> m_pixelBegin;
  std::vector<std::size_t> m_pixels;
};

} // namespace vyrOSG
