/// What Lua's ownership of an object means for each kind of object: counted ones are held, plain ones deleted.
#pragma once

#include <vyrBinding/Views.h>

#include <tolua++.h>

#include <type_traits>
#include <utility>

namespace vyrBinding {

// The two kinds of counted objects are told apart by the name of their count, so that bindings of either library
// compile without the other.
template <class T, class = void>
struct HasToolkitCount : std::false_type {};
template <class T>
struct HasToolkitCount<
    T, std::void_t<decltype(std::declval<const T&>().getReferenceCount(), std::declval<const T&>().unref())>>
    : std::true_type {};

template <class T, class = void>
struct HasSceneCount : std::false_type {};
template <class T>
struct HasSceneCount<T,
                     std::void_t<decltype(std::declval<const T&>().referenceCount(), std::declval<const T&>().unref())>>
    : std::true_type {};

/// Takes the reference that Lua's collector will drop; nothing for plain values.
template <class T>
void retain(const T* object) {
  if constexpr (HasToolkitCount<T>::value || HasSceneCount<T>::value)
    object->ref();
}

#ifdef VYROSG_EXPLICIT_COLLECTORS
constexpr bool kHasExplicitCollectors = true;
#else
constexpr bool kHasExplicitCollectors = false;
#endif

/// As `retain`, for classes that only the explicit mode gives a collector.
template <class T>
void retainIfExplicit([[maybe_unused]] const T* object) {
#ifdef VYROSG_EXPLICIT_COLLECTORS
  retain(object);
#endif
}

/// A collector's work: drops Lua's reference, or deletes a plain value. An object whose count is 0 is left alone:
/// nobody counts on Lua for it. Nullable: object.
template <class T>
void release(T* object) {
  if constexpr (HasSceneCount<T>::value) {
    if (object != nullptr && object->referenceCount() > 0)
      object->unref();
  } else if constexpr (HasToolkitCount<T>::value) {
    if (object != nullptr && object->getReferenceCount() > 0)
      object->unref();
  } else
    delete object;
}

inline void forget(lua_State* state, int position);

/// Makes the runtime forget the object of the userdata at `position`. Takes no memory.
inline void forgetOne(lua_State* state, int position) {
  void** box = static_cast<void**>(lua_touserdata(state, position));
  if (box == nullptr || *box == nullptr)
    return;
  // The ownership entry.
  lua_pushliteral(state, "tolua_gc");
  lua_rawget(state, LUA_REGISTRYINDEX);
  if (lua_istable(state, -1)) {
    lua_pushlightuserdata(state, *box);
    lua_pushnil(state);
    lua_rawset(state, -3);
  }
  lua_pop(state, 1);
  // The identity entry: of the type's own table of boxes, or of the common one.
  if (lua_getmetatable(state, position) != 0) {
    lua_pushliteral(state, "tolua_ubox");
    lua_rawget(state, -2);
    if (!lua_istable(state, -1)) {
      lua_pop(state, 1);
      lua_pushliteral(state, "tolua_ubox");
      lua_rawget(state, LUA_REGISTRYINDEX);
    }
    if (lua_istable(state, -1)) {
      lua_pushlightuserdata(state, *box);
      lua_pushnil(state);
      lua_rawset(state, -3);
    }
    lua_pop(state, 2);
  }
  *box = nullptr;
}

/// Makes the runtime forget what points into the object of the userdata at `position`.
inline void forgetViews(lua_State* state, int position) {
  luaL_checkstack(state, 10, "views of views");
  pushViews(state);
  lua_pushvalue(state, position);
  lua_rawget(state, -2);
  if (lua_istable(state, -1)) {
    lua_pushnil(state);
    while (lua_next(state, -2) != 0) {
      lua_pop(state, 1);
      forget(state, lua_gettop(state));
    }
  }
  lua_pop(state, 2);
}

/// Makes the runtime forget the object of the userdata at `position`, and all views into it: later calls see a null
/// self, and collection does nothing.
inline void forget(lua_State* state, int position) {
  forgetOne(state, position);
  forgetViews(state, position);
}

/// A script's `delete`: the object goes, and Lua forgets it first, so that collection cannot delete it again.
template <class T>
void destroy(lua_State* state, T* object) {
  forget(state, 1);
  delete object;
}

/// An object that is new and not yet in Lua's hands: it goes when Lua runs out of memory for its handle.
///
/// The interpreter has to raise errors as C++ exceptions for that, as the one that the program is linked to does; where
/// it jumps instead, the object stays.
template <class T>
class Pending {
public:
  /// isRetained: Lua's reference is taken already. Nullable: object.
  Pending(lua_State* state, T* object, bool isRetained)
      : m_state(state)
      , m_object(object)
      , m_isRetained(isRetained) {}

  Pending(const Pending&) = delete;
  Pending& operator=(const Pending&) = delete;

  ~Pending() {
    if (m_object == nullptr)
      return;
    const int top = lua_gettop(m_state);
    if (top > 0 && lua_type(m_state, top) == LUA_TUSERDATA &&
        *static_cast<void**>(lua_touserdata(m_state, top)) == m_object)
      forgetOne(m_state, top);
    discard();
  }

  /// Lua has it.
  void done() { m_object = nullptr; }

private:
  void discard() {
    if constexpr (HasSceneCount<T>::value || HasToolkitCount<T>::value) {
      if (!m_isRetained)
        m_object->ref();
      m_object->unref();
    } else
      delete m_object;
  }

  lua_State* m_state;
  T* m_object;
  bool m_isRetained;
};

/// Pushes a heap copy of `value` that Lua owns.
template <class T>
void pushCopy(lua_State* state, const T& value, const char* type) {
  auto* copy = new T(value);
  Pending<T> pending(state, copy, false);
  tolua_pushusertype(state, copy, type);
  tolua_register_gc(state, lua_gettop(state));
  pending.done();
}

} // namespace vyrBinding
