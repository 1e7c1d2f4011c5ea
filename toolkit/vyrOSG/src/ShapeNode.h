// Makes the nodes that show collision shapes.
#pragma once

#include <osg/Geode>

namespace vyrCollide {
class Shape;
}

namespace vyrOSG {

/// Draws a shape in its own frame; nodes of equal shapes share their mesh (*returns new*). Nullable: shape, result (a
/// shape without a form, or one whose sizes are invalid).
osg::ref_ptr<osg::Geode> makeShapeNode(const vyrCollide::Shape* shape, float detailRatio);

/// Half of the edge of the square that is drawn for an endless plane (m).
constexpr double kPlaneHalfSize = 100;

} // namespace vyrOSG
