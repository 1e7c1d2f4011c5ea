/// Guards of the scene graph's shape: the scene-graph library follows children without end where a node stands below
/// itself.
#pragma once

#include <vyrBinding/Guards.h>

#include <vyrOSG/SceneLoops.h>

#include <osg/Group>

namespace vyrBinding {
namespace guards {

inline bool addChild(osg::Group& parent, osg::Node* child) {
  return !vyrOSG::wouldLoop(&parent, child);
}
inline bool insertChild(osg::Group& parent, unsigned int, osg::Node* child) {
  return !vyrOSG::wouldLoop(&parent, child);
}
inline bool replaceChild(osg::Group& parent, osg::Node*, osg::Node* child) {
  return !vyrOSG::wouldLoop(&parent, child);
}
inline bool setChild(osg::Group& parent, unsigned int, osg::Node* child) {
  return !vyrOSG::wouldLoop(&parent, child);
}

/// The scene-graph library keeps an entry for each graphics context in every object; a process has a few.
constexpr unsigned int kMostContexts = 256;

inline bool resizeGLObjectBuffers(osg::Node&, unsigned int maximum) {
  return maximum <= kMostContexts;
}

} // namespace guards
} // namespace vyrBinding
