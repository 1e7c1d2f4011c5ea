/// What the descriptions of the value types bind beyond the types' own members: text, named operators, checked
/// elements.
#pragma once

#include <vyrBinding/Guards.h>

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Quat.h>
#include <vyr/Range.h>
#include <vyr/SPDMatrix3x3.h>
#include <vyr/TimeStamp.h>
#include <vyr/Vec2.h>
#include <vyr/Vec2u.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyr/Vector.h>
#include <vyr/VectorPOD.h>
#include <vyrRender/Color.h>

#include <cstddef>
#include <string>

struct lua_State;

namespace vyrBinding {

// The vectors do not check their indices: outside, a script reads 0 and writes nothing.
template <class T>
struct ElementCount<vyr::Vec2T<T>> {
  static constexpr long kValue = 2;
};
template <class T>
struct ElementCount<vyr::Vec3T<T>> {
  static constexpr long kValue = 3;
};
template <class T>
struct ElementCount<vyr::Vec4T<T>> {
  static constexpr long kValue = 4;
};
template <>
struct ElementCount<vyrRender::Color> {
  static constexpr long kValue = 4;
};

} // namespace vyrBinding

namespace vyrScript {

/// Numbers as Lua prints them, in parentheses: "(1, 2.5, 3)".
std::string listOf(const double* numbers, std::size_t count);

std::string text(const vyr::Vec2u* v);
std::string text(const vyr::Quat* q);
/// Four rows of four numbers, a line each.
std::string text(const vyr::AffineMatrix4x4* m);
/// The six stored elements.
std::string text(const vyr::SPDMatrix3x3* m);
std::string text(const vyr::RangeReal* range);
/// The time in s.
std::string text(const vyr::TimeStamp* time);

/// A vector's components.
template <class Vector>
auto text(const Vector* v) -> decltype(std::string(Vector::kSize, ' ')) {
  double components[Vector::kSize];
  for (std::size_t i = 0; i < Vector::kSize; ++i) {
    components[i] = static_cast<double>((*v)[i]);
  }
  return listOf(components, Vector::kSize);
}

/// The opposite vector; \p again is the operand that Lua repeats for a unary minus.
template <class Vector>
Vector negated(const Vector* v, int again) {
  static_cast<void>(again);
  return -*v;
}

template <class Vector>
typename Vector::value_type dot(const Vector* a, const Vector& b) {
  return *a * b;
}

template <class Vector>
Vector cross(const Vector* a, const Vector& b) {
  return *a ^ b;
}

inline vyr::Vec3 transformed(const vyr::Vec3* point, const vyr::AffineMatrix4x4& matrix) {
  return *point * matrix;
}
inline vyr::Vec3 rotated(const vyr::Vec3* v, const vyr::Quat& rotation) {
  return *v * rotation;
}

double rotationAngle(const vyr::Quat* q);
vyr::Vec3 rotationAxis(const vyr::Quat* q);

double element(const vyr::AffineMatrix4x4* m, int row, int column);
void setElement(vyr::AffineMatrix4x4* m, int row, int column, double value);
double element(const vyr::SPDMatrix3x3* m, int row, int column);
void setElement(vyr::SPDMatrix3x3* m, int row, int column, double value);

/// Reads the array part of a table; anything but a number in it counts as 0, with one error message.
vyr::RealVector realVectorFromTable(lua_State* L, int table);
double numberAt(const vyr::RealVector* v, std::size_t index);
void setNumberAt(vyr::RealVector* v, std::size_t index, double value);

/// Nullable: null, with one error message, for an unknown name. Ownership: *returns new*.
vyrRender::Color* colorFromName(const char* name);
/// Reads the array part of a table of colours or vectors; anything else in it is left out, with one error message.
vyr::Vector<vyrRender::Color> colorVectorFromTable(lua_State* L, int table);
/// Nullable: null outside the array. Ownership: *returns new*.
vyrRender::Color* colorAt(const vyr::Vector<vyrRender::Color>* colors, std::size_t index);

} // namespace vyrScript
