// Walks a scene for its bounds, with the visuals at the places where the physics has them now.
#include "SceneBounds.h"

#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>
#include <vyrOSG/GeometryNode.h>

#include <osg/ComputeBoundsVisitor>

namespace vyrOSG {

namespace {

class BoundsVisitor : public osg::ComputeBoundsVisitor {
public:
  BoundsVisitor()
      : osg::ComputeBoundsVisitor(osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN) {}

  void apply(osg::Transform& transform) override {
    if (GeometryNode* node = dynamic_cast<GeometryNode*>(&transform)) {
      const vyrCollide::Geometry* geometry = node->getGeometry();
      const vyrCollide::Shape* shape = geometry ? geometry->getShape() : nullptr;
      if (shape && shape->getType() == vyrCollide::Shape::PLANE)
        return;
      // A visual that was made since the last frame has not followed its geometry yet.
      if (geometry)
        node->update();
    }
    osg::ComputeBoundsVisitor::apply(transform);
  }
};

} // namespace

osg::BoundingBox measureScene(osg::Node* node) {
  if (!node)
    return osg::BoundingBox();
  BoundsVisitor visitor;
  node->accept(visitor);
  return visitor.getBoundingBox();
}

} // namespace vyrOSG
