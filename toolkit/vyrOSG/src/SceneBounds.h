// Measures what the camera has to see of a scene.
#pragma once

#include <osg/BoundingBox>
#include <osg/Node>

namespace vyrOSG {

/// The box (m, frame of @p node's parent) around everything below @p node but endless planes, which no camera could
/// take in. Not valid when nothing else is there. Nullable.
osg::BoundingBox measureScene(osg::Node* node);

} // namespace vyrOSG
