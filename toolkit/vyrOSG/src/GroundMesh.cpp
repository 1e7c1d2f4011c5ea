// The mesh of a height field whose rows can be computed anew one by one.
#include "GroundMesh.h"

#include <vyrOSG/Conversions.h>

#include <algorithm>

namespace vyrOSG {

GroundMesh::GroundMesh(const vyrCollide::HeightField& field, const ColorOf& colorOf) {
  const size_t columns = field.getNumColumns();
  const size_t rows = field.getNumRows();
  m_vertices = new osg::Vec3Array(columns * rows);
  m_normals = new osg::Vec3Array(columns * rows);
  m_colors = new osg::Vec4Array(columns * rows);
  for (size_t row = 0; row < rows; ++row)
    updateRow(field, colorOf, row);

  // Each cell is cut as the collision engine cuts it: from (column, row + 1) to (column + 1, row).
  osg::ref_ptr<osg::DrawElementsUInt> indices = new osg::DrawElementsUInt(GL_TRIANGLES);
  indices->reserve(6 * (columns - 1) * (rows - 1));
  for (size_t row = 0; row + 1 < rows; ++row) {
    for (size_t column = 0; column + 1 < columns; ++column) {
      const auto corner = static_cast<unsigned int>(row * columns + column);
      const auto above = static_cast<unsigned int>(corner + columns);
      for (const unsigned int index : {corner, corner + 1, above, corner + 1, above + 1, above})
        indices->push_back(index);
    }
  }
  setDataVariance(osg::Object::DYNAMIC);
  setUseDisplayList(false);
  setUseVertexBufferObjects(true);
  setVertexArray(m_vertices);
  setNormalArray(m_normals, osg::Array::BIND_PER_VERTEX);
  setColorArray(m_colors, osg::Array::BIND_PER_VERTEX);
  addPrimitiveSet(indices);
}

GroundMesh::~GroundMesh() = default;

void GroundMesh::updateRow(const vyrCollide::HeightField& field, const ColorOf& colorOf, size_t row) {
  const size_t columns = field.getNumColumns();
  for (size_t column = 0; column < columns; ++column) {
    const size_t index = row * columns + column;
    (*m_vertices)[index] = toOsg(field.getVertex(column, row));
    (*m_colors)[index] = colorOf(column, row);
  }
  const size_t lastRow = std::min(row + 1, field.getNumRows() - 1);
  for (size_t i = row > 0 ? row - 1 : 0; i <= lastRow; ++i)
    updateNormals(field, i);
}

void GroundMesh::updateNormals(const vyrCollide::HeightField& field, size_t row) {
  const size_t columns = field.getNumColumns();
  const size_t below = row > 0 ? row - 1 : row;
  const size_t above = std::min(row + 1, field.getNumRows() - 1);
  for (size_t column = 0; column < columns; ++column) {
    const size_t left = column > 0 ? column - 1 : column;
    const size_t right = std::min(column + 1, columns - 1);
    const osg::Vec3d alongX = toOsg(field.getVertex(right, row) - field.getVertex(left, row));
    const osg::Vec3d alongY = toOsg(field.getVertex(column, above) - field.getVertex(column, below));
    osg::Vec3d normal = alongX ^ alongY;
    normal.normalize();
    (*m_normals)[row * columns + column] = normal;
  }
}

void GroundMesh::finish() {
  m_vertices->dirty();
  m_normals->dirty();
  m_colors->dirty();
  dirtyBound();
}

} // namespace vyrOSG
