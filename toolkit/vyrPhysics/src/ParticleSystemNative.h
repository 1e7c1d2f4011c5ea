/// What a particle system keeps of the collision engine.
#pragma once

#include <vyr/ParticleSystem.h>

#include <BulletCollision/CollisionShapes/btSphereShape.h>
#include <BulletDynamics/Dynamics/btRigidBody.h>

#include <map>
#include <memory>
#include <vector>

namespace vyr {

/// One engine's body a particle; particles of one radius share a shape.
struct ParticleSystemNative {
  std::map<double, std::unique_ptr<btSphereShape>> shapes;
  std::vector<std::unique_ptr<btRigidBody>> bodies;
  std::vector<ParticleContact> contacts;
  bool contactsValid = false;
};

} // namespace vyr
