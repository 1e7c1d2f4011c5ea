// Calls into Lua that also survive C++ exceptions.
#pragma once

#include <vyrLua/export.h>

extern "C" {
struct lua_State;
}

namespace vyrLua {

/// lua_pcall that turns a std::exception, thrown below it by a bound operation, into a Lua error of the text
/// "C++ exception: " + what(), so that message handlers see the stack at the place of the throw.
///
/// It relies on an interpreter built as C++ (Debian: liblua5.1-c++), through which exceptions may pass.
/// Arguments and result are those of lua_pcall.
VYRLUA_EXPORT int protectedCall(lua_State* state, int argumentCount, int resultCount, int handler);

/// Replaces the script's pcall, xpcall, coroutine.resume and coroutine.wrap by ones that do the same; the interpreter's
/// own would report an exception by a stale value of the stack. Out of a coroutine an exception comes without its text.
VYRLUA_EXPORT void openProtectedCalls(lua_State* state);

} // namespace vyrLua
