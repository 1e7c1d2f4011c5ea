/// Lists of the toolkit as Lua tables.
#include <vyrScript/ListSupport.h>

#include <vyr/Ball.h>
#include <vyr/Distance.h>
#include <vyr/Hinge.h>
#include <vyr/Lock.h>
#include <vyr/Prismatic.h>
#include <vyr/Suspension.h>

namespace vyrScript {

void pushConstraint(lua_State* L, vyr::Constraint* constraint) {
  tolua_pushusertype(L, constraint, "vyr::Constraint");
}

lua_Object contactsOf(const vyrSDK::Simulation* simulation, lua_State* L) {
  const std::vector<vyrSDK::Contact>& contacts = simulation->getContacts();
  lua_createtable(L, static_cast<int>(contacts.size()), 0);
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    tolua_pushusertype(L, new vyrSDK::Contact(contacts[i]), "vyrSDK::Contact");
    tolua_register_gc(L, lua_gettop(L));
    lua_rawseti(L, -2, static_cast<int>(i + 1));
  }
  return lua_gettop(L);
}

lua_Object pushVectors(lua_State* L, const std::vector<vyr::Vec3>& vectors) {
  lua_createtable(L, static_cast<int>(vectors.size()), 0);
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    tolua_pushusertype(L, new vyr::Vec3(vectors[i]), "vyr::Vec3");
    tolua_register_gc(L, lua_gettop(L));
    lua_rawseti(L, -2, static_cast<int>(i + 1));
  }
  return lua_gettop(L);
}

lua_Object pushStrings(lua_State* L, const std::vector<std::string>& strings) {
  lua_createtable(L, static_cast<int>(strings.size()), 0);
  for (std::size_t i = 0; i < strings.size(); ++i) {
    lua_pushlstring(L, strings[i].data(), strings[i].size());
    lua_rawseti(L, -2, static_cast<int>(i + 1));
  }
  return lua_gettop(L);
}

} // namespace vyrScript
