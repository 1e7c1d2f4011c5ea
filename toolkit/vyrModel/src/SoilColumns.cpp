/// A grid of soil columns that keep their mass while they are pressed, flow and slide.
#include <vyrModel/SoilColumns.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace vyrModel {

namespace {

const double kHalfPi = 1.5707963267948966;

/// The share of a slope's surplus that slides in one round: with four neighbours, more would overshoot.
const double kSlideShare = 0.2;

bool isPositive(double value) {
  return std::isfinite(value) && value > 0;
}

} // namespace

bool Soil::isValid() const {
  return isPositive(modulus) && isPositive(exponent) && isPositive(looseDensity) && std::isfinite(denseDensity) &&
         denseDensity >= looseDensity && compactionShare >= 0 && compactionShare <= 1 && angleOfRepose > 0 &&
         angleOfRepose < kHalfPi && isPositive(sinkRate);
}

SoilColumns::SoilColumns(std::size_t columns, std::size_t rows, double spacingX, double spacingY,
                         const std::vector<double>& thicknesses, const Soil& soil)
    : m_columns(columns)
    , m_rows(rows)
    , m_spacingX(spacingX)
    , m_spacingY(spacingY)
    , m_soil(soil)
    , m_densities(thicknesses.size(), soil.looseDensity)
    , m_sinkages(thicknesses.size())
    , m_pressed(thicknesses.size())
    , m_isChanged(thicknesses.size()) {
  m_masses.reserve(thicknesses.size());
  for (const double thickness : thicknesses) {
    m_masses.push_back(thickness * soil.looseDensity);
  }
}

double SoilColumns::getMass() const {
  return std::accumulate(m_masses.begin(), m_masses.end(), 0.0) * m_spacingX * m_spacingY;
}

void SoilColumns::touch(std::size_t index) {
  if (m_isChanged[index] == 0) {
    m_isChanged[index] = 1;
    m_changed.push_back(index);
  }
}

std::vector<std::size_t> SoilColumns::takeChanged() {
  std::vector<std::size_t> changed;
  changed.swap(m_changed);
  std::sort(changed.begin(), changed.end());
  for (const std::size_t index : changed) {
    m_isChanged[index] = 0;
  }
  return changed;
}

std::size_t SoilColumns::neighbours(std::size_t index, std::size_t (&outIndices)[4], double (&outDistances)[4]) const {
  const std::size_t column = index % m_columns;
  const std::size_t row = index / m_columns;
  std::size_t count = 0;
  const auto add = [&](bool exists, std::size_t neighbour, double distance) {
    if (exists) {
      outIndices[count] = neighbour;
      outDistances[count++] = distance;
    }
  };
  add(column > 0, index - 1, m_spacingX);
  add(column + 1 < m_columns, index + 1, m_spacingX);
  add(row > 0, index - m_columns, m_spacingY);
  add(row + 1 < m_rows, index + m_columns, m_spacingY);
  return count;
}

void SoilColumns::give(std::size_t index, double mass, double density) {
  // Volumes add: the mixture's density follows.
  const double volume = m_masses[index] / m_densities[index] + mass / density;
  m_masses[index] += mass;
  if (volume > 0) {
    m_densities[index] = m_masses[index] / volume;
  }
  touch(index);
  m_steep.push_back(index);
}

void SoilColumns::press(const std::vector<std::size_t>& indices, const std::vector<double>& pressures, double dt) {
  for (const std::size_t index : m_pressedIndices) {
    m_pressed[index] = 0;
  }
  m_pressedIndices = indices;
  for (const std::size_t index : indices) {
    m_pressed[index] = 1;
  }
  double surplus = 0;
  double surplusVolume = 0;
  for (std::size_t i = 0; i < indices.size(); ++i) {
    const std::size_t index = indices[i];
    const double wanted = std::pow(std::max(0.0, pressures[i]) / m_soil.modulus, 1 / m_soil.exponent);
    const double thickness = getThickness(index);
    const double sink = std::min({wanted - m_sinkages[index], m_soil.sinkRate * dt, thickness});
    if (!(sink > 0)) {
      continue;
    }
    m_sinkages[index] += sink;
    // Compaction raises the density as far as the soil allows; what does not fit any more flows out.
    const double compacted = std::min(m_masses[index] / std::max(thickness - m_soil.compactionShare * sink, 1e-12),
                                      std::max(m_soil.denseDensity, m_densities[index]));
    const double left = thickness - sink;
    const double flowing = std::max(0.0, m_masses[index] - left * compacted);
    m_densities[index] = compacted;
    m_masses[index] -= flowing;
    surplus += flowing;
    surplusVolume += flowing / compacted;
    touch(index);
    m_steep.push_back(index);
  }
  if (surplus > 0) {
    // Soil that was pushed aside lies loose.
    giveToRim(surplus, std::min(surplus / surplusVolume, m_soil.looseDensity));
  }
}

void SoilColumns::giveToRim(double mass, double density) {
  std::vector<std::size_t> rim;
  std::size_t around[4];
  double distances[4];
  for (const std::size_t index : m_pressedIndices) {
    const std::size_t count = neighbours(index, around, distances);
    std::copy_if(around, around + count, std::back_inserter(rim),
                 [this](std::size_t neighbour) { return m_pressed[neighbour] == 0; });
  }
  // A pressed area that fills the grid has no rim: the soil stays where it is.
  std::vector<std::size_t>& receivers = rim.empty() ? m_pressedIndices : rim;
  std::sort(rim.begin(), rim.end());
  rim.erase(std::unique(rim.begin(), rim.end()), rim.end());
  for (const std::size_t index : receivers) {
    give(index, mass / static_cast<double>(receivers.size()), density);
  }
}

void SoilColumns::slide(const std::vector<double>& floors, int rounds) {
  const double steepness = std::tan(m_soil.angleOfRepose);
  std::size_t around[4];
  double distances[4];
  for (int round = 0; round < rounds && !m_steep.empty(); ++round) {
    std::vector<std::size_t> active;
    active.swap(m_steep);
    // The neighbours' slopes towards the changed columns changed too.
    const std::size_t own = active.size();
    for (std::size_t i = 0; i < own; ++i) {
      const std::size_t count = neighbours(active[i], around, distances);
      active.insert(active.end(), around, around + count);
    }
    std::sort(active.begin(), active.end());
    active.erase(std::unique(active.begin(), active.end()), active.end());
    for (const std::size_t from : active) {
      const std::size_t count = neighbours(from, around, distances);
      for (std::size_t k = 0; k < count; ++k) {
        const std::size_t to = around[k];
        const double drop = floors[from] + getThickness(from) - floors[to] - getThickness(to);
        const double surplus = drop - steepness * distances[k];
        if (surplus <= 1e-9 || m_pressed[to] != 0) {
          continue;
        }
        const double height = std::min(kSlideShare * surplus, getThickness(from));
        const double mass = height * m_densities[from];
        m_masses[from] -= mass;
        touch(from);
        m_steep.push_back(from);
        // Sliding loosens.
        give(to, mass, std::min(m_densities[from], m_soil.looseDensity));
      }
    }
  }
}

} // namespace vyrModel
