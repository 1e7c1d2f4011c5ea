/// The text of a scene file, parsed, with a memory of what was read of it.
#include "SceneDocument.h"

namespace vyrSDK {

void SceneDocument::parse(const std::string& text) {
  m_json = Json::parse(text);
}

void SceneDocument::collectUnknown(const Json& json, const std::string& path, std::vector<std::string>& unknown) const {
  if (m_skipped.count(&json) != 0) {
    return;
  }
  if (json.is_array()) {
    for (std::size_t i = 0; i < json.size() && json[i].is_structured(); ++i) {
      collectUnknown(json[i], path + "[" + std::to_string(i) + "]", unknown);
    }
  } else if (json.is_object()) {
    for (const auto& member : json.items()) {
      const std::string name = path.empty() ? member.key() : path + "." + member.key();
      if (m_known.count(&member.value()) == 0) {
        unknown.push_back(name);
      } else {
        collectUnknown(member.value(), name, unknown);
      }
    }
  }
}

std::vector<std::string> SceneDocument::findUnknown() const {
  std::vector<std::string> unknown;
  collectUnknown(m_json, "", unknown);
  return unknown;
}

} // namespace vyrSDK
