// Draws soft ground.
#include <vyrOSG/TerrainRenderer.h>

#include "GroundMesh.h"
#include "Surface.h"

#include <osg/Geode>

#include <algorithm>

namespace vyrOSG {

namespace {

/// Dark earth over sand to grass for shares 0 to 1.
osg::Vec4 earthColor(double share) {
  static const osg::Vec4 kStops[] = {
      {0.36f, 0.27f, 0.19f, 1}, {0.58f, 0.46f, 0.31f, 1}, {0.68f, 0.60f, 0.40f, 1}, {0.42f, 0.52f, 0.27f, 1}};
  const int last = 3;
  const double place = share > 0 ? std::min(share, 1.0) * last : 0;
  const int stop = std::min(static_cast<int>(place), last - 1);
  const auto part = static_cast<float>(place - stop);
  return kStops[stop] * (1 - part) + kStops[stop + 1] * part;
}

GroundMesh::ColorOf colorsOf(const vyrModel::Terrain& terrain, const vyr::Range<double>& range) {
  return [&terrain, range](size_t column, size_t row) {
    const double span = range.length();
    const double share = span > 0 ? (terrain.getHeight(column, row) - range.lower()) / span : 0.5;
    const double compaction = terrain.getCompaction(column, row) - 1;
    const auto light = static_cast<float>(1 - 0.55 * std::min(1.0, std::max(0.0, compaction / 0.2)));
    const osg::Vec4 color = earthColor(share);
    return osg::Vec4(color.r() * light, color.g() * light, color.b() * light, 1);
  };
}

} // namespace

TerrainRenderer::TerrainRenderer(vyrModel::Terrain* terrain, vyr::Range<double> range, vyrOSG::Group* group)
    : m_terrain(terrain)
    , m_range(std::min(range.lower(), range.upper()), std::max(range.lower(), range.upper()))
    , m_group(group) {
  if (!terrain || !terrain->isValid())
    return;
  m_mesh = new GroundMesh(*terrain->getHeightField(), colorsOf(*terrain, m_range));
  m_revision = terrain->getRevision();
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(m_mesh);
  surface::setFixedLook(geode, true);
  m_node = new vyrOSG::GeometryNode(terrain->getGeometry());
  m_node->setRenderChild(vyrOSG::GeometryNode::RENDER_DATA, geode.get());
  if (group)
    group->addChild(m_node);
}

TerrainRenderer::~TerrainRenderer() {
  osg::ref_ptr<vyrOSG::Group> group;
  if (m_node && m_group.lock(group))
    group->removeChild(m_node);
}

void TerrainRenderer::post(const vyr::TimeStamp&) {
  drawRows();
}

void TerrainRenderer::drawRows() {
  if (m_node && !m_terrain)
    m_node->setNodeMask(0);
  if (!m_terrain || !m_mesh || m_terrain->getRevision() == m_revision)
    return;
  const vyrCollide::HeightField& field = *m_terrain->getHeightField();
  const GroundMesh::ColorOf colorOf = colorsOf(*m_terrain, m_range);
  for (size_t row = 0; row < field.getNumRows(); ++row) {
    if (m_terrain->getRowRevision(row) > m_revision)
      m_mesh->updateRow(field, colorOf, row);
  }
  m_mesh->finish();
  m_revision = m_terrain->getRevision();
}

} // namespace vyrOSG
