/// A collection of geometries that enter and leave a simulation together.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrPhysics/export.h>

#include <vector>

namespace vyrCollide {

/// Holds geometries. While the space is in a simulation, geometries without a body that are added to it enter the
/// simulation and those removed leave it; geometries of bodies follow their bodies.
class VYRPHYSICS_EXPORT Space : public vyr::Referenced {
public:
  Space();

  /// Adds a geometry (*retains*). False for null, an invalid one, or one that the space holds already.
  bool add(Geometry* geometry);

  /// False when the space does not hold the geometry.
  bool remove(Geometry* geometry);

  const std::vector<vyr::ref_ptr<Geometry>>& getGeometries() const { return m_geometries; }

  /// *returns inner*. Nullable: the simulation that the space was added to.
  vyrSDK::Simulation* getSimulation() const { return m_simulation; }

protected:
  ~Space() override;

private:
  friend class vyrSDK::Simulation;

  std::vector<vyr::ref_ptr<Geometry>> m_geometries;
  vyrSDK::Simulation* m_simulation = nullptr;
};

} // namespace vyrCollide
