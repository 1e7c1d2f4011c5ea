/// A tree that sways in the wind, bends under loads and breaks.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Referenced.h>
#include <vyr/Vec3.h>
#include <vyr/observer_ptr.h>
#include <vyrModel/TreeBranch.h>
#include <vyrModel/TreeParameters.h>
#include <vyrModel/export.h>
#include <vyrSDK/Simulation.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vyrModel {

class TreeMotion;
class TreeType;

/// A branching structure of rigid bodies with capsules, held together by elastic locks whose stiffness follows from the
/// wood: k = E I / L, I = pi r^4 / 4 (Source: Gere and Timoshenko, Mechanics of Materials, chapter 9, end rotation of
/// a beam under a moment). As grown, the tree stands at rest under its own weight.
///
/// In a simulation the tree lives as long as it is there, whoever else holds it. The base is virtual so that trees that
/// are something else too are counted once.
class VYRMODEL_EXPORT Tree : public virtual vyr::Referenced {
public:
  /// A tree without branches, until it is grown.
  Tree();

  /// Grows anew from the ground at the tree's place; equal seeds give equal trees. No limb touches another one. Refused
  /// with one error message, with the tree as it was, for numbers that no tree can have and while it is in a
  /// simulation.
  bool grow(const TreeParameters& parameters = TreeParameters(), unsigned int seed = 1);

  /// Parameters of the last growth.
  const TreeParameters& getParameters() const { return m_parameters; }

  /// Places the foot of the trunk, z upwards, before the tree enters a simulation; refused with one error message after
  /// that. Rotation and translation only. Default: the origin.
  bool setTransform(const vyr::AffineMatrix4x4& transform);
  const vyr::AffineMatrix4x4& getTransform() const { return m_transform; }

  /// Puts the tree into a simulation (*borrows*, weakly), rooted in the world. Refused with one error message for null,
  /// a tree without branches and one that is in a simulation.
  bool addTo(vyrSDK::Simulation* simulation);

  /// Takes the tree out of its simulation. False when it is in none.
  bool remove();

  /// *returns inner*. Nullable: the simulation that the tree is in.
  vyrSDK::Simulation* getSimulation() const;

  /// The tree that a listener moves in its simulation (*returns inner*). Nullable: it moves none.
  static Tree* of(const vyrSDK::StepEventListener& listener);

  /// All pieces, parents before children; the first is the foot of the trunk.
  const std::vector<TreeBranch>& getBranches() const { return m_branches; }
  std::size_t getNumBranches() const { return m_branches.size(); }
  /// *returns inner*. Nullable: the piece of an index, null outside.
  const TreeBranch* getBranch(std::size_t index) const;

  const std::vector<TreeLeaf>& getLeaves() const { return m_leaves; }
  std::size_t getNumLeaves() const { return m_leaves.size(); }

  /// Leaves that are bodies of their own (`TreeParameters::leafBodies`). They have mass, catch the wind and swing on
  /// their twigs, and fall with them; what touches a tree goes through them.
  const std::vector<TreeLeafBody>& getLeafBodies() const { return m_leafBodies; }
  std::size_t getNumLeafBodies() const { return m_leafBodies.size(); }

  /// Mass of the wood and the leaves in kg.
  double getMass() const;

  /// Wind in m/s, world; it pushes on wood and leaves. Refused with one error message when it is not finite.
  /// Default: none.
  bool setWind(const vyr::Vec3& velocity);
  const vyr::Vec3& getWind() const { return m_wind; }

  /// How far gusts change the speed of the wind, as a share of it, 0 to 1. Refused with one error message otherwise.
  /// Default: 0.5.
  bool setGustiness(double share);
  double getGustiness() const { return m_gustiness; }

  /// Wind at a place (m) and time (s), gusts included, in m/s: gusts travel with the wind.
  vyr::Vec3 getWindAt(const vyr::Vec3& place, double time) const;

  /// Bending stress in Pa at which limbs break, above 0; infinity for never. Refused with one error message otherwise.
  bool setStrength(double stress);
  double getStrength() const { return m_parameters.strength; }

  /// Bending stress at the lower end of a piece in the last step, in Pa; 0 outside and for broken ones.
  /// Source: sigma = M r / I = 4 M / (pi r^3), Gere and Timoshenko, Mechanics of Materials, chapter 5.
  double getStress(std::size_t index) const;

  /// Lets a piece split off. False for an index out of range and when it did before.
  bool breakBranch(std::size_t index);
  std::size_t getNumBroken() const;

  /// Counts growths, breaks and steps, so that drawings know when to follow.
  std::uint64_t getRevision() const { return m_revision; }
  /// Counts growths, breaks and placements alone.
  std::uint64_t getShapeRevision() const { return m_shapeRevision; }

protected:
  ~Tree() override;

  /// For classes that draw or watch the tree: after it was grown, placed, put into a simulation or taken out.
  virtual void changed();

private:
  friend class TreeMotion;
  friend class TreeType;
  void growLeafBodies();
  void tuneJoints(const vyr::Vec3& gravity);
  void shapeChanged();

  TreeParameters m_parameters;
  vyr::AffineMatrix4x4 m_transform;
  std::vector<TreeBranch> m_branches;
  std::vector<TreeLeaf> m_leaves;
  std::vector<TreeLeafBody> m_leafBodies;
  vyr::Vec3 m_wind;
  double m_gustiness = 0.5;
  std::uint64_t m_revision = 0;
  std::uint64_t m_shapeRevision = 0;
  vyr::observer_ptr<TreeMotion> m_motion;
};

} // namespace vyrModel
