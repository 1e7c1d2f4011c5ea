// The colour scale of pressures on the heads-up display.
#pragma once

#include <vyr/Vec2.h>
#include <vyrOSG/SceneDecorator.h>

#include <osg/MatrixTransform>
#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <osgSim/ColorRange>

#include <vector>

namespace vyrOSG {

/// A bar of colours with pressures beside it.
class PressureLegend {
public:
  /// Nullable: decorator (nothing is shown).
  PressureLegend(SceneDecorator* decorator, osgSim::ColorRange* range);
  ~PressureLegend();
  PressureLegend(const PressureLegend&) = delete;
  PressureLegend& operator=(const PressureLegend&) = delete;

  void setEnable(bool enable);

  /// Lower left corner in pixels of the decorator.
  void setPosition(const vyr::Vec2& position);
  const vyr::Vec2& getPosition() const { return m_position; }

  /// Draws the scale anew when its range was changed.
  void update();

private:
  void build();

  osg::observer_ptr<SceneDecorator> m_decorator;
  osg::ref_ptr<osgSim::ColorRange> m_range;
  osg::ref_ptr<osg::MatrixTransform> m_node;
  vyr::Vec2 m_position;
  float m_min = 0;
  float m_max = 0;
  std::vector<osg::Vec4> m_colors;
};

} // namespace vyrOSG
