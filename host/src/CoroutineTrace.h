// Where in a coroutine an error arose that was handed on by the code that resumed it.
#pragma once

#include <string>

struct lua_State;

namespace vyrHost {

/// The traceback of the coroutine in which an error with this text arose, for a message handler to call; "" when it
/// arose in none. The coroutine is looked for in the locals and upvalues of the functions that are running: there it
/// stands with whoever resumed it, be it by coroutine.wrap or by coroutine.resume and error.
std::string traceCoroutine(lua_State* state, const std::string& text);

} // namespace vyrHost
