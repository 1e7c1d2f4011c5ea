/// How numbers, vectors and matrices stand in a scene file.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Range.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <LinearMath/btTransform.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <stdexcept>
#include <string>

namespace vyrSDK {

using Json = nlohmann::ordered_json;

/// Version of the format that is written; files of this version are read.
const int kSceneVersion = 1;

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

inline double toNumber(const Json& json) {
  if (json.is_string()) {
    const std::string word = json.get<std::string>();
    if (word != "inf" && word != "-inf") {
      throw std::runtime_error("'" + word + "' is no number");
    }
    return word == "inf" ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
  }
  return json.get<double>();
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

inline void readList(const Json& json, double* out, size_t count) {
  if (!json.is_array() || json.size() != count) {
    throw std::runtime_error("a list of " + std::to_string(count) + " numbers is missing");
  }
  for (size_t i = 0; i < count; ++i) {
    out[i] = toNumber(json[i]);
  }
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

inline vyr::Vec3 toVec3(const Json& json) {
  double v[3];
  readList(json, v, 3);
  return vyr::Vec3(v[0], v[1], v[2]);
}

inline vyr::Vec4 toVec4(const Json& json) {
  double v[4];
  readList(json, v, 4);
  return vyr::Vec4(v[0], v[1], v[2], v[3]);
}

inline vyr::RangeReal toRange(const Json& json) {
  double v[2];
  readList(json, v, 2);
  return vyr::RangeReal(v[0], v[1]);
}

inline vyr::AffineMatrix4x4 toMatrix(const Json& json) {
  vyr::AffineMatrix4x4 m;
  readList(json, m.ptr(), 16);
  return m;
}

inline btVector3 toEngineVector(const Json& json) {
  double v[3];
  readList(json, v, 3);
  return btVector3(v[0], v[1], v[2]);
}

inline btMatrix3x3 toEngineMatrix(const Json& json) {
  double v[9];
  readList(json, v, 9);
  return btMatrix3x3(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]);
}

inline btTransform toEngineTransform(const Json& json) {
  double v[12];
  readList(json, v, 12);
  return btTransform(btMatrix3x3(v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]), btVector3(v[9], v[10], v[11]));
}

} // namespace vyrSDK
