/// A named group of bodies, geometries, constraints and further assemblies.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Constraint.h>
#include <vyr/Frame.h>
#include <vyr/Referenced.h>
#include <vyr/RigidBody.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrPhysics/export.h>

#include <vector>

namespace vyrSDK {

class Simulation;

/// Things that enter and leave a simulation together. While the assembly is in a simulation, what is added to it
/// enters at once, and what is removed leaves.
class VYRPHYSICS_EXPORT Assembly : public vyr::Referenced {
public:
  explicit Assembly(const vyr::String& name = vyr::String());

  void setName(const vyr::String& name) { m_name = name; }
  const vyr::String& getName() const { return m_name; }

  /// Adds a part (*retains*). False for null, for a part that the assembly has already, for itself, and for an assembly
  /// that contains this one.
  bool add(vyr::RigidBody* body);
  bool add(vyrCollide::Geometry* geometry);
  bool add(vyr::Constraint* constraint);
  bool add(vyr::Frame* frame);
  bool add(Assembly* assembly);

  /// Takes a part out. False when the assembly does not have it.
  bool remove(vyr::RigidBody* body);
  bool remove(vyrCollide::Geometry* geometry);
  bool remove(vyr::Constraint* constraint);
  bool remove(vyr::Frame* frame);
  bool remove(Assembly* assembly);

  const std::vector<vyr::ref_ptr<vyr::RigidBody>>& getRigidBodies() const { return m_bodies; }
  const std::vector<vyr::ref_ptr<vyrCollide::Geometry>>& getGeometries() const { return m_geometries; }
  const std::vector<vyr::ref_ptr<vyr::Constraint>>& getConstraints() const { return m_constraints; }
  const std::vector<vyr::ref_ptr<vyr::Frame>>& getFrames() const { return m_frames; }
  const std::vector<vyr::ref_ptr<Assembly>>& getAssemblies() const { return m_assemblies; }

  /// Moves all parts by `transform` (row vectors, after their present places), sub-assemblies included.
  void transform(const vyr::AffineMatrix4x4& transform);

  /// *returns inner*. Nullable: the first part of that name, sub-assemblies included.
  vyr::RigidBody* findRigidBody(const vyr::String& name) const;

  /// *returns inner*. Nullable: the simulation that the assembly is in.
  Simulation* getSimulation() const { return m_simulation; }

protected:
  ~Assembly() override;

private:
  friend class Simulation;

  bool contains(const Assembly* assembly) const;
  void enter(Simulation* simulation);
  void leave();

  vyr::String m_name;
  std::vector<vyr::ref_ptr<vyr::RigidBody>> m_bodies;
  std::vector<vyr::ref_ptr<vyrCollide::Geometry>> m_geometries;
  std::vector<vyr::ref_ptr<vyr::Constraint>> m_constraints;
  std::vector<vyr::ref_ptr<vyr::Frame>> m_frames;
  std::vector<vyr::ref_ptr<Assembly>> m_assemblies;
  Simulation* m_simulation = nullptr;
};

} // namespace vyrSDK
