/// Reading arguments from the Lua stack, pushing results onto it, and raising errors.
#pragma once

#include <tolua++.h>
#include <vyrLua/Error.h>

#include <type_traits>

namespace vyrBinding {

/// Raises a Lua error; the result only lets wrappers return it.
/// The caller holds no local with a destructor: raising may jump over destructors.
inline int raise(lua_State* state, const char* text, tolua_Error* record = nullptr) {
  vyrLua::error(state, text, record);
  return 0;
}

/// Declares a type name to the runtime.
///
/// The runtime keeps a table of ancestors for each type, yet makes none for the const form of a type that never becomes
/// a class; pushing such an object a second time, while Lua holds it, then lets the runtime write over its own tables.
inline void declareType(lua_State* state, const char* type) {
  tolua_usertype(state, type);
  lua_pushliteral(state, "tolua_super");
  lua_rawget(state, LUA_REGISTRYINDEX);
  lua_pushfstring(state, "const %s", type);
  lua_rawget(state, LUA_REGISTRYINDEX); // the metatable
  if (lua_istable(state, -1) && lua_istable(state, -2)) {
    lua_pushvalue(state, -1);
    lua_rawget(state, -3);
    if (lua_isnil(state, -1)) {
      lua_pushvalue(state, -2);
      lua_newtable(state);
      lua_rawset(state, -5);
    }
    lua_pop(state, 1);
  }
  lua_pop(state, 2);
}

/// The string at `position`, or `fallback` where it is absent; never null, a null string reads as "".
inline const char* toText(lua_State* state, int position, const char* fallback) {
  const char* text = tolua_tostring(state, position, fallback);
  return text != nullptr ? text : "";
}

/// Tests for an object that a C++ reference can be bound to: not nil, of the type, and not deleted.
inline bool isReference(lua_State* state, int position, const char* type, int isOptional, tolua_Error* record) {
  if (tolua_isvaluenil(state, position, record) || !tolua_isusertype(state, position, type, isOptional, record))
    return false;
  if (tolua_tousertype(state, position, nullptr) != nullptr)
    return true;
  record->index = position;
  record->array = 0;
  record->type = type;
  return false;
}

/// The bare pointer of a pointer or of a smart pointer.
template <class T>
T* raw(T* pointer) {
  return pointer;
}
template <class Pointer>
auto raw(const Pointer& pointer) -> decltype(pointer.get()) {
  return pointer.get();
}

/// Pushes an object that Lua only points at, under a type name; nil for null. `T` may be const.
template <class T>
void pushPointer(lua_State* state, T* object, const char* type) {
  // The runtime keeps plain void*; the type name carries the const.
  tolua_pushusertype(state, const_cast<void*>(static_cast<const void*>(object)), type);
}

} // namespace vyrBinding
