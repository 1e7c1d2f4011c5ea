/// The engine's world with the corrections that contacts need between finding and solving them.
#include "DynamicsWorld.h"

#include "BulletConvert.h"
#include "GeometryNative.h"
#include "HeightFieldInstance.h"
#include "SimulationNative.h"

#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>

namespace vyrSDK {

namespace {

btVector3 velocityAt(const btCollisionObject* object, const btVector3& point) {
  const btRigidBody* body = btRigidBody::upcast(object);
  return body != nullptr ? body->getVelocityInLocalPoint(point - body->getWorldTransform().getOrigin())
                         : btVector3(0.0, 0.0, 0.0);
}

/// True when a point of the manifold is about to bounce, faster than the solver's least bouncing speed.
bool bounces(const btPersistentManifold& manifold, double leastSpeed) {
  for (int i = 0; i < manifold.getNumContacts(); ++i) {
    const btManifoldPoint& point = manifold.getContactPoint(i);
    if (point.m_combinedRestitution > 0.0) {
      const btVector3 place = point.getPositionWorldOnB();
      const btVector3 approach = velocityAt(manifold.getBody0(), place) - velocityAt(manifold.getBody1(), place);
      if (point.m_normalWorldOnB.dot(approach) < -leastSpeed) {
        return true;
      }
    }
  }
  return false;
}

/// True when the geometry is a height field that has moved away from under the point.
bool isStale(const vyrCollide::Geometry* geometry, const btVector3& point) {
  if (geometry == nullptr || geometry->getShape()->getType() != vyrCollide::Shape::HEIGHT_FIELD ||
      geometry->getShape()->getRevision() == 0) {
    return false;
  }
  const auto* instance = static_cast<const vyrCollide::HeightFieldInstance*>(geometry->getNative()->instance.get());
  return !instance->isOnSurface(vyrPhysics::fromBullet(point) * geometry->getTransform().inverse());
}

bool mayBeGround(const btCollisionObject* object) {
  const btCollisionShape* shape = object->getCollisionShape();
  return shape->isCompound() || shape->getShapeType() == TERRAIN_SHAPE_PROXYTYPE;
}

/// The engine keeps a point while neither body moves away from it: it does not notice ground that gives way.
void dropStalePoints(btPersistentManifold& manifold) {
  if (!mayBeGround(manifold.getBody0()) && !mayBeGround(manifold.getBody1())) {
    return;
  }
  for (int i = manifold.getNumContacts() - 1; i >= 0; --i) {
    const btManifoldPoint& point = manifold.getContactPoint(i);
    int index1 = 0;
    int index2 = 0;
    decodeChildren(point.m_userPersistentData, index1, index2);
    if (isStale(geometryAt(manifold.getBody0(), index1), point.getPositionWorldOnA()) ||
        isStale(geometryAt(manifold.getBody1(), index2), point.getPositionWorldOnB())) {
      manifold.removeContactPoint(i);
    }
  }
}

} // namespace

void DynamicsWorld::calculateSimulationIslands() {
  const double leastSpeed = getSolverInfo().m_restitutionVelocityThreshold;
  for (int i = 0; i < getDispatcher()->getNumManifolds(); ++i) {
    btPersistentManifold& manifold = *getDispatcher()->getManifoldByIndexInternal(i);
    dropStalePoints(manifold);
    // Contacts are solved before they close, which brakes a body in flight by just what it needs to arrive; one that
    // shall bounce must arrive with all of its speed.
    manifold.setContactProcessingThreshold(bounces(manifold, leastSpeed) ? 0.0 : BT_LARGE_FLOAT);
  }
  btDiscreteDynamicsWorld::calculateSimulationIslands();
}

} // namespace vyrSDK
