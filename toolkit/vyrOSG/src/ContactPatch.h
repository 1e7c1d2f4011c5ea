// The contact points of one pair of geometries, and the pressure that they stand for.
#pragma once

#include <vyrOSG/PressureAtlas.h>

#include <vyr/Vec2.h>
#include <vyr/Vec3.h>

#include <cstddef>
#include <vector>

namespace vyrOSG {

/// Points that press on about the same side of a geometry, in its frame.
class ContactPatch {
public:
  explicit ContactPatch(const vyr::Vec3& normal)
      : m_normal(normal) {}

  /// Whether a normal out of the geometry belongs to the side of this patch.
  bool takes(const vyr::Vec3& normal) const { return normal * m_normal > 0.9; }

  /// Adds a point (m) that presses with `force` (N, above 0).
  void add(const vyr::Vec3& point, double force);

  /// Adds a point (m) that bounds the patch without pressing, if it lies in the plane of the points so far.
  void addCorner(const vyr::Vec3& point);

  /// Spreads the force over the texels under the patch, over `rangeFactor` (m^2/N) times the force at least.
  void press(PressureAtlas& atlas, double rangeFactor) const;

private:
  struct Point {
    vyr::Vec3 place;
    double force;
  };
  /// A texel under the patch: place in its plane, area.
  struct Cell {
    std::size_t texel;
    vyr::Vec2 place;
    double area;
  };
  struct Plane {
    vyr::Vec3 origin;
    vyr::Vec3 x;
    vyr::Vec3 y;
    vyr::Vec2 project(const vyr::Vec3& place) const { return {(place - origin) * x, (place - origin) * y}; }
  };

  vyr::Vec3 getCentre() const;
  Plane getPlane() const;
  std::vector<Cell> findCells(const PressureAtlas& atlas, const Plane& plane, double rangeFactor) const;
  void addNearest(const PressureAtlas& atlas, const Plane& plane, std::vector<Cell>& cells) const;

  vyr::Vec3 m_normal; ///< out of the geometry
  std::vector<Point> m_points;
  double m_force = 0;
};

} // namespace vyrOSG
