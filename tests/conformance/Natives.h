/// What the tables' engine asks of C++: the border, the registrations, reference counts and the memory of objects.
#pragma once

#include <vyrLua/Error.h>

struct lua_State;

namespace conformance {

/// Sets the global table `native` with its functions. The recorder watches calls out of the library that
/// `moduleFunction` belongs to.
void openNatives(lua_State* state, int (*moduleFunction)(lua_State*));

/// Ends the recording that openNatives began.
void closeNatives();

/// The line that a crash report shows: what the engine did last.
const char* lastPlace();

} // namespace conformance
