/// A collection of geometries that enter and leave a simulation together.
#include <vyrCollide/Space.h>

#include <vyrSDK/Simulation.h>

#include "Find.h"

namespace vyrCollide {

Space::Space() = default;

Space::~Space() = default;

bool Space::add(Geometry* geometry) {
  vyr::ref_ptr<Geometry> holder = geometry;
  if (geometry == nullptr || !geometry->isValid() || vyrPhysics::contains(m_geometries, geometry)) {
    return false;
  }
  m_geometries.push_back(holder);
  if (m_simulation != nullptr && geometry->getSimulation() == nullptr) {
    m_simulation->add(geometry);
  }
  return true;
}

bool Space::remove(Geometry* geometry) {
  vyr::ref_ptr<Geometry> holder = geometry;
  if (!vyrPhysics::erase(m_geometries, geometry)) {
    return false;
  }
  if (m_simulation != nullptr && geometry->getRigidBody() == nullptr) {
    m_simulation->remove(geometry);
  }
  return true;
}

} // namespace vyrCollide
