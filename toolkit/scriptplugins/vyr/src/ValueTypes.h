/// What the values of the "vyr" script plugin (vectors, quaternions, matrices) need beyond their declarations.
#pragma once

struct lua_State;

namespace vyrScript {

/// Completes the metatables of the value types, once all modules are open: a number may stand on the left of "*",
/// read-only values print, negate and compare like plain ones, and the two names of a double-precision vector
/// ("vyr::Vec3" and "vyr::Vec3d", one C++ type) are accepted for each other.
void completeValueTypes(lua_State* L);

/// Lets values of a registered type pass where another type of the same layout is asked for.
void acceptAs(lua_State* L, const char* type, const char* asked);

} // namespace vyrScript
