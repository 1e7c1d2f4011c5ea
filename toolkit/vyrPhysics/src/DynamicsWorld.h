/// The engine's world with the corrections that contacts need between finding and solving them.
#pragma once

#include <BulletDynamics/Dynamics/btDiscreteDynamicsWorld.h>

namespace vyrSDK {

/// Looks over all contact points of a step before they are solved.
class DynamicsWorld : public btDiscreteDynamicsWorld {
public:
  using btDiscreteDynamicsWorld::btDiscreteDynamicsWorld;

protected:
  void calculateSimulationIslands() override;
};

} // namespace vyrSDK
