// Runs Lua text the way the stand-alone interpreter does.
#pragma once

#include <string>
#include <vector>

struct lua_State;

namespace vyrHost {

/// Runs chunks in a Lua state; an error is written to the standard error stream with its traceback.
///
/// Results are the interpreter's status: 0 all well. The stack is left as it was.
class Interpreter {
public:
  /// @param state *borrows*
  explicit Interpreter(lua_State* state)
      : m_state(state) {}

  lua_State* getState() const { return m_state; }

  /// Sets the global `arg`: the script at 0, what follows from 1, what stands before it at negative indices.
  void setArguments(const std::vector<std::string>& arguments, std::size_t scriptIndex);

  /// Runs the environment variable LUA_INIT: a chunk, or a file named behind "@".
  int runInitialization();

  int runText(const std::string& text, const std::string& chunkName);
  int runLibrary(const std::string& name);
  /// Runs a file with the given arguments; "-" or "" is the standard input.
  int runFile(const std::string& file, const std::vector<std::string>& arguments);

  /// Calls the function below its arguments on the stack with a traceback for errors and an ear for the interrupt
  /// key. A failure leaves its text on the stack.
  static int callWithTraceback(lua_State* state, int argumentCount, int resultCount);

  /// Writes the error text on top of the stack, if the status tells of one, and removes it.
  int report(int status);

private:
  lua_State* m_state;
};

} // namespace vyrHost
