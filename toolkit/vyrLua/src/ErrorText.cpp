// Words the message of a failed call, on the Lua stack.
#include "ErrorText.h"

#include <tolua++.h>

#include <cstring>

namespace vyrLua {

namespace {

constexpr int kMostArguments = 16;
constexpr int kLongestString = 40;
constexpr const char* kIndent = "     ";

// Every function here pushes exactly one string. Pushing may raise an error, so locals with destructors are left to the
// one function that calls the provider of hints.

void pushPosition(lua_State* state) {
  // The nearest function written in Lua: between it and the wrapper may stand C functions (the call event of a class
  // table, pcall) that have no line of their own.
  lua_Debug caller;
  for (int level = 1; lua_getstack(state, level, &caller) != 0; ++level) {
    if (lua_getinfo(state, "Sl", &caller) != 0 && caller.currentline > 0) {
      lua_pushfstring(state, "%s:%d: ", caller.short_src, caller.currentline);
      return;
    }
  }
  lua_pushliteral(state, "");
}

void pushTypeName(lua_State* state, int index) {
  const int top = lua_gettop(state);
  tolua_typename(state, index);
  // The runtime leaves the name on the stack, in some cases with something below it.
  if (lua_gettop(state) > top + 1) {
    lua_replace(state, top + 1);
    lua_settop(state, top + 1);
  }
}

void pushExpectation(lua_State* state, const char* text, const tolua_Error* record, const char* provided) {
  const char* expected = record->type != nullptr ? record->type : "value";
  const char* array = record->array != 0 ? "array of " : "";
  if (text[1] == 'f')
    lua_pushfstring(state, "\n%sargument #%d is %s'%s'; %s'%s' expected.", kIndent, record->index, array, provided,
                    array, expected);
  else
    lua_pushfstring(state, "\n%svalue is %s'%s'; %s'%s' expected.", kIndent, array, provided, array, expected);
}

void pushQuoted(lua_State* state, int index) {
  std::size_t length = 0;
  const char* bytes = lua_tolstring(state, index, &length);
  const bool cut = length > static_cast<std::size_t>(kLongestString);
  lua_pushliteral(state, "string \"");
  lua_pushlstring(state, bytes, cut ? static_cast<std::size_t>(kLongestString) : length);
  lua_pushstring(state, cut ? "\"..." : "\"");
  lua_concat(state, 3);
}

void pushArgument(lua_State* state, int index) {
  switch (lua_type(state, index)) {
  case LUA_TNUMBER:
    // A copy: lua_tostring would turn the argument itself into a string.
    lua_pushliteral(state, "number ");
    lua_pushvalue(state, index);
    lua_concat(state, 2);
    break;
  case LUA_TSTRING:
    pushQuoted(state, index);
    break;
  case LUA_TBOOLEAN:
    lua_pushstring(state, lua_toboolean(state, index) != 0 ? "true" : "false");
    break;
  default:
    pushTypeName(state, index);
  }
}

void pushArguments(lua_State* state, int count) {
  const int shown = count < kMostArguments ? count : kMostArguments;
  lua_pushfstring(state, "\n%spassed: (", kIndent);
  for (int index = 1; index <= shown; ++index) {
    if (index > 1)
      lua_pushliteral(state, ", ");
    else
      lua_pushliteral(state, "");
    pushArgument(state, index);
    lua_concat(state, 3);
  }
  lua_pushstring(state, shown < count ? ", ...)" : ")");
  lua_concat(state, 2);
}

void pushHints(lua_State* state, const ErrorReport& report, ErrorHintProvider provider) {
  const std::string hints = provider(report);
  if (hints.empty())
    lua_pushliteral(state, "");
  else
    lua_pushfstring(state, "\n%s", hints.c_str());
}

} // namespace

void pushErrorText(lua_State* state, const char* text, const tolua_Error* record, ErrorHintProvider hints) {
  const int count = lua_gettop(state);
  luaL_checkstack(state, LUA_MINSTACK, "too many values for an error message");
  const bool isCall = std::strncmp(text, "#f", 2) == 0;
  const bool isValue = std::strncmp(text, "#v", 2) == 0;
  const bool hasRecord = (isCall || isValue) && record != nullptr;
  // First of all, while the place after the last argument is still empty: the failed test may have named it.
  if (hasRecord)
    pushTypeName(state, record->index);
  else
    lua_pushliteral(state, "");
  const char* provided = lua_tostring(state, -1);
  pushPosition(state);
  lua_pushstring(state, isCall || isValue ? text + 2 : text);
  if (hasRecord)
    pushExpectation(state, text, record, provided);
  else
    lua_pushliteral(state, "");
  if (hasRecord && isCall)
    pushArguments(state, count);
  else
    lua_pushliteral(state, "");
  if (hints != nullptr)
    pushHints(state, ErrorReport{state, text, record, count}, hints);
  else
    lua_pushliteral(state, "");
  lua_concat(state, 5);
  lua_remove(state, -2);
}

} // namespace vyrLua
