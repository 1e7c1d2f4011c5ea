/// Objects of every class with a constructor that come and go: the memory in use stays the same.
#include <vyrModel_modules.h>
#include <vyrOSG_modules.h>
#include <vyr_modules.h>

#include <vyr/Notify.h>

#include <lua.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <malloc.h>
#include <map>
#include <string>

namespace {

std::map<std::string, double> s_growth;

int pushBytesInUse(lua_State* state) {
  const struct mallinfo2 info = mallinfo2();
  lua_pushnumber(state, static_cast<lua_Number>(info.uordblks) + static_cast<lua_Number>(info.hblkhd));
  return 1;
}

int noteGrowth(lua_State* state) {
  s_growth[lua_tostring(state, 1)] = lua_tonumber(state, 2);
  return 0;
}

// The sanitizers' allocator keeps no such numbers; there, their own report of leaks stands in.
TEST(Lifetimes, MemoryStaysTheSameWhileObjectsComeAndGo) {
  // Objects of each class; VYR_LIFETIMES sets another number for long runs.
  const char* text = std::getenv("VYR_LIFETIMES");
  const double count = text != nullptr ? std::atof(text) : 700;
  lua_State* state = luaL_newstate();
  luaL_openlibs(state);
  for (const auto& module : vyrModules::kModules)
    module.open(state);
  for (const auto& module : vyrModelModules::kModules)
    module.open(state);
  for (const auto& module : vyrOSGModules::kModules)
    module.open(state);
  ASSERT_EQ(luaL_loadfile(state, VYR_SOURCE_DIR "/tests/binding/lifetimes.lua"), 0) << lua_tostring(state, -1);
  lua_pushcfunction(state, &pushBytesInUse);
  lua_pushnumber(state, count);
  lua_pushcfunction(state, &noteGrowth);
  ASSERT_EQ(lua_pcall(state, 3, 0, 0), 0) << lua_tostring(state, -1);
  EXPECT_GE(s_growth.size(), 90u) << "classes are missing";
  for (const auto& entry : s_growth)
    // Less than the smallest object: nothing of any object may stay.
    EXPECT_LT(entry.second, 8 * count) << entry.first << " keeps " << entry.second / count << " bytes an object";
  lua_close(state);
}

} // namespace
