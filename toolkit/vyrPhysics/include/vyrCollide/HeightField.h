/// A piece of ground given by heights over a regular grid, which may change while the simulation runs.
#pragma once

#include <vyr/VectorPOD.h>
#include <vyrCollide/Shape.h>

#include <cstddef>
#include <vector>

namespace vyrCollide {

/// Ground over a rectangle around the origin of its frame. Column i lies at x = (i/(columns-1) - 1/2) sizeX, row j at
/// y = (j/(rows-1) - 1/2) sizeY, the height is along z. The sample at (column, row) has the index row * columns +
/// column. Each cell is cut along the diagonal from (column, row+1) to (column+1, row).
class VYRPHYSICS_EXPORT HeightField : public Shape {
public:
  /// `columns`, `rows`: samples along x and y, at least 2 each. `sizeX`, `sizeY` in m, above 0. `heights` in m,
  /// columns * rows of them.
  HeightField(size_t columns, size_t rows, double sizeX, double sizeY, const vyr::RealVector& heights);

  Type getType() const override { return HEIGHT_FIELD; }

  size_t getNumColumns() const { return m_columns; }
  size_t getNumRows() const { return m_rows; }

  /// Extent along x, in m.
  double getSizeX() const { return m_sizeX; }

  /// Extent along y, in m.
  double getSizeY() const { return m_sizeY; }

  /// Height of a sample in m; 0 outside the grid.
  double getHeight(size_t column, size_t row) const;

  /// Sets the height of a sample in m. Returns false outside the grid and for a height that is not finite.
  bool setHeight(size_t column, size_t row, double height);

  /// Sets all samples. Returns false, and changes nothing, when there are not columns * rows finite heights.
  bool setHeights(const vyr::RealVector& heights);

  /// All samples in m, row by row.
  const std::vector<double>& getHeights() const { return m_heights; }

  /// Place of a sample in the shape's frame, in m.
  vyr::Vec3 getVertex(size_t column, size_t row) const;

  /// Height of the surface over the point (x, y) of the shape's frame, in m. Points outside give the nearest edge's.
  double getSurfaceHeight(double x, double y) const;

  Bounds getBounds() const override;
  MassProperties getMassProperties() const override { return MassProperties(); }
  std::unique_ptr<ShapeInstance> createInstance(bool moving) const override;

protected:
  ~HeightField() override;

private:
  friend class HeightFieldInstance;
  void growRange(double height);

  size_t m_columns;
  size_t m_rows;
  double m_sizeX;
  double m_sizeY;
  double m_range; ///< no sample is further from z = 0 than this
  std::vector<double> m_heights;
  mutable std::vector<class HeightFieldInstance*> m_instances;
};

} // namespace vyrCollide
