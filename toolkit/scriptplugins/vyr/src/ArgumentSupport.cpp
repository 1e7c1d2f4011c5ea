/// Argument parsers from Lua tables, and their answers as Lua values.
#include <vyrScript/ArgumentSupport.h>
#include <vyrScript/ListSupport.h>

#include <string>
#include <vector>

namespace vyrScript {

namespace {

// Reads element i of the table; false when it is neither a string nor a number.
bool readElement(lua_State* L, int table, int i, std::string& text) {
  lua_rawgeti(L, table, i);
  const bool isText = lua_isstring(L, -1) != 0;
  if (isText) {
    text = lua_tostring(L, -1);
  }
  lua_pop(L, 1);
  return isText;
}

lua_Object pushFallback(lua_State* L, lua_Object fallback) {
  if (lua_isnone(L, fallback)) {
    lua_pushnil(L);
    return lua_gettop(L);
  }
  return fallback;
}

} // namespace

vyrIO::ArgumentParser* argumentParser(lua_State* L, lua_Object arguments) {
  std::string program;
  std::vector<std::string> list;
  if (lua_istable(L, arguments)) {
    readElement(L, arguments, 0, program);
    std::string argument;
    for (int i = 1; readElement(L, arguments, i, argument); ++i) {
      list.push_back(argument);
    }
  }
  return new vyrIO::ArgumentParser(program, list);
}

lua_Object readText(vyrIO::ArgumentParser* parser, lua_State* L, const char* name, lua_Object fallback) {
  std::string value;
  if (!parser->read(name, value)) {
    return pushFallback(L, fallback);
  }
  lua_pushlstring(L, value.data(), value.size());
  return lua_gettop(L);
}

lua_Object readNumber(vyrIO::ArgumentParser* parser, lua_State* L, const char* name, lua_Object fallback) {
  double value = 0;
  if (!parser->read(name, value)) {
    return pushFallback(L, fallback);
  }
  lua_pushnumber(L, value);
  return lua_gettop(L);
}

lua_Object positionalOf(const vyrIO::ArgumentParser* parser, lua_State* L) {
  return pushStrings(L, parser->getPositional());
}

lua_Object unknownOf(const vyrIO::ArgumentParser* parser, lua_State* L) {
  return pushStrings(L, parser->getUnknown());
}

lua_Object remainingOf(const vyrIO::ArgumentParser* parser, lua_State* L) {
  return pushStrings(L, parser->getRemaining());
}

} // namespace vyrScript
