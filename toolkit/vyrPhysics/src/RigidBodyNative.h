/// What a rigid body keeps of the collision engine.
#pragma once

#include <vyr/Vec3.h>

#include <BulletCollision/CollisionShapes/btCompoundShape.h>
#include <BulletCollision/CollisionShapes/btEmptyShape.h>
#include <BulletDynamics/Dynamics/btRigidBody.h>

#include <memory>

namespace vyr {

/// The engine's body has its origin in the centre of mass and its axes along the principal axes of inertia; `offset`
/// leads from there to the frame that users see.
struct RigidBodyNative {
  btEmptyShape emptyShape;
  std::unique_ptr<btCompoundShape> compound;
  std::unique_ptr<btRigidBody> body;
  btTransform offset = btTransform::getIdentity(); ///< engine's frame to the body's frame
  bool hasOffset = false;                          ///< false: offset is the identity, and values pass unrounded
  double mass = 1.0;
  btMatrix3x3 inertia = btMatrix3x3::getIdentity(); ///< about the centre of mass, along the body's axes
  Vec3 center;                                      ///< centre of mass in the body's frame
  bool userMass = false;
  bool userInertia = false;
  Vec3 velocity;        ///< what a kinematic body was told
  Vec3 angularVelocity; ///< what a kinematic body was told
  double linearDamping = 0.0;
  double angularDamping = 0.0;

  btTransform getBodyTransform() const {
    return hasOffset ? body->getWorldTransform() * offset.inverse() : body->getWorldTransform();
  }

  void setBodyTransform(const btTransform& transform) {
    const btTransform world = hasOffset ? transform * offset : transform;
    body->setWorldTransform(world);
    // The engine takes a kinematic body's velocity from this one: a jump must not count as motion.
    body->setInterpolationWorldTransform(world);
    body->updateInertiaTensor();
  }
};

} // namespace vyr
