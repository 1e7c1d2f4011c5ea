/// Calls a held Lua function on the callback coroutine and reports its errors.
#include <vyrScript/ScriptFunction.h>

#include <vyr/Notify.h>

#include <lua.hpp>

#include <utility>

namespace vyrScript {

namespace {

// Turns an error value into its text followed by the calls that led there.
int addTraceback(lua_State* L) {
  if (!lua_isstring(L, 1)) {
    if (!luaL_callmeta(L, 1, "__tostring")) {
      lua_pushfstring(L, "(error value of type %s)", luaL_typename(L, 1));
    }
    lua_replace(L, 1);
  }
  lua_settop(L, 1);
  lua_getglobal(L, "debug");
  if (!lua_istable(L, -1)) {
    lua_settop(L, 1);
    return 1;
  }
  lua_getfield(L, -1, "traceback");
  if (!lua_isfunction(L, -1)) {
    lua_settop(L, 1);
    return 1;
  }
  lua_pushvalue(L, 1);
  lua_pushinteger(L, 2); // leave out this function itself
  lua_call(L, 2, 1);
  return 1;
}

} // namespace

ScriptFunction::ScriptFunction(lua_State* L, int index) {
  if (lua_isfunction(L, index)) {
    m_state = ScriptState::of(L);
    lua_pushvalue(L, index);
    m_reference = luaL_ref(L, LUA_REGISTRYINDEX);
  }
}

ScriptFunction::~ScriptFunction() {
  reset();
}

ScriptFunction::ScriptFunction(ScriptFunction&& other) noexcept {
  *this = std::move(other);
}

ScriptFunction& ScriptFunction::operator=(ScriptFunction&& other) noexcept {
  std::swap(m_state, other.m_state);
  std::swap(m_reference, other.m_reference);
  return *this;
}

ScriptFunction::operator bool() const {
  return m_reference != LUA_NOREF && m_state.get() != nullptr && m_state->getThread() != nullptr;
}

void ScriptFunction::reset() {
  if (*this) {
    luaL_unref(m_state->getThread(), LUA_REGISTRYINDEX, m_reference);
  }
  m_reference = LUA_NOREF;
  m_state = nullptr;
}

bool ScriptFunction::call(const char* what, const std::function<int(lua_State*)>& push,
                          const std::function<void(lua_State*)>& take) const {
  if (!*this) {
    return true;
  }
  lua_State* const L = m_state->getThread();
  const int top = lua_gettop(L);
  if (!lua_checkstack(L, LUA_MINSTACK)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << what << ": too many callbacks inside callbacks";
    return false;
  }
  lua_pushcfunction(L, &addTraceback);
  lua_rawgeti(L, LUA_REGISTRYINDEX, m_reference);
  const int arguments = push(L);
  const bool ok = lua_pcall(L, arguments, take ? 1 : 0, top + 1) == 0;
  if (!ok) {
    const char* const text = lua_tostring(L, -1);
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "error in " << what << ": " << (text ? text : "?");
  } else if (take) {
    take(L);
  }
  lua_settop(L, top);
  return ok;
}

} // namespace vyrScript
