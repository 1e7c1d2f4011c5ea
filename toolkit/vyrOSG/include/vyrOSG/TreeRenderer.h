// Draws a modelled tree: bark and leaves that follow its bodies.
#pragma once

#include <vyrOSG/Group.h>
#include <vyrOSG/export.h>

#include <vyr/Vec4.h>
#include <vyr/observer_ptr.h>
#include <vyrModel/Tree.h>
#include <vyrSDK/StepEventListener.h>

#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <cstdint>

namespace vyrOSG {

class TreeMesh;

/// Draws one tree. Added to the simulation, it follows the tree with every step; without that, with every frame. A tree
/// that has gone, is null or has no branches draws nothing.
class VYROSG_EXPORT TreeRenderer : public vyrSDK::StepEventListener {
public:
  /// Nullable: tree (*observes*), group (*observes*).
  TreeRenderer(vyrModel::Tree* tree, vyrOSG::Group* group);

  /// Colour of the leaves, red, green, blue and opacity, 0 to 1; single leaves are a little lighter or darker. Default:
  /// a green. One that is not finite is refused with one error message.
  void setColor(const vyr::Vec4& color);
  vyr::Vec4 getColor() const;

  /// Draws the tree as it stands now.
  void update();

  /// The tree that is drawn (*returns inner*). Nullable.
  vyrModel::Tree* getTree() const { return m_tree.get(); }

  /// What is drawn (*returns inner*). Never null.
  osg::Group* getNode() { return m_node.get(); }

  void post(const vyr::TimeStamp& time) override;

protected:
  ~TreeRenderer() override;

private:
  vyr::observer_ptr<vyrModel::Tree> m_tree;
  osg::observer_ptr<vyrOSG::Group> m_group;
  osg::ref_ptr<osg::Group> m_node;
  osg::ref_ptr<TreeMesh> m_mesh;
  vyr::Vec4 m_color;
  std::uint64_t m_revision = 0;
  std::uint64_t m_shapeRevision = 0;
  double m_time = 0;
};

} // namespace vyrOSG
