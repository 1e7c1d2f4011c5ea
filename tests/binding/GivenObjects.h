/// Hands objects to a script that no binding makes, as other parts of a host would.
#pragma once

#include "LuaState.h"

#include <string>

namespace bindingtest {

/// Sets a global; *borrows* the object.
inline void give(const LuaState& lua, const char* name, void* object, const char* type) {
  tolua_pushusertype(lua.get(), object, type);
  lua_setglobal(lua.get(), name);
}

/// Sets a global to a value of the type that has lost its object, as after `delete`.
inline void giveNull(const LuaState& lua, const char* name, const char* type) {
  static int object = 0;
  tolua_pushusertype(lua.get(), &object, type);
  *static_cast<void**>(lua_touserdata(lua.get(), -1)) = nullptr;
  lua_setglobal(lua.get(), name);
}

/// The object of a global. Nullable: it is nil or has lost its object. *returns inner*
template <class T>
T* taken(const LuaState& lua, const char* name) {
  lua_getglobal(lua.get(), name);
  T* object = static_cast<T*>(tolua_tousertype(lua.get(), -1, nullptr));
  lua_pop(lua.get(), 1);
  return object;
}

/// How many values of the type in `expression` Lua will collect with their objects: 0 for a value that it does not own.
inline std::string ownedCount(LuaState& lua, const std::string& expression) {
  lua.collect();
  return lua.run("local kept, n = (" + expression +
                 "), 0 for k, v in pairs(debug.getregistry().tolua_gc) do"
                 " if v == getmetatable(kept) then n = n + 1 end end return n");
}

/// The text raised for arguments that no overload takes.
inline std::string mismatch(const std::string& name) {
  return "#ferror in function '" + name + "'.";
}

/// The text raised for a self that has lost its object.
inline std::string invalidSelf(const std::string& name) {
  return "invalid 'self' in function '" + name + "'";
}

} // namespace bindingtest
