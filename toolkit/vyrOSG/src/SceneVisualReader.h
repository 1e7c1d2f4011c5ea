// Draws what was read from a scene file with the looks that the file gives.
#pragma once

#include "Look.h"

#include <vyr/ParticleSystem.h>
#include <vyr/RigidBody.h>
#include <vyrSDK/SceneVisuals.h>
#include <vyrSDK/Simulation.h>

#include <map>
#include <string>

namespace vyrOSG {

/// Takes in the looks while the file is read; then each part can be drawn. Parts that the file says nothing about get
/// the usual look.
class SceneVisualReader : public vyrSDK::SceneVisuals {
public:
  /// `file`: the scene file, beside which images and models are looked for.
  explicit SceneVisualReader(const std::string& file);

  /// Draw a part below a group (*returns inner*). Nullable: nothing was drawn.
  vyrOSG::Group* draw(vyr::RigidBody& body, vyrOSG::Group& root, float detailRatio, bool axes);
  GeometryNode* draw(vyrCollide::Geometry& geometry, vyrOSG::Group& root, float detailRatio, bool axes);
  void draw(vyr::ParticleSystem& particles, vyrOSG::Group& root);
  /// Adds the renderers that wires, terrains and trees had to the simulation that these are in.
  void drawListeners(vyrSDK::Simulation& simulation, vyrOSG::Group& root);

  // It reads only.
  bool draws(const vyrSDK::Simulation&) override { return false; }
  bool write(const vyrCollide::Geometry&, const std::string&, vyrSDK::SceneRecord&) override { return false; }
  bool write(const vyr::RigidBody&, const std::string&, vyrSDK::SceneRecord&) override { return false; }
  bool write(const vyr::ParticleSystem&, const std::string&, vyrSDK::SceneRecord&) override { return false; }
  bool write(const vyrSDK::StepEventListener&, const vyrSDK::Simulation&, vyrSDK::SceneRecord&) override {
    return false;
  }

  void read(vyrCollide::Geometry& geometry, const vyrSDK::SceneValue* value) override;
  void read(vyr::RigidBody& body, const vyrSDK::SceneValue* value) override;
  void read(vyr::ParticleSystem& particles, const vyrSDK::SceneValue* value) override;
  void read(vyrSDK::StepEventListener& listener, const vyrSDK::SceneValue* value) override;

private:
  struct Visual {
    bool drawn = true;
    GeometryLook look;
  };
  struct ParticleModes {
    ParticleSystemDrawable::ParticleRenderingMode rendering;
    ParticleSystemDrawable::ParticleShaderMode shader;
  };

  struct ListenerLook {
    vyr::Vec4 color{1, 1, 1, 1};
    double radius = 0.02;
    double segmentsPerUnitLength = 10;
    double low = 0;
    double high = 1;
  };

  bool hasLooks(const vyr::RigidBody& body) const;

  std::string m_folder;
  std::map<const vyrCollide::Geometry*, Visual> m_visuals;
  std::map<const vyr::RigidBody*, CompanyLook> m_companies;
  std::map<const vyr::ParticleSystem*, ParticleModes> m_modes;
  std::map<const vyrSDK::StepEventListener*, ListenerLook> m_listeners;
};

} // namespace vyrOSG
