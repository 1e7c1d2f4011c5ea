/// Questions to objects that only their type names call counted.
#pragma once

#include <vyr/Referenced.h>

#include <tolua++.h>

#include <cstring>

namespace vyrBinding {

/// The number of references held; 0 for a light source, which is registered as a counted class and is a handle.
inline int referenceCount(const vyr::Referenced* self, lua_State* state) {
  const char* type = tolua_typename(state, 1);
  const bool isHandle =
      std::strcmp(type, "vyrOSG::LightSource") == 0 || std::strcmp(type, "const vyrOSG::LightSource") == 0;
  lua_pop(state, 1);
  return isHandle ? 0 : self->getReferenceCount();
}

} // namespace vyrBinding
