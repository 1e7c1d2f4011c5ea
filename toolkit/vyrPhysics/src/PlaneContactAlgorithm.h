/// Contacts of convex forms with planes, all of a step at once.
#pragma once

#include <BulletCollision/CollisionDispatch/btActivatingCollisionAlgorithm.h>
#include <BulletCollision/CollisionDispatch/btCollisionCreateFunc.h>
#include <BulletCollision/CollisionDispatch/btDefaultCollisionConfiguration.h>

class btPersistentManifold;

namespace vyrPhysics {

/// The engine's own algorithm finds one point a step: a box that is put down flat tips over its first corner before the
/// others are known. This one adds every point that is near enough.
class PlaneContactAlgorithm : public btCollisionAlgorithm {
public:
  PlaneContactAlgorithm(const btCollisionAlgorithmConstructionInfo& info, const btCollisionObjectWrapper* object1,
                        const btCollisionObjectWrapper* object2, bool planeFirst);
  ~PlaneContactAlgorithm() override;

  void processCollision(const btCollisionObjectWrapper* object1, const btCollisionObjectWrapper* object2,
                        const btDispatcherInfo& info, btManifoldResult* result) override;
  btScalar calculateTimeOfImpact(btCollisionObject*, btCollisionObject*, const btDispatcherInfo&,
                                 btManifoldResult*) override {
    return 1.0;
  }
  void getAllContactManifolds(btManifoldArray& manifolds) override;

  /// Makes the algorithm in the dispatcher's memory.
  struct CreateFunc : btCollisionAlgorithmCreateFunc {
    btCollisionAlgorithm* CreateCollisionAlgorithm(btCollisionAlgorithmConstructionInfo& info,
                                                   const btCollisionObjectWrapper* object1,
                                                   const btCollisionObjectWrapper* object2) override;
  };

private:
  btPersistentManifold* m_manifold;
  bool m_ownsManifold = false;
  bool m_planeFirst;
};

/// The engine's choice of algorithms with this one for planes.
class CollisionConfiguration : public btDefaultCollisionConfiguration {
public:
  CollisionConfiguration();
  btCollisionAlgorithmCreateFunc* getCollisionAlgorithmCreateFunc(int type1, int type2) override;

private:
  PlaneContactAlgorithm::CreateFunc m_convexPlane;
  PlaneContactAlgorithm::CreateFunc m_planeConvex;
};

} // namespace vyrPhysics
