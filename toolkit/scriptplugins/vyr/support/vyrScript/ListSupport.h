/// Lists of the toolkit as Lua tables.
///
/// Each function leaves a new table on the stack and returns its position, as the bindings ask of a function that
/// answers with any Lua value. Tables count from 1; the objects in them are not owned by Lua.
#pragma once

#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Space.h>
#include <vyrSDK/Assembly.h>
#include <vyrSDK/Simulation.h>

#include <lua.hpp>
#include <tolua++.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace vyrScript {

/// A table of the objects of a list, under one type name.
template <class T>
lua_Object pushList(lua_State* L, const std::vector<vyr::ref_ptr<T>>& list, const char* type) {
  lua_createtable(L, static_cast<int>(list.size()), 0);
  for (std::size_t i = 0; i < list.size(); ++i) {
    tolua_pushusertype(L, list[i].get(), type);
    lua_rawseti(L, -2, static_cast<int>(i + 1));
  }
  return lua_gettop(L);
}

template <class Owner>
lua_Object rigidBodiesOf(const Owner* owner, lua_State* L) {
  return pushList(L, owner->getRigidBodies(), "vyr::RigidBody");
}

template <class Owner>
lua_Object geometriesOf(const Owner* owner, lua_State* L) {
  return pushList(L, owner->getGeometries(), "vyrCollide::Geometry");
}

template <class Owner>
lua_Object framesOf(const Owner* owner, lua_State* L) {
  return pushList(L, owner->getFrames(), "vyr::Frame");
}

template <class Owner>
lua_Object assembliesOf(const Owner* owner, lua_State* L) {
  return pushList(L, owner->getAssemblies(), "vyrSDK::Assembly");
}

template <class Owner>
lua_Object particleSystemsOf(const Owner* owner, lua_State* L) {
  return pushList(L, owner->getParticleSystems(), "vyr::ParticleSystem");
}

/// Pushes a constraint under the name of what it is; nil for null.
void pushConstraint(lua_State* L, vyr::Constraint* constraint);

template <class Owner>
lua_Object constraintsOf(const Owner* owner, lua_State* L) {
  const auto& constraints = owner->getConstraints();
  lua_createtable(L, static_cast<int>(constraints.size()), 0);
  for (std::size_t i = 0; i < constraints.size(); ++i) {
    pushConstraint(L, constraints[i].get());
    lua_rawseti(L, -2, static_cast<int>(i + 1));
  }
  return lua_gettop(L);
}

/// Copies of the contacts of the last step, each owned by Lua.
lua_Object contactsOf(const vyrSDK::Simulation* simulation, lua_State* L);

/// A table of copies of vectors, each owned by Lua.
lua_Object pushVectors(lua_State* L, const std::vector<vyr::Vec3>& vectors);

template <class Owner>
lua_Object pointsOf(const Owner* owner, lua_State* L) {
  return pushVectors(L, owner->getPoints());
}

template <class Owner>
lua_Object samplesOf(const Owner* owner, lua_State* L, double density) {
  return pushVectors(L, owner->sample(density));
}

template <class Owner>
lua_Object nodesOf(const Owner* owner, lua_State* L) {
  return pushVectors(L, owner->getNodes());
}

template <class Owner>
lua_Object nodeVelocitiesOf(const Owner* owner, lua_State* L) {
  return pushVectors(L, owner->getNodeVelocities());
}

/// A table of strings.
lua_Object pushStrings(lua_State* L, const std::vector<std::string>& strings);

/// The state's hash as sixteen hexadecimal digits.
inline std::string stateHashOf(const vyrSDK::Simulation* simulation) {
  char digits[17];
  std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(simulation->stateHash()));
  return digits;
}

inline void setPosition(vyr::RigidBody* body, double x, double y, double z) {
  body->setPosition(vyr::Vec3(x, y, z));
}

} // namespace vyrScript
