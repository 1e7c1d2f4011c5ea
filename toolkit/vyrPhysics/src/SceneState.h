/// What a scene file says beside the parts themselves, ready to be put into a simulation.
#pragma once

#include "JointConstraint.h"

#include <vyr/FrictionModel.h>
#include <vyr/Vec3.h>
#include <vyrSDK/Simulation.h>

#include <BulletCollision/NarrowPhaseCollision/btManifoldPoint.h>
#include <LinearMath/btTransform.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vyrSDK {

struct SceneSettings {
  double timeStep = 0;
  double countStart = 0;
  std::uint64_t countedSteps = 0;
  std::uint64_t steps = 0;
  vyr::Vec3 gravity;
  Simulation::SolverType solver = Simulation::ITERATIVE;
  int iterations = 0;
  vyr::FrictionModel::SolveType frictionModel = vyr::FrictionModel::SPLIT;
  bool sleeping = false;
};

struct BodyState {
  btTransform engineTransform;
  btVector3 force;
  btVector3 torque;
  int activation = 0;
  bool hasActivation = false;
  double restTime = 0;
};

struct ConstraintState {
  bool hasPosition = false;
  double position = 0; ///< of the coordinate, turns included
  vyr::JointConstraint::SpringMemory spring;
  vyr::Vec3 force; ///< measured in the last step
  vyr::Vec3 torque;
};

/// A place in the engine's row of objects: what it is, which one, which particle of it, its rank among the pairs.
struct OrderEntry {
  enum Kind { BODY, GEOMETRY, PARTICLE };
  Kind kind;
  std::size_t index;
  std::size_t part;
  int rank;
};

/// The contact points of two objects, which are places in the order.
struct ContactState {
  std::size_t first;
  std::size_t second;
  std::vector<btManifoldPoint> points;
};

} // namespace vyrSDK
