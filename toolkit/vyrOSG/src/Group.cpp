// Keeps the children of a visual group, and refuses the two additions that would break every later traversal.
#include <vyrOSG/Group.h>

#include <vyrOSG/SceneLoops.h>

namespace vyrOSG {

void Group::setName(const std::string& name) {
  osg::Group::setName(name);
}

bool Group::addChild(osg::Node* child) {
  if (!child || wouldLoop(this, child))
    return false;
  return osg::Group::addChild(child);
}

bool Group::removeChild(osg::Node* child) {
  return osg::Group::removeChild(child);
}

bool Group::replaceChild(osg::Node* oldChild, osg::Node* newChild) {
  if (!newChild || wouldLoop(this, newChild))
    return false;
  return osg::Group::replaceChild(oldChild, newChild);
}

bool Group::containsNode(const osg::Node* node) const {
  return node && osg::Group::containsNode(node);
}

osg::Node* Group::getChild(unsigned int index) {
  return index < _children.size() ? osg::Group::getChild(index) : nullptr;
}

unsigned int Group::getNumChildren() {
  return osg::Group::getNumChildren();
}

} // namespace vyrOSG
