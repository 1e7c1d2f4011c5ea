/// Brings scene files of older versions to the present one.
#include "SceneUpgrade.h"

#include <utility>
#include <vector>

namespace vyrSDK {

namespace {

/// Version 1 held all geometries in one list, to which bodies, spaces and assemblies referred by number.
class FirstVersion {
public:
  explicit FirstVersion(Json& scene)
      : m_scene(scene)
      , m_geometries(scene.at("geometries"))
      , m_places(m_geometries.size()) {}

  void upgrade() {
    int number = 0;
    for (Json& body : m_scene.at("bodies")) {
      move(body.at("geometries"), number++);
    }
    move(m_scene.at("freeGeometries"), -1);
    Json loose = std::move(m_scene["freeGeometries"]);
    m_scene.erase("freeGeometries");
    m_scene["geometries"] = std::move(loose);
    for (Json& space : m_scene.at("spaces")) {
      refer(space);
    }
    for (Json& assembly : m_scene.at("assemblies")) {
      referIn(assembly);
    }
    m_scene["version"] = kSceneVersion;
  }

private:
  /// Puts the geometries themselves in the place of their numbers.
  void move(Json& numbers, int owner) {
    Json moved = Json::array();
    for (const Json& number : numbers) {
      const auto index = number.get<std::size_t>();
      m_places.at(index) = {owner, static_cast<int>(moved.size())};
      moved.push_back(m_geometries.at(index));
    }
    numbers = std::move(moved);
  }

  void refer(Json& numbers) const {
    for (Json& number : numbers) {
      const std::pair<int, int> place = m_places.at(number.get<std::size_t>());
      number = {place.first, place.second};
    }
  }

  void referIn(Json& assembly) const {
    refer(assembly.at("geometries"));
    for (Json& inner : assembly.at("assemblies")) {
      referIn(inner);
    }
  }

  Json& m_scene;
  const Json m_geometries;
  std::vector<std::pair<int, int>> m_places; ///< owner and place of each old number
};

/// The application once saved bodies without what holds them together.
void upgradeStateGeometry(Json& geometry) {
  geometry.update(Json(geometry.at("place")));
  geometry.erase("place");
  Json& shape = geometry.at("shape");
  if (shape.contains("sizeX")) {
    shape["size"] = {shape.at("sizeX"), shape.at("sizeY")};
    shape.erase("sizeX");
    shape.erase("sizeY");
  }
}

void upgradeStateFile(Json& scene) {
  for (Json& body : scene.at("bodies")) {
    for (Json& geometry : body.at("geometries")) {
      upgradeStateGeometry(geometry);
    }
  }
  for (Json& geometry : scene.at("geometries")) {
    upgradeStateGeometry(geometry);
  }
  scene["simulation"]["countStart"] = scene.at("time");
  scene["simulation"]["steps"] = scene.at("step");
  scene.erase("time");
  scene.erase("step");
  scene["format"] = "vyr-scene";
  scene["version"] = kSceneVersion;
}

} // namespace

void upgradeScene(Json& scene) {
  if (!scene.is_object() || !scene.contains("version") || scene["version"] != 1) {
    return;
  }
  if (!scene.contains("format")) {
    if (scene.contains("bodies") && scene.contains("time")) {
      upgradeStateFile(scene);
    }
  } else if (scene["format"] == "vyr-scene") {
    FirstVersion(scene).upgrade();
  }
}

} // namespace vyrSDK
