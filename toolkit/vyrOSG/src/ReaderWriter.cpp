/// The loaders: models through the scene-graph library's readers, scenes through the simulation's own format.
#include <vyrOSG/ReaderWriter.h>

#include "DataFile.h"
#include "FileSearch.h"
#include "ModelNode.h"
#include "SceneFile.h"
#include "SceneVisualReader.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/utils.h>

#include <vyr/Constraint.h>
#include <vyr/Notify.h>
#include <vyr/ParticleSystem.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/Assembly.h>
#include <vyrSDK/Simulation.h>

#include <osg/BoundingSphere>
#include <osg/Node>
#include <osgDB/FileNameUtils>
#include <osgDB/Registry>

#include <vector>

namespace vyrOSG {

namespace {

// Far enough that what was read fills about half of the picture's height.
constexpr double kHomeDistance = 3.5;

/// What was read from a file, before any of it is in the simulation that it is for.
struct Parts {
  std::vector<vyr::ref_ptr<vyr::RigidBody>> bodies;
  std::vector<vyr::ref_ptr<vyrCollide::Geometry>> geometries;
  std::vector<vyr::ref_ptr<vyr::Constraint>> constraints;
  std::vector<vyr::ref_ptr<vyr::ParticleSystem>> particleSystems;
  std::vector<vyr::ref_ptr<vyrSDK::Assembly>> assemblies;
  std::vector<vyr::ref_ptr<vyrSDK::StepEventListener>> listeners;
  /// The picture of a model file that brings its own look. Nullable: the body is drawn by its shape.
  osg::ref_ptr<osg::Node> look;
};

/// Puts what was read where it goes: an assembly, or the simulation itself. Parts of assemblies that were read stay
/// with them.
void place(const Parts& parts, vyrSDK::Simulation& simulation, vyrSDK::Assembly* assembly) {
  const auto add = [&](auto* part) { return assembly ? assembly->add(part) : simulation.add(part); };
  if (assembly && !assembly->getSimulation())
    simulation.add(assembly);
  for (const vyr::ref_ptr<vyrSDK::Assembly>& read : parts.assemblies)
    if (!read->getSimulation())
      add(read.get());
  for (const vyr::ref_ptr<vyr::RigidBody>& body : parts.bodies)
    if (!body->getSimulation())
      add(body.get());
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : parts.geometries)
    if (!geometry->getSimulation())
      add(geometry.get());
  for (const vyr::ref_ptr<vyr::Constraint>& constraint : parts.constraints)
    if (!constraint->getSimulation())
      add(constraint.get());
  // Assemblies have no particle systems.
  for (const vyr::ref_ptr<vyr::ParticleSystem>& particles : parts.particleSystems)
    if (!particles->getSimulation())
      simulation.add(particles.get());
  for (const vyr::ref_ptr<vyrSDK::StepEventListener>& listener : parts.listeners)
    simulation.add(listener.get());
}

void takeParts(const vyrSDK::Simulation& simulation, unsigned long mask, Parts& outParts) {
  if ((mask & READ_BODIES) == 0)
    return;
  outParts.bodies = simulation.getRigidBodies();
  outParts.geometries = simulation.getGeometries();
  outParts.particleSystems = simulation.getParticleSystems();
  outParts.assemblies = simulation.getAssemblies();
  if ((mask & READ_CONSTRAINTS) != 0)
    outParts.constraints = simulation.getConstraints();
}

/// Reads a scene file into a simulation of its own and takes the parts out of it, so that a mistake anywhere in the
/// file leaves the simulation that they are for as it is. `whole`: the simulation is empty, and the file may go into it
/// with all that it remembers.
bool readParts(const std::string& path, vyrSDK::Simulation& simulation, unsigned long mask, bool whole,
               SceneVisualReader& visuals, Parts& outParts) {
  constexpr unsigned long kWhole = READ_BODIES | READ_CONSTRAINTS | READ_SETTINGS;
  if (whole && (mask & kWhole) == kWhole) {
    if (!simulation.read(path, &visuals))
      return false;
    takeParts(simulation, mask, outParts);
    return true;
  }
  vyr::ref_ptr<vyrSDK::Simulation> staging = new vyrSDK::Simulation;
  staging->setGravity(simulation.getGravity());
  staging->setTimeStep(simulation.getTimeStep());
  if (!staging->read(path, &visuals))
    return false;
  if ((mask & READ_SETTINGS) != 0) {
    simulation.setGravity(staging->getGravity());
    simulation.setTimeStep(staging->getTimeStep());
  }
  takeParts(*staging, mask, outParts);
  outParts.listeners = staging->getStepEventListeners();
  staging->clear();
  return true;
}

bool readModelBody(const std::string& path, unsigned long mask, Parts& outParts) {
  datafile::Model model;
  if (!datafile::readModel("vyrOSG::readFile", path, 1, model))
    return false;
  if (model.hasLook)
    outParts.look = model.node;
  if ((mask & READ_BODIES) == 0)
    return true;
  const vyr::String name = osgDB::getStrippedName(path);
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody(name);
  body->setMotionControl(vyr::RigidBody::STATIC);
  if (!body->add(new vyrCollide::Geometry(model.mesh.get(), name)))
    return false;
  outParts.bodies.push_back(body);
  return true;
}

/// The sphere around what was drawn; the endless planes are left out.
void grow(osg::BoundingSphere& bound, const vyrCollide::Geometry& geometry, osg::Group* root) {
  const vyrCollide::Shape* shape = geometry.getShape();
  GeometryNode* node = findGeometryNode(&geometry, root);
  if (!node || !shape || shape->getType() == vyrCollide::Shape::PLANE)
    return;
  node->update();
  bound.expandBy(node->getBound());
}

osg::BoundingSphere draw(const Parts& parts, SceneVisualReader& visuals, vyrOSG::Group* root, float detailRatio,
                         bool axes) {
  osg::BoundingSphere bound;
  for (const vyr::ref_ptr<vyr::RigidBody>& body : parts.bodies) {
    vyrOSG::Group* visual = visuals.draw(*body, *root, detailRatio, axes);
    for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body->getGeometries()) {
      GeometryNode* node = findGeometryNode(geometry.get(), visual);
      if (node && parts.look)
        node->setRenderChild(GeometryNode::RENDER_DATA, parts.look);
      grow(bound, *geometry, visual);
    }
  }
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : parts.geometries) {
    visuals.draw(*geometry, *root, detailRatio, axes);
    grow(bound, *geometry, root);
  }
  for (const vyr::ref_ptr<vyr::ParticleSystem>& particles : parts.particleSystems)
    visuals.draw(*particles, *root);
  // A model that was asked for without its body.
  if (parts.bodies.empty() && parts.look) {
    root->addChild(parts.look);
    bound.expandBy(parts.look->getBound());
  }
  return bound;
}

void showFrom(ExampleApplication& application, const osg::BoundingSphere& bound) {
  if (!bound.valid())
    return;
  const vyr::Vec3 center(bound.center().x(), bound.center().y(), bound.center().z());
  const vyr::Vec3 direction = vyr::Vec3(0.5, -1, 0.5).normalized();
  application.setCameraHome(center + direction * (kHomeDistance * static_cast<double>(bound.radius())), center);
}

bool isMotionControl(int value) {
  return value == -1 || (value >= vyr::RigidBody::STATIC && value <= vyr::RigidBody::DYNAMICS);
}

bool fail(const std::string& reason) {
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::readFile: " << reason;
  return false;
}

} // namespace

osg::Node* readNodeFile(const std::string& fileName, bool useCache) {
  return readNodeFile(fileName, nullptr, useCache);
}

osg::Node* readNodeFile(const std::string& fileName, const osgDB::Options* options, bool useCache) {
  const osgDB::Options* given = options ? options : osgDB::Registry::instance()->getOptions();
  osg::ref_ptr<osgDB::Options> used = given ? given->cloneOptions() : new osgDB::Options;
  const int nodes = osgDB::Options::CACHE_NODES;
  const int hint = used->getObjectCacheHint();
  used->setObjectCacheHint(static_cast<osgDB::Options::CacheHintOptions>(useCache ? hint | nodes : hint & ~nodes));
  const FileSearch search = findModel(fileName, used);
  std::string problem;
  osg::ref_ptr<osg::Node> node = readModelNode(fileName, used, problem);
  if (node)
    return node.release();
  if (search.isFound())
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::readNodeFile: cannot read '" << search.getPath() << "': " << problem;
  else
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::readNodeFile: cannot find '" << fileName
                                  << "', tried: " << search.getTried();
  return nullptr;
}

bool readFile(const std::string& fileName, vyrSDK::Simulation* simulation, vyrOSG::Group* root,
              vyrSDK::Assembly* assembly, vyrOSG::ExampleApplication* application, double detailRatio, bool createAxes,
              int motionControl, unsigned long mask) {
  if (!simulation)
    return fail("there is no simulation to read '" + fileName + "' into");
  if (assembly && assembly->getSimulation() && assembly->getSimulation() != simulation)
    return fail("the assembly for '" + fileName + "' is in another simulation");
  if (!isMotionControl(motionControl))
    return fail("there is no motion control " + std::to_string(motionControl) + " for '" + fileName + "'");
  const FileSearch search(fileName);
  if (!search.isFound())
    return fail("cannot find '" + fileName + "', tried: " + search.getTried());

  Parts parts;
  const bool isScene = osgDB::getLowerCaseFileExtension(search.getPath()) == "json";
  const bool whole = isScene && !assembly && isEmpty(*simulation);
  SceneVisualReader visuals(search.getPath());
  if (isScene ? !readParts(search.getPath(), *simulation, mask, whole, visuals, parts)
              : !readModelBody(search.getPath(), mask, parts))
    return false;

  if (motionControl != -1)
    for (const vyr::ref_ptr<vyr::RigidBody>& body : parts.bodies)
      body->setMotionControl(static_cast<vyr::RigidBody::MotionControl>(motionControl));
  place(parts, *simulation, assembly);

  if (!root || (mask & CREATE_VISUALS) == 0)
    return true;
  visuals.drawListeners(*simulation, *root);
  const osg::BoundingSphere bound = draw(parts, visuals, root, static_cast<float>(detailRatio), createAxes);
  if (application)
    showFrom(*application, bound);
  return true;
}

} // namespace vyrOSG
