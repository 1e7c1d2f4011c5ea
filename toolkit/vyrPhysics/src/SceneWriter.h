/// Turns a simulation into the text of a scene file.
#pragma once

#include "SceneJson.h"

#include <vyrSDK/Simulation.h>

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>

#include <map>
#include <string>
#include <vector>

namespace vyrSDK {

/// Numbers the parts of a simulation and writes them, shared ones once.
class SceneWriter {
public:
  explicit SceneWriter(const Simulation& simulation)
      : m_simulation(simulation) {}

  std::string write();

private:
  int materialIndex(const vyr::Material* material);
  int shapeIndex(const vyrCollide::Shape* shape);
  int geometryIndex(const vyrCollide::Geometry* geometry);
  int bodyIndex(const vyr::RigidBody* body) const;
  Json frameJson(const vyr::Frame& frame) const;
  Json settings() const;
  void addBody(const vyr::RigidBody& body);
  void addConstraint(const vyr::Constraint& constraint);
  void addParticles(const vyr::ParticleSystem& particles);
  Json assemblyJson(const Assembly& assembly);
  Json order();
  Json contacts() const;

  const Simulation& m_simulation;
  std::map<const void*, int> m_materials;
  std::map<const void*, int> m_shapes;
  std::map<const void*, int> m_geometries;
  std::map<const void*, int> m_bodies;
  std::map<const void*, int> m_constraints;
  std::map<const btCollisionObject*, int> m_places; ///< place in the written order
  Json m_json;
};

} // namespace vyrSDK
