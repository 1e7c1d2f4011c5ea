// Base of what writes pressures into an atlas.
#pragma once

#include <vyrOSG/PressureAtlas.h>
#include <vyrOSG/export.h>

#include <vyr/Referenced.h>
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrSDK/Simulation.h>

namespace vyrOSG {

/// Renews the pressures of an atlas after each step of a simulation, which keeps the generator alive.
class VYROSG_EXPORT PressureGenerator : public vyr::Referenced {
public:
  /// *returns inner*. Nullable: as given to the constructor.
  PressureAtlas* getAtlas() const { return m_atlas.get(); }
  /// *returns inner*. Nullable: null when it has gone.
  vyrSDK::Simulation* getSimulation() const { return m_simulation.get(); }

  /// Replaces the pressures of the atlas by those of now.
  virtual void generate() = 0;

protected:
  /// Nullable: simulation (*observes*; without one generate() must be called by hand), atlas (*retains*; nothing is
  /// written without one).
  PressureGenerator(vyrSDK::Simulation* simulation, PressureAtlas* atlas);
  ~PressureGenerator() override;

private:
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
  vyr::ref_ptr<PressureAtlas> m_atlas;
};

} // namespace vyrOSG
