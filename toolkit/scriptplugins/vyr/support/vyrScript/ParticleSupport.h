/// Particles from and to Lua values.
#pragma once

#include <vyr/ParticleSystem.h>
#include <vyr/RigidBodyEmitter.h>
#include <vyrCollide/Bounds.h>

#include <lua.hpp>
#include <tolua++.h>

#include <limits>

namespace vyrScript {

/// Adds a ball and pushes its number; nil when it was refused. \p life is a number in s, anything else is endless.
inline lua_Object addParticle(vyr::ParticleSystem* system, lua_State* L, const vyr::Vec3& position,
                              const vyr::Vec3& velocity, double radius, double mass, lua_Object life) {
  const bool ends = lua_type(L, life) == LUA_TNUMBER;
  const std::size_t index = system->add(position, velocity, radius, mass,
                                        ends ? lua_tonumber(L, life) : std::numeric_limits<double>::infinity());
  if (index == vyr::ParticleContact::kNone) {
    lua_pushnil(L);
  } else {
    lua_pushnumber(L, static_cast<lua_Number>(index));
  }
  return lua_gettop(L);
}

/// Copies of the contacts of the last step, each owned by Lua.
inline lua_Object particleContactsOf(const vyr::ParticleSystem* system, lua_State* L) {
  const auto& contacts = system->getContacts();
  lua_createtable(L, static_cast<int>(contacts.size()), 0);
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    tolua_pushusertype(L, new vyr::ParticleContact(contacts[i]), "vyr::ParticleContact");
    tolua_register_gc(L, lua_gettop(L));
    lua_rawseti(L, -2, static_cast<int>(i + 1));
  }
  return lua_gettop(L);
}

inline bool setRegion(vyr::RigidBodyEmitter* emitter, const vyr::Vec3& min, const vyr::Vec3& max) {
  vyrCollide::Bounds region;
  region.min = min;
  region.max = max;
  return emitter->setRegion(region);
}

} // namespace vyrScript
