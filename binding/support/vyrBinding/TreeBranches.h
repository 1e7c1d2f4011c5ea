/// Branches of trees as objects of their own: the tree's array moves when it grows and goes with the tree.
#pragma once

#include <vyrModel/Tree.h>

#include <cstddef>

namespace vyrBinding {

/// The branch as it is now. *returns new* Nullable: outside of the tree.
inline vyrModel::TreeBranch* branchAt(const vyrModel::Tree* tree, std::size_t index) {
  const vyrModel::TreeBranch* branch = tree->getBranch(index);
  return branch != nullptr ? new vyrModel::TreeBranch(*branch) : nullptr;
}

} // namespace vyrBinding
