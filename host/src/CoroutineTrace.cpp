// Looks for dead coroutines on the stack.
#include "CoroutineTrace.h"

extern "C" {
#include <lauxlib.h>
#include <lua.h>
}

namespace vyrHost {

namespace {

constexpr int kLevels = 50;

/// Whether the value on top is a coroutine that ended with an error whose text is part of this one. Leaves the stack.
lua_State* deadCoroutine(lua_State* state, const std::string& text) {
  lua_State* coroutine = lua_tothread(state, -1);
  if (coroutine == nullptr || coroutine == state || lua_status(coroutine) <= LUA_YIELD || lua_gettop(coroutine) == 0 ||
      lua_type(coroutine, -1) != LUA_TSTRING || text.find(lua_tostring(coroutine, -1)) == std::string::npos)
    return nullptr;
  return coroutine;
}

/// Looks at what the function of a level holds; the function itself is on top. Leaves the stack.
lua_State* findCoroutine(lua_State* state, lua_Debug& level, const std::string& text) {
  lua_State* found = nullptr;
  for (int i = 1; found == nullptr && lua_getupvalue(state, -1, i) != nullptr; ++i) {
    found = deadCoroutine(state, text);
    lua_pop(state, 1);
  }
  for (int i = 1; found == nullptr && lua_getlocal(state, &level, i) != nullptr; ++i) {
    found = deadCoroutine(state, text);
    lua_pop(state, 1);
  }
  return found;
}

/// The coroutine's functions, the innermost first, as debug.traceback writes them.
std::string describe(lua_State* coroutine) {
  std::string lines = "stack traceback of the coroutine:";
  lua_Debug level;
  for (int i = 0; i < kLevels && lua_getstack(coroutine, i, &level) != 0; ++i) {
    lua_getinfo(coroutine, "Snl", &level);
    lines += std::string("\n\t") + level.short_src + ":";
    if (level.currentline > 0)
      lines += std::to_string(level.currentline) + ":";
    if (level.name != nullptr)
      lines += std::string(" in function '") + level.name + "'";
    else if (level.what[0] != 'C')
      lines += " in function <" + std::string(level.short_src) + ":" + std::to_string(level.linedefined) + ">";
  }
  return lines;
}

} // namespace

std::string traceCoroutine(lua_State* state, const std::string& text) {
  lua_Debug level;
  for (int i = 1; i < kLevels && lua_getstack(state, i, &level) != 0; ++i) {
    luaL_checkstack(state, 3, "looking for a coroutine");
    lua_getinfo(state, "f", &level);
    lua_State* coroutine = findCoroutine(state, level, text);
    lua_pop(state, 1);
    if (coroutine != nullptr)
      return describe(coroutine);
  }
  return "";
}

} // namespace vyrHost
