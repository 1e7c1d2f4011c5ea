// A bundle of coloured, unlit line segments that can be drawn anew every frame.
#pragma once

#include <osg/Array>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/ref_ptr>

namespace vyrOSG {

/// Line segments of one width.
class LineDrawing {
public:
  /// @param width in pixels. @param onTop whether lines show through what stands before them.
  explicit LineDrawing(float width, bool onTop = false);

  /// The node to hang into the scene. *Returns inner*.
  osg::Geode* getNode() { return m_geode.get(); }

  void clear();
  void add(const osg::Vec3d& from, const osg::Vec3d& to, const osg::Vec4& color);
  /// Tells the scene graph that `clear` and `add` are over.
  void finish();

  unsigned getNumLines() const { return m_vertices->size() / 2; }

private:
  osg::ref_ptr<osg::Geode> m_geode;
  osg::ref_ptr<osg::Geometry> m_geometry;
  osg::ref_ptr<osg::Vec3Array> m_vertices;
  osg::ref_ptr<osg::Vec4Array> m_colors;
  osg::ref_ptr<osg::DrawArrays> m_lines;
};

} // namespace vyrOSG
