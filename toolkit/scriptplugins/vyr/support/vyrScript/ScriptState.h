/// What all callbacks into one script share: a coroutine to run on, and the knowledge whether the script still lives.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/ref_ptr.h>

struct lua_State;

namespace vyrScript {

/// The side of a Lua state that outlives it, so that objects of the toolkit may hold functions of a script safely.
///
/// A callback runs on a coroutine of its own: the code that steps the simulation may itself stand in a coroutine whose
/// stack is in use, or that has been collected by the time of the next step.
class ScriptState : public vyr::Referenced {
public:
  /// Returns the one object of a Lua state and makes it on the first call. Ownership: *returns inner*.
  static ScriptState* of(lua_State* L);

  /// The coroutine that callbacks run on. Nullable: null once the Lua state has been closed.
  lua_State* getThread() const { return m_thread; }

protected:
  ~ScriptState() override = default;

private:
  ScriptState() = default;
  static int close(lua_State* L);

  lua_State* m_thread = nullptr;
};

} // namespace vyrScript
