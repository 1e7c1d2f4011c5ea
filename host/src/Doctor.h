// Tells what works on this machine and what does not.
#pragma once

namespace vyrHost {

/// Tries every graphics back end, loads every plugin, looks for the tools, and writes the findings to the standard
/// output.
/// @return the program's exit code: 3 without any graphics, 1 when a plugin of the program does not load, else 0.
int runDoctor();

/// The version line of --version.
void printVersion();

} // namespace vyrHost
