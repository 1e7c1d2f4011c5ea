/// Builds the parts of a simulation from the text of a scene file.
#pragma once

#include "SceneJson.h"

#include <vyr/Material.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/Simulation.h>

#include <string>
#include <vector>

class btCollisionObject;
class btRigidBody;

namespace vyrSDK {

/// Reads in two moves: parse() makes all parts and touches no simulation, commit() puts them into one.
class SceneReader {
public:
  /// Throws a std::exception that says what is wrong.
  void parse(const std::string& text);

  /// Replaces the parts and settings of the simulation; listeners stay.
  void commit(Simulation& simulation);

private:
  void readShapes();
  void readGeometries();
  void readBody(const Json& json);
  void readConstraint(const Json& json);
  void readParticles(const Json& json);
  vyr::ref_ptr<Assembly> readAssembly(const Json& json);
  vyr::ref_ptr<vyr::Frame> readFrame(const Json& json) const;
  vyr::Material* materialAt(const Json& json) const;

  void checkOrder() const;
  void checkState() const;
  void insertObjects(Simulation& simulation);
  void insertConstraints(Simulation& simulation);
  void restoreState(Simulation& simulation);
  void restoreContacts(Simulation& simulation);
  btRigidBody* objectAt(size_t place) const;

  Json m_json;
  std::vector<vyr::ref_ptr<vyr::Material>> m_materials;
  std::vector<vyr::ref_ptr<vyrCollide::Shape>> m_shapes;
  std::vector<vyr::ref_ptr<vyrCollide::Geometry>> m_geometries;
  std::vector<vyr::ref_ptr<vyr::RigidBody>> m_bodies;
  std::vector<vyr::ref_ptr<vyrCollide::Geometry>> m_freeGeometries;
  std::vector<vyr::ref_ptr<vyr::Constraint>> m_constraints;
  std::vector<vyr::ref_ptr<vyr::ParticleSystem>> m_particleSystems;
  std::vector<vyr::ref_ptr<vyrCollide::Space>> m_spaces;
  std::vector<vyr::ref_ptr<Assembly>> m_assemblies;
};

} // namespace vyrSDK
