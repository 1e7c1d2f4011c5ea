// Makes and finds the visuals of geometries, bodies and assemblies.
#include <vyrOSG/utils.h>

#include "GeometryVisual.h"
#include "ShapeNode.h"
#include "Surface.h"

#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/Assembly.h>

#include <osg/NodeVisitor>

#include <cmath>

namespace vyrOSG {

namespace {

/// Finds the node of one geometry, whether it is hidden or not.
class GeometryNodeFinder : public osg::NodeVisitor {
public:
  explicit GeometryNodeFinder(const vyrCollide::Geometry* geometry)
      : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN)
      , m_geometry(geometry) {
    setNodeMaskOverride(~0u);
  }

  void apply(osg::Node& node) override {
    if (!m_found)
      traverse(node);
  }

  void apply(osg::Transform& node) override {
    auto* candidate = dynamic_cast<GeometryNode*>(&node);
    if (candidate && candidate->getGeometry() == m_geometry)
      m_found = candidate;
    apply(static_cast<osg::Node&>(node));
  }

  void apply(osg::Geode&) override {}

  GeometryNode* m_found = nullptr;

private:
  const vyrCollide::Geometry* m_geometry;
};

bool standsStill(const vyrCollide::Geometry& geometry) {
  const vyr::RigidBody* body = geometry.getRigidBody();
  return !body || body->getMotionControl() == vyr::RigidBody::STATIC;
}

/// The look of a new visual: still things are grey, moving ones take the palette's colours in turn; sensors can be seen
/// through.
void dress(GeometryNode* node, const vyrCollide::Geometry& geometry, unsigned int colorIndex) {
  osg::Vec4 color = standsStill(geometry) ? surface::groundColor() : surface::paletteColor(colorIndex);
  if (geometry.isSensor())
    color.a() = 0.35f;
  surface::setDefaultMaterial(node, color);
  const vyrCollide::Shape* shape = geometry.getShape();
  if (shape && shape->getType() == vyrCollide::Shape::PLANE)
    surface::setPlaneChecker(node, 2 * kPlaneHalfSize);
}

GeometryNode* addGeometryVisual(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, float detailRatio,
                                bool axes, bool evenIfSensor, unsigned int colorIndex) {
  if (!geometry || !group || !geometry->isValid() || (geometry->isSensor() && !evenIfSensor))
    return nullptr;
  osg::ref_ptr<GeometryNode> node = new GeometryNode;
  node->setDetailRatio(std::isfinite(detailRatio) ? detailRatio : 0.3f);
  // The node follows the geometry and never changes it, but hands it out to callers that may.
  auto* shown = const_cast<vyrCollide::Geometry*>(geometry);
  node->setGeometry(shown);
  dress(node, *geometry, colorIndex);
  group->addChild(node.get());
  if (axes)
    createAxes(shown, vyr::AffineMatrix4x4(), group);
  return node.get();
}

} // namespace

vyrOSG::GeometryNode* findGeometryNode(const vyrCollide::Geometry* geometry, osg::Group* group) {
  if (!geometry || !group)
    return nullptr;
  GeometryNodeFinder finder(geometry);
  group->accept(finder);
  return finder.m_found;
}

vyrOSG::GeometryNode* createVisual(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, float detailRatio,
                                   bool createAxes, bool evenIfSensor) {
  return addGeometryVisual(geometry, group, detailRatio, createAxes, evenIfSensor, group ? group->getNumChildren() : 0);
}

vyrOSG::Group* createBodyVisual(vyr::RigidBody* body, vyrOSG::Group* group, float detailRatio,
                                unsigned int colorIndex) {
  if (!body || !group)
    return nullptr;
  osg::ref_ptr<vyrOSG::Group> bodyGroup = new vyrOSG::Group;
  bodyGroup->setName(body->getName());
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body->getGeometries())
    addGeometryVisual(geometry.get(), bodyGroup.get(), detailRatio, false, false, colorIndex);
  group->addChild(bodyGroup.get());
  return bodyGroup.get();
}

vyrOSG::Group* createVisual(vyr::RigidBody* body, vyrOSG::Group* group, float detailRatio, bool createAxes) {
  vyrOSG::Group* bodyGroup = createBodyVisual(body, group, detailRatio, group ? group->getNumChildren() : 0);
  if (bodyGroup && createAxes)
    vyrOSG::createAxes(body, vyr::AffineMatrix4x4(), bodyGroup);
  return bodyGroup;
}

vyrOSG::Group* createVisual(vyrSDK::Assembly* assembly, vyrOSG::Group* group, float detailRatio, bool createAxes) {
  if (!assembly || !group)
    return nullptr;
  osg::ref_ptr<vyrOSG::Group> assemblyGroup = new vyrOSG::Group;
  assemblyGroup->setName(assembly->getName());
  for (const vyr::ref_ptr<vyr::RigidBody>& body : assembly->getRigidBodies())
    createVisual(body.get(), assemblyGroup.get(), detailRatio, createAxes);
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : assembly->getGeometries())
    createVisual(geometry.get(), assemblyGroup.get(), detailRatio, createAxes);
  for (const vyr::ref_ptr<vyrSDK::Assembly>& part : assembly->getAssemblies())
    createVisual(part.get(), assemblyGroup.get(), detailRatio, createAxes);
  group->addChild(assemblyGroup.get());
  return assemblyGroup.get();
}

} // namespace vyrOSG
