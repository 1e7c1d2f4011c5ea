/// Argument parsers from Lua tables, and their answers as Lua values.
#pragma once

#include <vyrIO/ArgumentParser.h>

#include <lua.hpp>
#include <tolua++.h>

namespace vyrScript {

/// Reads a table like "arg": [0] is the script, [1] and on are the arguments, read up to the first that is missing;
/// numbers count as their text. No table: no arguments. Ownership: *returns new*.
vyrIO::ArgumentParser* argumentParser(lua_State* L, lua_Object arguments);

/// Takes an option and pushes its value; without it, the fallback (nil when that is absent).
lua_Object readText(vyrIO::ArgumentParser* parser, lua_State* L, const char* name, lua_Object fallback);
lua_Object readNumber(vyrIO::ArgumentParser* parser, lua_State* L, const char* name, lua_Object fallback);

lua_Object positionalOf(const vyrIO::ArgumentParser* parser, lua_State* L);
lua_Object unknownOf(const vyrIO::ArgumentParser* parser, lua_State* L);
lua_Object remainingOf(const vyrIO::ArgumentParser* parser, lua_State* L);

} // namespace vyrScript
