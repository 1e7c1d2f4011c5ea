/// How contacts press on the samples of a height field.
#pragma once

#include <vyrCollide/Geometry.h>
#include <vyrCollide/HeightField.h>
#include <vyrSDK/Simulation.h>

#include <cstddef>
#include <vector>

namespace vyrModel {

/// Pressure on the cell around one sample of a height field.
struct LoadedSample {
  std::size_t index = 0;   ///< row * columns + column
  double pressure = 0;     ///< in Pa where something touches the cell: what soil sinks by
  double meanPressure = 0; ///< in Pa over the whole cell: adds up to the load
};

/// The pressure that the contacts of the last step put on the samples of `ground`, sensors left out, in the order of
/// the samples' indices. The normal force of all contacts with one other geometry is spread evenly over the quarters
/// of cells that its underside touches or nearly touches.
std::vector<LoadedSample> groundPressure(const vyrSDK::Simulation& simulation, const vyrCollide::Geometry& ground,
                                         const vyrCollide::HeightField& field);

} // namespace vyrModel
