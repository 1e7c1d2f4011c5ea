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

struct ScriptFunction::Call {
  int reference;
  const std::function<int(lua_State*)>& push;
  const std::function<void(lua_State*)>& take;
};

int ScriptFunction::callProtected(lua_State* L) {
  const Call& call = *static_cast<const Call*>(lua_touserdata(L, 1));
  lua_pushcfunction(L, &addTraceback);
  lua_rawgeti(L, LUA_REGISTRYINDEX, call.reference);
  const int arguments = call.push(L);
  if (lua_pcall(L, arguments, call.take ? 1 : 0, 2) != 0)
    return lua_error(L);
  if (call.take)
    call.take(L);
  return 0;
}

bool ScriptFunction::call(const char* what, const std::function<int(lua_State*)>& push,
                          const std::function<void(lua_State*)>& take) const {
  if (!*this) {
    return true;
  }
  lua_State* const L = m_state->getThread();
  const int top = lua_gettop(L);
  // Nothing runs on this stack that would catch an error: the arguments are made under protection as well.
  Call call = {m_reference, push, take};
  const bool ok = lua_cpcall(L, &callProtected, &call) == 0;
  if (!ok) {
    const char* const text = lua_tostring(L, -1);
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "error in " << what << ": " << (text ? text : "?");
  }
  lua_settop(L, top);
  return ok;
}

} // namespace vyrScript
