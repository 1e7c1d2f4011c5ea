// The node that draws one collision geometry and follows it.
#pragma once

#include <vyrOSG/Node.h>

#include <vyr/observer_ptr.h>
#include <vyrCollide/Geometry.h>

#include <osg/MatrixTransform>

namespace vyrOSG {

/// Draws one collision geometry at the geometry's world transform, which it takes over in every update traversal.
///
/// While the geometry is out of the simulation that it was in, the node draws nothing; when the geometry is destroyed,
/// the node leaves its parents. Both hold only while auto-remove is on. Children that are added by addChild (texts,
/// axes) are drawn beside the selected render child and move with it.
class VYROSG_EXPORT GeometryNode : public osg::MatrixTransform {
public:
  /// Which of the two render children is meant.
  enum RenderFlag {
    RENDER_DATA = 1,  ///< the child made for the eye: smooth, textured, or any model set by setRenderChild
    GEOMETRY_DATA = 2 ///< the child that shows the collision shape itself
  };

  /// A node that draws nothing until setGeometry or setRenderChild is called.
  GeometryNode();

  /// A node that draws the shape of a geometry. Nullable: geometry.
  explicit GeometryNode(vyrCollide::Geometry* geometry);

  /// Follows another geometry (*borrows*) and draws its shape as the GEOMETRY_DATA child. Nullable: geometry.
  void setGeometry(vyrCollide::Geometry* geometry);

  /// The geometry that is followed (*returns inner*). Nullable: null before setGeometry and after its destruction.
  vyrCollide::Geometry* getGeometry();
  const vyrCollide::Geometry* getGeometry() const;

  /// Whether the node leaves the scene together with its geometry; default true.
  bool getAutoRemove() const { return m_autoRemove; }
  void setAutoRemove(bool flag) { m_autoRemove = flag; }

  /// Takes the node out of every parent. It is destroyed where nothing else holds it.
  void removeFromParents();

  /// Chooses the render child that is drawn; default RENDER_DATA. Where that child is missing the other one is drawn.
  void selectRenderChild(RenderFlag flag);
  RenderFlag getSelectedRenderChild() const { return m_selected; }

  /// Sets the node drawn for a flag (*retains*). Nullable: node (takes the child away).
  void setRenderChild(RenderFlag flag, osg::Node* node);
  void setRenderChild(RenderFlag flag, vyrOSG::Node* node);

  /// The node drawn for a flag (*returns inner*). Nullable: null where none was set.
  osg::Node* getRenderChild(RenderFlag flag);

  /// Fineness of round surfaces of the shape's drawing, 0 (coarse) to 1 and above; default 0.3.
  void setDetailRatio(float detailRatio);
  float getDetailRatio() const { return m_detailRatio; }

  /// Takes over the geometry's transform, and its shape where that changed, now, without waiting for the update
  /// traversal.
  void update();

  void traverse(osg::NodeVisitor& visitor) override;

protected:
  ~GeometryNode() override;

private:
  void showSelected();
  void rebuildMesh();

  vyr::observer_ptr<vyrCollide::Geometry> m_geometry;
  osg::ref_ptr<osg::Node> m_renderData;
  osg::ref_ptr<osg::Node> m_geometryData;
  osg::ref_ptr<osg::Node> m_shown;
  osg::ref_ptr<osg::Node> m_ownMesh;
  RenderFlag m_selected = RENDER_DATA;
  float m_detailRatio = 0.3f;
  unsigned int m_revision = 0;
  bool m_autoRemove = true;
  bool m_hadGeometry = false;
  bool m_wasSimulated = false;
  bool m_hidden = false;
  bool m_leaving = false;
};

} // namespace vyrOSG
