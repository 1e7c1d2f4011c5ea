/// Completes the metatables that the binding runtime made for vectors, quaternions and matrices.
#include "ValueTypes.h"

#include <lua.hpp>
#include <tolua++.h>

#include <string>

namespace vyrScript {

namespace {

constexpr const char* kValueTypes[] = {"vyr::Vec2d",        "vyr::Vec2",        "vyr::Vec2f",  "vyr::Vec2u",
                                       "vyr::Vec3d",        "vyr::Vec3",        "vyr::Vec3f",  "vyr::Vec4d",
                                       "vyr::Vec4",         "vyr::Vec4f",       "vyr::Quat",   "vyr::AffineMatrix4x4",
                                       "vyr::SPDMatrix3x3", "vyrRender::Color", "osg::Vec2",   "osg::Vec3",
                                       "osg::Vec4",         "osg::Matrixd",     "osg::Matrixf"};

// Lua calls the metamethod of "*" for 2 * v as well, but the runtime dispatches on the left operand only.
int multiply(lua_State* L) {
  if (lua_type(L, 1) == LUA_TNUMBER) {
    lua_insert(L, 1);
  }
  lua_settop(L, 2);
  lua_pushvalue(L, lua_upvalueindex(1));
  lua_insert(L, 1);
  lua_call(L, 2, 1);
  return 1;
}

// Pushes the metatable of a type name; pushes nothing and returns false when the name is not registered.
bool pushMetatable(lua_State* L, const std::string& type) {
  luaL_getmetatable(L, type.c_str());
  if (lua_istable(L, -1)) {
    return true;
  }
  lua_pop(L, 1);
  return false;
}

// Copies a field from the table below the top to the table on top, without metamethods.
void copyField(lua_State* L, const char* name) {
  lua_pushstring(L, name);
  lua_rawget(L, -3);
  if (lua_isnil(L, -1)) {
    lua_pop(L, 1);
    return;
  }
  lua_pushstring(L, name);
  lua_insert(L, -2);
  lua_rawset(L, -3);
}

void allowNumberOnTheLeft(lua_State* L) {
  lua_pushliteral(L, "__mul");
  lua_pushvalue(L, -1);
  lua_rawget(L, -3);
  lua_pushcclosure(L, &multiply, 1);
  lua_rawset(L, -3);
}

} // namespace

void acceptAs(lua_State* L, const char* type, const char* asked) {
  lua_getfield(L, LUA_REGISTRYINDEX, "tolua_super");
  for (const std::string prefix : {"", "const "}) {
    if (!pushMetatable(L, prefix + type)) {
      continue;
    }
    lua_rawget(L, -2);
    if (!lua_istable(L, -1)) {
      lua_pop(L, 1);
      pushMetatable(L, prefix + type);
      lua_newtable(L);
      lua_pushvalue(L, -1);
      lua_insert(L, -3);
      lua_rawset(L, -4);
    }
    if (prefix.empty()) {
      lua_pushboolean(L, 1);
      lua_setfield(L, -2, asked);
    }
    lua_pushboolean(L, 1);
    lua_setfield(L, -2, ("const " + std::string(asked)).c_str());
    lua_pop(L, 1);
  }
  lua_pop(L, 1);
}

void completeValueTypes(lua_State* L) {
  acceptAs(L, "vyr::Vec2d", "vyr::Vec2");
  acceptAs(L, "vyr::Vec3d", "vyr::Vec3");
  acceptAs(L, "vyr::Vec4d", "vyr::Vec4");
  // One C++ type each as well; the second names are the visual layer's to register.
  tolua_usertype(L, "osg::Matrix");
  acceptAs(L, "osg::Matrixd", "osg::Matrix");
  tolua_usertype(L, "osg::Vec3f");
  acceptAs(L, "osg::Vec3", "osg::Vec3f");
  acceptAs(L, "osg::Vec3f", "osg::Vec3");
  for (const char* const type : kValueTypes) {
    if (!pushMetatable(L, type)) {
      continue;
    }
    allowNumberOnTheLeft(L);
    if (pushMetatable(L, std::string("const ") + type)) {
      for (const char* const name : {"__mul", "__unm", "__eq", "__tostring"}) {
        copyField(L, name);
      }
      lua_pop(L, 1);
    }
    lua_pop(L, 1);
  }
  // Lua compares two values only when their metatables hold the very same function: the two names of one C++ type share
  // it.
  for (const char* const type : {"vyr::Vec2", "vyr::Vec3", "vyr::Vec4"}) {
    if (!pushMetatable(L, type)) {
      continue;
    }
    for (const char* const prefix : {"", "const "}) {
      if (pushMetatable(L, std::string(prefix) + type + "d")) {
        copyField(L, "__eq");
        lua_pop(L, 1);
      }
    }
    lua_pop(L, 1);
  }
}

} // namespace vyrScript
