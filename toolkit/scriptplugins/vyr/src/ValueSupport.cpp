/// Text, checked elements and conversions from tables of the value types.
#include <vyrScript/ValueSupport.h>

#include <vyr/Notify.h>

#include <lua.hpp>
#include <tolua++.h>

#include <cstdio>

namespace vyrScript {

std::string listOf(const double* numbers, std::size_t count) {
  std::string list = "(";
  for (std::size_t i = 0; i < count; ++i) {
    char number[32];
    std::snprintf(number, sizeof number, LUA_NUMBER_FMT, numbers[i]);
    list += i == 0 ? "" : ", ";
    list += number;
  }
  return list + ")";
}

std::string text(const vyr::Vec2u* v) {
  const double components[] = {static_cast<double>(v->x()), static_cast<double>(v->y())};
  return listOf(components, 2);
}

std::string text(const vyr::Quat* q) {
  const double components[] = {q->x(), q->y(), q->z(), q->w()};
  return listOf(components, 4);
}

std::string text(const vyr::AffineMatrix4x4* m) {
  std::string rows;
  for (std::size_t row = 0; row < 4; ++row) {
    rows += (row == 0 ? "" : "\n") + listOf(m->ptr() + 4 * row, 4);
  }
  return rows;
}

std::string text(const vyr::SPDMatrix3x3* m) {
  const double elements[] = {(*m)[0], (*m)[1], (*m)[2], (*m)[3], (*m)[4], (*m)[5]};
  return listOf(elements, 6);
}

std::string text(const vyr::RangeReal* range) {
  const double bounds[] = {range->lower(), range->upper()};
  return listOf(bounds, 2);
}

std::string text(const vyr::TimeStamp* time) {
  char number[32];
  std::snprintf(number, sizeof number, LUA_NUMBER_FMT, time->seconds());
  return number;
}

double rotationAngle(const vyr::Quat* q) {
  double angle = 0;
  vyr::Vec3 axis;
  q->getRotate(angle, axis);
  return angle;
}

vyr::Vec3 rotationAxis(const vyr::Quat* q) {
  double angle = 0;
  vyr::Vec3 axis;
  q->getRotate(angle, axis);
  return axis;
}

namespace {

bool inside(int row, int column, int size) {
  return row >= 0 && row < size && column >= 0 && column < size;
}

} // namespace

double element(const vyr::AffineMatrix4x4* m, int row, int column) {
  return inside(row, column, 4) ? (*m)(row, column) : 0.0;
}

void setElement(vyr::AffineMatrix4x4* m, int row, int column, double value) {
  if (inside(row, column, 4)) {
    (*m)(row, column) = value;
  }
}

double element(const vyr::SPDMatrix3x3* m, int row, int column) {
  return inside(row, column, 3) ? (*m)(row, column) : 0.0;
}

void setElement(vyr::SPDMatrix3x3* m, int row, int column, double value) {
  if (inside(row, column, 3)) {
    (*m)(row, column) = value;
  }
}

vyr::RealVector realVectorFromTable(lua_State* L, int table) {
  vyr::RealVector numbers;
  if (!lua_istable(L, table)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "RealVector: expected a table of numbers, got " << luaL_typename(L, table);
    return numbers;
  }
  const std::size_t count = lua_objlen(L, table);
  numbers.reserve(count);
  std::size_t firstBad = 0;
  for (std::size_t i = 1; i <= count; ++i) {
    lua_rawgeti(L, table, static_cast<int>(i));
    if (lua_type(L, -1) != LUA_TNUMBER && firstBad == 0) {
      firstBad = i;
    }
    numbers.push_back(lua_type(L, -1) == LUA_TNUMBER ? lua_tonumber(L, -1) : 0.0);
    lua_pop(L, 1);
  }
  if (firstBad != 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "RealVector: element " << firstBad << " of the table is not a number";
  }
  return numbers;
}

double numberAt(const vyr::RealVector* v, std::size_t index) {
  return index < v->size() ? (*v)[index] : 0.0;
}

void setNumberAt(vyr::RealVector* v, std::size_t index, double value) {
  if (index < v->size()) {
    (*v)[index] = value;
  }
}

vyrRender::Color* colorFromName(const char* name) {
  vyrRender::Color color;
  if (!vyrRender::Color::fromName(name ? name : "", color)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Color: no colour is named \"" << (name ? name : "") << '"';
    return nullptr;
  }
  return new vyrRender::Color(color);
}

vyr::Vector<vyrRender::Color> colorVectorFromTable(lua_State* L, int table) {
  vyr::Vector<vyrRender::Color> colors;
  std::size_t firstBad = lua_istable(L, table) ? 0 : 1;
  const std::size_t count = lua_istable(L, table) ? lua_objlen(L, table) : 0;
  for (std::size_t i = 1; i <= count; ++i) {
    lua_rawgeti(L, table, static_cast<int>(i));
    tolua_Error error;
    if (!lua_isnil(L, -1) && tolua_isusertype(L, lua_gettop(L), "const vyr::Vec4", 0, &error)) {
      colors.push_back(*static_cast<const vyr::Vec4*>(tolua_tousertype(L, lua_gettop(L), nullptr)));
    } else if (firstBad == 0) {
      firstBad = i;
    }
    lua_pop(L, 1);
  }
  if (firstBad != 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "ColorVector: element " << firstBad << " of the table is not a colour";
  }
  return colors;
}

vyrRender::Color* colorAt(const vyr::Vector<vyrRender::Color>* colors, std::size_t index) {
  return index < colors->size() ? new vyrRender::Color((*colors)[index]) : nullptr;
}

} // namespace vyrScript
