// Turns the use of a destroyed object into a Lua error.
#pragma once

#include <vyrLua/export.h>

#include <vyr/Referenced.h>

#include <mutex>
#include <thread>
#include <vector>

struct lua_State;

namespace vyrLua {

/// Retires the userdata of objects that are destroyed while Lua still points at them.
///
/// A retired userdata points nowhere, is no longer collected as an object, passes no type test, and raises
/// "attempt to use a deleted TYPE" whenever a script uses it; so do the bindings' views into the object. As the delete
/// handler of vyr::Referenced it sees the toolkit's objects; whoever knows of other kinds of objects calls `retire` for
/// them.
///
/// An object that another thread lets go of is kept until the Lua thread destroys the next one, or until `flush`.
class VYRLUA_EXPORT ObjectRetirer : public vyr::DeleteHandler {
public:
  /// Installs itself as the delete handler, on the thread of the Lua state.
  /// @param state *borrows*, until `stop`.
  explicit ObjectRetirer(lua_State* state);
  ~ObjectRetirer() override;

  ObjectRetirer(const ObjectRetirer&) = delete;
  ObjectRetirer& operator=(const ObjectRetirer&) = delete;

  /// Looks up the types that have been registered since; to be called after each registration.
  void refresh();

  /// Retires every userdata that points at the address. Call it on the Lua thread, before the object goes.
  void retire(const void* address);

  /// Whether the calling thread is the one of the Lua state.
  bool isLuaThread() const { return std::this_thread::get_id() == m_thread; }

  /// Destroys what other threads have let go of; on the Lua thread.
  void flush();

  /// To be called once the Lua state has closed: the former delete handler comes back, and nothing is retired any more.
  void stop();

  void requestDelete(const vyr::Referenced* object) override;

private:
  void destroy(const vyr::Referenced* object);
  static void retireIn(lua_State* state, int boxes, const void* address);
  static int retireProtected(lua_State* state);

  lua_State* m_state;
  vyr::DeleteHandler* m_previous;
  std::thread::id m_thread;
  int m_boxesCount;
  std::mutex m_mutex;
  std::vector<const vyr::Referenced*> m_waiting;
};

} // namespace vyrLua
