/// Builds the parts of a simulation from the text of a scene file.
#pragma once

#include "JointConstraint.h"
#include "SceneDocument.h"
#include "SceneState.h"

#include <vyr/Material.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/SceneType.h>
#include <vyrSDK/SceneVisuals.h>
#include <vyrSDK/Simulation.h>

#include <string>
#include <vector>

class btRigidBody;

namespace vyrSDK {

/// Reads in two moves: parse() makes all parts and touches no simulation; commit() puts them into one, or restore()
/// gives one that has the same parts their state.
class SceneReader final : private SceneParts {
public:
  /// `visuals` is told the looks of the parts. Nullable: looks are left alone.
  explicit SceneReader(SceneVisuals* visuals = nullptr)
      : m_visuals(visuals) {}

  /// Settings that the text leaves out are those of `usual`. Throws a std::exception that says what is wrong and where.
  void parse(const std::string& text, const Simulation& usual);

  /// Paths of the members that are not known.
  const std::vector<std::string>& getUnknown() const { return m_unknown; }

  /// Replaces the parts and settings of the simulation; listeners stay, except those that scene files hold.
  void commit(Simulation& simulation);

  /// Gives the parts of a simulation with the same bodies, geometries, constraints and so on the state in the file.
  /// Throws a std::exception that says what differs; nothing is changed then.
  void restore(Simulation& simulation);

private:
  /// A part of a kind that is known by name, and what the file says of it.
  template <class Object>
  struct Typed {
    vyr::ref_ptr<Object> object;
    SceneType* type;
    SceneValue value;
  };

  vyr::RigidBody* bodyAt(const SceneValue& value) const override;
  vyr::Constraint* constraintAt(const SceneValue& value) const override;
  vyrCollide::Geometry* geometryAt(const SceneValue& value) const override;
  vyrCollide::Shape* shapeAt(const SceneValue& value) override;
  vyr::Material* materialAt(const SceneValue& value) override;

  void readHeader(const SceneValue& root);
  void readSettings(const SceneValue& root, const Simulation& usual);
  void readParts(const SceneValue& root);
  vyr::ref_ptr<vyrCollide::Geometry> readGeometry(const SceneValue& value);
  void readBody(const SceneValue& value);
  void readMass(vyr::RigidBody& body, const SceneValue& value) const;
  BodyState readBodyState(vyr::RigidBody& body, const SceneValue& value) const;
  vyr::ref_ptr<vyr::Frame> readFrame(const SceneValue& owner, const char* key, const vyr::Frame* first) const;
  void readConstraint(const SceneValue& value);
  void readParticles(const SceneValue& value);
  void readSpace(const SceneValue& value);
  vyr::ref_ptr<Assembly> readAssembly(const SceneValue& value);
  void readListener(const SceneValue& value);
  void readOrder(const SceneValue& root);
  void readContacts(const SceneValue& root);
  template <class Part>
  void readLook(Part& part, const SceneValue& value);

  void applySettings(Simulation& simulation) const;
  void insertObjects(Simulation& simulation);
  void insertConstraints(Simulation& simulation);
  void restoreState(Simulation& simulation) const;
  void restoreContacts(Simulation& simulation) const;
  void checkFit(const Simulation& simulation) const;
  void restoreBody(vyr::RigidBody& body, const vyr::RigidBody& saved) const;
  void restoreParticles(vyr::ParticleSystem& system, const vyr::ParticleSystem& saved) const;
  bool hasOrderOf(const Simulation& simulation) const;
  btRigidBody* objectAt(std::size_t place) const;

  SceneDocument m_document;
  SceneVisuals* m_visuals;
  std::vector<std::string> m_unknown;
  SceneSettings m_settings;
  std::vector<vyr::ref_ptr<vyr::Material>> m_materials;
  std::vector<vyr::ref_ptr<vyrCollide::Shape>> m_shapes;
  std::vector<vyr::ref_ptr<vyr::Material>> m_ownMaterials; ///< those written within a part
  std::vector<vyr::ref_ptr<vyrCollide::Shape>> m_ownShapes;
  std::vector<vyr::ref_ptr<vyr::RigidBody>> m_bodies;
  std::vector<vyr::ref_ptr<vyrCollide::Geometry>> m_geometries; ///< those without a body
  std::vector<vyr::ref_ptr<vyr::Constraint>> m_constraints;
  std::vector<vyr::ref_ptr<vyr::ParticleSystem>> m_particleSystems;
  std::vector<vyr::ref_ptr<vyrCollide::Space>> m_spaces;
  std::vector<vyr::ref_ptr<Assembly>> m_assemblies;
  std::vector<Typed<Assembly>> m_typedAssemblies; ///< in the order of the file, inner ones too
  std::vector<Typed<StepEventListener>> m_listeners;
  std::vector<SceneValue> m_constraintValues;
  std::vector<BodyState> m_bodyStates;
  std::vector<ConstraintState> m_constraintStates;
  std::vector<OrderEntry> m_order;
  std::vector<ContactState> m_contacts;
};

} // namespace vyrSDK
