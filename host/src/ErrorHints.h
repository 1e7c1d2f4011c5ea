// Explains failed calls: the overloads that there are, closest first, and the known traps.
#pragma once

#include <vyrLua/Error.h>

#include <string>
#include <vector>

namespace vyrHost {

class ApiManifest;

/// Words the lines that follow the error of a failed call: up to six candidates, closest first, then a hint.
/// @param report the call; its arguments are read, nothing is changed.
std::string explainFailedCall(const ApiManifest& manifest, const vyrLua::ErrorReport& report);

/// Makes vyrLua's errors end with the explanation. The manifests, "manifests/NAME" beside each loaded plugin, are read
/// with the first error.
void installErrorHints();

} // namespace vyrHost
