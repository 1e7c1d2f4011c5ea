/// A test fixture with all modules of the plugin open and ways to hand C++ objects to scripts.
#pragma once

#include "LuaState.h"

#include <vyrOSG_modules.h>

#include <gtest/gtest.h>

namespace bindingtest {

class ModuleTest : public ::testing::Test {
protected:
  ModuleTest() {
    for (const vyrOSGModules::Module& module : vyrOSGModules::kModules) {
      module.open(lua.get());
    }
  }

  /// Makes `object` a global that Lua does not own.
  template <class T>
  void set(const char* name, T* object, const char* type) {
    tolua_pushusertype(lua.get(), object, type);
    lua_setglobal(lua.get(), name);
  }

  /// The object behind a global. Nullable: no userdata.
  template <class T>
  T* global(const char* name) {
    lua_getglobal(lua.get(), name);
    T* object = static_cast<T*>(tolua_tousertype(lua.get(), -1, nullptr));
    lua_pop(lua.get(), 1);
    return object;
  }

  LuaState lua;
};

} // namespace bindingtest
