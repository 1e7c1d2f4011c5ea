// Collects the parts of the scene and tells grounds from casters.
#include "ShadowScan.h"

#include "DecoratorShaders.h"

#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>
#include <vyrOSG/GeometryNode.h>

#include <osg/Drawable>
#include <osg/Geode>
#include <osg/Material>
#include <osg/Transform>
#include <osg/Uniform>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

const char* const kGroundUniform = "vyr_isGround";

void markMaterial(osg::StateSet& state) {
  const osg::StateAttribute* attribute = state.getAttribute(osg::StateAttribute::MATERIAL);
  if (!attribute || state.getUniform("vyr_useMaterial"))
    return;
  // Said either way: what colours its vertices may stand below what does not.
  if (static_cast<const osg::Material*>(attribute)->getColorMode() == osg::Material::OFF)
    state.addUniform(DecoratorShaders::makeMaterialUniform().get());
  else
    state.addUniform(new osg::Uniform("vyr_useMaterial", false));
}

bool isMarkedGround(const osg::Node& node) {
  return node.getStateSet() && node.getStateSet()->getUniform(kGroundUniform);
}

} // namespace

ShadowScan::ShadowScan(bool outlines)
    : osg::NodeVisitor(osg::NodeVisitor::TRAVERSE_ALL_CHILDREN)
    , m_outlines(outlines)
    , m_inPart(false) {
  setNodeMaskOverride(~0u);
}

void ShadowScan::run(osg::Group& scene) {
  scene.accept(*this);
  if (m_outlines)
    findGrounds();
  for (const Part& part : m_parts) {
    if (part.ground || isMarkedGround(*part.node))
      setGround(*part.node, part.ground);
    if (part.plane || (m_outlines && (part.ground || !(part.node->getNodeMask() & kCastsShadow))))
      continue;
    m_bounds.expandBy(part.bounds);
  }
}

void ShadowScan::apply(osg::Node& node) {
  if (osg::StateSet* state = node.getStateSet())
    markMaterial(*state);
  const osg::Matrixd toScene = m_toScene;
  const bool inPart = m_inPart;
  if (osg::Transform* transform = node.asTransform())
    transform->computeLocalToWorldMatrix(m_toScene, this);
  if (!m_inPart && node.getNodeMask() != 0)
    beginPart(node);
  if (const osg::Drawable* drawable = node.asDrawable()) {
    const osg::BoundingBox& box = drawable->getBoundingBox();
    if (m_inPart && box.valid() && std::isfinite(box.radius2())) {
      for (unsigned int i = 0; i < 8; ++i)
        m_parts.back().bounds.expandBy(box.corner(i) * m_toScene);
    }
  } else if (node.getNodeMask() != 0) {
    traverse(node);
  }
  m_toScene = toScene;
  m_inPart = inPart;
}

void ShadowScan::beginPart(osg::Node& node) {
  GeometryNode* visual = node.asTransform() ? dynamic_cast<GeometryNode*>(&node) : nullptr;
  if (!visual && !node.asGeode() && !node.asDrawable())
    return;
  m_inPart = true;
  Part part = {&node, osg::BoundingBox(), false, false, true};
  const vyrCollide::Geometry* geometry = visual ? visual->getGeometry() : nullptr;
  if (geometry) {
    const vyrCollide::Shape* shape = geometry->getShape();
    part.plane = shape && shape->getType() == vyrCollide::Shape::PLANE;
    part.ground = part.plane || (m_outlines && shape && shape->getType() == vyrCollide::Shape::HEIGHT_FIELD);
    const vyr::RigidBody* body = geometry->getRigidBody();
    part.fixed = !body || body->getMotionControl() != vyr::RigidBody::DYNAMICS;
  }
  m_parts.push_back(part);
}

void ShadowScan::findGrounds() {
  // Shares of the scene's footprint, of a part's own width, and of its own width once more.
  constexpr float kWide = 0.25f;
  constexpr float kFlat = 0.25f;
  constexpr float kLow = 0.1f;
  osg::BoundingBox scene;
  for (const Part& part : m_parts) {
    if (!part.plane)
      scene.expandBy(part.bounds);
  }
  if (!scene.valid())
    return;
  float bottom = scene.zMin();
  for (const Part& part : m_parts) {
    // A level plane below all else is the bottom; its drawing is a flat box.
    if (part.plane && part.bounds.valid() && part.bounds.zMax() - part.bounds.zMin() < 0.01f * part.bounds.radius())
      bottom = std::min(bottom, part.bounds.zMin());
  }
  const float footprint = (scene.xMax() - scene.xMin()) * (scene.yMax() - scene.yMin());
  for (Part& part : m_parts) {
    if (part.ground || !part.fixed || !part.bounds.valid())
      continue;
    const float width = part.bounds.xMax() - part.bounds.xMin();
    const float depth = part.bounds.yMax() - part.bounds.yMin();
    const float height = part.bounds.zMax() - part.bounds.zMin();
    part.ground = width * depth >= kWide * footprint && height <= kFlat * std::min(width, depth) &&
                  part.bounds.zMin() - bottom <= kLow * std::max(width, depth);
  }
}

void ShadowScan::setGround(osg::Node& node, bool ground) {
  if (ground == isMarkedGround(node))
    return;
  if (ground) {
    node.setNodeMask(node.getNodeMask() & ~kCastsShadow);
    node.getOrCreateStateSet()->addUniform(new osg::Uniform(kGroundUniform, 1.0f));
  } else {
    node.setNodeMask(node.getNodeMask() | kCastsShadow);
    node.getStateSet()->removeUniform(kGroundUniform);
  }
}

} // namespace vyrOSG
