// The plain scene node of the visualisation layer, for scripts that need a node with a name and no content.
#pragma once

#include <vyrOSG/export.h>

#include <osg/Node>

#include <string>

namespace vyrOSG {

/// A scene node with a name and no content of its own.
class VYROSG_EXPORT Node : public osg::Node {
public:
  Node() = default;

  /// Names the node; the name is what the scene-graph library's searches and file writers see.
  void setName(const std::string& name) override;
  using osg::Node::setName;

protected:
  ~Node() override = default;
};

} // namespace vyrOSG
