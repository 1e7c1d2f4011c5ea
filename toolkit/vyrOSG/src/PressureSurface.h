// A shape's surface as triangles, and the charts that lay it out in a texture.
#pragma once

#include <vyr/Vec3.h>

#include <osg/Geometry>

#include <array>
#include <cstddef>
#include <vector>

namespace vyrCollide {
class Shape;
}

namespace vyrOSG {

/// The surface that a pressure atlas covers, in the shape's frame.
class PressureSurface {
public:
  /// A part of the surface that is seen without a fold along an axis, as a rectangle of the texture.
  struct Chart {
    std::array<int, 2> axes; ///< which coordinates run along the texture's columns and rows
    std::array<double, 2> low;
    std::array<double, 2> high;
    unsigned int x; ///< lower left cell in the texture, in the chart's border
    unsigned int y;
    unsigned int columns; ///< without the border of one cell on each side
    unsigned int rows;
  };

  /// Reads the triangles of a shape; none for a plane and for an invalid shape. Nullable: shape.
  explicit PressureSurface(const vyrCollide::Shape* shape);

  std::size_t getNumTriangles() const { return m_indices.size() / 3; }
  const vyr::Vec3& getCorner(std::size_t triangle, int corner) const {
    return m_vertices[m_indices[3 * triangle + static_cast<std::size_t>(corner)]];
  }
  const Chart& getChart(std::size_t triangle) const { return m_charts[m_chartOf[triangle]]; }

  /// Cells from the texture's lower left corner, as a real number, of a place on a chart.
  std::array<double, 2> toCells(const Chart& chart, const vyr::Vec3& place, double resolution) const;

  /// Lays the charts out for so many cells a metre in a texture of at most 2048 by 2048; false where they do not fit.
  bool pack(double resolution);
  unsigned int getWidth() const { return m_width; }
  unsigned int getHeight() const { return m_height; }

  /// Takes over the places of a shape that changed its form; false when it has other triangles now.
  bool follow(const vyrCollide::Shape* shape);

  /// The triangles with texture coordinates; edges sharper than 40 degrees stay sharp. *Returns new*.
  osg::ref_ptr<osg::Geometry> createMesh(double resolution) const;

private:
  void read(const vyrCollide::Shape* shape);
  void readDrawing(const vyrCollide::Shape* shape);
  void makeCharts();

  std::vector<vyr::Vec3> m_vertices;
  std::vector<unsigned int> m_indices;
  std::vector<std::size_t> m_chartOf; ///< of each triangle
  std::vector<Chart> m_charts;
  unsigned int m_width = 0;
  unsigned int m_height = 0;
};

} // namespace vyrOSG
