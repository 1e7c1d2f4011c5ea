// Reads scene files as wholes.
#pragma once

#include <vyrOSG/Group.h>

#include <vyrSDK/Simulation.h>

#include <string>

namespace vyrOSG {

/// Whether there is nothing in a simulation that a scene file would replace.
bool isEmpty(const vyrSDK::Simulation& simulation);

/// Replaces what is in a simulation, settings and clock included, and draws it below a group with the looks in the
/// file. Nullable: root (nothing is drawn). False, one error line and no change on failure.
bool readScene(const std::string& path, vyrSDK::Simulation& simulation, vyrOSG::Group* root);

} // namespace vyrOSG
