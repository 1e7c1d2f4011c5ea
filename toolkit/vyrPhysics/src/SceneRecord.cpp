/// An object of a scene file that is being written.
#include <vyrSDK/SceneRecord.h>

#include "SceneJson.h"

namespace vyrSDK {

namespace {

Json& jsonOf(void* pointer) {
  return *static_cast<Json*>(pointer);
}

} // namespace

void SceneRecord::set(const char* key, double value) {
  jsonOf(m_json)[key] = toJson(value);
}

void SceneRecord::set(const char* key, bool value) {
  jsonOf(m_json)[key] = value;
}

void SceneRecord::set(const char* key, int value) {
  jsonOf(m_json)[key] = value;
}

void SceneRecord::set(const char* key, std::uint64_t value) {
  jsonOf(m_json)[key] = value;
}

void SceneRecord::set(const char* key, const char* value) {
  jsonOf(m_json)[key] = value;
}

void SceneRecord::set(const char* key, const std::string& value) {
  jsonOf(m_json)[key] = value;
}

void SceneRecord::set(const char* key, const vyr::Vec3& value) {
  jsonOf(m_json)[key] = toJson(value);
}

void SceneRecord::set(const char* key, const vyr::Vec4& value) {
  jsonOf(m_json)[key] = toJson(value);
}

void SceneRecord::set(const char* key, const vyr::AffineMatrix4x4& value) {
  jsonOf(m_json)[key] = toJson(value);
}

void SceneRecord::set(const char* key, const std::vector<double>& values) {
  jsonOf(m_json)[key] = values;
}

void SceneRecord::set(const char* key, const std::vector<int>& values) {
  jsonOf(m_json)[key] = values;
}

void SceneRecord::set(const char* key, const std::vector<vyr::Vec3>& values) {
  Json& list = jsonOf(m_json)[key];
  list = Json::array();
  for (const vyr::Vec3& value : values) {
    for (std::size_t i = 0; i < 3; ++i) {
      list.push_back(value[i]);
    }
  }
}

SceneRecord SceneRecord::add(const char* key) {
  Json& member = jsonOf(m_json)[key];
  member = Json::object();
  return SceneRecord(&member);
}

SceneRecord SceneRecord::append(const char* key) {
  Json& list = jsonOf(m_json)[key];
  list.push_back(Json::object());
  return SceneRecord(&list.back());
}

} // namespace vyrSDK
