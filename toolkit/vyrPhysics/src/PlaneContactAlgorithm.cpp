/// Contacts of convex forms with planes, all of a step at once.
#include "PlaneContactAlgorithm.h"

#include <BulletCollision/CollisionDispatch/btCollisionDispatcher.h>
#include <BulletCollision/CollisionDispatch/btCollisionObjectWrapper.h>
#include <BulletCollision/CollisionDispatch/btManifoldResult.h>
#include <BulletCollision/CollisionShapes/btBoxShape.h>
#include <BulletCollision/CollisionShapes/btCapsuleShape.h>
#include <BulletCollision/CollisionShapes/btConvexHullShape.h>
#include <BulletCollision/CollisionShapes/btCylinderShape.h>
#include <BulletCollision/CollisionShapes/btStaticPlaneShape.h>

#include <initializer_list>
#include <new>

namespace vyrPhysics {

PlaneContactAlgorithm::PlaneContactAlgorithm(const btCollisionAlgorithmConstructionInfo& info,
                                             const btCollisionObjectWrapper* object1,
                                             const btCollisionObjectWrapper* object2, bool planeFirst)
    : btCollisionAlgorithm(info)
    , m_manifold(info.m_manifold)
    , m_planeFirst(planeFirst) {
  const btCollisionObjectWrapper* convex = planeFirst ? object2 : object1;
  const btCollisionObjectWrapper* plane = planeFirst ? object1 : object2;
  if (m_manifold == nullptr &&
      m_dispatcher->needsCollision(convex->getCollisionObject(), plane->getCollisionObject())) {
    m_manifold = m_dispatcher->getNewManifold(convex->getCollisionObject(), plane->getCollisionObject());
    m_ownsManifold = true;
  }
}

PlaneContactAlgorithm::~PlaneContactAlgorithm() {
  if (m_ownsManifold && m_manifold != nullptr) {
    m_dispatcher->releaseManifold(m_manifold);
  }
}

void PlaneContactAlgorithm::getAllContactManifolds(btManifoldArray& manifolds) {
  if (m_ownsManifold && m_manifold != nullptr) {
    manifolds.push_back(m_manifold);
  }
}

namespace {

/// Tests points of the convex form against the plane and hands on those that are near.
class PointTester {
public:
  PointTester(const btCollisionObjectWrapper* convex, const btCollisionObjectWrapper* plane, double reach,
              btManifoldResult* result)
      : m_convexToWorld(convex->getWorldTransform())
      , m_result(result)
      , m_reach(reach) {
    const auto* shape = static_cast<const btStaticPlaneShape*>(plane->getCollisionShape());
    const btTransform& planeToWorld = plane->getWorldTransform();
    normal = planeToWorld.getBasis() * shape->getPlaneNormal();
    m_offset = normal.dot(planeToWorld * (shape->getPlaneNormal() * shape->getPlaneConstant()));
    localNormal = m_convexToWorld.getBasis().transpose() * normal;
  }

  /// `local`: a point of the convex form's frame; the form reaches `margin` beyond it towards the plane.
  void add(const btVector3& local, double margin) {
    const btVector3 world = m_convexToWorld * local;
    const double distance = normal.dot(world) - m_offset - margin;
    if (distance < m_reach) {
      m_result->addContactPoint(normal, world - normal * (distance + margin), distance);
    }
  }

  btVector3 normal;      ///< of the plane, world
  btVector3 localNormal; ///< of the plane, in the frame of the convex form

private:
  btTransform m_convexToWorld;
  btManifoldResult* m_result;
  double m_reach;
  double m_offset;
};

void addBox(PointTester& tester, const btBoxShape& box) {
  for (int i = 0; i < box.getNumVertices(); ++i) {
    btVector3 vertex;
    box.getVertex(i, vertex);
    tester.add(vertex, 0.0);
  }
}

void addHull(PointTester& tester, const btConvexHullShape& hull) {
  for (int i = 0; i < hull.getNumPoints(); ++i) {
    tester.add(hull.getScaledPoint(i), hull.getMargin());
  }
}

/// The lowest point of either rim, and points a third and two thirds round from it.
void addCylinder(PointTester& tester, const btCylinderShape& cylinder) {
  const double radius = cylinder.getRadius();
  const double half = cylinder.getHalfExtentsWithMargin().z();
  btVector3 down(-tester.localNormal.x(), -tester.localNormal.y(), 0.0);
  if (down.length2() < 1.0e-12) {
    down.setValue(1.0, 0.0, 0.0);
  }
  down.normalize();
  for (double z : {-half, half}) {
    for (int third = 0; third < 3; ++third) {
      const btVector3 rim = down.rotate(btVector3(0.0, 0.0, 1.0), third * SIMD_2_PI / 3.0) * radius;
      tester.add(btVector3(rim.x(), rim.y(), z), 0.0);
    }
  }
}

void addCapsule(PointTester& tester, const btCapsuleShape& capsule) {
  for (double end : {-1.0, 1.0}) {
    tester.add(btVector3(0.0, 0.0, end * capsule.getHalfHeight()), capsule.getRadius());
  }
}

void addLowestPoint(PointTester& tester, const btConvexShape& convex) {
  tester.add(convex.localGetSupportingVertex(-tester.localNormal), 0.0);
}

} // namespace

void PlaneContactAlgorithm::processCollision(const btCollisionObjectWrapper* object1,
                                             const btCollisionObjectWrapper* object2, const btDispatcherInfo&,
                                             btManifoldResult* result) {
  if (m_manifold == nullptr) {
    return;
  }
  const btCollisionObjectWrapper* convex = m_planeFirst ? object2 : object1;
  const btCollisionObjectWrapper* plane = m_planeFirst ? object1 : object2;
  result->setPersistentManifold(m_manifold);
  PointTester tester(convex, plane, m_manifold->getContactBreakingThreshold(), result);
  const btCollisionShape* shape = convex->getCollisionShape();
  switch (shape->getShapeType()) {
  case BOX_SHAPE_PROXYTYPE:
    addBox(tester, *static_cast<const btBoxShape*>(shape));
    break;
  case CONVEX_HULL_SHAPE_PROXYTYPE:
    addHull(tester, *static_cast<const btConvexHullShape*>(shape));
    break;
  case CYLINDER_SHAPE_PROXYTYPE:
    addCylinder(tester, *static_cast<const btCylinderShape*>(shape));
    break;
  case CAPSULE_SHAPE_PROXYTYPE:
    addCapsule(tester, *static_cast<const btCapsuleShape*>(shape));
    break;
  default:
    addLowestPoint(tester, *static_cast<const btConvexShape*>(shape));
    break;
  }
  if (m_ownsManifold && m_manifold->getNumContacts() > 0) {
    result->refreshContactPoints();
  }
}

btCollisionAlgorithm*
PlaneContactAlgorithm::CreateFunc::CreateCollisionAlgorithm(btCollisionAlgorithmConstructionInfo& info,
                                                            const btCollisionObjectWrapper* object1,
                                                            const btCollisionObjectWrapper* object2) {
  void* memory = info.m_dispatcher1->allocateCollisionAlgorithm(sizeof(PlaneContactAlgorithm));
  return new (memory) PlaneContactAlgorithm(info, object1, object2, m_swapped);
}

namespace {

/// Without room for the larger algorithm, each of them would be allocated on its own.
btDefaultCollisionConstructionInfo withRoomForPlanes() {
  btDefaultCollisionConstructionInfo info;
  info.m_customCollisionAlgorithmMaxElementSize = sizeof(PlaneContactAlgorithm);
  return info;
}

} // namespace

CollisionConfiguration::CollisionConfiguration()
    : btDefaultCollisionConfiguration(withRoomForPlanes()) {
  m_planeConvex.m_swapped = true;
}

btCollisionAlgorithmCreateFunc* CollisionConfiguration::getCollisionAlgorithmCreateFunc(int type1, int type2) {
  if (btBroadphaseProxy::isConvex(type1) && type2 == STATIC_PLANE_PROXYTYPE) {
    return &m_convexPlane;
  }
  if (btBroadphaseProxy::isConvex(type2) && type1 == STATIC_PLANE_PROXYTYPE) {
    return &m_planeConvex;
  }
  return btDefaultCollisionConfiguration::getCollisionAlgorithmCreateFunc(type1, type2);
}

} // namespace vyrPhysics
