/// The parts of a tree, for those who draw it.
#pragma once

#include <vyr/Lock.h>
#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/ref_ptr.h>

#include <cstddef>

namespace vyrModel {

/// One stiff piece of a limb: a frustum that starts at the origin of its body's frame and runs along the frame's z.
struct TreeBranch {
  vyr::ref_ptr<vyr::RigidBody> body; ///< never null
  vyr::ref_ptr<vyr::Lock> joint;     ///< never null: holds the body (first) to its parent or the world (second)
  int parent = -1;                   ///< index of the piece that it grows out of; -1 for the foot of the trunk
  int level = 0;                     ///< 0 for the trunk
  double offset = 0;                 ///< where it starts, along the parent's z, in m
  double length = 0;                 ///< in m
  double radiusBegin = 0;            ///< in m
  double radiusEnd = 0;              ///< in m
  bool continues = false;            ///< it goes on where the parent ends, as the same limb
  bool broken = false;               ///< its joint gave way
};

/// The leaves of one piece as a body that swings on it. Its frame is the piece's while the tree is at rest.
struct TreeLeafBody {
  vyr::ref_ptr<vyr::RigidBody> body; ///< never null
  vyr::ref_ptr<vyr::Lock> joint;     ///< never null: holds the body (first) to its piece (second)
  std::size_t branch = 0;            ///< index of the piece
};

/// A spray of leaves: a square that starts at `position` and reaches along `direction`.
struct TreeLeaf {
  std::size_t branch = 0; ///< index of the piece that carries it, in whose frame the rest is
  int body = -1;          ///< index of the leaves' body that moves it in place of the piece; -1: the piece itself
  vyr::Vec3 position;     ///< in m
  vyr::Vec3 direction;    ///< unit vector
  vyr::Vec3 normal;       ///< unit vector across the direction, out of the upper side
  double size = 0;        ///< edge length in m
};

} // namespace vyrModel
