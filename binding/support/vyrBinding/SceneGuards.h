/// Guards of the scene graph's shape: the scene-graph library follows children without end where a node stands below
/// itself.
#pragma once

#include <vyrBinding/Guards.h>

#include <vyrOSG/SceneLoops.h>

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

} // namespace guards
} // namespace vyrBinding
