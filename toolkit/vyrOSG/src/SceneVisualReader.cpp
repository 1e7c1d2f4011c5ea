// Draws what was read from a scene file with the looks that the file gives.
#include "SceneVisualReader.h"

#include "LookFile.h"

#include <vyrOSG/TerrainRenderer.h>
#include <vyrOSG/TreeRenderer.h>
#include <vyrOSG/WireRenderer.h>

#include <osgDB/FileNameUtils>

#include <algorithm>

namespace vyrOSG {

SceneVisualReader::SceneVisualReader(const std::string& file)
    : m_folder(osgDB::getFilePath(file)) {}

void SceneVisualReader::read(vyrCollide::Geometry& geometry, const vyrSDK::SceneValue* value) {
  if (!value)
    return;
  Visual& visual = m_visuals[&geometry];
  visual.drawn = value->isObject() || value->flag();
  if (value->isObject())
    visual.look = readLook(*value);
  else if (visual.drawn)
    m_visuals.erase(&geometry);
}

void SceneVisualReader::read(vyr::RigidBody& body, const vyrSDK::SceneValue* value) {
  if (value)
    m_companies[&body] = readCompany(*value);
}

void SceneVisualReader::read(vyr::ParticleSystem& particles, const vyrSDK::SceneValue* value) {
  if (!value)
    return;
  int rendering = ParticleSystemDrawable::SPRITES;
  int shader = ParticleSystemDrawable::ROTATION_SPRITES;
  value->getInteger("renderingMode", rendering, 0, ParticleSystemDrawable::TRIANGLES);
  value->getInteger("shaderMode", shader, 0, ParticleSystemDrawable::ALPHA_SPRITES);
  m_modes[&particles] = {static_cast<ParticleSystemDrawable::ParticleRenderingMode>(rendering),
                         static_cast<ParticleSystemDrawable::ParticleShaderMode>(shader)};
}

void SceneVisualReader::read(vyrSDK::StepEventListener& listener, const vyrSDK::SceneValue* value) {
  if (!value)
    return;
  ListenerLook& look = m_listeners[&listener];
  value->get("color", look.color);
  value->getPositive("radius", look.radius);
  value->getPositive("segmentsPerUnitLength", look.segmentsPerUnitLength);
  value->get("low", look.low);
  value->get("high", look.high);
  // The terrain's renderer draws its geometry.
  if (const auto* terrain = dynamic_cast<const vyrModel::Terrain*>(&listener))
    m_visuals[terrain->getGeometry()].drawn = false;
}

void SceneVisualReader::drawListeners(vyrSDK::Simulation& simulation, vyrOSG::Group& root) {
  const auto listeners = simulation.getStepEventListeners();
  for (const auto& listener : listeners) {
    const auto entry = m_listeners.find(listener.get());
    if (entry == m_listeners.end())
      continue;
    const ListenerLook& look = entry->second;
    vyr::ref_ptr<vyrSDK::StepEventListener> renderer;
    if (auto* wire = dynamic_cast<vyrWire::Wire*>(listener.get())) {
      vyr::ref_ptr<WireRenderer> tube = new WireRenderer(wire, &root);
      tube->setRadius(look.radius);
      tube->setNumSegmentsPerUnitLength(look.segmentsPerUnitLength);
      tube->setColor(look.color);
      tube->update();
      renderer = tube;
    } else if (auto* terrain = dynamic_cast<vyrModel::Terrain*>(listener.get())) {
      renderer = new TerrainRenderer(terrain, vyr::Range<double>(look.low, look.high), &root);
    } else if (vyrModel::Tree* tree = vyrModel::Tree::of(*listener)) {
      vyr::ref_ptr<TreeRenderer> leaves = new TreeRenderer(tree, &root);
      leaves->setColor(look.color);
      leaves->update();
      renderer = leaves;
    }
    if (renderer)
      simulation.add(renderer.get());
  }
}

bool SceneVisualReader::hasLooks(const vyr::RigidBody& body) const {
  return m_companies.count(&body) != 0 ||
         std::any_of(body.getGeometries().begin(), body.getGeometries().end(),
                     [this](const auto& geometry) { return m_visuals.count(geometry.get()) != 0; });
}

vyrOSG::Group* SceneVisualReader::draw(vyr::RigidBody& body, vyrOSG::Group& root, float detailRatio, bool axes) {
  if (!hasLooks(body))
    return createVisual(&body, &root, detailRatio, axes);
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  group->setName(body.getName());
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body.getGeometries())
    draw(*geometry, *group, detailRatio, false);
  const auto company = m_companies.find(&body);
  if (company != m_companies.end())
    addCompany(body, *group, company->second, m_folder);
  if (group->getNumChildren() == 0)
    return nullptr;
  root.addChild(group.get());
  if (axes)
    createAxes(&body, vyr::AffineMatrix4x4(), group.get());
  return group.get();
}

GeometryNode* SceneVisualReader::draw(vyrCollide::Geometry& geometry, vyrOSG::Group& root, float detailRatio,
                                      bool axes) {
  const auto visual = m_visuals.find(&geometry);
  if (visual == m_visuals.end())
    return createVisual(&geometry, &root, detailRatio, axes);
  if (!visual->second.drawn)
    return nullptr;
  GeometryNode* node = createVisual(&geometry, &root, visual->second.look.detailRatio, axes, true);
  if (node)
    dress(*node, visual->second.look, m_folder);
  return node;
}

void SceneVisualReader::draw(vyr::ParticleSystem& particles, vyrOSG::Group& root) {
  const auto modes = m_modes.find(&particles);
  if (modes == m_modes.end())
    createVisual(&particles, &root);
  else
    createVisual(&particles, &root, modes->second.rendering, modes->second.shader);
}

} // namespace vyrOSG
