// The grid and the axes that show where the ground is and which way is which.
#pragma once

#include <vyr/Vec2.h>
#include <vyr/Vec2u.h>

#include <osg/Node>
#include <osg/ref_ptr>

namespace vyrOSG {

/// Lines in the plane z = 0 around the origin, every tenth one stronger. @param size edge lengths (m), positive.
/// @param cells along each edge, at least 1. *Returns new*.
osg::ref_ptr<osg::Node> makeGrid(const vyr::Vec2& size, const vyr::Vec2u& cells);

/// Axes at the origin with their letters: x red, y green, z blue. @param length in m. *Returns new*.
osg::ref_ptr<osg::Node> makeAxesVisual(double length);

} // namespace vyrOSG
