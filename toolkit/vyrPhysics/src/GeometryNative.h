/// What a geometry keeps of the collision engine.
#pragma once

#include "ShapeInstance.h"

#include <BulletDynamics/Dynamics/btRigidBody.h>

#include <memory>

namespace vyrCollide {

/// Marks what an engine object stands for, in its second user index.
enum ObjectKind { BODY_OBJECT = 1, GEOMETRY_OBJECT = 2, PARTICLE_OBJECT = 3 };

/// The engine's shape, and the engine's body while the geometry stands in a simulation on its own.
struct GeometryNative {
  std::unique_ptr<ShapeInstance> instance;
  std::unique_ptr<btRigidBody> standalone;
  bool moving = false; ///< what the instance was made for
};

} // namespace vyrCollide
