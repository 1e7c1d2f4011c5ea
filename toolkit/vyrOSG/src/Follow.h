// Transforms that follow something of the simulation.
#pragma once

#include <osg/MatrixTransform>

#include <functional>

namespace vyrOSG {

/// A transform that asks for its matrix in every update traversal and once at once. When matrix returns false, what was
/// followed has gone, and nothing below is drawn any more.
osg::ref_ptr<osg::MatrixTransform> makeFollower(const std::function<bool(osg::Matrixd& outMatrix)>& matrix);

} // namespace vyrOSG
