// Maximum and mean of pressures over time.
#pragma once

#include <vyrOSG/PressureAtlas.h>

#include <cstddef>
#include <vector>

namespace vyrOSG {

/// What was seen on some atlases, numbered by their user, from the start to the end of a recording.
class PressureRecording {
public:
  /// Takes in what an atlas shows after a step. An atlas that joins late had no pressure before.
  void add(std::size_t number, const PressureAtlas& atlas);

  /// Ends a step: the mean is over all of them.
  void endStep() { ++m_steps; }

  /// Largest pressure of each texel in Pa; empty for an atlas that was never pressed.
  std::vector<double> getMax(std::size_t number) const;
  /// Mean pressure of each texel over the steps in Pa; as above.
  std::vector<double> getAvg(std::size_t number) const;

private:
  struct Sums {
    std::vector<double> max;
    std::vector<double> sum;
  };

  std::vector<Sums> m_sums;
  std::size_t m_steps = 0;
};

} // namespace vyrOSG
