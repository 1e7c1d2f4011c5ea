/// A fresh Lua state for a test, with what the tests ask of it.
#pragma once

#include <lua.hpp>
#include <tolua++.h>
#include <vyrLua/Error.h>

#include <string>

namespace bindingtest {

/// What the last binding error was, as the wrapper raised it.
struct RaisedError {
  std::string text;
  bool hasRecord = false;
  int index = 0;
  std::string type;
};

inline RaisedError& lastRaised() {
  static RaisedError error;
  return error;
}

inline std::string rememberRaised(const vyrLua::ErrorReport& report) {
  RaisedError& error = lastRaised();
  error.text = report.text;
  error.hasRecord = report.record != nullptr;
  error.index = report.record != nullptr ? report.record->index : 0;
  error.type = report.record != nullptr && report.record->type != nullptr ? report.record->type : "";
  return "";
}

/// Owns a state with the standard libraries.
class LuaState {
public:
  LuaState()
      : m_state(luaL_newstate()) {
    luaL_openlibs(m_state);
    vyrLua::setErrorHintProvider(&rememberRaised);
    lastRaised() = RaisedError();
  }
  ~LuaState() {
    close();
    vyrLua::setErrorHintProvider(nullptr);
  }
  LuaState(const LuaState&) = delete;
  LuaState& operator=(const LuaState&) = delete;

  lua_State* get() const { return m_state; }

  void close() {
    if (m_state != nullptr) {
      lua_close(m_state);
      m_state = nullptr;
    }
  }

  /// Runs "return <expression>" and gives its values as text, separated by blanks; "error: ..." when it fails.
  std::string eval(const std::string& expression) { return run("return " + expression); }

  /// Runs a chunk and gives what it returns as text; "error: ..." when it fails.
  std::string run(const std::string& chunk) {
    const int top = lua_gettop(m_state);
    std::string text;
    if (luaL_loadbuffer(m_state, chunk.data(), chunk.size(), "=test") != 0 ||
        lua_pcall(m_state, 0, LUA_MULTRET, 0) != 0) {
      text = std::string("error: ") + lua_tostring(m_state, -1);
    } else {
      for (int i = top + 1; i <= lua_gettop(m_state); ++i) {
        text += (i > top + 1 ? " " : "") + describe(i);
      }
    }
    lua_settop(m_state, top);
    return text;
  }

  /// The text that a wrapper raised while the chunk ran; "none" if it ran through.
  std::string raised(const std::string& chunk) {
    lastRaised() = RaisedError();
    const std::string result = run(chunk);
    if (result.compare(0, 7, "error: ") != 0) {
      return "none";
    }
    return lastRaised().text.empty() ? result : lastRaised().text;
  }

  /// Collects until nothing more goes.
  void collect() {
    lua_gc(m_state, LUA_GCCOLLECT, 0);
    lua_gc(m_state, LUA_GCCOLLECT, 0);
  }

private:
  std::string describe(int index) {
    switch (lua_type(m_state, index)) {
    case LUA_TNIL:
      return "nil";
    case LUA_TBOOLEAN:
      return lua_toboolean(m_state, index) != 0 ? "true" : "false";
    case LUA_TNUMBER:
    case LUA_TSTRING: {
      lua_pushvalue(m_state, index);
      const std::string text = lua_tostring(m_state, -1);
      lua_pop(m_state, 1);
      return text;
    }
    default: {
      // The runtime's own name of the type; it leaves the name on the stack.
      const std::string text = tolua_typename(m_state, index);
      lua_pop(m_state, 1);
      return text;
    }
    }
  }

  lua_State* m_state;
};

} // namespace bindingtest
