/// Functions of a script that make the geometries of an emitter.
#pragma once

#include <vyr/RigidBodyEmitter.h>

#include <lua.hpp>
#include <tolua++.h>

namespace vyrScript {

/// Lets function(index, random) make the geometry of each body: `index` counts from 1, random() draws a number from 0
/// (included) to 1 (excluded) while the function runs. nil lets the place go empty.
/// Failures: a function that raises an error, or returns anything else, is reported once and not called again; one
/// error message where `function` is none.
void setGeometryFactory(vyr::RigidBodyEmitter* emitter, lua_State* L, lua_Object function);

} // namespace vyrScript
