/// What a simulation keeps of the collision engine.
#pragma once

#include <BulletCollision/BroadphaseCollision/btDbvtBroadphase.h>
#include <BulletCollision/CollisionDispatch/btCollisionDispatcher.h>
#include <BulletDynamics/ConstraintSolver/btSequentialImpulseConstraintSolver.h>
#include <BulletDynamics/MLCPSolvers/btDantzigSolver.h>
#include <BulletDynamics/MLCPSolvers/btMLCPSolver.h>

#include "DynamicsWorld.h"
#include "OrderedSolver.h"
#include "PlaneContactAlgorithm.h"

#include <vyrSDK/Contact.h>

#include <vector>

namespace vyrSDK {

/// The engine's world with its parts, and the contacts read from it.
struct SimulationNative {
  SimulationNative();

  vyrPhysics::CollisionConfiguration configuration;
  btCollisionDispatcher dispatcher;
  btDbvtBroadphase broadphase;
  OrderedSolver<btSequentialImpulseConstraintSolver> iterative;
  btDantzigSolver dantzig;
  OrderedSolver<btMLCPSolver> multi;
  DynamicsWorld world;
  std::vector<Contact> contacts;
  bool contactsValid = false;
  int numConstraintsMade = 0; ///< gives constraints their order
};

/// Gives a contact point friction, restitution and sensor behaviour of the two geometries that touch.
/// Installed process-wide in the engine; it acts on objects of the toolkit only, which ask for it by a flag.
void installContactCallback();

/// Collects the contact points of the engine's world with the forces of a step of `timeStep` s.
void gatherContacts(SimulationNative& native, double timeStep);

/// *returns inner*. Nullable: the geometry of an engine's object to which the index in a contact point's mark leads.
vyrCollide::Geometry* geometryAt(const btCollisionObject* object, int index);

/// What a contact point's mark says: the index of the touching geometry in the first and the second body.
void* encodeChildren(int first, int second);
void decodeChildren(const void* mark, int& outFirst, int& outSecond);

} // namespace vyrSDK
