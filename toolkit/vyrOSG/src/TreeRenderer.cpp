// Draws a modelled tree.
#include <vyrOSG/TreeRenderer.h>

#include "TreeMesh.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Notify.h>

#include <osg/NodeCallback>

namespace vyrOSG {

namespace {

/// Lets a renderer follow its tree with every frame, while it lives.
class FollowEachFrame : public osg::NodeCallback {
public:
  explicit FollowEachFrame(TreeRenderer* renderer)
      : m_renderer(renderer) {}

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    if (m_renderer)
      m_renderer->update();
    traverse(node, visitor);
  }

private:
  vyr::observer_ptr<TreeRenderer> m_renderer;
};

} // namespace

TreeRenderer::TreeRenderer(vyrModel::Tree* tree, vyrOSG::Group* group)
    : m_tree(tree)
    , m_group(group)
    , m_node(new osg::Group)
    , m_color(0.30, 0.47, 0.16, 1) {
  m_node->setName("tree");
  m_node->setUpdateCallback(new FollowEachFrame(this));
  if (group)
    group->addChild(m_node);
  update();
}

TreeRenderer::~TreeRenderer() {
  osg::ref_ptr<vyrOSG::Group> group;
  if (m_group.lock(group))
    group->removeChild(m_node);
}

void TreeRenderer::setColor(const vyr::Vec4& color) {
  if (!color.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the colour of a tree must be finite, not " << color;
    return;
  }
  m_color = color;
  if (m_mesh)
    m_mesh->setLeafColor(toOsg(color));
}

vyr::Vec4 TreeRenderer::getColor() const {
  return m_color;
}

void TreeRenderer::update() {
  if (!m_tree || m_tree->getNumBranches() == 0) {
    if (m_mesh)
      m_node->removeChild(m_mesh);
    m_mesh = nullptr;
    return;
  }
  const bool rebuild = !m_mesh || m_shapeRevision != m_tree->getShapeRevision();
  if (!rebuild && m_revision == m_tree->getRevision())
    return;
  if (rebuild) {
    if (m_mesh)
      m_node->removeChild(m_mesh);
    m_mesh = new TreeMesh(*m_tree);
    m_mesh->setLeafColor(toOsg(m_color));
    m_node->addChild(m_mesh);
  }
  m_revision = m_tree->getRevision();
  m_shapeRevision = m_tree->getShapeRevision();
  if (m_tree->getSimulation())
    m_time = m_tree->getSimulation()->getTime();
  m_mesh->follow(*m_tree, m_time);
}

void TreeRenderer::post(const vyr::TimeStamp&) {
  update();
}

} // namespace vyrOSG
