// Turns a line of places into the mesh of a round tube.
#include "TubeMesh.h"

#include <osg/Quat>

#include <cmath>

namespace vyrOSG::mesh {

namespace {

/// Corners of the tube's section: with smooth normals, enough for a wire seen from near.
const unsigned int kSides = 12;

/// Any direction square to another one.
osg::Vec3d squareTo(const osg::Vec3d& direction) {
  const osg::Vec3d helper = std::fabs(direction.z()) < 0.9 ? osg::Vec3d(0, 0, 1) : osg::Vec3d(1, 0, 0);
  osg::Vec3d square = direction ^ helper;
  square.normalize();
  return square;
}

/// The direction of the tube at place `i`: the mean of the pieces before and behind it.
osg::Vec3d directionAt(const std::vector<osg::Vec3d>& places, size_t i) {
  osg::Vec3d before = i > 0 ? places[i] - places[i - 1] : osg::Vec3d();
  osg::Vec3d behind = i + 1 < places.size() ? places[i + 1] - places[i] : osg::Vec3d();
  before.normalize();
  behind.normalize();
  osg::Vec3d direction = before + behind;
  if (direction.normalize() < 1e-9)
    direction = i > 0 ? before : behind;
  return direction;
}

class TubeBuilder {
public:
  void addRing(const osg::Vec3d& center, const osg::Vec3d& across, const osg::Vec3d& along, double radius,
               const osg::Vec4& color) {
    const osg::Vec3d third = along ^ across;
    for (unsigned int side = 0; side < kSides; ++side) {
      const double angle = 2 * osg::PI * side / kSides;
      const osg::Vec3d out = across * std::cos(angle) + third * std::sin(angle);
      add(center + out * radius, out, color);
    }
  }

  /// Joins the last two rings.
  void join() {
    const unsigned int second = m_vertices->size() - kSides;
    const unsigned int first = second - kSides;
    for (unsigned int side = 0; side < kSides; ++side) {
      const unsigned int next = (side + 1) % kSides;
      for (const unsigned int index :
           {first + side, first + next, second + next, first + side, second + next, second + side})
        m_indices->push_back(index);
    }
  }

  /// Closes an end; `out` leads away from the tube.
  void addCap(const osg::Vec3d& center, const osg::Vec3d& across, const osg::Vec3d& out, double radius,
              const osg::Vec4& color) {
    const unsigned int middle = m_vertices->size();
    add(center, out, color);
    const osg::Vec3d third = out ^ across;
    for (unsigned int side = 0; side < kSides; ++side) {
      const double angle = 2 * osg::PI * side / kSides;
      add(center + (across * std::cos(angle) + third * std::sin(angle)) * radius, out, color);
      for (const unsigned int index : {middle, middle + 1 + side, middle + 1 + (side + 1) % kSides})
        m_indices->push_back(index);
    }
  }

  osg::ref_ptr<osg::Geometry> finish() {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setVertexArray(m_vertices);
    geometry->setNormalArray(m_normals, osg::Array::BIND_PER_VERTEX);
    geometry->setColorArray(m_colors, osg::Array::BIND_PER_VERTEX);
    geometry->addPrimitiveSet(m_indices);
    return geometry;
  }

private:
  void add(const osg::Vec3d& place, const osg::Vec3d& normal, const osg::Vec4& color) {
    m_vertices->push_back(place);
    m_normals->push_back(normal);
    m_colors->push_back(color);
  }

  osg::ref_ptr<osg::Vec3Array> m_vertices = new osg::Vec3Array;
  osg::ref_ptr<osg::Vec3Array> m_normals = new osg::Vec3Array;
  osg::ref_ptr<osg::Vec4Array> m_colors = new osg::Vec4Array;
  osg::ref_ptr<osg::DrawElementsUInt> m_indices = new osg::DrawElementsUInt(GL_TRIANGLES);
};

} // namespace

osg::ref_ptr<osg::Geometry> makeTube(const std::vector<osg::Vec3d>& places, double radius,
                                     const std::vector<osg::Vec4>& colors) {
  std::vector<osg::Vec3d> line;
  std::vector<osg::Vec4> lineColors;
  for (size_t i = 0; i < places.size(); ++i) {
    if (line.empty() || (places[i] - line.back()).length() > 1e-9) {
      line.push_back(places[i]);
      lineColors.push_back(i < colors.size() ? colors[i] : colors.back());
    }
  }
  if (line.size() < 2 || !(radius > 0))
    return nullptr;

  TubeBuilder builder;
  osg::Vec3d along = directionAt(line, 0);
  osg::Vec3d across = squareTo(along);
  builder.addCap(line.front(), across, -along, radius, lineColors.front());
  for (size_t i = 0; i < line.size(); ++i) {
    // The section is carried along without twist: it turns as the direction turns.
    const osg::Vec3d next = directionAt(line, i);
    osg::Quat turn;
    turn.makeRotate(along, next);
    across = turn * across;
    across = across - next * (across * next);
    if (across.normalize() < 1e-6)
      across = squareTo(next);
    along = next;
    builder.addRing(line[i], across, along, radius, lineColors[i]);
    if (i > 0)
      builder.join();
  }
  builder.addCap(line.back(), across, along, radius, lineColors.back());
  return builder.finish();
}

} // namespace vyrOSG::mesh
