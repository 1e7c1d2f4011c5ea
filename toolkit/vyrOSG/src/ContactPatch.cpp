// The contact points of one pair of geometries, and the pressure that they stand for.
#include "ContactPatch.h"

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

constexpr double kPi = 3.14159265358979323846;
/// A corner this near to the plane of the contact points touches, too, in m.
constexpr double kTouchGap = 1.5e-3;

double cross(const vyr::Vec2& a, const vyr::Vec2& b) {
  return a.x() * b.y() - a.y() * b.x();
}

/// Counter-clockwise convex hull. Source: Andrew, Another Efficient Algorithm for Convex Hulls in Two Dimensions,
/// Information Processing Letters 9, 1979.
std::vector<vyr::Vec2> convexHull(std::vector<vyr::Vec2> points) {
  std::sort(points.begin(), points.end());
  points.erase(std::unique(points.begin(), points.end()), points.end());
  if (points.size() < 3)
    return points;
  std::vector<vyr::Vec2> hull;
  for (int pass = 0; pass < 2; ++pass) {
    const size_t start = hull.size();
    for (const vyr::Vec2& point : points) {
      while (hull.size() >= start + 2 && cross(hull.back() - hull[hull.size() - 2], point - hull[hull.size() - 2]) <= 0)
        hull.pop_back();
      hull.push_back(point);
    }
    hull.pop_back();
    std::reverse(points.begin(), points.end());
  }
  return hull;
}

/// Area and rim of a hull; a line has its length twice as rim.
void measure(const std::vector<vyr::Vec2>& hull, double& outArea, double& outRim) {
  outArea = 0;
  outRim = 0;
  for (size_t i = 0; i < hull.size(); ++i) {
    const vyr::Vec2& next = hull[(i + 1) % hull.size()];
    outArea += 0.5 * cross(hull[i], next);
    outRim += (next - hull[i]).length();
  }
}

/// 0 inside.
double distanceToHull(const std::vector<vyr::Vec2>& hull, const vyr::Vec2& point) {
  double nearest = 1e300;
  bool inside = hull.size() > 2;
  for (size_t i = 0; i < hull.size(); ++i) {
    const vyr::Vec2 edge = hull[(i + 1) % hull.size()] - hull[i];
    const vyr::Vec2 from = point - hull[i];
    inside = inside && cross(edge, from) >= 0;
    const double length2 = edge * edge;
    const double t = length2 > 0 ? std::clamp((from * edge) / length2, 0.0, 1.0) : 0.0;
    nearest = std::min(nearest, (from - edge * t).length());
  }
  return inside ? 0 : nearest;
}

/// Pressure a + slope * place.
struct LinearPressure {
  double a = 0;
  vyr::Vec2 slope;

  double at(const vyr::Vec2& place) const { return a + slope * place; }
};

} // namespace

void ContactPatch::add(const vyr::Vec3& point, double force) {
  m_points.push_back({point, force});
  m_force += force;
}

void ContactPatch::addCorner(const vyr::Vec3& point) {
  if (std::abs((point - getCentre()) * m_normal) < kTouchGap)
    m_points.push_back({point, 0});
}

vyr::Vec3 ContactPatch::getCentre() const {
  vyr::Vec3 centre;
  for (const Point& point : m_points)
    centre += point.place * (point.force / m_force);
  return centre;
}

ContactPatch::Plane ContactPatch::getPlane() const {
  Plane plane;
  plane.origin = getCentre();
  const vyr::Vec3 helper = std::abs(m_normal.z()) < 0.9 ? vyr::Vec3(0, 0, 1) : vyr::Vec3(1, 0, 0);
  plane.x = (helper ^ m_normal).normalized();
  plane.y = m_normal ^ plane.x;
  return plane;
}

std::vector<ContactPatch::Cell> ContactPatch::findCells(const PressureAtlas& atlas, const Plane& plane,
                                                        double rangeFactor) const {
  std::vector<vyr::Vec2> places;
  vyr::Vec3 low(1e300, 1e300, 1e300);
  vyr::Vec3 high(-1e300, -1e300, -1e300);
  for (const Point& point : m_points) {
    places.push_back(plane.project(point.place));
    for (size_t i = 0; i < 3; ++i) {
      low[i] = std::min(low[i], point.place[i]);
      high[i] = std::max(high[i], point.place[i]);
    }
  }
  const std::vector<vyr::Vec2> hull = convexHull(places);
  double area = 0;
  double rim = 0;
  measure(hull, area, rim);
  // Steiner's formula: a hull grown by r has the area A + P r + pi r^2.
  const double missing = rangeFactor * m_force - area;
  double reach = missing > 0 ? (std::sqrt(rim * rim + 4 * kPi * missing) - rim) / (2 * kPi) : 0.0;
  const double cell = 1 / atlas.getResolution();
  reach = area < cell * cell ? std::max(reach, 0.75 * cell) : reach;
  // Contacts lie a little in or over the surface, and round surfaces fall off from the plane.
  const double depth = std::max(1.5 * cell, reach);
  const double margin = std::max(reach, depth) + cell;
  std::vector<std::size_t> found;
  const vyr::Vec3 around(margin, margin, margin);
  atlas.findTexels(low - around, high + around, found);
  std::vector<Cell> cells;
  for (std::size_t index : found) {
    const PressureAtlas::Texel& texel = atlas.getTexels()[index];
    if (texel.area <= 0 || texel.normal * m_normal < 0.25 ||
        std::abs((texel.position - plane.origin) * m_normal) > depth)
      continue;
    const vyr::Vec2 place = plane.project(texel.position);
    if (distanceToHull(hull, place) <= reach + 1e-9)
      cells.push_back({index, place, texel.area});
  }
  return cells;
}

void ContactPatch::addNearest(const PressureAtlas& atlas, const Plane& plane, std::vector<Cell>& cells) const {
  double nearest = 1e300;
  Cell best{0, vyr::Vec2(), 0};
  std::vector<std::size_t> found;
  double reach = 2 / atlas.getResolution();
  for (int attempt = 0; attempt < 12 && best.area <= 0; ++attempt, reach *= 2) {
    const vyr::Vec3 around(reach, reach, reach);
    atlas.findTexels(plane.origin - around, plane.origin + around, found);
    for (std::size_t index : found) {
      const PressureAtlas::Texel& texel = atlas.getTexels()[index];
      const double distance = (texel.position - plane.origin).length();
      if (texel.area > 0 && distance < nearest) {
        nearest = distance;
        best = {index, plane.project(texel.position), texel.area};
      }
    }
  }
  if (best.area > 0)
    cells.push_back(best);
}

void ContactPatch::press(PressureAtlas& atlas, double rangeFactor) const {
  const Plane plane = getPlane();
  std::vector<Cell> cells = findCells(atlas, plane, rangeFactor);
  if (cells.empty())
    addNearest(atlas, plane, cells);
  // The plane's origin is the centre of the forces: they have no moment about it.
  for (int round = 0; round < 12 && !cells.empty(); ++round) {
    double area = 0;
    vyr::Vec2 first;
    for (const Cell& cell : cells) {
      area += cell.area;
      first += cell.place * cell.area;
    }
    const vyr::Vec2 middle = first / area;
    double xx = 0;
    double xy = 0;
    double yy = 0;
    for (const Cell& cell : cells) {
      const vyr::Vec2 from = cell.place - middle;
      xx += cell.area * from.x() * from.x();
      xy += cell.area * from.x() * from.y();
      yy += cell.area * from.y() * from.y();
    }
    LinearPressure pressure;
    pressure.a = m_force / area;
    const double determinant = xx * yy - xy * xy;
    if (determinant > 1e-6 * (xx + yy) * (xx + yy)) {
      // Moments of the forces about the middle of the cells.
      const vyr::Vec2 moment = middle * -m_force;
      pressure.slope.set((yy * moment.x() - xy * moment.y()) / determinant,
                         (xx * moment.y() - xy * moment.x()) / determinant);
    }
    const auto pulls = [&](const Cell& cell) { return pressure.at(cell.place - middle) < 0; };
    const auto pulling = static_cast<size_t>(std::count_if(cells.begin(), cells.end(), pulls));
    const bool done = pulling == 0 || round == 11;
    if (done) {
      double sum = 0;
      for (const Cell& cell : cells)
        sum += cell.area * std::max(0.0, pressure.at(cell.place - middle));
      for (const Cell& cell : cells)
        atlas.addPressure(cell.texel, std::max(0.0, pressure.at(cell.place - middle)) * m_force / sum);
      return;
    }
    cells.erase(std::remove_if(cells.begin(), cells.end(), pulls), cells.end());
  }
}

} // namespace vyrOSG
