// Names a plain scene node.
#include <vyrOSG/Node.h>

namespace vyrOSG {

void Node::setName(const std::string& name) {
  osg::Node::setName(name);
}

} // namespace vyrOSG
