// Reads scene files as wholes.
#include "SceneFile.h"

#include "SceneVisualReader.h"

#include <vyrSDK/SceneType.h>

#include <algorithm>

namespace vyrOSG {

bool isEmpty(const vyrSDK::Simulation& simulation) {
  const auto& listeners = simulation.getStepEventListeners();
  return simulation.getRigidBodies().empty() && simulation.getGeometries().empty() &&
         simulation.getConstraints().empty() && simulation.getParticleSystems().empty() &&
         simulation.getAssemblies().empty() &&
         std::none_of(listeners.begin(), listeners.end(),
                      [](const auto& listener) { return vyrSDK::SceneType::of(*listener) != nullptr; });
}

bool readScene(const std::string& path, vyrSDK::Simulation& simulation, vyrOSG::Group* root) {
  constexpr float kDetailRatio = 0.35f;
  SceneVisualReader visuals(path);
  if (!simulation.read(path, &visuals))
    return false;
  if (!root)
    return true;
  for (const vyr::ref_ptr<vyr::RigidBody>& body : simulation.getRigidBodies())
    visuals.draw(*body, *root, kDetailRatio, false);
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : simulation.getGeometries())
    visuals.draw(*geometry, *root, kDetailRatio, false);
  for (const vyr::ref_ptr<vyr::ParticleSystem>& particles : simulation.getParticleSystems())
    visuals.draw(*particles, *root);
  visuals.drawListeners(simulation, *root);
  return true;
}

} // namespace vyrOSG
