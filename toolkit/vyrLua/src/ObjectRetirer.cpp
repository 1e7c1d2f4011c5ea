// Turns the use of a destroyed object into a Lua error.
#include <vyrLua/ObjectRetirer.h>

#include <vyrLua/Error.h>

#include <tolua++.h>

#include <cstring>

namespace vyrLua {

namespace {

// Keys of the registry.
constexpr const char* kThread = "vyr.retirer";        // the stack that the retirer works on
constexpr const char* kBoxes = "vyr.retirer.boxes";   // the runtime's tables address -> userdata, 1..n
constexpr const char* kDeleted = "vyr.retirer.types"; // type name -> metatable of its retired userdata
constexpr const char* kFunction = "vyr.retirer.function";
// The bindings' table: userdata of an owner -> set of the userdata that point into it.
constexpr const char* kViews = "vyr.views";
constexpr const char* kDeletedPrefix = "deleted ";
/// The runtime's own key for such a table.
constexpr const char* kUbox = "tolua_ubox";

int raiseDeleted(lua_State* state) {
  error(state, lua_tostring(state, lua_upvalueindex(1)), nullptr);
}

int nameDeleted(lua_State* state) {
  lua_pushvalue(state, lua_upvalueindex(1));
  return 1;
}

/// Pushes the metatable of retired userdata of a type, whose name is on top and stays there.
void pushDeletedMetatable(lua_State* state) {
  lua_getfield(state, LUA_REGISTRYINDEX, kDeleted);
  lua_pushvalue(state, -2);
  lua_rawget(state, -2);
  if (lua_isnil(state, -1)) {
    lua_pop(state, 1);
    lua_newtable(state);
    const char* type = lua_tostring(state, -3);
    for (const char* event : {"__index", "__newindex", "__call", "__add", "__sub", "__mul", "__div", "__mod", "__pow",
                              "__unm", "__len", "__concat", "__lt", "__le"}) {
      lua_pushfstring(state, "attempt to use a deleted %s", type);
      lua_pushcclosure(state, &raiseDeleted, 1);
      lua_setfield(state, -2, event);
    }
    lua_pushfstring(state, "%s%s", kDeletedPrefix, type);
    lua_pushcclosure(state, &nameDeleted, 1);
    lua_setfield(state, -2, "__tostring");
    // The runtime looks a userdata's type name up under its metatable.
    lua_pushvalue(state, -1);
    lua_pushfstring(state, "%s%s", kDeletedPrefix, type);
    lua_rawset(state, LUA_REGISTRYINDEX);
    lua_pushvalue(state, -3);
    lua_pushvalue(state, -2);
    lua_rawset(state, -4);
  }
  lua_remove(state, -2);
}

/// Pushes the type name of the userdata on top: what the runtime keeps under its metatable.
void pushTypeName(lua_State* state) {
  if (lua_getmetatable(state, -1) == 0) {
    lua_pushliteral(state, "object");
    return;
  }
  lua_rawget(state, LUA_REGISTRYINDEX);
  if (lua_type(state, -1) != LUA_TSTRING) {
    lua_pop(state, 1);
    lua_pushliteral(state, "object");
  }
}

void removeEntry(lua_State* state, int table, const void* address) {
  lua_pushlightuserdata(state, const_cast<void*>(address));
  lua_pushnil(state);
  lua_rawset(state, table < 0 ? table - 2 : table);
}

/// Pushes the table in which the runtime lists the userdata on top, or another value.
void pushBoxes(lua_State* state) {
  if (lua_getmetatable(state, -1) != 0) {
    lua_pushstring(state, kUbox);
    lua_rawget(state, -2);
    lua_remove(state, -2);
    if (lua_istable(state, -1))
      return;
    lua_pop(state, 1);
  }
  lua_getfield(state, LUA_REGISTRYINDEX, kUbox);
}

/// Calls a function for each userdata that points into the object of the one on top.
template <class Function>
void forEachView(lua_State* state, Function function) {
  if (lua_checkstack(state, LUA_MINSTACK) == 0)
    return;
  lua_getfield(state, LUA_REGISTRYINDEX, kViews);
  if (lua_istable(state, -1)) {
    lua_pushvalue(state, -2);
    lua_rawget(state, -2);
    if (lua_istable(state, -1)) {
      lua_pushnil(state);
      while (lua_next(state, -2) != 0) {
        lua_pop(state, 1);
        function(state);
      }
    }
    lua_pop(state, 1);
  }
  lua_pop(state, 1);
}

/// Lets the userdata on top, and those that point into its object, point nowhere. Takes no memory.
void detach(lua_State* state) {
  void** box = static_cast<void**>(lua_touserdata(state, -1));
  const void* address = *box;
  if (address == nullptr)
    return;
  *box = nullptr;
  pushBoxes(state);
  if (lua_istable(state, -1))
    removeEntry(state, -1, address);
  // Collection would release the object a second time.
  lua_getfield(state, LUA_REGISTRYINDEX, "tolua_gc");
  if (lua_istable(state, -1))
    removeEntry(state, -1, address);
  lua_pop(state, 2);
  forEachView(state, &detach);
}

/// Gives the userdata on top, and those that point into its object, the metatable that explains itself.
void markDeleted(lua_State* state) {
  forEachView(state, &markDeleted);
  pushTypeName(state);
  // A view of two handles of one object may be marked already.
  if (std::strncmp(lua_tostring(state, -1), kDeletedPrefix, std::strlen(kDeletedPrefix)) != 0) {
    pushDeletedMetatable(state);
    lua_setmetatable(state, -3);
  }
  lua_pop(state, 1);
}

} // namespace

ObjectRetirer::ObjectRetirer(lua_State* state)
    : m_state(nullptr)
    , m_previous(vyr::Referenced::getDeleteHandler())
    , m_thread(std::this_thread::get_id())
    , m_boxesCount(0) {
  // A stack of its own: objects die in the middle of other people's work on theirs.
  m_state = lua_newthread(state);
  lua_setfield(state, LUA_REGISTRYINDEX, kThread);
  lua_newtable(m_state);
  lua_setfield(m_state, LUA_REGISTRYINDEX, kDeleted);
  lua_pushcfunction(m_state, &retireProtected);
  lua_setfield(m_state, LUA_REGISTRYINDEX, kFunction);
  refresh();
  vyr::Referenced::setDeleteHandler(this);
}

ObjectRetirer::~ObjectRetirer() {
  stop();
}

void ObjectRetirer::stop() {
  m_state = nullptr;
  if (vyr::Referenced::getDeleteHandler() == this)
    vyr::Referenced::setDeleteHandler(m_previous);
  flush();
}

void ObjectRetirer::refresh() {
  lua_newtable(m_state);
  m_boxesCount = 0;
  lua_newtable(m_state); // the tables already listed
  lua_pushnil(m_state);
  while (lua_next(m_state, LUA_REGISTRYINDEX) != 0) {
    // Metatables have such a table in a field; the registry has one for types without their own.
    const bool isCommon = lua_type(m_state, -2) == LUA_TSTRING && std::strcmp(lua_tostring(m_state, -2), kUbox) == 0;
    if (!isCommon && lua_istable(m_state, -1)) {
      lua_pushstring(m_state, kUbox);
      lua_rawget(m_state, -2);
      lua_replace(m_state, -2);
    }
    if (lua_istable(m_state, -1)) {
      lua_pushvalue(m_state, -1);
      lua_rawget(m_state, -4);
      const bool isListed = lua_toboolean(m_state, -1) != 0;
      lua_pop(m_state, 1);
      if (!isListed) {
        lua_pushvalue(m_state, -1);
        lua_pushboolean(m_state, 1);
        lua_rawset(m_state, -5);
        lua_pushvalue(m_state, -1);
        lua_rawseti(m_state, -5, ++m_boxesCount);
      }
    }
    lua_pop(m_state, 1);
  }
  lua_pop(m_state, 1);
  lua_setfield(m_state, LUA_REGISTRYINDEX, kBoxes);
}

void ObjectRetirer::retireIn(lua_State* state, int boxes, const void* address) {
  lua_pushlightuserdata(state, const_cast<void*>(address));
  lua_rawget(state, boxes);
  if (lua_type(state, -1) != LUA_TUSERDATA)
    return;
  detach(state);
  removeEntry(state, boxes, address);
  markDeleted(state);
}

int ObjectRetirer::retireProtected(lua_State* state) {
  const auto* retirer = static_cast<const ObjectRetirer*>(lua_touserdata(state, 1));
  const void* address = lua_touserdata(state, 2);
  lua_getfield(state, LUA_REGISTRYINDEX, kBoxes);
  for (int index = 1; index <= retirer->m_boxesCount; ++index) {
    lua_rawgeti(state, 3, index);
    retireIn(state, 4, address);
    lua_settop(state, 3);
  }
  return 0;
}

void ObjectRetirer::retire(const void* address) {
  if (m_state == nullptr)
    return;
  // Objects die inside destructors, which no error may leave: when memory runs out, a userdata that points nowhere has
  // to do without the metatable that explains itself. Nothing before that metatable takes memory.
  const int top = lua_gettop(m_state);
  lua_getfield(m_state, LUA_REGISTRYINDEX, kFunction);
  lua_pushlightuserdata(m_state, this);
  lua_pushlightuserdata(m_state, const_cast<void*>(address));
  lua_pcall(m_state, 2, 0, 0);
  lua_settop(m_state, top);
}

void ObjectRetirer::destroy(const vyr::Referenced* object) {
  // Lua knows an object by the address of the class that it was bound as: the count's, or the whole object's.
  const void* whole = dynamic_cast<const void*>(object);
  retire(object);
  if (whole != object)
    retire(whole);
  if (m_previous != nullptr)
    m_previous->requestDelete(object);
  else
    vyr::Referenced::destroy(object);
}

void ObjectRetirer::flush() {
  std::vector<const vyr::Referenced*> waiting;
  {
    std::lock_guard<std::mutex> guard(m_mutex);
    waiting.swap(m_waiting);
  }
  for (const vyr::Referenced* object : waiting)
    destroy(object);
}

void ObjectRetirer::requestDelete(const vyr::Referenced* object) {
  if (!isLuaThread()) {
    std::lock_guard<std::mutex> guard(m_mutex);
    m_waiting.push_back(object);
    return;
  }
  flush();
  destroy(object);
}

} // namespace vyrLua
