/// Soft ground: it gives way under contacts, keeps its mass, and slides where it gets too steep.
#include <vyrModel/Terrain.h>

#include "GroundPressure.h"

#include <vyr/Notify.h>

#include <algorithm>
#include <cmath>

namespace vyrModel {

namespace {

/// Rounds of sliding a step: a heap comes to rest over several steps, as soil does.
const int kSlideRounds = 4;

/// Time in s over which soil averages a pressure: contact points come and go from step to step, the load does not.
const double kSettleTime = 0.2;

/// A pressure in Pa below which a place counts as unloaded.
const double kNoPressure = 1.0;

} // namespace

Terrain::Terrain(std::size_t columns, std::size_t rows, double sizeX, double sizeY, const vyr::RealVector& heights,
                 double depth, const Soil& soil)
    : m_parameters(soil) {
  if (!std::isfinite(depth) || depth <= 0 || !soil.isValid()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Terrain: depth " << depth
                                  << " m: it must be above 0, and every number of the soil in its range";
    return;
  }
  vyr::ref_ptr<vyrCollide::HeightField> field(new vyrCollide::HeightField(columns, rows, sizeX, sizeY, heights));
  if (!field->isValid()) {
    return;
  }
  m_field = field;
  m_geometry = new vyrCollide::Geometry(field.get(), "terrain");
  for (const double height : heights) {
    m_floors.push_back(height - depth);
  }
  m_rowRevisions.resize(rows);
  m_soil = std::make_unique<SoilColumns>(columns, rows, sizeX / static_cast<double>(columns - 1),
                                         sizeY / static_cast<double>(rows - 1),
                                         std::vector<double>(heights.size(), depth), soil);
}

Terrain::~Terrain() = default;

void Terrain::setTransform(const vyr::AffineMatrix4x4& transform) {
  if (isValid()) {
    m_geometry->setLocalTransform(transform);
  }
}

bool Terrain::isInside(std::size_t column, std::size_t row) const {
  return isValid() && column < m_field->getNumColumns() && row < m_field->getNumRows();
}

double Terrain::getHeight(std::size_t column, std::size_t row) const {
  return isValid() ? m_field->getHeight(column, row) : 0;
}

double Terrain::getCompaction(std::size_t column, std::size_t row) const {
  return isInside(column, row) ? m_soil->getDensity(row * m_field->getNumColumns() + column) / m_parameters.looseDensity
                               : 0;
}

double Terrain::getSinkage(std::size_t column, std::size_t row) const {
  return isInside(column, row) ? m_soil->getSinkage(row * m_field->getNumColumns() + column) : 0;
}

double Terrain::getMass() const {
  return isValid() ? m_soil->getMass() : 0;
}

void Terrain::simulationChanged(vyrSDK::Simulation* simulation) {
  if (!isValid()) {
    return;
  }
  if (simulation != nullptr) {
    // What was read from a scene file has its geometry there already.
    if (m_geometry->getSimulation() == nullptr) {
      simulation->add(m_geometry.get());
    }
  } else if (m_simulation) {
    m_simulation->remove(m_geometry.get());
  }
  m_simulation = simulation;
}

void Terrain::setPressureRenderer(PressureFieldRenderer* renderer) {
  m_pressureRenderer = renderer;
}

void Terrain::showPressures() const {
  if (!m_pressureRenderer) {
    return;
  }
  const vyr::AffineMatrix4x4 toWorld = m_geometry->getTransform();
  const vyr::Vec3 up = toWorld.transform3x3(vyr::Vec3(0, 0, 1));
  PressureField field;
  for (const auto& [index, load] : m_loads) {
    const std::size_t columns = m_field->getNumColumns();
    field.push_back({m_field->getVertex(index % columns, index / columns) * toWorld, up, load.mean});
  }
  m_pressureRenderer->update(field);
}

void Terrain::post(const vyr::TimeStamp&) {
  if (!isValid() || !m_simulation) {
    return;
  }
  const double share = std::min(1.0, m_simulation->getTimeStep() / kSettleTime);
  for (auto& [index, load] : m_loads) {
    load.pressure *= 1 - share;
    load.mean *= 1 - share;
  }
  for (const LoadedSample& load : groundPressure(*m_simulation, *m_geometry, *m_field)) {
    m_loads[load.index].pressure += share * load.pressure;
    m_loads[load.index].mean += share * load.meanPressure;
  }
  std::vector<std::size_t> indices;
  std::vector<double> pressures;
  for (auto entry = m_loads.begin(); entry != m_loads.end();) {
    if (entry->second.pressure < kNoPressure) {
      entry = m_loads.erase(entry);
      continue;
    }
    indices.push_back(entry->first);
    pressures.push_back(entry->second.pressure);
    ++entry;
  }
  showPressures();
  m_soil->press(indices, pressures, m_simulation->getTimeStep());
  m_soil->slide(m_floors, kSlideRounds);
  const std::vector<std::size_t> changed = m_soil->takeChanged();
  if (changed.empty()) {
    return;
  }
  ++m_revision;
  const std::size_t columns = m_field->getNumColumns();
  for (const std::size_t index : changed) {
    m_field->setHeight(index % columns, index / columns, m_floors[index] + m_soil->getThickness(index));
    m_rowRevisions[index / columns] = m_revision;
  }
}

} // namespace vyrModel
