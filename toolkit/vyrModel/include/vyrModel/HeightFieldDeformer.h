/// Prints what lies on a height field into it.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/HeightField.h>
#include <vyrModel/export.h>
#include <vyrSDK/Simulation.h>
#include <vyrSDK/StepEventListener.h>

#include <cstdint>
#include <vector>

namespace vyrModel {

/// Lowers the samples of any height field where contacts press harder than the ground bears, and leaves the rest as it
/// is: unlike `Terrain` it keeps no mass. Add it to the simulation that has the geometry, as a step-event listener.
class VYRMODEL_EXPORT HeightFieldDeformer : public vyrSDK::StepEventListener {
public:
  /// `ground`: a geometry with a height field (*retains*). Nullable: null or another shape gives one error message and
  /// a deformer that isValid() denies and that does nothing.
  explicit HeightFieldDeformer(vyrCollide::Geometry* ground);

  bool isValid() const { return m_field.valid(); }
  /// *returns inner*. Nullable.
  vyrCollide::Geometry* getGeometry() const { return m_ground.get(); }
  vyrCollide::HeightField* getHeightField() const { return m_field.get(); }

  /// Pressure in Pa that the ground bears without a print, at least 0. Default: 5 kPa. Numbers out of range are refused
  /// with one error message and false, here and below.
  bool setBearingCapacity(double pascal);
  double getBearingCapacity() const { return m_bearingCapacity; }
  /// Depth of a print in m for each Pa above the bearing capacity, at least 0. Default: 2e-6.
  bool setSoftness(double metresPerPascal);
  double getSoftness() const { return m_softness; }
  /// The deepest print in m, at least 0. Default: 0.1.
  bool setMaximumDepth(double metres);
  double getMaximumDepth() const { return m_maximumDepth; }

  /// Depth of the print at a sample in m; 0 outside.
  double getDepth(std::size_t column, std::size_t row) const;

  /// Counts the steps that changed anything.
  std::uint64_t getRevision() const { return m_revision; }
  /// The revision of the last change in a row.
  std::uint64_t getRowRevision(std::size_t row) const { return m_rowRevisions[row]; }

  void post(const vyr::TimeStamp& time) override;
  void simulationChanged(vyrSDK::Simulation* simulation) override;

protected:
  ~HeightFieldDeformer() override;

private:
  vyr::ref_ptr<vyrCollide::Geometry> m_ground;
  vyr::ref_ptr<vyrCollide::HeightField> m_field;
  std::vector<double> m_depths;
  std::vector<std::uint64_t> m_rowRevisions;
  std::uint64_t m_revision = 0;
  double m_bearingCapacity = 5.0e3;
  double m_softness = 2.0e-6;
  double m_maximumDepth = 0.1;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
};

} // namespace vyrModel
