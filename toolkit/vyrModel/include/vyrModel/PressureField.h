/// Samples of pressure on surfaces.
#pragma once

#include <vyr/Vec3.h>
#include <vyr/Vector.h>

namespace vyrModel {

/// The pressure at one place.
struct PressureSample {
  vyr::Vec3 position;  ///< in the world, m
  vyr::Vec3 normal;    ///< unit vector out of the surface
  double pressure = 0; ///< Pa
};

/// Any number of samples, in no order.
using PressureField = vyr::Vector<PressureSample>;

} // namespace vyrModel
