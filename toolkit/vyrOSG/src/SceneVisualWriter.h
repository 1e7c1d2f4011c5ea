// Tells scene files how things look.
#pragma once

#include <vyrSDK/SceneVisuals.h>

namespace vyrOSG {

/// Describes the visuals that things have when their simulation is written.
class SceneVisualWriter : public vyrSDK::SceneVisuals {
public:
  /// Lets simulations ask it from now on; always true.
  static bool install();

  bool draws(const vyrSDK::Simulation& simulation) override;
  bool write(const vyrCollide::Geometry& geometry, const std::string& folder, vyrSDK::SceneRecord& out) override;
  bool write(const vyr::RigidBody& body, const std::string& folder, vyrSDK::SceneRecord& out) override;
  bool write(const vyr::ParticleSystem& particles, const std::string& folder, vyrSDK::SceneRecord& out) override;
  bool write(const vyrSDK::StepEventListener& listener, const vyrSDK::Simulation& simulation,
             vyrSDK::SceneRecord& out) override;

  // It writes only.
  void read(vyrCollide::Geometry&, const vyrSDK::SceneValue*) override {}
  void read(vyr::RigidBody&, const vyrSDK::SceneValue*) override {}
  void read(vyr::ParticleSystem&, const vyrSDK::SceneValue*) override {}
  void read(vyrSDK::StepEventListener&, const vyrSDK::SceneValue*) override {}
};

} // namespace vyrOSG
