/// Smooth curves through given points.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/Vec3.h>
#include <vyrPhysics/export.h>

#include <cstddef>
#include <vector>

namespace vyrUtil {

/// A centripetal Catmull-Rom curve: it goes through every control point, with a continuous tangent, and makes no loops
/// between them. Points are in m, in the frame of whoever draws the curve.
///
/// The parameter runs from 0 at the first point over whole numbers at the points to getNumPoints() - 1 at the last.
/// Source: E. Catmull, R. Rom, "A class of local interpolating splines", 1974; the centripetal parameter (exponent 1/2)
/// after C. Yuksel, S. Schaefer, J. Keyser, "On the parameterization of Catmull-Rom curves", 2009, section 3.
class VYRPHYSICS_EXPORT Spline : public vyr::Referenced {
public:
  Spline() = default;

  /// Adds a point behind the last one. A point that is not finite is refused with one error message and false.
  bool add(const vyr::Vec3& point);
  /// Moves a point; false when there is no such point or the place is not finite.
  bool setPoint(std::size_t index, const vyr::Vec3& point);
  /// A control point; the origin when there is no such point.
  vyr::Vec3 getPoint(std::size_t index) const;
  std::size_t getNumPoints() const { return m_points.size(); }
  const std::vector<vyr::Vec3>& getPoints() const { return m_points; }
  void clear() { m_points.clear(); }

  /// The place on the curve at parameter `t`, clamped to the curve. One point: that point. None: the origin.
  vyr::Vec3 evaluate(double t) const;
  /// The unit direction of the curve at `t`; (0, 0, 1) where the curve has none (fewer than two different points).
  vyr::Vec3 tangent(double t) const;
  /// The length in m, from chords of 16 parts a span.
  double length() const;
  /// Places along the curve: each span gets its chord's length times `density` (samples per m) parts, rounded up, at
  /// least one and at most 256; a density that is not a number above 0 gives the control points alone.
  /// `outParameters`, when given, receives each place's parameter.
  std::vector<vyr::Vec3> sample(double density, std::vector<double>* outParameters = nullptr) const;

protected:
  ~Spline() override;

private:
  std::vector<vyr::Vec3> m_points;
};

} // namespace vyrUtil
