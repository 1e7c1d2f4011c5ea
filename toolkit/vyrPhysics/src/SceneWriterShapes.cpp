/// Writes materials, shapes and geometries into a scene file.
#include "SceneWriter.h"

#include <vyr/Material.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>

namespace vyrSDK {

namespace {

Json shapeJson(const vyrCollide::Shape& shape) {
  using namespace vyrCollide;
  switch (shape.getType()) {
  case Shape::BOX:
    return {{"type", "box"}, {"halfExtents", toJson(static_cast<const Box&>(shape).getHalfExtents())}};
  case Shape::SPHERE:
    return {{"type", "sphere"}, {"radius", static_cast<const Sphere&>(shape).getRadius()}};
  case Shape::CAPSULE: {
    const auto& capsule = static_cast<const Capsule&>(shape);
    return {{"type", "capsule"}, {"radius", capsule.getRadius()}, {"height", capsule.getHeight()}};
  }
  case Shape::CYLINDER: {
    const auto& cylinder = static_cast<const Cylinder&>(shape);
    return {{"type", "cylinder"}, {"radius", cylinder.getRadius()}, {"height", cylinder.getHeight()}};
  }
  case Shape::PLANE:
    return {{"type", "plane"}};
  case Shape::HEIGHT_FIELD: {
    const auto& field = static_cast<const HeightField&>(shape);
    return {{"type", "heightField"},
            {"columns", field.getNumColumns()},
            {"rows", field.getNumRows()},
            {"size", {field.getSizeX(), field.getSizeY()}},
            {"changed", field.getRevision() > 0},
            {"heights", field.getHeights()}};
  }
  case Shape::TRIMESH: {
    const auto& mesh = static_cast<const Trimesh&>(shape);
    Json vertices = Json::array();
    for (const vyr::Vec3& vertex : mesh.getVertices()) {
      vertices.push_back(toJson(vertex));
    }
    return {{"type", "trimesh"}, {"vertices", vertices}, {"indices", mesh.getIndices()}};
  }
  }
  return Json();
}

} // namespace

int SceneWriter::indexOf(const vyr::Material* material) {
  if (material == nullptr || material == vyr::Material::getDefault()) {
    return -1;
  }
  const auto entry = m_materials.emplace(material, static_cast<int>(m_materials.size()));
  if (entry.second) {
    m_json["materials"].push_back({{"name", std::string(material->getName())},
                                   {"density", material->getDensity()},
                                   {"friction", material->getFriction()},
                                   {"restitution", material->getRestitution()},
                                   {"rollingFriction", material->getRollingFriction()}});
  }
  return entry.first->second;
}

int SceneWriter::indexOf(const vyrCollide::Shape* shape) {
  const auto entry = m_shapes.emplace(shape, static_cast<int>(m_shapes.size()));
  if (entry.second) {
    m_json["shapes"].push_back(shapeJson(*shape));
  }
  return entry.first->second;
}

void SceneWriter::countShapes() {
  const auto count = [this](const vyrCollide::Geometry& geometry) { ++m_shapeUses[geometry.getShape()]; };
  for (const auto& body : m_simulation.getRigidBodies()) {
    for (const auto& geometry : body->getGeometries()) {
      count(*geometry);
    }
  }
  for (const auto& geometry : m_simulation.getGeometries()) {
    count(*geometry);
  }
}

Json SceneWriter::geometryJson(const vyrCollide::Geometry& geometry, int body, int place) {
  m_places[&geometry] = {body, place};
  const vyrCollide::Shape* shape = geometry.getShape();
  Json json = {{"name", std::string(geometry.getName())}};
  // What several geometries share is written once, so that it is shared when it comes back.
  if (m_shapeUses[shape] > 1) {
    json["shape"] = indexOf(shape);
  } else {
    json["shape"] = shapeJson(*shape);
  }
  json["material"] = indexOf(geometry.getMaterial());
  json["transform"] = toJson(geometry.getLocalTransform());
  json["sensor"] = geometry.isSensor();
  json["collides"] = geometry.getEnableCollisions();
  if (m_visuals != nullptr) {
    Json look = Json::object();
    SceneRecord record(&look);
    json["visual"] = m_visuals->write(geometry, m_folder, record) ? look : Json(false);
  }
  return json;
}

std::vector<int> SceneWriter::placeOf(const vyrCollide::Geometry* geometry) const {
  const auto found = m_places.find(geometry);
  return found != m_places.end() ? found->second : std::vector<int>();
}

} // namespace vyrSDK
