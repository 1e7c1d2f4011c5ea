/// Views into an object (a field, a returned reference) and elements of its arrays.
#pragma once

#include <vyrBinding/Numbers.h>
#include <vyrBinding/Stack.h>

namespace vyrBinding {

/// The key under which a view keeps its owner's userdata; its address is unlike any key of a script.
inline void* ownerKey() {
  static char key;
  return &key;
}

/// Pushes the registry's table of views: the userdata of an owner -> the set of the userdata that point into it.
/// Neither keeps what it lists; the owners' retirement, in whichever library it happens, finds the table by its name.
inline void pushViews(lua_State* state) {
  lua_pushliteral(state, "vyr.views");
  lua_rawget(state, LUA_REGISTRYINDEX);
  if (lua_istable(state, -1))
    return;
  lua_pop(state, 1);
  lua_newtable(state);
  lua_newtable(state);
  lua_pushliteral(state, "k");
  lua_setfield(state, -2, "__mode");
  lua_setmetatable(state, -2);
  lua_pushliteral(state, "vyr.views");
  lua_pushvalue(state, -2);
  lua_rawset(state, LUA_REGISTRYINDEX);
}

/// Enters the userdata on top as a view of the one at `owner`.
inline void listView(lua_State* state, int owner) {
  pushViews(state);
  lua_pushvalue(state, owner);
  lua_rawget(state, -2);
  if (lua_isnil(state, -1)) {
    lua_pop(state, 1);
    lua_newtable(state);
    lua_getmetatable(state, -2); // of weak keys
    lua_setmetatable(state, -2);
    lua_pushvalue(state, owner);
    lua_pushvalue(state, -2);
    lua_rawset(state, -4);
  }
  lua_pushvalue(state, -3);
  lua_pushboolean(state, 1);
  lua_rawset(state, -3);
  lua_pop(state, 2);
}

/// Lets the userdata on top keep the one at `owner` alive, through its environment table, and go with it.
///
/// The runtime uses that table for fields that scripts add to the object, and marks "none yet" with the registry; both
/// go together, because our key is a light userdata and theirs are what scripts write.
inline void keepAlive(lua_State* state, int owner) {
  if (lua_type(state, -1) != LUA_TUSERDATA || lua_type(state, owner) != LUA_TUSERDATA ||
      lua_rawequal(state, -1, owner) != 0)
    return;
  lua_getfenv(state, -1);
  if (!lua_istable(state, -1) || lua_rawequal(state, -1, LUA_REGISTRYINDEX) != 0) {
    lua_pop(state, 1);
    lua_newtable(state);
    lua_pushvalue(state, -1);
    lua_setfenv(state, -3);
  }
  lua_pushlightuserdata(state, ownerKey());
  lua_rawget(state, -2);
  const bool isKnown = lua_rawequal(state, -1, owner) != 0;
  lua_pop(state, 1);
  if (!isKnown) {
    lua_pushlightuserdata(state, ownerKey());
    lua_pushvalue(state, owner);
    lua_rawset(state, -3);
  }
  lua_pop(state, 1);
  if (!isKnown)
    listView(state, owner);
}

/// Pushes an object inside self (position 1): not owned, yet it keeps self's userdata alive while Lua holds the view.
template <class T>
void pushView(lua_State* state, T* object, const char* type) {
  pushPointer<T>(state, object, type);
  keepAlive(state, 1);
}

/// Whether Lua still has a handle on the object of a type at `address`.
inline bool isKnown(lua_State* state, void* address, const char* type) {
  const int top = lua_gettop(state);
  lua_pushstring(state, type);
  lua_rawget(state, LUA_REGISTRYINDEX);
  if (lua_istable(state, -1)) {
    lua_pushliteral(state, "tolua_ubox");
    lua_rawget(state, -2);
  }
  if (!lua_istable(state, -1)) {
    lua_pushliteral(state, "tolua_ubox");
    lua_rawget(state, LUA_REGISTRYINDEX);
  }
  bool found = false;
  if (lua_istable(state, -1)) {
    lua_pushlightuserdata(state, address);
    lua_rawget(state, -2);
    tolua_Error record;
    found = lua_isuserdata(state, -1) && tolua_isusertype(state, lua_gettop(state), type, 0, &record) != 0;
  }
  lua_settop(state, top);
  return found;
}

/// The owner of the array behind the proxy table at position 1, and the checked index at position 2.
///
/// The runtime's proxy has the owner's address and does not keep it alive.
template <class T>
T* arrayOwner(lua_State* state, const char* type, int size, int* index) {
  lua_pushliteral(state, ".self");
  lua_rawget(state, 1);
  void* owner = lua_touserdata(state, -1);
  lua_pop(state, 1);
  tolua_Error record;
  if (!tolua_isnumber(state, 2, 0, &record))
    raise(state, "#vinvalid type in array indexing.", &record);
  *index = convertNumber<int>(tolua_tonumber(state, 2, 0));
  // The array of the class table itself has no owner.
  if (*index < 0 || *index >= size || owner == nullptr || !isKnown(state, owner, type))
    raise(state, "array indexing out of range.");
  return static_cast<T*>(owner);
}

} // namespace vyrBinding
