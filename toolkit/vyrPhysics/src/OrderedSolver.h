/// The engine's solvers with an order of rows that nothing but the scene decides.
#pragma once

#include <BulletCollision/CollisionDispatch/btCollisionObject.h>
#include <BulletCollision/NarrowPhaseCollision/btPersistentManifold.h>
#include <BulletDynamics/ConstraintSolver/btTypedConstraint.h>

#include <algorithm>
#include <functional>

namespace vyrSDK {

/// The engine hands over contacts sorted by pairs of bodies, but leaves the contacts of one pair of compound bodies,
/// and the constraints, in an order that depends on the history. Iteration rounds differently in each order; a scene
/// that is read from a file has no history.
template <class Base>
class OrderedSolver : public Base {
public:
  using Base::Base;

  btScalar solveGroup(btCollisionObject** bodies, int numBodies, btPersistentManifold** manifolds, int numManifolds,
                      btTypedConstraint** constraints, int numConstraints, const btContactSolverInfo& info,
                      btIDebugDraw* drawer, btDispatcher* dispatcher) override {
    for (int begin = 0; begin < numManifolds;) {
      int end = begin + 1;
      while (end < numManifolds && isSamePair(*manifolds[begin], *manifolds[end])) {
        ++end;
      }
      if (end - begin > 1) {
        std::stable_sort(manifolds + begin, manifolds + end, isBefore);
      }
      begin = end;
    }
    std::stable_sort(constraints, constraints + numConstraints,
                     [](const btTypedConstraint* a, const btTypedConstraint* b) {
                       return a->getUserConstraintId() < b->getUserConstraintId();
                     });
    return Base::solveGroup(bodies, numBodies, manifolds, numManifolds, constraints, numConstraints, info, drawer,
                            dispatcher);
  }

private:
  static bool isSamePair(const btPersistentManifold& a, const btPersistentManifold& b) {
    return a.getBody0() == b.getBody0() && a.getBody1() == b.getBody1();
  }

  /// By the touching geometries; places without contacts come first and do nothing.
  static bool isBefore(const btPersistentManifold* a, const btPersistentManifold* b) {
    const auto mark = [](const btPersistentManifold* m) {
      return m->getNumContacts() > 0 ? m->getContactPoint(0).m_userPersistentData : nullptr;
    };
    if ((a->getNumContacts() > 0) != (b->getNumContacts() > 0)) {
      return a->getNumContacts() == 0;
    }
    return std::less<const void*>()(mark(a), mark(b));
  }
};

} // namespace vyrSDK
