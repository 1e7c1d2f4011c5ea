/// A value of a scene file that is being read, which knows its place in the file.
#include <vyrSDK/SceneValue.h>

#include "SceneDocument.h"

#include <cmath>
#include <limits>

namespace vyrSDK {

namespace {

const Json& jsonOf(const void* pointer) {
  return *static_cast<const Json*>(pointer);
}

/// What stands there, short enough for a message.
std::string shown(const Json& json) {
  constexpr std::size_t kLongest = 40;
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  return text.size() <= kLongest ? text : std::string(json.type_name());
}

} // namespace

SceneError::~SceneError() = default;

void SceneValue::fail(const std::string& problem) const {
  throw SceneError((m_path.empty() ? "the file" : m_path) + ": " + problem);
}

bool SceneValue::isNumber() const {
  return jsonOf(m_json).is_number();
}

bool SceneValue::isInteger() const {
  return jsonOf(m_json).is_number_integer();
}

bool SceneValue::isText() const {
  return jsonOf(m_json).is_string();
}

bool SceneValue::isList() const {
  return jsonOf(m_json).is_array();
}

bool SceneValue::isObject() const {
  return jsonOf(m_json).is_object();
}

bool SceneValue::has(const char* key) const {
  const Json& json = jsonOf(m_json);
  if (!json.is_object()) {
    fail("must be an object with members, not " + shown(json));
  }
  const auto member = json.find(key);
  if (member == json.end()) {
    return false;
  }
  m_document->markKnown(&*member);
  return !member->is_null();
}

SceneValue SceneValue::operator[](const char* key) const {
  if (!has(key)) {
    fail("the member \"" + std::string(key) + "\" is missing");
  }
  return SceneValue(m_document, &*jsonOf(m_json).find(key), m_path.empty() ? key : m_path + "." + key);
}

SceneValue SceneValue::operator[](std::size_t index) const {
  if (index >= size()) {
    fail("must have more than " + std::to_string(index) + " elements");
  }
  return SceneValue(m_document, &jsonOf(m_json)[index], m_path + "[" + std::to_string(index) + "]");
}

std::size_t SceneValue::size() const {
  if (!isList()) {
    fail("must be a list, not " + shown(jsonOf(m_json)));
  }
  return jsonOf(m_json).size();
}

std::vector<std::string> SceneValue::getKeys() const {
  std::vector<std::string> keys;
  if (!isObject()) {
    fail("must be an object with members, not " + shown(jsonOf(m_json)));
  }
  for (const auto& member : jsonOf(m_json).items()) {
    m_document->markKnown(&member.value());
    keys.push_back(member.key());
  }
  return keys;
}

double SceneValue::number() const {
  if (!isNumber()) {
    fail("must be a number, not " + shown(jsonOf(m_json)));
  }
  return jsonOf(m_json).get<double>();
}

double SceneValue::limit() const {
  if (isText()) {
    const std::string word = text();
    if (word == "inf" || word == "-inf") {
      return (word == "inf" ? 1 : -1) * std::numeric_limits<double>::infinity();
    }
  }
  return number();
}

double SceneValue::positive() const {
  const double value = number();
  if (!(value > 0)) {
    fail("must be above 0, not " + shown(jsonOf(m_json)));
  }
  return value;
}

double SceneValue::notNegative() const {
  const double value = number();
  if (!(value >= 0)) {
    fail("must be at least 0, not " + shown(jsonOf(m_json)));
  }
  return value;
}

long long SceneValue::integer(long long low, long long high) const {
  const Json& json = jsonOf(m_json);
  // A whole number that does not fit would come out as another one.
  const bool fits = json.is_number_integer() &&
                    (!json.is_number_unsigned() ||
                     json.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<long long>::max()));
  if (!fits || json.get<long long>() < low || json.get<long long>() > high) {
    fail("must be a whole number from " + std::to_string(low) + " to " + std::to_string(high) + ", not " + shown(json));
  }
  return json.get<long long>();
}

std::uint64_t SceneValue::count() const {
  const Json& json = jsonOf(m_json);
  if (!json.is_number_unsigned() && !(json.is_number_integer() && json.get<long long>() >= 0)) {
    fail("must be a whole number of at least 0, not " + shown(json));
  }
  return json.get<std::uint64_t>();
}

bool SceneValue::flag() const {
  if (!jsonOf(m_json).is_boolean()) {
    fail("must be true or false, not " + shown(jsonOf(m_json)));
  }
  return jsonOf(m_json).get<bool>();
}

std::string SceneValue::text() const {
  if (!isText()) {
    fail("must be a text, not " + shown(jsonOf(m_json)));
  }
  return jsonOf(m_json).get<std::string>();
}

std::vector<double> SceneValue::numbers() const {
  const std::size_t length = size();
  std::vector<double> values;
  values.reserve(length);
  for (const Json& element : jsonOf(m_json)) {
    if (!element.is_number()) {
      (*this)[values.size()].number();
    }
    values.push_back(element.get<double>());
  }
  return values;
}

std::vector<double> SceneValue::numbers(std::size_t length) const {
  if (!isList() || size() != length) {
    fail("must be a list of " + std::to_string(length) + " numbers, not " + shown(jsonOf(m_json)));
  }
  return numbers();
}

vyr::Vec3 SceneValue::vec3() const {
  const std::vector<double> v = numbers(3);
  return vyr::Vec3(v[0], v[1], v[2]);
}

vyr::Vec4 SceneValue::vec4() const {
  const std::vector<double> v = numbers(4);
  return vyr::Vec4(v[0], v[1], v[2], v[3]);
}

vyr::AffineMatrix4x4 SceneValue::matrix() const {
  const std::vector<double> v = numbers(16);
  vyr::AffineMatrix4x4 result;
  std::copy(v.begin(), v.end(), result.ptr());
  return result;
}

vyr::RangeReal SceneValue::range() const {
  if (!isList() || size() != 2) {
    fail("must be a list of 2 numbers, not " + shown(jsonOf(m_json)));
  }
  const double low = (*this)[std::size_t(0)].limit();
  const double high = (*this)[std::size_t(1)].limit();
  if (!(low <= high)) {
    fail("must name the smaller number first, not " + shown(jsonOf(m_json)));
  }
  return vyr::RangeReal(low, high);
}

void SceneValue::get(const char* key, double& value) const {
  value = has(key) ? (*this)[key].number() : value;
}

void SceneValue::get(const char* key, bool& value) const {
  value = has(key) ? (*this)[key].flag() : value;
}

void SceneValue::get(const char* key, std::string& value) const {
  value = has(key) ? (*this)[key].text() : value;
}

void SceneValue::get(const char* key, vyr::Vec3& value) const {
  value = has(key) ? (*this)[key].vec3() : value;
}

void SceneValue::get(const char* key, vyr::Vec4& value) const {
  value = has(key) ? (*this)[key].vec4() : value;
}

void SceneValue::get(const char* key, vyr::AffineMatrix4x4& value) const {
  value = has(key) ? (*this)[key].matrix() : value;
}

void SceneValue::get(const char* key, std::uint64_t& value) const {
  value = has(key) ? (*this)[key].count() : value;
}

void SceneValue::getLimit(const char* key, double& value) const {
  value = has(key) ? (*this)[key].limit() : value;
}

void SceneValue::getInteger(const char* key, int& value, int low, int high) const {
  value = has(key) ? static_cast<int>((*this)[key].integer(low, high)) : value;
}

void SceneValue::getPositive(const char* key, double& value) const {
  value = has(key) ? (*this)[key].positive() : value;
}

void SceneValue::getNotNegative(const char* key, double& value) const {
  value = has(key) ? (*this)[key].notNegative() : value;
}

void SceneValue::skip() const {
  m_document->markSkipped(m_json);
}

} // namespace vyrSDK
