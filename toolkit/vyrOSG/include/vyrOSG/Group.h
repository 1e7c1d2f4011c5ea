// The group that visuals are put under: the scene-graph library's group with checked child access.
#pragma once

#include <vyrOSG/export.h>

#include <osg/Group>

#include <string>

namespace vyrOSG {

/// A scene node with children; a child may stand under several groups.
class VYROSG_EXPORT Group : public osg::Group {
public:
  Group() = default;

  /// Names the group.
  void setName(const std::string& name) override;
  using osg::Group::setName;

  /// Appends a child (*retains*). Nullable: child. False if it is null or if it would make the group its own
  /// descendant.
  bool addChild(osg::Node* child) override;

  /// Removes the first place of a child. Nullable: child. False if it is not a child of this group.
  bool removeChild(osg::Node* child) override;

  /// Puts newChild where oldChild stands. Nullable: both. False if oldChild is not a child or newChild is null.
  bool replaceChild(osg::Node* oldChild, osg::Node* newChild) override;

  /// Whether a node is a direct child of this group. Nullable: node (false).
  bool containsNode(const osg::Node* node) const;

  /// The child at an index from 0 (*returns inner*). Nullable: null where there is no such child.
  osg::Node* getChild(unsigned int index);

  /// The number of direct children.
  unsigned int getNumChildren();
  using osg::Group::getChild;
  using osg::Group::getNumChildren;

protected:
  ~Group() override = default;
};

} // namespace vyrOSG
