/// The text of a scene file, parsed, with a memory of what was read of it.
#pragma once

#include "SceneJson.h"

#include <vyrSDK/SceneValue.h>

#include <string>
#include <unordered_set>
#include <vector>

namespace vyrSDK {

/// Owns what SceneValues point into.
class SceneDocument {
public:
  SceneDocument() = default;
  SceneDocument(const SceneDocument&) = delete;
  SceneDocument& operator=(const SceneDocument&) = delete;

  /// Throws a std::exception that names line and column of a mistake.
  void parse(const std::string& text);

  Json& getJson() { return m_json; }
  SceneValue getRoot() { return SceneValue(this, &m_json, ""); }

  /// Paths of the members that nobody asked for.
  std::vector<std::string> findUnknown() const;

  void markKnown(const void* json) { m_known.insert(json); }
  void markSkipped(const void* json) { m_skipped.insert(json); }

private:
  void collectUnknown(const Json& json, const std::string& path, std::vector<std::string>& unknown) const;

  Json m_json;
  std::unordered_set<const void*> m_known;
  std::unordered_set<const void*> m_skipped;
};

} // namespace vyrSDK
