/// Decides where the limbs and leaves of a tree are.
#pragma once

#include <vyrModel/TreeBranch.h>
#include <vyrModel/TreeParameters.h>

#include <vector>

namespace vyrModel {

/// A piece of a limb before it has a body; its frame stands in the tree's frame.
struct GrownBranch {
  TreeBranch branch; ///< without body and joint
  vyr::Vec3 base;
  vyr::Vec3 direction; ///< unit vector
};

/// A tree that stands at the origin.
struct GrownTree {
  std::vector<GrownBranch> branches;
  std::vector<TreeLeaf> leaves;
};

/// False, with one error message, for numbers that no tree can have.
bool areUsable(const TreeParameters& parameters);

/// Grows limbs that keep clear of each other; leaves in the frames of their branches.
GrownTree growTree(const TreeParameters& parameters, unsigned int seed);

/// The orientation of a branch: z to `direction`.
vyr::Quat branchRotation(const vyr::Vec3& direction);

} // namespace vyrModel
