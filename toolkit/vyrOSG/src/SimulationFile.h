// Saves the state of a simulation as JSON and brings it back.
#pragma once

#include <vyrSDK/Simulation.h>

#include <string>

namespace vyrOSG {

class Group;

/// Files with bodies, shapes, poses and velocities; docs/state-files.md describes them.
class SimulationFile {
public:
  /// False and one error line on failure.
  static bool save(const vyrSDK::Simulation& simulation, const std::string& file);

  /// Gives the bodies of @p simulation the saved state, matched by name and order; an empty simulation is filled with
  /// the saved bodies, drawn under @p visuals (Nullable: not drawn). False, one error line, and nothing changed on
  /// failure.
  static bool restore(vyrSDK::Simulation& simulation, const std::string& file, Group* visuals);
};

} // namespace vyrOSG
