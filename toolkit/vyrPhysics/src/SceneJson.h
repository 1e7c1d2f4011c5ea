/// How numbers, vectors and matrices are written into a scene file.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Range.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <LinearMath/btTransform.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace vyrSDK {

using Json = nlohmann::ordered_json;

/// Version of the format that is written; files of older ones are brought to it.
const int kSceneVersion = 2;

/// A number; the infinities, which JSON does not know, are the words "inf" and "-inf".
inline Json toJson(double number) {
  if (number == std::numeric_limits<double>::infinity()) {
    return "inf";
  }
  if (number == -std::numeric_limits<double>::infinity()) {
    return "-inf";
  }
  return number;
}

/// The elements of anything with `[]`, one after another.
template <class Array>
Json listOf(const Array& array, int count) {
  Json list = Json::array();
  for (int i = 0; i < count; ++i) {
    list.push_back(toJson(static_cast<double>(array[i])));
  }
  return list;
}

inline Json toJson(const vyr::Vec3& v) {
  return {v.x(), v.y(), v.z()};
}

inline Json toJson(const vyr::Vec4& v) {
  return {v.x(), v.y(), v.z(), v.w()};
}

inline Json toJson(const vyr::RangeReal& range) {
  return {toJson(range.lower()), toJson(range.upper())};
}

inline Json toJson(const vyr::AffineMatrix4x4& m) {
  return listOf(m.ptr(), 16);
}

inline Json toJson(const btVector3& v) {
  return {v.x(), v.y(), v.z()};
}

inline Json toJson(const btMatrix3x3& m) {
  return {m[0][0], m[0][1], m[0][2], m[1][0], m[1][1], m[1][2], m[2][0], m[2][1], m[2][2]};
}

/// The nine elements of the rotation, row by row (column vectors), then the origin.
inline Json toJson(const btTransform& t) {
  Json list = toJson(t.getBasis());
  for (int i = 0; i < 3; ++i) {
    list.push_back(t.getOrigin()[i]);
  }
  return list;
}

} // namespace vyrSDK
