// Watches pairs of bodies and geometries for the moment in which they touch.
#pragma once

#include <vyr/RigidBody.h>
#include <vyr/observer_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrSDK/Simulation.h>

#include <string>
#include <vector>

namespace vyrOSG {

/// The pairs that pause the application. Each pair tells once that it touches, and again after it has come apart.
class AutoPause {
public:
  void add(const vyr::RigidBody* first, const vyr::RigidBody* second);
  void add(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second);
  void remove(const vyr::RigidBody* first, const vyr::RigidBody* second);
  void remove(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second);
  void clear() { m_pairs.clear(); }

  /// Looks at the contacts of the last step. True when a pair has begun to touch; @p who names it then.
  bool check(const vyrSDK::Simulation& simulation, std::string& who);

private:
  struct Pair {
    vyr::observer_ptr<const vyr::RigidBody> bodies[2];
    vyr::observer_ptr<const vyrCollide::Geometry> geometries[2];
    bool ofBodies = false;
    bool touching = false;
  };

  static bool matches(const Pair& pair, const vyrSDK::Contact& contact);
  static bool isGone(const Pair& pair);

  std::vector<Pair> m_pairs;
};

} // namespace vyrOSG
