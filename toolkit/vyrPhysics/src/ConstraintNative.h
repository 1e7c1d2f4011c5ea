/// What a constraint keeps of the collision engine.
#pragma once

#include "JointConstraint.h"

#include <BulletCollision/CollisionShapes/btEmptyShape.h>

#include <memory>

namespace vyr {

/// The engine's joint, what it measured, and the unmovable body that stands for the world.
struct ConstraintNative {
  btEmptyShape emptyShape;
  btRigidBody world{btRigidBody::btRigidBodyConstructionInfo(0.0, nullptr, &emptyShape)};
  btJointFeedback feedback{};
  JointLayout layout;
  int order = 0;                               ///< among the constraints of the simulation
  std::unique_ptr<JointConstraint> constraint; ///< while the constraint is in a simulation
};

} // namespace vyr
