/// What a constraint keeps of the collision engine.
#pragma once

#include <BulletCollision/CollisionShapes/btEmptyShape.h>
#include <BulletDynamics/ConstraintSolver/btTypedConstraint.h>
#include <BulletDynamics/Dynamics/btRigidBody.h>

#include <memory>

namespace vyr {

/// The engine's constraint, what it measured, and the unmovable body that stands for the world.
struct ConstraintNative {
  btEmptyShape emptyShape;
  btRigidBody world{btRigidBody::btRigidBodyConstructionInfo(0.0, nullptr, &emptyShape)};
  btJointFeedback feedback{};
  std::unique_ptr<btTypedConstraint> constraint;
};

} // namespace vyr
