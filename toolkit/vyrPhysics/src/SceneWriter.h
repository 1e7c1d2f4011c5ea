/// Turns a simulation into the text of a scene file.
#pragma once

#include "SceneJson.h"

#include <vyrSDK/SceneType.h>
#include <vyrSDK/SceneVisuals.h>
#include <vyrSDK/Simulation.h>

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>

#include <map>
#include <string>
#include <vector>

namespace vyrSDK {

/// Numbers the parts of a simulation and writes them, shared ones once.
class SceneWriter final : private SceneReferences {
public:
  /// `folder`: where the file will be; empty: there is none.
  SceneWriter(const Simulation& simulation, const std::string& folder)
      : m_simulation(simulation)
      , m_folder(folder) {
    SceneVisuals* visuals = SceneVisuals::getWriter();
    m_visuals = visuals != nullptr && visuals->draws(simulation) ? visuals : nullptr;
  }

  std::string write();

private:
  int indexOf(const vyr::RigidBody* body) const override;
  int indexOf(const vyr::Constraint* constraint) const override;
  std::vector<int> placeOf(const vyrCollide::Geometry* geometry) const override;
  int indexOf(const vyrCollide::Shape* shape) override;
  int indexOf(const vyr::Material* material) override;

  Json settings() const;
  void countShapes();
  Json geometryJson(const vyrCollide::Geometry& geometry, int body, int place);
  template <class Part>
  void addLook(const Part& part, Json& json) const;
  void addBody(const vyr::RigidBody& body);
  Json frameJson(const vyr::Frame& frame) const;
  void addConstraint(const vyr::Constraint& constraint);
  void addParticles(const vyr::ParticleSystem& particles);
  Json assemblyJson(const Assembly& assembly);
  void addListener(const StepEventListener& listener);
  Json order();
  Json contacts() const;

  const Simulation& m_simulation;
  std::string m_folder;
  SceneVisuals* m_visuals = nullptr; ///< Nullable: looks are not written
  std::map<const void*, int> m_materials;
  std::map<const void*, int> m_shapes;
  std::map<const void*, int> m_shapeUses;
  std::map<const void*, std::vector<int>> m_places; ///< of geometries
  std::map<const void*, int> m_bodies;
  std::map<const void*, int> m_constraints;
  std::map<const btCollisionObject*, int> m_rowPlaces; ///< place in the written order
  Json m_json;
};

} // namespace vyrSDK
