// The mesh of a height field whose rows can be computed anew one by one.
#pragma once

#include <vyrCollide/HeightField.h>

#include <osg/Geometry>
#include <osg/Vec4>

#include <cstddef>
#include <functional>

namespace vyrOSG {

/// A lit, coloured surface over the samples of a height field.
class GroundMesh : public osg::Geometry {
public:
  /// The colour of the sample at (column, row).
  using ColorOf = std::function<osg::Vec4(size_t column, size_t row)>;

  GroundMesh(const vyrCollide::HeightField& field, const ColorOf& colorOf);

  /// Takes over the heights and colours of a row, and the normals of it and its neighbours. finish() shows them.
  void updateRow(const vyrCollide::HeightField& field, const ColorOf& colorOf, size_t row);

  /// Makes the changed rows visible.
  void finish();

protected:
  ~GroundMesh() override;

private:
  void updateNormals(const vyrCollide::HeightField& field, size_t row);

  osg::ref_ptr<osg::Vec3Array> m_vertices;
  osg::ref_ptr<osg::Vec3Array> m_normals;
  osg::ref_ptr<osg::Vec4Array> m_colors;
};

} // namespace vyrOSG
