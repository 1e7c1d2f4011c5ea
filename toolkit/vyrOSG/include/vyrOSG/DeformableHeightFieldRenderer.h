/// Draws a height field that takes prints.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyrModel/HeightFieldDeformer.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrSDK/StepEventListener.h>

#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <cstdint>

namespace vyrOSG {

class GroundMesh;

/// Draws the height field of a deformer under a group and follows it at the end of every step: only the rows that
/// changed are computed anew. The deeper a print, the darker it looks. What a deformer that has gone printed is no
/// longer drawn from the next step on.
class VYROSG_EXPORT DeformableHeightFieldRenderer : public vyrSDK::StepEventListener {
public:
  /// Nullable: deformer (*observes*) and group: without a valid deformer and a group nothing is drawn and the renderer
  /// is not valid. The group alone holds the drawing; it leaves with the renderer.
  DeformableHeightFieldRenderer(vyrModel::HeightFieldDeformer* deformer, vyrOSG::Group* group);

  void last(const vyr::TimeStamp& time) override;

  /// The node that draws the height field (*observes*). Nullable: the scene let it go, or it never was.
  vyrOSG::GeometryNode* getHeightFieldNode() { return m_node.get(); }

  /// Whether there is something to draw and a place to draw it: set at construction, cleared when the deformer or the
  /// node is found to have gone.
  bool isValid() const { return m_valid; }

protected:
  ~DeformableHeightFieldRenderer() override;

private:
  osg::observer_ptr<vyrOSG::GeometryNode> m_node;
  bool m_valid = false;
  osg::ref_ptr<GroundMesh> m_mesh;
  vyr::observer_ptr<vyrModel::HeightFieldDeformer> m_deformer;
  std::uint64_t m_revision = 0;
};

} // namespace vyrOSG
