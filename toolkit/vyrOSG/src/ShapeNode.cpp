// Chooses the mesh of each shape and shares it between equal shapes.
#include "ShapeNode.h"

#include "ShapeMesh.h"

#include <vyrOSG/Conversions.h>

#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>

#include <osg/observer_ptr>

#include <functional>
#include <map>
#include <tuple>

namespace vyrOSG {

namespace {

/// Kind, up to three dimensions and segments: what two meshes must agree in to be the same.
using MeshKey = std::tuple<int, double, double, double, unsigned int>;

/// The mesh of a key, made if no node shows it any more. Thousands of equal bodies so cost one upload.
osg::ref_ptr<osg::Geometry> sharedMesh(const MeshKey& key, const std::function<osg::ref_ptr<osg::Geometry>()>& make) {
  static std::map<MeshKey, osg::observer_ptr<osg::Geometry>> s_meshes;
  osg::ref_ptr<osg::Geometry> mesh;
  if (s_meshes[key].lock(mesh))
    return mesh;
  for (auto i = s_meshes.begin(); i != s_meshes.end();)
    i = i->second.valid() ? std::next(i) : s_meshes.erase(i);
  mesh = make();
  s_meshes[key] = mesh;
  return mesh;
}

osg::ref_ptr<osg::Geometry> makeShapeMesh(const vyrCollide::Shape& shape, float detailRatio) {
  const unsigned int segments = mesh::circleSegments(detailRatio);
  const int type = shape.getType();
  switch (shape.getType()) {
  case vyrCollide::Shape::BOX: {
    const osg::Vec3d half = toOsg(static_cast<const vyrCollide::Box&>(shape).getHalfExtents());
    return sharedMesh({type, half.x(), half.y(), half.z(), 0}, [&] { return mesh::makeBox(half); });
  }
  case vyrCollide::Shape::SPHERE: {
    const double radius = static_cast<const vyrCollide::Sphere&>(shape).getRadius();
    return sharedMesh({type, radius, 0, 0, segments}, [&] { return mesh::makeSphere(radius, segments); });
  }
  case vyrCollide::Shape::CAPSULE: {
    const auto& capsule = static_cast<const vyrCollide::Capsule&>(shape);
    return sharedMesh({type, capsule.getRadius(), capsule.getHeight(), 0, segments},
                      [&] { return mesh::makeCapsule(capsule.getRadius(), capsule.getHeight(), segments); });
  }
  case vyrCollide::Shape::CYLINDER: {
    const auto& cylinder = static_cast<const vyrCollide::Cylinder&>(shape);
    return sharedMesh({type, cylinder.getRadius(), cylinder.getHeight(), 0, segments},
                      [&] { return mesh::makeCylinder(cylinder.getRadius(), cylinder.getHeight(), segments); });
  }
  case vyrCollide::Shape::PLANE:
    return sharedMesh({type, 0, 0, 0, 0}, [] { return mesh::makePlane(kPlaneHalfSize, 50); });
  case vyrCollide::Shape::HEIGHT_FIELD: {
    const auto& field = static_cast<const vyrCollide::HeightField&>(shape);
    return mesh::makeHeightField(field.getNumColumns(), field.getNumRows(), field.getSizeX(), field.getSizeY(),
                                 field.getHeights());
  }
  case vyrCollide::Shape::TRIMESH: {
    const auto& trimesh = static_cast<const vyrCollide::Trimesh&>(shape);
    std::vector<osg::Vec3d> vertices;
    for (const vyr::Vec3& vertex : trimesh.getVertices())
      vertices.push_back(toOsg(vertex));
    return mesh::makeTrimesh(vertices, trimesh.getIndices());
  }
  }
  return nullptr;
}

} // namespace

osg::ref_ptr<osg::Geode> makeShapeNode(const vyrCollide::Shape* shape, float detailRatio) {
  if (!shape || !shape->isValid())
    return nullptr;
  osg::ref_ptr<osg::Geometry> mesh = makeShapeMesh(*shape, detailRatio);
  if (!mesh)
    return nullptr;
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(mesh);
  return geode;
}

} // namespace vyrOSG
