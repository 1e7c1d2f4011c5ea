/// A function of a script, held by an object of the toolkit that calls it later.
#pragma once

#include <vyrScript/ScriptState.h>

#include <functional>
#include <string>

namespace vyrScript {

/// Holds one Lua function and calls it under protection: an error is reported with its traceback and never passes on.
class ScriptFunction {
public:
  ScriptFunction() = default;

  /// Holds the function at a stack position; anything else there leaves the object empty.
  ScriptFunction(lua_State* L, int index);
  ~ScriptFunction();
  ScriptFunction(const ScriptFunction&) = delete;
  ScriptFunction& operator=(const ScriptFunction&) = delete;
  ScriptFunction(ScriptFunction&& other) noexcept;
  ScriptFunction& operator=(ScriptFunction&& other) noexcept;

  /// Whether there is a function to call: one was given and its Lua state is still open.
  explicit operator bool() const;

  /// Calls the function with what \p push puts on the stack; \p push returns how many values these are.
  /// \p take, when given, reads the one result at index -1.
  /// Failures: false when the function raised an error; the text and the traceback went to Notify as an error naming
  /// \p what ("postStep").
  bool call(const char* what, const std::function<int(lua_State*)>& push,
            const std::function<void(lua_State*)>& take = nullptr) const;

  /// Lets go of the function.
  void reset();

private:
  struct Call;
  static int callProtected(lua_State* L);

  vyr::ref_ptr<ScriptState> m_state;
  int m_reference = -2; // LUA_NOREF
};

} // namespace vyrScript
