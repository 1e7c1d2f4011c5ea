// Draws coordinate axes that follow geometries, bodies and constraints, and grids.
#include <vyrOSG/utils.h>

#include "Follow.h"
#include "ShapeMesh.h"
#include "Surface.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Constraint.h>
#include <vyr/Frame.h>
#include <vyr/Notify.h>
#include <vyr/RigidBody.h>
#include <vyr/observer_ptr.h>
#include <vyrCollide/Geometry.h>

#include <osg/LineWidth>

#include <cmath>

namespace vyrOSG {

namespace {

// Shares of an axis' length, chosen so that three axes stay slender at any scale.
constexpr double kShaftRadius = 0.02;
constexpr double kTipRadius = 0.055;
constexpr double kTipLength = 0.2;
constexpr unsigned int kSegments = 16;

void setSingleColor(osg::Geometry& geometry, const osg::Vec4& color) {
  osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
  colors->push_back(color);
  geometry.setColorArray(colors, osg::Array::BIND_OVERALL);
}

/// An arrow of length 1 along z.
osg::ref_ptr<osg::Geode> makeArrow(const osg::Vec4& color) {
  osg::ref_ptr<osg::Geode> arrow = new osg::Geode;
  osg::ref_ptr<osg::Geometry> shaft = mesh::makeCylinder(kShaftRadius, 1 - kTipLength, kSegments);
  osg::ref_ptr<osg::Geometry> tip = mesh::makeCone(kTipRadius, kTipLength, kSegments);
  auto move = [](osg::Geometry& geometry, double z) {
    for (osg::Vec3& vertex : *static_cast<osg::Vec3Array*>(geometry.getVertexArray()))
      vertex.z() += float(z);
  };
  move(*shaft, (1 - kTipLength) / 2);
  move(*tip, 1 - kTipLength);
  for (const osg::ref_ptr<osg::Geometry>& part : {shaft, tip}) {
    setSingleColor(*part, color);
    arrow->addDrawable(part);
  }
  return arrow;
}

/// Three arrows along x, y and z. Nullable: result, for a scale or a matrix that is not finite (one Notify line).
osg::ref_ptr<osg::MatrixTransform> makeAxes(const vyr::AffineMatrix4x4& placement, float scale,
                                            const vyr::Vec4& color) {
  if (!std::isfinite(scale) || !placement.isFinite() || !color.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::createAxes: the scale " << scale << ", the transform or the colour ("
                                  << color << ") is not finite";
    return nullptr;
  }
  const bool ownColors = color == vyr::Vec4(0, 0, 0, 0);
  const osg::Vec4 colors[3] = {osg::Vec4(0.85f, 0.18f, 0.18f, 1), osg::Vec4(0.2f, 0.68f, 0.25f, 1),
                               osg::Vec4(0.2f, 0.38f, 0.88f, 1)};
  const osg::Vec3d directions[3] = {osg::Vec3d(1, 0, 0), osg::Vec3d(0, 1, 0), osg::Vec3d(0, 0, 1)};
  osg::ref_ptr<osg::MatrixTransform> axes = new osg::MatrixTransform;
  axes->setName("axes");
  axes->setMatrix(osg::Matrixd::scale(scale, scale, scale) * toOsg(placement));
  for (int i = 0; i < 3; ++i) {
    osg::ref_ptr<osg::MatrixTransform> axis = new osg::MatrixTransform;
    axis->setMatrix(osg::Matrixd::rotate(osg::Vec3d(0, 0, 1), directions[i]));
    axis->addChild(makeArrow(ownColors ? colors[i] : toOsg(color)));
    axes->addChild(axis);
  }
  surface::setFixedLook(axes, true);
  axes->getOrCreateStateSet()->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
  if (!ownColors)
    surface::setTransparency(*axes->getOrCreateStateSet(), float(color[3]));
  return axes;
}

/// Where a frame lies in a frame of reference: where it really is if it is fixed to a body, else as its own matrix
/// says.
vyr::AffineMatrix4x4 relativeTo(const vyr::Frame* frame, const vyr::AffineMatrix4x4& reference) {
  if (!frame)
    return vyr::AffineMatrix4x4();
  if (!frame->getRigidBody())
    return frame->getLocalTransform();
  return frame->getTransform() * reference.inverse();
}

/// Puts axes under a follower of a body, or still into the world where there is no body.
void addAxesForBody(vyr::RigidBody* body, const osg::ref_ptr<osg::MatrixTransform>& axes, osg::Group* group) {
  if (!axes)
    return;
  if (!body) {
    group->addChild(axes);
    return;
  }
  const vyr::observer_ptr<vyr::RigidBody> observed(body);
  osg::ref_ptr<osg::MatrixTransform> follower = makeFollower([observed](osg::Matrixd& outMatrix) {
    if (!observed)
      return false;
    outMatrix = toOsg(observed->getTransform());
    return true;
  });
  follower->addChild(axes);
  group->addChild(follower);
}

} // namespace

void createAxes(vyrCollide::Geometry* geometry, vyr::Frame* frame, osg::Group* group, float scale,
                const vyr::Vec4& color) {
  createAxes(geometry, relativeTo(frame, geometry ? geometry->getTransform() : vyr::AffineMatrix4x4()), group, scale,
             color);
}

void createAxes(vyrCollide::Geometry* geometry, vyr::AffineMatrix4x4 relativeTransform, osg::Group* group, float scale,
                const vyr::Vec4& color) {
  if (!group)
    return;
  osg::ref_ptr<osg::MatrixTransform> axes = makeAxes(relativeTransform, scale, color);
  if (!axes)
    return;
  if (!geometry) {
    group->addChild(axes);
    return;
  }
  if (GeometryNode* node = findGeometryNode(geometry, group)) {
    node->addChild(axes);
    return;
  }
  const vyr::observer_ptr<vyrCollide::Geometry> observed(geometry);
  osg::ref_ptr<osg::MatrixTransform> follower = makeFollower([observed](osg::Matrixd& outMatrix) {
    if (!observed)
      return false;
    outMatrix = toOsg(observed->getTransform());
    return true;
  });
  follower->addChild(axes);
  group->addChild(follower);
}

void createAxes(vyr::RigidBody* body, vyr::Frame* frame, osg::Group* group, float scale, const vyr::Vec4& color) {
  createAxes(body, relativeTo(frame, body ? body->getTransform() : vyr::AffineMatrix4x4()), group, scale, color);
}

void createAxes(vyr::RigidBody* body, vyr::AffineMatrix4x4 relativeTransform, osg::Group* group, float scale,
                const vyr::Vec4& color) {
  if (group)
    addAxesForBody(body, makeAxes(relativeTransform, scale, color), group);
}

void createAxes(vyr::Constraint* constraint, osg::Group* group, float scale, const vyr::Vec4& color) {
  if (!constraint || !group)
    return;
  const vyr::Frame* frame = constraint->getFrame1();
  addAxesForBody(constraint->getRigidBody1(), makeAxes(frame->getLocalTransform(), scale, color), group);
}

bool createGrid(unsigned int resolutionU, unsigned int resolutionV, const vyr::Vec3& corner, const vyr::Vec3& edgeU,
                const vyr::Vec3& edgeV, osg::Group* group) {
  constexpr unsigned int kMaxCells = 10000;
  if (!group)
    return false;
  if (resolutionU == 0 || resolutionV == 0 || resolutionU > kMaxCells || resolutionV > kMaxCells ||
      !corner.isFinite() || !edgeU.isFinite() || !edgeV.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::createGrid: " << resolutionU << " by " << resolutionV << " cells from ("
                                  << corner << ") along (" << edgeU << ") and (" << edgeV << ") are no grid";
    return false;
  }
  osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
  auto addLines = [&](unsigned int count, const vyr::Vec3& across, const vyr::Vec3& along) {
    for (unsigned int i = 0; i <= count; ++i) {
      const vyr::Vec3 begin = corner + across * (double(i) / count);
      vertices->push_back(osg::Vec3(toOsg(begin)));
      vertices->push_back(osg::Vec3(toOsg(begin + along)));
    }
  };
  addLines(resolutionU, edgeU, edgeV);
  addLines(resolutionV, edgeV, edgeU);
  osg::ref_ptr<osg::Geometry> lines = new osg::Geometry;
  lines->setVertexArray(vertices);
  setSingleColor(*lines, osg::Vec4(0.28f, 0.30f, 0.34f, 1));
  lines->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, static_cast<int>(vertices->size())));
  lines->setUseDisplayList(false);
  lines->setUseVertexBufferObjects(true);
  osg::ref_ptr<osg::Geode> grid = new osg::Geode;
  grid->setName("grid");
  grid->addDrawable(lines);
  surface::setLineLook(grid);
  return group->addChild(grid);
}

} // namespace vyrOSG
