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

/// Lets the userdata on top keep the one at `owner` alive, through its environment table.
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
  lua_pushvalue(state, owner);
  lua_rawset(state, -3);
  lua_pop(state, 1);
}

/// Pushes an object inside self (position 1): not owned, yet it keeps self's userdata alive while Lua holds the view.
template <class T>
void pushView(lua_State* state, T* object, const char* type) {
  pushPointer<T>(state, object, type);
  keepAlive(state, 1);
}

/// The owner of the array behind the proxy table at position 1, and the checked index at position 2.
template <class T>
T* arrayOwner(lua_State* state, int size, int* index) {
  lua_pushliteral(state, ".self");
  lua_rawget(state, 1);
  T* owner = static_cast<T*>(lua_touserdata(state, -1));
  lua_pop(state, 1);
  tolua_Error record;
  if (!tolua_isnumber(state, 2, 0, &record))
    raise(state, "#vinvalid type in array indexing.", &record);
  *index = convertNumber<int>(tolua_tonumber(state, 2, 0));
  // The array of the class table itself has no owner.
  if (*index < 0 || *index >= size || owner == nullptr)
    raise(state, "array indexing out of range.");
  return owner;
}

} // namespace vyrBinding
