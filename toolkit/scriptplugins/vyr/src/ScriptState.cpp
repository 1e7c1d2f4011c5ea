/// Keeps the callback coroutine in the registry and notices when the Lua state closes.
#include <vyrScript/ScriptState.h>

#include <lua.hpp>

#include <new>

namespace vyrScript {

namespace {

// Addresses that serve as registry keys which nothing else can use.
char g_stateKey = 0;
char g_threadKey = 0;

using Holder = vyr::ref_ptr<ScriptState>;

} // namespace

ScriptState* ScriptState::of(lua_State* L) {
  lua_pushlightuserdata(L, &g_stateKey);
  lua_rawget(L, LUA_REGISTRYINDEX);
  if (auto* const known = static_cast<Holder*>(lua_touserdata(L, -1))) {
    lua_pop(L, 1);
    return known->get();
  }
  lua_pop(L, 1);

  lua_pushlightuserdata(L, &g_stateKey);
  auto* const holder = new (lua_newuserdata(L, sizeof(Holder))) Holder(new ScriptState);
  lua_createtable(L, 0, 1);
  lua_pushcfunction(L, &ScriptState::close);
  lua_setfield(L, -2, "__gc");
  lua_setmetatable(L, -2);
  lua_rawset(L, LUA_REGISTRYINDEX);

  lua_pushlightuserdata(L, &g_threadKey);
  (*holder)->m_thread = lua_newthread(L);
  lua_rawset(L, LUA_REGISTRYINDEX);
  return holder->get();
}

int ScriptState::close(lua_State* L) {
  auto* const holder = static_cast<Holder*>(lua_touserdata(L, 1));
  (*holder)->m_thread = nullptr;
  holder->~Holder();
  return 0;
}

} // namespace vyrScript
