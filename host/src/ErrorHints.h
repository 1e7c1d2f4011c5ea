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

/// Words a line for an error of the interpreter about a nil function or table that may be a misspelt name of the
/// interface;
/// "" where none is near.
std::string explainMissingName(const ApiManifest& manifest, const std::string& message);

/// The interface of the plugins that are loaded, read once: "manifests/NAME" beside each plugin. *Returns inner*
const ApiManifest& getLoadedManifest();

/// Makes vyrLua's errors end with the explanation of the call, out of the loaded plugins' manifests.
void installErrorHints();

} // namespace vyrHost
