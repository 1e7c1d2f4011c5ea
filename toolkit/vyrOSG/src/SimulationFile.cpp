// Writes simulations as JSON and reads them back, with the shapes that bodies are made of.
#include "SimulationFile.h"

#include <vyr/Material.h>
#include <vyr/Notify.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/utils.h>

#include <nlohmann/json.hpp>

#include <fstream>
#include <stdexcept>
#include <vector>

namespace vyrOSG {

namespace {

using Json = nlohmann::json;

constexpr int kVersion = 1;

template <class Vector>
Json toJson(const Vector& vector, std::size_t size) {
  Json array = Json::array();
  for (std::size_t i = 0; i < size; ++i)
    array.push_back(vector[i]);
  return array;
}

Json toJson(const vyr::AffineMatrix4x4& matrix) {
  return {{"position", toJson(matrix.getTranslate(), 3)}, {"rotation", toJson(matrix.getRotate(), 4)}};
}

// The readers below throw the library's own exceptions for what is missing or of another kind; restore catches them.

vyr::Vec3 readVec3(const Json& value) {
  return vyr::Vec3(value.at(0).get<double>(), value.at(1).get<double>(), value.at(2).get<double>());
}

vyr::Quat readQuat(const Json& value) {
  return vyr::Quat(value.at(0).get<double>(), value.at(1).get<double>(), value.at(2).get<double>(),
                   value.at(3).get<double>());
}

vyr::AffineMatrix4x4 readPlace(const Json& value) {
  return vyr::AffineMatrix4x4(readQuat(value.at("rotation")), readVec3(value.at("position")));
}

Json shapeToJson(const vyrCollide::Shape& shape) {
  switch (shape.getType()) {
  case vyrCollide::Shape::BOX:
    return {{"type", "box"}, {"halfExtents", toJson(static_cast<const vyrCollide::Box&>(shape).getHalfExtents(), 3)}};
  case vyrCollide::Shape::SPHERE:
    return {{"type", "sphere"}, {"radius", static_cast<const vyrCollide::Sphere&>(shape).getRadius()}};
  case vyrCollide::Shape::CAPSULE: {
    const vyrCollide::Capsule& capsule = static_cast<const vyrCollide::Capsule&>(shape);
    return {{"type", "capsule"}, {"radius", capsule.getRadius()}, {"height", capsule.getHeight()}};
  }
  case vyrCollide::Shape::CYLINDER: {
    const vyrCollide::Cylinder& cylinder = static_cast<const vyrCollide::Cylinder&>(shape);
    return {{"type", "cylinder"}, {"radius", cylinder.getRadius()}, {"height", cylinder.getHeight()}};
  }
  case vyrCollide::Shape::PLANE:
    return {{"type", "plane"}};
  case vyrCollide::Shape::HEIGHT_FIELD: {
    const vyrCollide::HeightField& field = static_cast<const vyrCollide::HeightField&>(shape);
    return {{"type", "heightField"},     {"columns", field.getNumColumns()}, {"rows", field.getNumRows()},
            {"sizeX", field.getSizeX()}, {"sizeY", field.getSizeY()},        {"heights", field.getHeights()}};
  }
  case vyrCollide::Shape::TRIMESH: {
    const vyrCollide::Trimesh& mesh = static_cast<const vyrCollide::Trimesh&>(shape);
    Json vertices = Json::array();
    for (const vyr::Vec3& vertex : mesh.getVertices())
      vertices.push_back(toJson(vertex, 3));
    return {{"type", "trimesh"}, {"vertices", vertices}, {"indices", mesh.getIndices()}};
  }
  }
  return nullptr;
}

vyr::ref_ptr<vyrCollide::Shape> readShape(const Json& value) {
  const std::string type = value.at("type").get<std::string>();
  if (type == "box")
    return new vyrCollide::Box(readVec3(value.at("halfExtents")));
  if (type == "sphere")
    return new vyrCollide::Sphere(value.at("radius").get<double>());
  if (type == "capsule")
    return new vyrCollide::Capsule(value.at("radius").get<double>(), value.at("height").get<double>());
  if (type == "cylinder")
    return new vyrCollide::Cylinder(value.at("radius").get<double>(), value.at("height").get<double>());
  if (type == "plane")
    return new vyrCollide::Plane;
  if (type == "heightField") {
    vyr::RealVector heights;
    for (const Json& height : value.at("heights"))
      heights.push_back(height.get<double>());
    return new vyrCollide::HeightField(value.at("columns").get<std::size_t>(), value.at("rows").get<std::size_t>(),
                                       value.at("sizeX").get<double>(), value.at("sizeY").get<double>(), heights);
  }
  if (type == "trimesh") {
    std::vector<vyr::Vec3> vertices;
    for (const Json& vertex : value.at("vertices"))
      vertices.push_back(readVec3(vertex));
    return new vyrCollide::Trimesh(vertices, value.at("indices").get<std::vector<unsigned int>>());
  }
  throw std::runtime_error("there is no shape \"" + type + "\"");
}

Json geometryToJson(const vyrCollide::Geometry& geometry) {
  const vyr::Material& material = *geometry.getMaterial();
  return {{"name", static_cast<const std::string&>(geometry.getName())},
          {"place", toJson(geometry.getLocalTransform())},
          {"shape", shapeToJson(*geometry.getShape())},
          {"sensor", geometry.isSensor()},
          {"material",
           {{"name", static_cast<const std::string&>(material.getName())},
            {"density", material.getDensity()},
            {"friction", material.getFriction()},
            {"restitution", material.getRestitution()}}}};
}

vyr::ref_ptr<vyrCollide::Geometry> readGeometry(const Json& value) {
  vyr::ref_ptr<vyrCollide::Shape> shape = readShape(value.at("shape"));
  if (!shape->isValid())
    throw std::runtime_error("a shape has impossible sizes");
  vyr::ref_ptr<vyrCollide::Geometry> geometry =
      new vyrCollide::Geometry(shape.get(), vyr::String(value.at("name").get<std::string>()));
  const Json& material = value.at("material");
  geometry->setMaterial(new vyr::Material(vyr::String(material.at("name").get<std::string>()),
                                          material.at("density").get<double>(), material.at("friction").get<double>(),
                                          material.at("restitution").get<double>()));
  geometry->setSensor(value.at("sensor").get<bool>());
  return geometry;
}

Json bodyToJson(const vyr::RigidBody& body) {
  Json geometries = Json::array();
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body.getGeometries())
    geometries.push_back(geometryToJson(*geometry));
  return {{"name", static_cast<const std::string&>(body.getName())},
          {"motionControl", static_cast<int>(body.getMotionControl())},
          {"mass", body.getMass()},
          {"position", toJson(body.getPosition(), 3)},
          {"rotation", toJson(body.getRotation(), 4)},
          {"velocity", toJson(body.getVelocity(), 3)},
          {"angularVelocity", toJson(body.getAngularVelocity(), 3)},
          {"geometries", geometries}};
}

struct BodyState {
  vyr::Vec3 position;
  vyr::Quat rotation;
  vyr::Vec3 velocity;
  vyr::Vec3 turning;

  explicit BodyState(const Json& value)
      : position(readVec3(value.at("position")))
      , rotation(readQuat(value.at("rotation")))
      , velocity(readVec3(value.at("velocity")))
      , turning(readVec3(value.at("angularVelocity"))) {}

  void apply(vyr::RigidBody& body) const {
    body.setPosition(position);
    body.setRotation(rotation);
    body.setVelocity(velocity);
    body.setAngularVelocity(turning);
  }
};

vyr::ref_ptr<vyr::RigidBody> readBody(const Json& value) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody(vyr::String(value.at("name").get<std::string>()));
  // A body of planes has to stand still before it takes them.
  body->setMotionControl(static_cast<vyr::RigidBody::MotionControl>(value.at("motionControl").get<int>()));
  for (const Json& geometry : value.at("geometries"))
    body->add(readGeometry(geometry).get(), readPlace(geometry.at("place")));
  body->setMass(value.at("mass").get<double>());
  BodyState(value).apply(*body);
  return body;
}

void restoreInto(vyrSDK::Simulation& simulation, const Json& state, Group* visuals) {
  if (state.at("version").get<int>() != kVersion)
    throw std::runtime_error("it was written in another version of the format");
  const double time = state.at("time").get<double>();
  const std::uint64_t step = state.at("step").get<std::uint64_t>();
  const Json& saved = state.at("bodies");
  const std::vector<vyr::ref_ptr<vyr::RigidBody>>& bodies = simulation.getRigidBodies();
  if (bodies.empty() && simulation.getGeometries().empty()) {
    std::vector<vyr::ref_ptr<vyr::RigidBody>> made;
    for (const Json& value : saved)
      made.push_back(readBody(value));
    std::vector<vyr::ref_ptr<vyrCollide::Geometry>> ground;
    for (const Json& value : state.at("geometries")) {
      ground.push_back(readGeometry(value));
      ground.back()->setLocalTransform(readPlace(value.at("place")));
    }
    for (const vyr::ref_ptr<vyr::RigidBody>& body : made) {
      simulation.add(body.get());
      if (visuals)
        createVisual(body.get(), visuals);
    }
    for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : ground) {
      simulation.add(geometry.get());
      if (visuals)
        createVisual(geometry.get(), visuals);
    }
  } else {
    if (saved.size() != bodies.size())
      throw std::runtime_error("it has " + std::to_string(saved.size()) + " bodies, the simulation " +
                               std::to_string(bodies.size()));
    std::vector<BodyState> states;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
      const std::string name = saved.at(i).at("name").get<std::string>();
      if (name != bodies[i]->getName())
        throw std::runtime_error("body " + std::to_string(i) + " is \"" + name + "\" there and \"" +
                                 bodies[i]->getName() + "\" here");
      states.emplace_back(saved.at(i));
    }
    for (std::size_t i = 0; i < bodies.size(); ++i)
      states[i].apply(*bodies[i]);
  }
  simulation.setTime(time, step);
}

} // namespace

bool SimulationFile::save(const vyrSDK::Simulation& simulation, const std::string& file) {
  Json state = {{"version", kVersion},
                {"time", simulation.getTime()},
                {"step", simulation.getTimeStamp().steps()},
                {"bodies", Json::array()},
                {"geometries", Json::array()}};
  for (const vyr::ref_ptr<vyr::RigidBody>& body : simulation.getRigidBodies())
    state["bodies"].push_back(bodyToJson(*body));
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : simulation.getGeometries())
    state["geometries"].push_back(geometryToJson(*geometry));
  std::ofstream out(file);
  out << state.dump(1, ' ', false, Json::error_handler_t::replace) << "\n";
  out.close();
  if (!out) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot write the state file \"" << file << "\"";
    return false;
  }
  return true;
}

bool SimulationFile::restore(vyrSDK::Simulation& simulation, const std::string& file, Group* visuals) {
  std::ifstream in(file);
  if (!in) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot read the state file \"" << file << "\"";
    return false;
  }
  try {
    restoreInto(simulation, Json::parse(in), visuals);
  } catch (const std::exception& problem) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot restore from \"" << file << "\": " << problem.what();
    return false;
  }
  return true;
}

} // namespace vyrOSG
