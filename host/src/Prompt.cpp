// The interactive prompt.
#include "Prompt.h"

#include "Interpreter.h"

extern "C" {
#include <lauxlib.h>
#include <lua.h>
}

#include <cstdio>

namespace vyrHost {

namespace {

/// Whether a syntax error only says that the text ended too early.
bool isIncomplete(lua_State* state, int status) {
  if (status != LUA_ERRSYNTAX)
    return false;
  const std::string text = lua_tostring(state, -1);
  const std::string mark = LUA_QL("<eof>");
  return text.size() >= mark.size() && text.compare(text.size() - mark.size(), mark.size(), mark) == 0;
}

} // namespace

std::string Prompt::getPrompt(bool first) const {
  lua_State* state = m_interpreter.getState();
  lua_getglobal(state, first ? "_PROMPT" : "_PROMPT2");
  const char* text = lua_tostring(state, -1);
  std::string prompt = text != nullptr ? text : (first ? "> " : ">> ");
  lua_pop(state, 1);
  return prompt;
}

/// Leaves the loaded chunk or the error's text on the stack; false at the end of the input.
bool Prompt::readChunk(std::string& chunk, bool& loaded) {
  lua_State* state = m_interpreter.getState();
  std::string line;
  if (!m_reader.read(getPrompt(true), line))
    return false;
  chunk = !line.empty() && line[0] == '=' ? "return " + line.substr(1) : line;
  for (;;) {
    const int status = luaL_loadbuffer(state, chunk.data(), chunk.size(), "=stdin");
    loaded = status == 0;
    if (!isIncomplete(state, status))
      break;
    if (!m_reader.read(getPrompt(false), line))
      return false;
    lua_pop(state, 1);
    chunk += "\n" + line;
  }
  m_reader.remember(chunk);
  return true;
}

void Prompt::printResults() {
  lua_State* state = m_interpreter.getState();
  const int count = lua_gettop(state);
  if (count == 0)
    return;
  luaL_checkstack(state, LUA_MINSTACK, "too many results to print");
  lua_getglobal(state, "print");
  lua_insert(state, 1);
  m_interpreter.report(Interpreter::callWithTraceback(state, count, 0));
}

void Prompt::run() {
  lua_State* state = m_interpreter.getState();
  lua_settop(state, 0);
  std::string chunk;
  bool loaded = false;
  while (readChunk(chunk, loaded)) {
    const int status = loaded ? Interpreter::callWithTraceback(state, 0, LUA_MULTRET) : LUA_ERRSYNTAX;
    if (m_interpreter.report(status) == 0)
      printResults();
    lua_settop(state, 0);
  }
  lua_settop(state, 0);
  std::fputs("\n", stdout);
  std::fflush(stdout);
}

} // namespace vyrHost
