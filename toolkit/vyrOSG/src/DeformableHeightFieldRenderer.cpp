// Draws a height field that takes prints.
#include <vyrOSG/DeformableHeightFieldRenderer.h>

#include "GroundMesh.h"
#include "Surface.h"

#include <osg/Geode>

#include <algorithm>

namespace vyrOSG {

namespace {

/// Depth of a print in m at which it is darkest.
const double kDarkDepth = 0.05;

GroundMesh::ColorOf colorsOf(const vyrModel::HeightFieldDeformer& deformer) {
  return [&deformer](size_t column, size_t row) {
    const double depth = deformer.getDepth(column, row);
    const auto light = static_cast<float>(1 - 0.6 * std::min(1.0, std::max(0.0, depth / kDarkDepth)));
    return osg::Vec4(0.80f * light, 0.74f * light, 0.62f * light, 1);
  };
}

} // namespace

DeformableHeightFieldRenderer::DeformableHeightFieldRenderer(vyrModel::HeightFieldDeformer* deformer,
                                                             vyrOSG::Group* group)
    : m_deformer(deformer) {
  if (!deformer || !deformer->isValid() || !group)
    return;
  m_mesh = new GroundMesh(*deformer->getHeightField(), colorsOf(*deformer));
  m_revision = deformer->getRevision();
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(m_mesh);
  surface::setFixedLook(geode, true);
  osg::ref_ptr<vyrOSG::GeometryNode> node = new vyrOSG::GeometryNode(deformer->getGeometry());
  node->setRenderChild(vyrOSG::GeometryNode::RENDER_DATA, geode.get());
  m_valid = group->addChild(node);
  m_node = node;
}

DeformableHeightFieldRenderer::~DeformableHeightFieldRenderer() {
  osg::ref_ptr<vyrOSG::GeometryNode> node;
  if (m_node.lock(node))
    node->removeFromParents();
}

void DeformableHeightFieldRenderer::last(const vyr::TimeStamp&) {
  if (!m_valid)
    return;
  if (!m_deformer || !m_node.valid()) {
    m_valid = false;
    if (m_node.valid())
      m_node->setNodeMask(0);
    return;
  }
  if (m_deformer->getRevision() == m_revision)
    return;
  const vyrCollide::HeightField& field = *m_deformer->getHeightField();
  const GroundMesh::ColorOf colorOf = colorsOf(*m_deformer);
  for (size_t row = 0; row < field.getNumRows(); ++row) {
    if (m_deformer->getRowRevision(row) > m_revision)
      m_mesh->updateRow(field, colorOf, row);
  }
  m_mesh->finish();
  m_revision = m_deformer->getRevision();
}

} // namespace vyrOSG
