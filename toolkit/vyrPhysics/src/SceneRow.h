/// The row in which the engine holds the objects of a simulation: with the same row it takes them in the same order.
#pragma once

#include "SceneState.h"

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>

#include <vector>

namespace vyrSDK {

struct RowEntry {
  const btCollisionObject* object;
  OrderEntry what;
};

/// All objects that take part in collisions, ranks from 1 without gaps.
std::vector<RowEntry> rowOf(const Simulation& simulation);

} // namespace vyrSDK
