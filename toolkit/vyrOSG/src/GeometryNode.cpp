// Keeps a node at its geometry's place and takes it away with its geometry.
#include <vyrOSG/GeometryNode.h>

#include "GeometryNodes.h"
#include "ShapeNode.h"

#include <vyrOSG/Conversions.h>
#include <vyrOSG/SceneLoops.h>

#include <vyr/Notify.h>
#include <vyrCollide/Shape.h>

#include <osg/Callback>
#include <osg/NodeVisitor>

#include <vector>

namespace vyrOSG {

namespace {

/// Takes children that lost their geometry out of a group, before the group's children are visited: a child may not
/// leave its parents while they are being traversed.
class RemoveCallback : public osg::NodeCallback {
public:
  /// The callback of a group, added if the group has none.
  static RemoveCallback* of(osg::Group* group) {
    for (osg::Callback* i = group->getUpdateCallback(); i; i = i->getNestedCallback()) {
      if (auto* found = dynamic_cast<RemoveCallback*>(i))
        return found;
    }
    auto* added = new RemoveCallback;
    group->addUpdateCallback(added);
    return added;
  }

  void remove(osg::Node* child) { m_leaving.emplace_back(child); }

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    std::vector<osg::ref_ptr<osg::Node>> leaving;
    leaving.swap(m_leaving);
    for (const osg::ref_ptr<osg::Node>& child : leaving)
      node->asGroup()->removeChild(child);
    traverse(node, visitor);
  }

private:
  std::vector<osg::ref_ptr<osg::Node>> m_leaving;
};

} // namespace

GeometryNode::GeometryNode() {
  // Makes the update traversal visit this node, which has no callback of its own.
  setNumChildrenRequiringUpdateTraversal(1);
}

GeometryNode::GeometryNode(vyrCollide::Geometry* geometry)
    : GeometryNode() {
  setGeometry(geometry);
}

GeometryNode::~GeometryNode() {
  GeometryNodes::remove(this);
}

void GeometryNode::setGeometry(vyrCollide::Geometry* geometry) {
  GeometryNodes::remove(this);
  m_geometry = geometry;
  if (geometry)
    GeometryNodes::add(geometry, this);
  m_hadGeometry = geometry != nullptr;
  m_wasSimulated = false;
  m_hidden = false;
  m_leaving = false;
  m_ownMesh = nullptr;
  if (geometry) {
    setName(geometry->getName());
    m_ownMesh = makeShapeNode(geometry->getShape(), m_detailRatio);
    m_revision = geometry->getShape() ? geometry->getShape()->getRevision() : 0;
  }
  setRenderChild(GEOMETRY_DATA, m_ownMesh.get());
  update();
}

void GeometryNode::setDetailRatio(float detailRatio) {
  if (detailRatio == m_detailRatio)
    return;
  m_detailRatio = detailRatio;
  if (m_geometry)
    rebuildMesh();
}

void GeometryNode::rebuildMesh() {
  m_revision = m_geometry->getShape() ? m_geometry->getShape()->getRevision() : 0;
  osg::ref_ptr<osg::Node> oldMesh = m_ownMesh;
  m_ownMesh = makeShapeNode(m_geometry->getShape(), m_detailRatio);
  if (m_ownMesh && oldMesh)
    m_ownMesh->setStateSet(oldMesh->getStateSet());
  if (m_geometryData == oldMesh)
    setRenderChild(GEOMETRY_DATA, m_ownMesh.get());
}

vyrCollide::Geometry* GeometryNode::getGeometry() {
  return m_geometry.get();
}

const vyrCollide::Geometry* GeometryNode::getGeometry() const {
  return m_geometry.get();
}

void GeometryNode::removeFromParents() {
  osg::ref_ptr<osg::Node> keep = this;
  while (getNumParents() > 0)
    getParent(getNumParents() - 1)->removeChild(this);
}

void GeometryNode::selectRenderChild(RenderFlag flag) {
  if (flag != RENDER_DATA && flag != GEOMETRY_DATA) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::GeometryNode::selectRenderChild: " << int(flag) << " is no render flag";
    return;
  }
  m_selected = flag;
  showSelected();
}

void GeometryNode::setRenderChild(RenderFlag flag, osg::Node* node) {
  if (flag == RENDER_DATA) {
    m_renderData = node;
  } else if (flag == GEOMETRY_DATA) {
    m_geometryData = node;
  } else {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::GeometryNode::setRenderChild: " << int(flag) << " is no render flag";
    return;
  }
  showSelected();
}

void GeometryNode::setRenderChild(RenderFlag flag, vyrOSG::Node* node) {
  setRenderChild(flag, static_cast<osg::Node*>(node));
}

osg::Node* GeometryNode::getRenderChild(RenderFlag flag) {
  if (flag == RENDER_DATA)
    return m_renderData.get();
  return flag == GEOMETRY_DATA ? m_geometryData.get() : nullptr;
}

void GeometryNode::showSelected() {
  osg::ref_ptr<osg::Node> wanted = m_selected == RENDER_DATA ? m_renderData : m_geometryData;
  if (!wanted)
    wanted = m_selected == RENDER_DATA ? m_geometryData : m_renderData;
  if (wanted == m_shown)
    return;
  if (m_shown)
    removeChild(m_shown);
  m_shown = wanted;
  // Kept as the render child, but not shown: a node that stands above this one would make the scene endless.
  if (wouldLoop(this, m_shown.get()))
    m_shown = nullptr;
  if (m_shown)
    insertChild(0, m_shown);
}

void GeometryNode::update() {
  if (!m_geometry) {
    m_hidden = m_hadGeometry && m_autoRemove;
    return;
  }
  const bool simulated = m_geometry->getSimulation() != nullptr;
  m_wasSimulated = m_wasSimulated || simulated;
  m_hidden = m_autoRemove && m_wasSimulated && !simulated;

  const osg::Matrixd matrix = toOsg(m_geometry->getTransform());
  if (matrix != getMatrix())
    setMatrix(matrix);
  if (m_ownMesh && m_shown == m_ownMesh && m_geometry->getShape() &&
      m_geometry->getShape()->getRevision() != m_revision)
    rebuildMesh();
}

void GeometryNode::traverse(osg::NodeVisitor& visitor) {
  if (visitor.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR) {
    update();
    if (m_hadGeometry && !m_geometry && m_autoRemove && !m_leaving) {
      m_leaving = true;
      for (unsigned int i = 0; i < getNumParents(); ++i)
        RemoveCallback::of(getParent(i))->remove(this);
    }
  }
  if (m_hidden && visitor.getTraversalMode() == osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN)
    return;
  osg::MatrixTransform::traverse(visitor);
}

} // namespace vyrOSG
