/// What soft ground is like.
#pragma once

#include <vyrModel/export.h>

namespace vyrModel {

/// Parameters of a soil; the defaults are those of a dry loam.
///
/// Pressure p makes a plate sink by z where p = modulus * z^exponent.
/// Source: M. G. Bekker, "Introduction to Terrain-Vehicle Systems", 1969, section 1.2 (the pressure-sinkage equation,
/// with the modulus k_c / b + k_phi as one number).
struct VYRMODEL_EXPORT Soil {
  double modulus = 6.0e5;       ///< Pa / m^exponent, above 0
  double exponent = 0.9;        ///< above 0
  double looseDensity = 1400;   ///< kg/m^3, of soil that nothing has pressed yet; above 0
  double denseDensity = 1900;   ///< kg/m^3, of soil that cannot be compacted further; at least the loose density
  double compactionShare = 0.6; ///< share of a sinkage that compacts; the rest flows out sideways; 0 to 1
  double angleOfRepose = 0.6;   ///< rad: steeper slopes slide; above 0 and below pi/2
  double sinkRate = 0.5;        ///< m/s: the fastest sinkage; above 0

  /// True when every number is in its range.
  bool isValid() const;
};

} // namespace vyrModel
