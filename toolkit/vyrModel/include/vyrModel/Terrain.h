/// Soft ground: it gives way under contacts, keeps its mass, and slides where it gets too steep.
#pragma once

#include <vyr/VectorPOD.h>
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/HeightField.h>
#include <vyrModel/PressureFieldRenderer.h>
#include <vyrModel/SoilColumns.h>
#include <vyrModel/export.h>
#include <vyrSDK/Simulation.h>
#include <vyrSDK/StepEventListener.h>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace vyrModel {

class TerrainType;

/// A height field of soil on a hard floor. Adding the terrain to a simulation, as a step-event listener, adds its
/// geometry too. After each step the contacts' normal forces press the soil under them.
class VYRMODEL_EXPORT Terrain : public vyrSDK::StepEventListener {
public:
  /// Samples as in `vyrCollide::HeightField`: `heights` in m, `columns` * `rows` of them, over `sizeX` by `sizeY` m
  /// around the origin. `depth`: thickness of the soil in m, above 0. Wrong numbers: one error message, and a terrain
  /// that isValid() denies and that does nothing.
  Terrain(std::size_t columns, std::size_t rows, double sizeX, double sizeY, const vyr::RealVector& heights,
          double depth = 0.5, const Soil& soil = Soil());

  bool isValid() const { return m_soil != nullptr; }

  /// *returns inner*. Nullable: null for an invalid terrain.
  vyrCollide::Geometry* getGeometry() const { return m_geometry.get(); }
  vyrCollide::HeightField* getHeightField() const { return m_field.get(); }

  /// Places the terrain; before it enters a simulation.
  void setTransform(const vyr::AffineMatrix4x4& transform);

  /// Height of a sample over the terrain's own origin in m; 0 outside.
  double getHeight(std::size_t column, std::size_t row) const;
  /// Density of the soil at a sample over that of loose soil, at least 1 where it was pressed; 0 outside.
  double getCompaction(std::size_t column, std::size_t row) const;
  /// How far a sample has been pressed down, in m; 0 outside.
  double getSinkage(std::size_t column, std::size_t row) const;
  /// Mass of the soil in kg: constant but for rounding.
  double getMass() const;
  /// Soil parameters.
  const Soil& getSoil() const { return m_parameters; }

  /// Counts the steps that changed anything.
  std::uint64_t getRevision() const { return m_revision; }
  /// The revision of the last change in a row; drawings skip the rows that they know.
  std::uint64_t getRowRevision(std::size_t row) const { return m_rowRevisions[row]; }

  /// Shows the pressure on the soil with a renderer (*retains*), after each step. Nullable: null ends that.
  void setPressureRenderer(PressureFieldRenderer* renderer);
  /// *returns inner*. Nullable.
  PressureFieldRenderer* getPressureRenderer() const { return m_pressureRenderer.get(); }

  void post(const vyr::TimeStamp& time) override;
  void simulationChanged(vyrSDK::Simulation* simulation) override;

protected:
  ~Terrain() override;

private:
  friend class TerrainType;

  bool isInside(std::size_t column, std::size_t row) const;
  void showPressures() const;

  Soil m_parameters;
  vyr::ref_ptr<vyrCollide::HeightField> m_field;
  vyr::ref_ptr<vyrCollide::Geometry> m_geometry;
  std::unique_ptr<SoilColumns> m_soil;
  std::vector<double> m_floors;
  /// Pressures on a sample in Pa, averaged over time: where its cell is touched, and over the whole cell.
  struct Load {
    double pressure = 0;
    double mean = 0;
  };
  std::map<std::size_t, Load> m_loads; ///< of the loaded samples
  vyr::ref_ptr<PressureFieldRenderer> m_pressureRenderer;
  std::vector<std::uint64_t> m_rowRevisions;
  std::uint64_t m_revision = 0;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
};

} // namespace vyrModel
