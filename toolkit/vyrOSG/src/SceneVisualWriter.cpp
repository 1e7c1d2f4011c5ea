// Tells scene files how things look.
#include "SceneVisualWriter.h"

#include "GeometryNodes.h"
#include "LookFile.h"

#include <vyr/ParticleSystem.h>
#include <vyr/RigidBody.h>
#include <vyrOSG/TerrainRenderer.h>
#include <vyrOSG/TreeRenderer.h>
#include <vyrOSG/WireRenderer.h>
#include <vyrSDK/Simulation.h>

#include <osg/NodeVisitor>

#include <algorithm>

namespace vyrOSG {

namespace {

/// Finds what draws a particle system.
class DrawableFinder : public osg::NodeVisitor {
public:
  explicit DrawableFinder(const vyr::ParticleSystem* particles)
      : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN)
      , m_particles(particles) {
    setNodeMaskOverride(~0u);
  }

  void apply(osg::Drawable& drawable) override {
    auto* found = dynamic_cast<ParticleSystemDrawable*>(&drawable);
    if (found && found->getParticleSystem() == m_particles)
      m_found = found;
  }

  ParticleSystemDrawable* m_found = nullptr;

private:
  const vyr::ParticleSystem* m_particles;
};

} // namespace

bool SceneVisualWriter::install() {
  static SceneVisualWriter s_writer;
  vyrSDK::SceneVisuals::setWriter(&s_writer);
  return true;
}

bool SceneVisualWriter::draws(const vyrSDK::Simulation& simulation) {
  const auto isDrawn = [](const auto& geometry) { return GeometryNodes::find(geometry.get()) != nullptr; };
  const auto& bodies = simulation.getRigidBodies();
  const auto& loose = simulation.getGeometries();
  const auto& listeners = simulation.getStepEventListeners();
  return std::any_of(loose.begin(), loose.end(), isDrawn) ||
         std::any_of(bodies.begin(), bodies.end(),
                     [&](const auto& body) {
                       const auto& geometries = body->getGeometries();
                       return std::any_of(geometries.begin(), geometries.end(), isDrawn);
                     }) ||
         std::any_of(listeners.begin(), listeners.end(), [](const auto& listener) {
           return dynamic_cast<const SplineRenderer*>(listener.get()) ||
                  dynamic_cast<const TreeRenderer*>(listener.get());
         });
}

bool SceneVisualWriter::write(const vyrCollide::Geometry& geometry, const std::string& folder,
                              vyrSDK::SceneRecord& out) {
  const osg::ref_ptr<GeometryNode> node = GeometryNodes::find(&geometry);
  if (node)
    writeLook(lookOf(*node), folder, out);
  return node.valid();
}

bool SceneVisualWriter::write(const vyr::RigidBody& body, const std::string& folder, vyrSDK::SceneRecord& out) {
  GeometryNode* node = body.getGeometries().empty() ? nullptr : GeometryNodes::find(body.getGeometries()[0].get());
  auto* group = node ? dynamic_cast<vyrOSG::Group*>(node->getParent(0)) : nullptr;
  // Bodies are drawn in a group of their name; a geometry that was drawn alone stands among others.
  if (!group || group == OSGSceneRoot::get() || group->getName() != body.getName())
    return false;
  const CompanyLook company = companyOf(*group);
  if (company.isEmpty())
    return false;
  writeCompany(company, folder, out);
  return true;
}

bool SceneVisualWriter::write(const vyr::ParticleSystem& particles, const std::string&, vyrSDK::SceneRecord& out) {
  DrawableFinder finder(&particles);
  if (OSGSceneRoot::get())
    OSGSceneRoot::get()->accept(finder);
  if (!finder.m_found)
    return false;
  out.set("renderingMode", static_cast<int>(finder.m_found->getParticleRenderingMode()));
  out.set("shaderMode", static_cast<int>(finder.m_found->getParticleShaderMode()));
  return true;
}

namespace {

/// The renderer among the listeners of a simulation that draws a thing. Nullable.
template <class Renderer, class Thing>
const Renderer* rendererOf(const Thing* thing, Thing* (*drawnBy)(const Renderer&),
                           const vyrSDK::Simulation& simulation) {
  for (const auto& listener : simulation.getStepEventListeners()) {
    const auto* renderer = dynamic_cast<const Renderer*>(listener.get());
    if (renderer && drawnBy(*renderer) == thing)
      return renderer;
  }
  return nullptr;
}

} // namespace

bool SceneVisualWriter::write(const vyrSDK::StepEventListener& listener, const vyrSDK::Simulation& simulation,
                              vyrSDK::SceneRecord& out) {
  if (const auto* wire = dynamic_cast<const vyrWire::Wire*>(&listener)) {
    const auto* renderer = rendererOf<WireRenderer, vyrWire::Wire>(
        wire, [](const WireRenderer& r) { return const_cast<WireRenderer&>(r).getWire(); }, simulation);
    if (!renderer)
      return false;
    out.set("radius", renderer->getRadius());
    out.set("segmentsPerUnitLength", renderer->getNumSegmentsPerUnitLength());
    out.set("color", renderer->getColor());
    return true;
  }
  if (const auto* terrain = dynamic_cast<const vyrModel::Terrain*>(&listener)) {
    const auto* renderer = rendererOf<TerrainRenderer, vyrModel::Terrain>(
        terrain, [](const TerrainRenderer& r) { return r.getTerrain(); }, simulation);
    if (!renderer)
      return false;
    out.set("low", renderer->getRange().lower());
    out.set("high", renderer->getRange().upper());
    return true;
  }
  const vyrModel::Tree* tree = vyrModel::Tree::of(listener);
  const auto* renderer = rendererOf<TreeRenderer, vyrModel::Tree>(
      tree, [](const TreeRenderer& r) { return r.getTree(); }, simulation);
  if (!tree || !renderer)
    return false;
  out.set("color", renderer->getColor());
  return true;
}

} // namespace vyrOSG
