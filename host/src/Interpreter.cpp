// Runs Lua text the way the stand-alone interpreter does.
#include "Interpreter.h"

#include "ApiManifest.h"
#include "CoroutineTrace.h"
#include "ErrorHints.h"

#include <vyrLua/ProtectedCall.h>

extern "C" {
#include <lauxlib.h>
#include <lua.h>
}

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace vyrHost {

namespace {

lua_State* s_interruptedState = nullptr;

void stopAtHook(lua_State* state, lua_Debug*) {
  lua_sethook(state, nullptr, 0, 0);
  luaL_error(state, "interrupted!");
}

void interrupt(int signalNumber) {
  // A second interrupt ends the program: the first one waits for the next instruction of the script.
  std::signal(signalNumber, SIG_DFL);
  lua_sethook(s_interruptedState, &stopAtHook, LUA_MASKCALL | LUA_MASKRET | LUA_MASKCOUNT, 1);
}

int addTraceback(lua_State* state) {
  if (!lua_isstring(state, 1)) {
    if (luaL_callmeta(state, 1, "__tostring") == 0 || !lua_isstring(state, -1)) {
      lua_settop(state, 1);
      if (lua_isnil(state, 1))
        lua_pushliteral(state, "(error object is nil)");
      else
        lua_pushfstring(state, "(error object is a %s value)", luaL_typename(state, 1));
    }
    lua_replace(state, 1);
    lua_settop(state, 1);
  }
  const std::string coroutine = traceCoroutine(state, lua_tostring(state, 1));
  // The hint stands before the traceback, beside what it explains.
  const std::string hint = explainMissingName(getLoadedManifest(), lua_tostring(state, 1));
  if (!hint.empty()) {
    lua_pushfstring(state, "%s\n%s", lua_tostring(state, 1), hint.c_str());
    lua_replace(state, 1);
  }
  if (!coroutine.empty()) {
    lua_pushfstring(state, "%s\n%s", lua_tostring(state, 1), coroutine.c_str());
    lua_replace(state, 1);
  }
  lua_getglobal(state, "debug");
  if (lua_istable(state, -1)) {
    lua_getfield(state, -1, "traceback");
    if (lua_isfunction(state, -1)) {
      lua_pushvalue(state, 1);
      lua_pushinteger(state, 2); // This handler itself is left out.
      lua_call(state, 2, 1);
    }
  }
  return 1;
}

} // namespace

int Interpreter::callWithTraceback(lua_State* state, int argumentCount, int resultCount) {
  const int handler = lua_gettop(state) - argumentCount;
  lua_pushcfunction(state, &addTraceback);
  lua_insert(state, handler);
  lua_State* const outer = s_interruptedState;
  s_interruptedState = state;
  const auto previous = std::signal(SIGINT, &interrupt);
  const int status = vyrLua::protectedCall(state, argumentCount, resultCount, handler);
  std::signal(SIGINT, previous);
  s_interruptedState = outer;
  lua_remove(state, handler);
  if (status != 0)
    lua_gc(state, LUA_GCCOLLECT, 0);
  return status;
}

int Interpreter::report(int status) {
  if (status != 0) {
    const char* text = lua_tostring(m_state, -1);
    std::fflush(stdout);
    std::fprintf(stderr, "vyr: %s\n", text != nullptr ? text : "(error object is not a string)");
    lua_pop(m_state, 1);
  }
  return status;
}

void Interpreter::setArguments(const std::vector<std::string>& arguments, std::size_t scriptIndex) {
  // Without a script the program itself is number 0, so that a line of -e can still hand `arg` on.
  const int zero = scriptIndex < arguments.size() ? static_cast<int>(scriptIndex) : 0;
  lua_newtable(m_state);
  for (int index = 0; index < static_cast<int>(arguments.size()); ++index) {
    lua_pushstring(m_state, arguments[static_cast<std::size_t>(index)].c_str());
    lua_rawseti(m_state, -2, index - zero);
  }
  lua_setglobal(m_state, "arg");
}

int Interpreter::runInitialization() {
  const char* text = std::getenv("LUA_INIT");
  if (text == nullptr)
    return 0;
  if (text[0] == '@')
    return runFile(text + 1, {});
  return runText(text, "=LUA_INIT");
}

int Interpreter::runText(const std::string& text, const std::string& chunkName) {
  int status = luaL_loadbuffer(m_state, text.data(), text.size(), chunkName.c_str());
  if (status == 0)
    status = callWithTraceback(m_state, 0, 0);
  return report(status);
}

int Interpreter::runLibrary(const std::string& name) {
  lua_getglobal(m_state, "require");
  lua_pushstring(m_state, name.c_str());
  return report(callWithTraceback(m_state, 1, 0));
}

int Interpreter::runFile(const std::string& file, const std::vector<std::string>& arguments) {
  const bool fromInput = file.empty() || file == "-";
  int status = luaL_loadfile(m_state, fromInput ? nullptr : file.c_str());
  if (status == 0) {
    luaL_checkstack(m_state, static_cast<int>(arguments.size()) + LUA_MINSTACK, "too many arguments to script");
    for (const std::string& argument : arguments)
      lua_pushstring(m_state, argument.c_str());
    status = callWithTraceback(m_state, static_cast<int>(arguments.size()), 0);
  }
  return report(status);
}

} // namespace vyrHost
