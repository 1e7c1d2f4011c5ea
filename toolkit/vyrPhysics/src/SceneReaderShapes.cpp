/// Reads materials, shapes and places from a scene file.
#include "SceneParse.h"

#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>

namespace vyrSDK {

namespace {

vyr::ref_ptr<vyrCollide::Shape> makeBox(const SceneValue& value) {
  const SceneValue half = value["halfExtents"];
  half.vec3();
  return new vyrCollide::Box(half[std::size_t(0)].positive(), half[std::size_t(1)].positive(),
                             half[std::size_t(2)].positive());
}

vyr::ref_ptr<vyrCollide::Shape> makeHeightField(const SceneValue& value) {
  constexpr long long kMost = 1 << 24;
  const auto columns = static_cast<std::size_t>(value["columns"].integer(2, kMost));
  const auto rows = static_cast<std::size_t>(value["rows"].integer(2, kMost));
  const std::vector<double> size = value["size"].numbers(2);
  const std::vector<double> list = value["heights"].numbers(columns * rows);
  vyr::RealVector heights;
  heights.assign(list.begin(), list.end());
  bool changed = false;
  value.get("changed", changed);
  vyr::ref_ptr<vyrCollide::HeightField> field = new vyrCollide::HeightField(
      columns, rows, value["size"][std::size_t(0)].positive(), value["size"][std::size_t(1)].positive(), heights);
  if (changed && field->isValid()) {
    field->setHeights(heights);
  }
  return field;
}

vyr::ref_ptr<vyrCollide::Shape> makeTrimesh(const SceneValue& value) {
  const SceneValue points = value["vertices"];
  std::vector<vyr::Vec3> vertices;
  for (std::size_t i = 0; i < points.size(); ++i) {
    vertices.push_back(points[i].vec3());
  }
  const SceneValue corners = value["indices"];
  std::vector<unsigned int> indices;
  if (corners.size() == 0 || corners.size() % 3 != 0) {
    corners.fail("must have three numbers a triangle, and one triangle at least");
  }
  for (std::size_t i = 0; i < corners.size(); ++i) {
    indices.push_back(static_cast<unsigned int>(corners[i].integer(0, static_cast<long long>(vertices.size()) - 1)));
  }
  return new vyrCollide::Trimesh(vertices, indices);
}

} // namespace

vyr::ref_ptr<vyr::Material> makeMaterial(const SceneValue& value) {
  vyr::ref_ptr<vyr::Material> material = new vyr::Material;
  std::string name;
  double density = material->getDensity();
  double friction = material->getFriction();
  double restitution = material->getRestitution();
  double rolling = material->getRollingFriction();
  value.get("name", name);
  value.getPositive("density", density);
  value.getNotNegative("friction", friction);
  value.getNotNegative("restitution", restitution);
  value.getNotNegative("rollingFriction", rolling);
  if (restitution > 1) {
    value["restitution"].fail("must be from 0 to 1");
  }
  material->setName(name);
  material->setDensity(density);
  material->setFriction(friction);
  material->setRestitution(restitution);
  material->setRollingFriction(rolling);
  return material;
}

vyr::ref_ptr<vyrCollide::Shape> makeShape(const SceneValue& value) {
  const std::string type = value["type"].text();
  vyr::ref_ptr<vyrCollide::Shape> shape;
  if (type == "box") {
    shape = makeBox(value);
  } else if (type == "sphere") {
    shape = new vyrCollide::Sphere(value["radius"].positive());
  } else if (type == "capsule") {
    shape = new vyrCollide::Capsule(value["radius"].positive(), value["height"].positive());
  } else if (type == "cylinder") {
    shape = new vyrCollide::Cylinder(value["radius"].positive(), value["height"].positive());
  } else if (type == "plane") {
    shape = new vyrCollide::Plane;
  } else if (type == "heightField") {
    shape = makeHeightField(value);
  } else if (type == "trimesh") {
    shape = makeTrimesh(value);
  } else {
    value["type"].fail("there is no shape \"" + type + "\"");
  }
  if (!shape->isValid()) {
    value.fail("is no usable shape");
  }
  return shape;
}

vyr::AffineMatrix4x4 readPlace(const SceneValue& value) {
  vyr::AffineMatrix4x4 place;
  if (value.has("transform")) {
    value.get("transform", place);
    return place;
  }
  vyr::Vec3 position;
  vyr::Vec4 turn(0, 0, 0, 1);
  value.get("position", position);
  value.get("rotation", turn);
  const double length = turn.length();
  if (!(length > 1e-6)) {
    value["rotation"].fail("must be a quaternion, not only zeros");
  }
  return vyr::AffineMatrix4x4(vyr::Quat(turn.x() / length, turn.y() / length, turn.z() / length, turn.w() / length),
                              position);
}

vyr::ref_ptr<vyr::Frame> makeFrame(const SceneValue& value, const SceneParts& parts, const vyr::Frame* first) {
  vyr::RigidBody* body = value.has("body") ? parts.bodyAt(value["body"]) : nullptr;
  const bool placed = value.has("transform") || value.has("position") || value.has("rotation");
  if (placed || first == nullptr) {
    return new vyr::Frame(body, readPlace(value));
  }
  const vyr::AffineMatrix4x4 world = first->getTransform();
  return new vyr::Frame(body, body != nullptr ? world * body->getTransform().inverse() : world);
}

} // namespace vyrSDK
