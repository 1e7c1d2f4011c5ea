/// An object of a scene file that is being written.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyrPhysics/export.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vyrSDK {

/// Gives an object its members, in the order of the calls. Copies lead to the same object. A record holds until a
/// member or an element is added beside it.
class VYRPHYSICS_EXPORT SceneRecord {
public:
  /// For the writer itself: `json` is the value, which becomes an object (*borrows*).
  explicit SceneRecord(void* json)
      : m_json(json) {}

  /// Infinities are written as the words "inf" and "-inf".
  void set(const char* key, double value);
  void set(const char* key, bool value);
  void set(const char* key, int value);
  void set(const char* key, std::uint64_t value);
  void set(const char* key, const char* value);
  void set(const char* key, const std::string& value);
  void set(const char* key, const vyr::Vec3& value);
  void set(const char* key, const vyr::Vec4& value);
  void set(const char* key, const vyr::AffineMatrix4x4& value);
  void set(const char* key, const std::vector<double>& values);
  void set(const char* key, const std::vector<int>& values);
  /// Vectors as one row of numbers.
  void set(const char* key, const std::vector<vyr::Vec3>& values);

  /// A member that is an object.
  SceneRecord add(const char* key);
  /// An object behind the others of a member that is a list.
  SceneRecord append(const char* key);

private:
  void* m_json;
};

} // namespace vyrSDK
