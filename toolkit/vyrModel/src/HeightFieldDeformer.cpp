/// Prints what lies on a height field into it.
#include <vyrModel/HeightFieldDeformer.h>

#include "GroundPressure.h"

#include <vyr/Notify.h>

#include <algorithm>
#include <cmath>

namespace vyrModel {

namespace {

bool assignIfValid(double& target, double value, const char* what) {
  if (!std::isfinite(value) || value < 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "HeightFieldDeformer: " << what << " must be a number of at least 0, not "
                                  << value;
    return false;
  }
  target = value;
  return true;
}

} // namespace

HeightFieldDeformer::HeightFieldDeformer(vyrCollide::Geometry* ground) {
  auto* field = ground != nullptr ? dynamic_cast<vyrCollide::HeightField*>(ground->getShape()) : nullptr;
  if (field == nullptr) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "HeightFieldDeformer: the geometry must be a height field";
    return;
  }
  m_ground = ground;
  m_field = field;
  m_depths.resize(field->getNumColumns() * field->getNumRows());
  m_rowRevisions.resize(field->getNumRows());
}

HeightFieldDeformer::~HeightFieldDeformer() = default;

bool HeightFieldDeformer::setBearingCapacity(double pascal) {
  return assignIfValid(m_bearingCapacity, pascal, "the bearing capacity");
}

bool HeightFieldDeformer::setSoftness(double metresPerPascal) {
  return assignIfValid(m_softness, metresPerPascal, "the softness");
}

bool HeightFieldDeformer::setMaximumDepth(double metres) {
  return assignIfValid(m_maximumDepth, metres, "the maximum depth");
}

double HeightFieldDeformer::getDepth(std::size_t column, std::size_t row) const {
  if (!isValid() || column >= m_field->getNumColumns() || row >= m_field->getNumRows()) {
    return 0;
  }
  return m_depths[row * m_field->getNumColumns() + column];
}

void HeightFieldDeformer::simulationChanged(vyrSDK::Simulation* simulation) {
  m_simulation = simulation;
}

void HeightFieldDeformer::post(const vyr::TimeStamp&) {
  if (!isValid() || !m_simulation) {
    return;
  }
  const std::size_t columns = m_field->getNumColumns();
  bool changed = false;
  for (const LoadedSample& load : groundPressure(*m_simulation, *m_ground, *m_field)) {
    const double wanted = std::min((load.pressure - m_bearingCapacity) * m_softness, m_maximumDepth);
    const double more = wanted - m_depths[load.index];
    if (more <= 0) {
      continue;
    }
    const std::size_t column = load.index % columns;
    const std::size_t row = load.index / columns;
    m_revision += changed ? 0 : 1;
    changed = true;
    m_depths[load.index] = wanted;
    m_rowRevisions[row] = m_revision;
    m_field->setHeight(column, row, m_field->getHeight(column, row) - more);
  }
}

} // namespace vyrModel
