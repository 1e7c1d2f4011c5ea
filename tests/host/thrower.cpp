// A library for require whose functions throw.
extern "C" {
#include <lauxlib.h>
#include <lua.h>
}

#include <stdexcept>

namespace {

int throwStandard(lua_State*) {
  throw std::runtime_error("the axle broke");
}
int throwNumber(lua_State*) {
  throw 7;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int luaopen_thrower(lua_State* state) {
  lua_register(state, "throwStandard", &throwStandard);
  lua_register(state, "throwNumber", &throwNumber);
  return 0;
}
