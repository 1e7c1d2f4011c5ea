// The picture behind the scene: four corner colours over the whole viewport.
#pragma once

#include <vyr/Vec3.h>

#include <osg/Array>
#include <osg/Geometry>
#include <osg/Projection>
#include <osg/ref_ptr>

namespace vyrOSG {

/// Draws the background first and without depth, so that everything else stands before it.
class DecoratorBackground {
public:
  DecoratorBackground();

  /// The node to traverse before the scene. *Returns inner*.
  osg::Node* getNode() { return m_projection.get(); }

  /// Colours in the order lower left, lower right, upper right, upper left.
  void setColors(const vyr::Vec3& lowerLeft, const vyr::Vec3& lowerRight, const vyr::Vec3& upperRight,
                 const vyr::Vec3& upperLeft);

private:
  osg::ref_ptr<osg::Projection> m_projection;
  osg::ref_ptr<osg::Geometry> m_quad;
  osg::ref_ptr<osg::Vec4Array> m_colors;
};

} // namespace vyrOSG
