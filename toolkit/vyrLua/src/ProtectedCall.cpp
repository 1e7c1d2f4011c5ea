// Calls into Lua that also survive C++ exceptions.
#include <vyrLua/ProtectedCall.h>

#include <tolua++.h>

#include <exception>

namespace vyrLua {

namespace {

/// What the interpreter, built as C++, returns for an exception that is not its own.
constexpr int kForeignException = -1;

void raiseException(lua_State* state, const std::exception& exception) {
  // The interpreter still stands where the exception was thrown: the error is raised from there, and the protected call
  // above puts everything back, as for any error.
  luaL_checkstack(state, LUA_MINSTACK, "C++ exception");
  lua_pushfstring(state, "C++ exception: %s", exception.what());
}

/// Calls the function at 1 with the values above it, and returns all results.
int callTrampoline(lua_State* state) {
  try {
    lua_call(state, lua_gettop(state) - 1, LUA_MULTRET);
    return lua_gettop(state);
  } catch (const std::exception& exception) {
    raiseException(state, exception);
  }
  return lua_error(state);
}

int protectedCallOfScript(lua_State* state) {
  luaL_checkany(state, 1);
  const int status = protectedCall(state, lua_gettop(state) - 1, LUA_MULTRET, 0);
  lua_pushboolean(state, status == 0 ? 1 : 0);
  lua_insert(state, 1);
  return lua_gettop(state);
}

int protectedCallWithHandler(lua_State* state) {
  luaL_checkany(state, 2);
  lua_settop(state, 2);
  lua_insert(state, 1);
  const int status = protectedCall(state, 0, LUA_MULTRET, 1);
  lua_pushboolean(state, status == 0 ? 1 : 0);
  lua_replace(state, 1);
  return lua_gettop(state);
}

} // namespace

int protectedCall(lua_State* state, int argumentCount, int resultCount, int handler) {
  const int function = lua_gettop(state) - argumentCount;
  lua_pushcfunction(state, &callTrampoline);
  lua_insert(state, function);
  const int status = lua_pcall(state, argumentCount + 1, resultCount, handler);
  if (status == kForeignException) {
    lua_pop(state, 1);
    lua_pushliteral(state, "C++ exception of an unknown type");
    return LUA_ERRRUN;
  }
  return status;
}

void openProtectedCalls(lua_State* state) {
  lua_pushcfunction(state, &protectedCallOfScript);
  lua_setglobal(state, "pcall");
  lua_pushcfunction(state, &protectedCallWithHandler);
  lua_setglobal(state, "xpcall");
}

} // namespace vyrLua
