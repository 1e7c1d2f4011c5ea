// Puts geometry, body and visual together.
#include <vyrOSG/SimulationObject.h>

#include "DataFile.h"

#include <vyrOSG/utils.h>

#include <vyr/Notify.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Sphere.h>

#include <cmath>

namespace vyrOSG {

namespace {

/// What all create functions are told alike.
struct Request {
  const char* function;
  const vyr::String& name;
  const vyr::AffineMatrix4x4& transform;
  vyrOSG::Group* group;
  vyrSDK::Simulation* simulation;
  vyr::RigidBody::MotionControl motion;
  bool createVisual;
  bool enableCollisions;
  bool sensor = false;
};

/// Whether all sizes are positive and finite and the transform is finite; else one Notify line says which one is not.
bool check(const Request& request, std::initializer_list<std::pair<const char*, double>> sizes) {
  for (const auto& size : sizes) {
    if (!std::isfinite(size.second) || size.second <= 0) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::SimulationObject::" << request.function << ": " << size.first << " "
                                    << size.second << " of '" << request.name << "' is not a positive number";
      return false;
    }
  }
  if (!request.transform.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::SimulationObject::" << request.function << ": the transform of '"
                                  << request.name << "' is not finite";
    return false;
  }
  if (request.motion < vyr::RigidBody::STATIC || request.motion > vyr::RigidBody::DYNAMICS) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::SimulationObject::" << request.function << ": the motion control "
                                  << int(request.motion) << " of '" << request.name
                                  << "' is none of STATIC (1), KINEMATICS (2) and DYNAMICS (3)";
    return false;
  }
  return true;
}

vyr::ref_ptr<vyr::RigidBody> makeBody(const Request& request) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody(request.name);
  body->setMotionControl(request.motion);
  body->setTransform(request.transform);
  return body;
}

SimulationObject assemble(const Request& request, const vyr::ref_ptr<vyrCollide::Shape>& shape,
                          const datafile::Model* model = nullptr) {
  SimulationObject object;
  if (!shape->isValid())
    return object;
  vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(shape.get(), request.name);
  geometry->setSensor(request.sensor);
  geometry->setEnableCollisions(request.enableCollisions);
  vyr::ref_ptr<vyr::RigidBody> body = makeBody(request);
  if (!body->add(geometry.get()))
    return object;
  object.geometry = geometry;
  object.body = body;
  if (request.simulation)
    request.simulation->add(body.get());
  if (!request.group || !request.createVisual)
    return object;
  GeometryNode* visual = createVisual(geometry.get(), request.group, 0.3f, false, true);
  if (visual && model && model->hasLook)
    visual->setRenderChild(GeometryNode::RENDER_DATA, model->node.get());
  object.node = visual;
  return object;
}

SimulationObject meshFromFile(const Request& request, const vyr::String& fileName, double scale) {
  if (!check(request, {{"the scale", scale}}))
    return SimulationObject();
  datafile::Model model;
  if (!datafile::readModel("vyrOSG::SimulationObject::createTrimesh", fileName, scale, model))
    return SimulationObject(nullptr, makeBody(request).get());
  return assemble(request, model.mesh, &model);
}

} // namespace

SimulationObject::SimulationObject() = default;

SimulationObject::SimulationObject(vyrCollide::Geometry* inGeometry, vyr::RigidBody* inBody, osg::Node* inNode)
    : vyrSDK::SimulationObject(inGeometry, inBody)
    , node(inNode) {}

SimulationObject::SimulationObject(const SimulationObject& other) = default;
SimulationObject& SimulationObject::operator=(const SimulationObject& other) = default;
SimulationObject::~SimulationObject() = default;

SimulationObject SimulationObject::createBox(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                             const vyr::Vec3& size, vyrOSG::Group* group,
                                             vyrSDK::Simulation* simulation, MotionControl motion, bool createVisual,
                                             bool enableCollisions, bool sensor) {
  const Request request{"createBox", name,         transform,        group, simulation,
                        motion,      createVisual, enableCollisions, sensor};
  if (!check(request, {{"the x size", size[0]}, {"the y size", size[1]}, {"the z size", size[2]}}))
    return SimulationObject();
  return assemble(request, vyr::ref_ptr<vyrCollide::Shape>(new vyrCollide::Box(size * 0.5)));
}

SimulationObject SimulationObject::createPlane(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                               vyrOSG::Group* group, vyrSDK::Simulation* simulation,
                                               MotionControl motion, bool createVisual, bool enableCollisions) {
  const Request request{"createPlane", name, transform, group, simulation, motion, createVisual, enableCollisions};
  if (!check(request, {}))
    return SimulationObject();
  return assemble(request, vyr::ref_ptr<vyrCollide::Shape>(new vyrCollide::Plane()));
}

SimulationObject SimulationObject::createHeightField(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                     const vyr::String& fileName, const double& sizeX,
                                                     const double& sizeY, const double& minHeight,
                                                     const double& maxHeight, vyrOSG::Group* group,
                                                     vyrSDK::Simulation* simulation, MotionControl motion,
                                                     bool createVisual, bool enableCollisions) {
  const Request request{"createHeightField", name,   transform,    group,
                        simulation,          motion, createVisual, enableCollisions};
  if (!check(request, {{"the x size", sizeX}, {"the y size", sizeY}}))
    return SimulationObject();
  if (!std::isfinite(minHeight) || !std::isfinite(maxHeight) || minHeight > maxHeight) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::SimulationObject::createHeightField: the heights of '" << name
                                  << "' from " << minHeight << " to " << maxHeight << " are no range";
    return SimulationObject();
  }
  datafile::Heights heights;
  if (!datafile::readHeights("vyrOSG::SimulationObject::createHeightField", fileName, minHeight, maxHeight, heights))
    return SimulationObject(nullptr, makeBody(request).get());
  vyr::RealVector values;
  values.assign(heights.values.begin(), heights.values.end());
  return assemble(request, vyr::ref_ptr<vyrCollide::Shape>(
                               new vyrCollide::HeightField(heights.columns, heights.rows, sizeX, sizeY, values)));
}

SimulationObject SimulationObject::createHeightField(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                     const vyr::VectorPOD<double, vyr::ByteAllocator>& heights,
                                                     unsigned long columns, unsigned long rows, double sizeX,
                                                     double sizeY, double heightScale, vyrOSG::Group* group,
                                                     vyrSDK::Simulation* simulation, MotionControl motion,
                                                     bool createVisual, bool enableCollisions) {
  const Request request{"createHeightField", name,   transform,    group,
                        simulation,          motion, createVisual, enableCollisions};
  if (!check(request, {{"the x size", sizeX}, {"the y size", sizeY}}))
    return SimulationObject();
  if (columns < 2 || rows < 2 || heights.size() / columns != rows || heights.size() % columns != 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::SimulationObject::createHeightField: '" << name << "' has "
                                  << heights.size() << " heights for " << columns << " columns and " << rows << " rows";
    return SimulationObject();
  }
  vyr::RealVector values(heights);
  for (double& value : values) {
    value *= heightScale;
    if (!std::isfinite(value)) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::SimulationObject::createHeightField: a height of '" << name
                                    << "' is not finite";
      return SimulationObject();
    }
  }
  return assemble(request,
                  vyr::ref_ptr<vyrCollide::Shape>(new vyrCollide::HeightField(columns, rows, sizeX, sizeY, values)));
}

SimulationObject SimulationObject::createCylinder(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                  double radius, double height, vyrOSG::Group* group,
                                                  vyrSDK::Simulation* simulation, MotionControl motion,
                                                  bool createVisual, bool enableCollisions, bool sensor) {
  const Request request{"createCylinder", name,         transform,        group, simulation,
                        motion,           createVisual, enableCollisions, sensor};
  if (!check(request, {{"the radius", radius}, {"the height", height}}))
    return SimulationObject();
  return assemble(request, vyr::ref_ptr<vyrCollide::Shape>(new vyrCollide::Cylinder(radius, height)));
}

SimulationObject SimulationObject::createCapsule(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                 double radius, double height, vyrOSG::Group* group,
                                                 vyrSDK::Simulation* simulation, MotionControl motion,
                                                 bool createVisual, bool enableCollisions) {
  const Request request{"createCapsule", name, transform, group, simulation, motion, createVisual, enableCollisions};
  if (!check(request, {{"the radius", radius}, {"the height", height}}))
    return SimulationObject();
  return assemble(request, vyr::ref_ptr<vyrCollide::Shape>(new vyrCollide::Capsule(radius, height)));
}

SimulationObject SimulationObject::createSphere(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                double radius, vyrOSG::Group* group, vyrSDK::Simulation* simulation,
                                                MotionControl motion, bool createVisual, bool enableCollisions) {
  const Request request{"createSphere", name, transform, group, simulation, motion, createVisual, enableCollisions};
  if (!check(request, {{"the radius", radius}}))
    return SimulationObject();
  return assemble(request, vyr::ref_ptr<vyrCollide::Shape>(new vyrCollide::Sphere(radius)));
}

SimulationObject SimulationObject::createTrimesh(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                 const vyr::String& fileName, vyrOSG::Group* group,
                                                 vyrSDK::Simulation* simulation, MotionControl motion,
                                                 bool createVisual, bool enableCollisions) {
  return createTrimesh(name, transform, fileName, 1.0, group, simulation, motion, createVisual, enableCollisions);
}

SimulationObject SimulationObject::createTrimesh(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                 vyrCollide::Trimesh* mesh, vyrOSG::Group* group,
                                                 vyrSDK::Simulation* simulation, MotionControl motion,
                                                 bool createVisual, bool enableCollisions) {
  const Request request{"createTrimesh", name, transform, group, simulation, motion, createVisual, enableCollisions};
  if (!check(request, {}))
    return SimulationObject();
  if (!mesh) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::SimulationObject::createTrimesh: there is no mesh for '" << name << "'";
    return SimulationObject();
  }
  return assemble(request, vyr::ref_ptr<vyrCollide::Shape>(mesh));
}

SimulationObject SimulationObject::createTrimesh(const vyr::String& name, const vyr::AffineMatrix4x4& transform,
                                                 const vyr::String& fileName, double scale, vyrOSG::Group* group,
                                                 vyrSDK::Simulation* simulation, MotionControl motion,
                                                 bool createVisual, bool enableCollisions) {
  const Request request{"createTrimesh", name, transform, group, simulation, motion, createVisual, enableCollisions};
  return meshFromFile(request, fileName, scale);
}

} // namespace vyrOSG
