// The script plugins that the program loads.
#pragma once

namespace vyrHost {

/// In load order; the last requires the two before it.
constexpr const char* kPlugins[] = {"vyr", "vyrModel", "vyrOSG"};

} // namespace vyrHost
