/// A grid of soil columns that keep their mass while they are pressed, flow and slide.
#pragma once

#include <vyrModel/Soil.h>
#include <vyrModel/export.h>

#include <cstddef>
#include <vector>

namespace vyrModel {

class TerrainType;

/// One column of soil around each sample of a grid, on a hard floor. The sample at (column, row) has the index
/// row * columns + column. A column's height is its mass over its density.
///
/// Displacement to the rim of a pressed area and sliding of steep slopes follow R. Sumner, J. O'Brien, J. Hodgins,
/// "Animating Sand, Mud and Snow", Computer Graphics Forum 18 (1999), sections 3.2 and 3.3.
class VYRMODEL_EXPORT SoilColumns {
public:
  /// `spacingX`, `spacingY`: distance of the samples in m. `thicknesses`: height of each column in m, at least 0.
  SoilColumns(std::size_t columns, std::size_t rows, double spacingX, double spacingY,
              const std::vector<double>& thicknesses, const Soil& soil);

  /// Height of a column over its floor in m.
  double getThickness(std::size_t index) const { return m_masses[index] / m_densities[index]; }
  /// Density of a column in kg/m^3.
  double getDensity(std::size_t index) const { return m_densities[index]; }
  /// How far the place has been pressed down so far, in m.
  double getSinkage(std::size_t index) const { return m_sinkages[index]; }
  /// Mass of all columns in kg.
  double getMass() const;
  const Soil& getSoil() const { return m_soil; }

  /// Presses the columns `indices` with `pressures` (Pa) for `dt` (s): each sinks towards the depth that the pressure
  /// asks for, compacts, and gives the rest of its soil to the rim of the pressed area.
  void press(const std::vector<std::size_t>& indices, const std::vector<double>& pressures, double dt);
  /// Lets slopes that are too steep slide, at most `rounds` times, onto columns that were not pressed last. `floors`:
  /// height of each column's floor in m.
  void slide(const std::vector<double>& floors, int rounds);
  /// Columns changed since the last call, in ascending order.
  std::vector<std::size_t> takeChanged();

private:
  friend class TerrainType;

  void touch(std::size_t index);
  void give(std::size_t index, double mass, double density);
  std::size_t neighbours(std::size_t index, std::size_t (&outIndices)[4], double (&outDistances)[4]) const;
  void giveToRim(double mass, double density);

  std::size_t m_columns;
  std::size_t m_rows;
  double m_spacingX;
  double m_spacingY;
  Soil m_soil;
  std::vector<double> m_masses;    ///< kg/m^2
  std::vector<double> m_densities; ///< kg/m^3
  std::vector<double> m_sinkages;  ///< m
  std::vector<char> m_pressed;
  std::vector<std::size_t> m_pressedIndices;
  std::vector<char> m_isChanged;
  std::vector<std::size_t> m_changed;
  std::vector<std::size_t> m_steep; ///< columns whose slopes must be looked at
};

} // namespace vyrModel
