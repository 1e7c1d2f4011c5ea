/// Shapes as what they are, and shapes from Lua tables.
#include <vyrScript/ShapeSupport.h>

#include <vyr/Vec3.h>

#include <limits>
#include <vector>

namespace vyrScript {

namespace {

const char* typeNameOf(const vyrCollide::Shape& shape) {
  switch (shape.getType()) {
  case vyrCollide::Shape::BOX:
    return "vyrCollide::Box";
  case vyrCollide::Shape::SPHERE:
    return "vyrCollide::Sphere";
  case vyrCollide::Shape::CAPSULE:
    return "vyrCollide::Capsule";
  case vyrCollide::Shape::CYLINDER:
    return "vyrCollide::Cylinder";
  case vyrCollide::Shape::PLANE:
    return "vyrCollide::Plane";
  case vyrCollide::Shape::HEIGHT_FIELD:
    return "vyrCollide::HeightField";
  case vyrCollide::Shape::TRIMESH:
    return "vyrCollide::Trimesh";
  }
  return "vyrCollide::Shape";
}

} // namespace

lua_Object shapeOf(const vyrCollide::Geometry* geometry, lua_State* L) {
  vyrCollide::Shape* const shape = geometry->getShape();
  tolua_pushusertype(L, shape, shape ? typeNameOf(*shape) : "vyrCollide::Shape");
  return lua_gettop(L);
}

vyr::RealVector heightsOf(const vyrCollide::HeightField* field) {
  vyr::RealVector heights;
  heights.assign(field->getHeights().begin(), field->getHeights().end());
  return heights;
}

vyrCollide::Trimesh* trimeshFromTables(lua_State* L, lua_Object vertices, lua_Object indices) {
  // What is not a vector or an index becomes a value that the mesh itself refuses, with its message.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  std::vector<vyr::Vec3> points;
  const std::size_t pointCount = lua_istable(L, vertices) ? lua_objlen(L, vertices) : 0;
  for (std::size_t i = 1; i <= pointCount; ++i) {
    lua_rawgeti(L, vertices, static_cast<int>(i));
    tolua_Error error;
    const bool isVector = !lua_isnil(L, -1) && tolua_isusertype(L, lua_gettop(L), "const vyr::Vec3d", 0, &error);
    points.push_back(isVector ? *static_cast<const vyr::Vec3*>(tolua_tousertype(L, lua_gettop(L), nullptr))
                              : vyr::Vec3(nan, nan, nan));
    lua_pop(L, 1);
  }
  std::vector<unsigned int> corners;
  const std::size_t cornerCount = lua_istable(L, indices) ? lua_objlen(L, indices) : 0;
  for (std::size_t i = 1; i <= cornerCount; ++i) {
    lua_rawgeti(L, indices, static_cast<int>(i));
    const double corner = lua_type(L, -1) == LUA_TNUMBER ? lua_tonumber(L, -1) : nan;
    const bool isIndex = corner >= 0 && corner < static_cast<double>(points.size());
    corners.push_back(isIndex ? static_cast<unsigned int>(corner) : std::numeric_limits<unsigned int>::max());
    lua_pop(L, 1);
  }
  return new vyrCollide::Trimesh(points, corners);
}

} // namespace vyrScript
