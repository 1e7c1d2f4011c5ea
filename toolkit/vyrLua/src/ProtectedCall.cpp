// Calls into Lua that also survive C++ exceptions.
#include <vyrLua/ProtectedCall.h>

#include <tolua++.h>

extern "C" {
#include <lualib.h>
}

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

/// What lua_status, a byte, makes of it.
constexpr int kForeignStatus = 255;

/// coroutine.resume, the interpreter's own as upvalue 1.
int resumeCoroutine(lua_State* state) {
  lua_State* coroutine = lua_tothread(state, 1);
  const bool wasAlive = coroutine != nullptr && lua_status(coroutine) != kForeignStatus;
  lua_pushvalue(state, lua_upvalueindex(1));
  lua_insert(state, 1);
  lua_call(state, lua_gettop(state) - 1, LUA_MULTRET);
  if (wasAlive && lua_status(coroutine) == kForeignStatus) {
    // The exception itself is gone: it ended at the coroutine's border, which leaves a stale value as the error.
    lua_settop(state, 1);
    lua_pushliteral(state, "C++ exception in a coroutine");
  }
  return lua_gettop(state);
}

/// What coroutine.wrap gives: resume as upvalue 1, the coroutine as upvalue 2.
int runWrapped(lua_State* state) {
  lua_pushvalue(state, lua_upvalueindex(1));
  lua_insert(state, 1);
  lua_pushvalue(state, lua_upvalueindex(2));
  lua_insert(state, 2);
  lua_call(state, lua_gettop(state) - 1, LUA_MULTRET);
  const bool ok = lua_toboolean(state, 1) != 0;
  lua_remove(state, 1);
  if (ok)
    return lua_gettop(state);
  if (lua_type(state, -1) == LUA_TSTRING) {
    luaL_where(state, 1);
    lua_insert(state, -2);
    lua_concat(state, 2);
  }
  return lua_error(state);
}

/// coroutine.wrap: coroutine.create as upvalue 1, coroutine.resume as upvalue 2.
int wrapCoroutine(lua_State* state) {
  luaL_argcheck(state, lua_isfunction(state, 1) && lua_iscfunction(state, 1) == 0, 1, "Lua function expected");
  lua_settop(state, 1);
  lua_pushvalue(state, lua_upvalueindex(2));
  lua_pushvalue(state, lua_upvalueindex(1));
  lua_pushvalue(state, 1);
  lua_call(state, 1, 1);
  lua_pushcclosure(state, &runWrapped, 2);
  return 1;
}

void openCoroutines(lua_State* state) {
  lua_getglobal(state, LUA_COLIBNAME);
  if (lua_istable(state, -1)) {
    lua_getfield(state, -1, "resume");
    lua_pushcclosure(state, &resumeCoroutine, 1);
    lua_setfield(state, -2, "resume");
    lua_getfield(state, -1, "create");
    lua_getfield(state, -2, "resume");
    lua_pushcclosure(state, &wrapCoroutine, 2);
    lua_setfield(state, -2, "wrap");
  }
  lua_pop(state, 1);
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
  openCoroutines(state);
}

} // namespace vyrLua
