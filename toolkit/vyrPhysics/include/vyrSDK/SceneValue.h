/// A value of a scene file that is being read, which knows its place in the file.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Range.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyrPhysics/export.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace vyrSDK {

class SceneDocument;

/// What is wrong with a value of a scene file; what() begins with the value's path.
class VYRPHYSICS_EXPORT SceneError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
  ~SceneError() override;
};

/// Reads a value; every mistake is a SceneError that names the path, as in "bodies[3].geometries[0].shape.radius".
/// Members that were asked for count as known; the document names the others. It must outlive its values.
class VYRPHYSICS_EXPORT SceneValue {
public:
  const std::string& getPath() const { return m_path; }

  /// Whether an object has a member that is not null.
  bool has(const char* key) const;
  /// A member; missing ones are an error.
  SceneValue operator[](const char* key) const;
  /// An element of a list; one behind its end is an error.
  SceneValue operator[](std::size_t index) const;
  /// Number of elements; anything but a list is an error.
  std::size_t size() const;
  /// Names of the members of an object, in the order of the file. They count as known.
  std::vector<std::string> getKeys() const;

  bool isNumber() const;
  /// A number written without a fraction.
  bool isInteger() const;
  bool isText() const;
  bool isList() const;
  bool isObject() const;

  /// A finite number.
  double number() const;
  /// A number that may be infinite: the words "inf" and "-inf".
  double limit() const;
  /// A whole number from `low` to `high`.
  long long integer(long long low, long long high) const;
  std::uint64_t count() const;
  bool flag() const;
  std::string text() const;
  /// A list of finite numbers. The second form is an error for another length.
  std::vector<double> numbers() const;
  std::vector<double> numbers(std::size_t length) const;
  vyr::Vec3 vec3() const;
  vyr::Vec4 vec4() const;
  /// Rotation and translation, from 16 numbers row by row.
  vyr::AffineMatrix4x4 matrix() const;
  /// Two numbers, which may be infinite, the smaller one first.
  vyr::RangeReal range() const;

  /// Members that may be missing: `value` then stays as it is.
  void get(const char* key, double& value) const;
  void get(const char* key, bool& value) const;
  void get(const char* key, std::string& value) const;
  void get(const char* key, vyr::Vec3& value) const;
  void get(const char* key, vyr::Vec4& value) const;
  void get(const char* key, vyr::AffineMatrix4x4& value) const;
  void get(const char* key, std::uint64_t& value) const;
  void getLimit(const char* key, double& value) const;
  void getInteger(const char* key, int& value, int low, int high) const;
  /// Numbers above 0, and of at least 0; others are an error.
  void getPositive(const char* key, double& value) const;
  void getNotNegative(const char* key, double& value) const;
  double positive() const;
  double notNegative() const;

  /// Takes the value as it is: none of its members counts as unknown.
  void skip() const;

  [[noreturn]] void fail(const std::string& problem) const;

private:
  friend class SceneDocument;
  SceneValue(SceneDocument* document, const void* json, const std::string& path)
      : m_document(document)
      , m_json(json)
      , m_path(path) {}

  SceneDocument* m_document;
  const void* m_json; ///< the parser's value, which stays behind this class
  std::string m_path;
};

} // namespace vyrSDK
