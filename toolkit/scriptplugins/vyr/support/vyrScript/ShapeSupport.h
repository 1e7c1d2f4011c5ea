/// Shapes as what they are, and shapes from Lua tables.
#pragma once

#include <vyr/VectorPOD.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Trimesh.h>

#include <lua.hpp>
#include <tolua++.h>

namespace vyrScript {

/// Pushes a geometry's shape under the name of its class, nil for none, and returns its position.
lua_Object shapeOf(const vyrCollide::Geometry* geometry, lua_State* L);

/// All samples, row by row.
vyr::RealVector heightsOf(const vyrCollide::HeightField* field);

/// Makes a mesh from a table of vectors and a table of indices from 0. Ownership: *returns new*. Anything in the tables
/// that is no vector or no index from 0 makes the mesh invalid, with one error message.
vyrCollide::Trimesh* trimeshFromTables(lua_State* L, lua_Object vertices, lua_Object indices);

} // namespace vyrScript
