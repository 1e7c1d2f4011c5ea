// Maximum and mean of pressures over time.
#include "PressureRecording.h"

#include <algorithm>

namespace vyrOSG {

void PressureRecording::add(std::size_t number, const PressureAtlas& atlas) {
  if (atlas.getPressedTexels().empty())
    return;
  if (m_sums.size() <= number)
    m_sums.resize(number + 1);
  Sums& sums = m_sums[number];
  sums.max.resize(atlas.getNumTexels());
  sums.sum.resize(atlas.getNumTexels());
  for (std::size_t texel : atlas.getPressedTexels()) {
    const double pressure = atlas.getPressure(texel);
    sums.max[texel] = std::max(sums.max[texel], pressure);
    sums.sum[texel] += pressure;
  }
}

std::vector<double> PressureRecording::getMax(std::size_t number) const {
  return number < m_sums.size() ? m_sums[number].max : std::vector<double>();
}

std::vector<double> PressureRecording::getAvg(std::size_t number) const {
  if (number >= m_sums.size())
    return {};
  std::vector<double> average = m_sums[number].sum;
  for (double& value : average)
    value /= static_cast<double>(m_steps);
  return average;
}

} // namespace vyrOSG
