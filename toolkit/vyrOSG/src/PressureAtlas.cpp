// The surface of a geometry, cut into texels with pressures.
#include <vyrOSG/PressureAtlas.h>

#include "PressureSurface.h"

#include <vyr/Notify.h>
#include <vyrCollide/Shape.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace vyrOSG {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// A point of a triangle: its place in the texture's cells and on the surface.
struct ClipPoint {
  std::array<double, 2> cell;
  vyr::Vec3 place;
};

ClipPoint between(const ClipPoint& a, const ClipPoint& b, double t) {
  return {{a.cell[0] + (b.cell[0] - a.cell[0]) * t, a.cell[1] + (b.cell[1] - a.cell[1]) * t},
          a.place + (b.place - a.place) * t};
}

/// Cuts off what lies on the wrong side of a line of the grid.
/// Source: Sutherland, Hodgman, Reentrant Polygon Clipping, CACM 17, 1974.
void clip(std::vector<ClipPoint>& polygon, std::size_t axis, double border, double side) {
  static thread_local std::vector<ClipPoint> s_kept;
  s_kept.clear();
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const ClipPoint& a = polygon[i];
    const ClipPoint& b = polygon[(i + 1) % polygon.size()];
    const double da = side * (a.cell[axis] - border);
    const double db = side * (b.cell[axis] - border);
    if (da >= 0)
      s_kept.push_back(a);
    if ((da < 0) != (db < 0))
      s_kept.push_back(between(a, b, da / (da - db)));
  }
  polygon.swap(s_kept);
}

} // namespace

PressureAtlas::PressureAtlas(vyrCollide::Geometry* geometry, double resolution)
    : m_geometry(geometry)
    , m_resolution(resolution) {
  if (!(resolution > 0) || !std::isfinite(resolution)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a pressure atlas needs more than 0 texels a metre, not " << resolution;
    return;
  }
  if (!geometry || !geometry->isValid())
    return;
  if (geometry->getShape()->getType() == vyrCollide::Shape::PLANE) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "pressure cannot be shown on the endless plane '" << geometry->getName()
                                  << "'; take a box or a height field";
    return;
  }
  m_surface = std::make_unique<PressureSurface>(geometry->getShape());
  m_revision = geometry->getShape()->getRevision();
  if (m_surface->getNumTriangles() == 0)
    return;
  while (!m_surface->pack(m_resolution)) {
    m_resolution *= 0.85;
    if (m_resolution < 1e-9) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the surface of '" << geometry->getName() << "' has too many parts for pressure";
      return;
    }
  }
  m_width = m_surface->getWidth();
  m_height = m_surface->getHeight();
  m_pixels.assign(static_cast<std::size_t>(m_width) * m_height, kNone);
  makeTexels();
}

PressureAtlas::~PressureAtlas() = default;

void PressureAtlas::makeTexels() {
  for (std::size_t triangle = 0; triangle < m_surface->getNumTriangles(); ++triangle)
    coverTriangle(triangle, true);
  finishTexels();
  spreadBorders();
  m_pressures.assign(m_texels.size(), 0);
}

void PressureAtlas::coverTriangle(std::size_t triangle, bool create) {
  const PressureSurface::Chart& chart = m_surface->getChart(triangle);
  std::array<ClipPoint, 3> corners;
  std::array<double, 2> low = {1e300, 1e300};
  std::array<double, 2> high = {-1e300, -1e300};
  for (int i = 0; i < 3; ++i) {
    ClipPoint& corner = corners[static_cast<std::size_t>(i)];
    corner.place = m_surface->getCorner(triangle, i);
    corner.cell = m_surface->toCells(chart, corner.place, m_resolution);
    for (std::size_t k = 0; k < 2; ++k) {
      low[k] = std::min(low[k], corner.cell[k]);
      high[k] = std::max(high[k], corner.cell[k]);
    }
  }
  const auto first = [](double value, unsigned int begin) { return std::max(int(begin), int(std::floor(value))); };
  const auto last = [](double value, unsigned int end) { return std::min(int(end), int(std::floor(value))); };
  std::vector<ClipPoint> polygon;
  for (int y = first(low[1], chart.y + 1); y <= last(high[1], chart.y + chart.rows); ++y) {
    for (int x = first(low[0], chart.x + 1); x <= last(high[0], chart.x + chart.columns); ++x) {
      polygon.assign(corners.begin(), corners.end());
      clip(polygon, 0, x, 1);
      clip(polygon, 0, x + 1, -1);
      clip(polygon, 1, y, 1);
      clip(polygon, 1, y + 1, -1);
      std::size_t& index = m_pixels[static_cast<std::size_t>(y) * m_width + static_cast<std::size_t>(x)];
      for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
        const vyr::Vec3 normal =
            ((polygon[i].place - polygon[0].place) ^ (polygon[i + 1].place - polygon[0].place)) * 0.5;
        const double area = normal.length();
        if (area < 1e-15)
          continue;
        if (index == kNone && create) {
          index = m_texels.size();
          m_texels.push_back({vyr::Vec3(), vyr::Vec3(), 0, unsigned(x), unsigned(y)});
        }
        if (index >= m_texels.size())
          continue;
        // Sums until finishTexels.
        Texel& texel = m_texels[index];
        texel.position += (polygon[0].place + polygon[i].place + polygon[i + 1].place) * (area / 3);
        texel.normal += normal;
        texel.area += area;
      }
    }
  }
}

void PressureAtlas::finishTexels() {
  for (Texel& texel : m_texels) {
    if (texel.area > 0)
      texel.position = texel.position / texel.area;
    texel.normal.normalize();
  }
  buildGrid();
}

void PressureAtlas::spreadBorders() {
  const std::vector<std::size_t> covered = m_pixels;
  for (std::size_t y = 0; y < m_height; ++y) {
    for (std::size_t x = 0; x < m_width; ++x) {
      std::size_t& pixel = m_pixels[y * m_width + x];
      for (int k = 0; k < 9 && pixel == kNone; ++k) {
        const std::size_t nx = x + static_cast<std::size_t>(k % 3) - 1;
        const std::size_t ny = y + static_cast<std::size_t>(k / 3) - 1;
        if (nx < m_width && ny < m_height)
          pixel = covered[ny * m_width + nx];
      }
      if (pixel == kNone)
        pixel = m_texels.size();
    }
  }
}

bool PressureAtlas::refresh() {
  if (!m_surface || !m_geometry || m_geometry->getShape()->getRevision() == m_revision)
    return false;
  m_revision = m_geometry->getShape()->getRevision();
  if (!m_surface->follow(m_geometry->getShape()))
    return false;
  for (Texel& texel : m_texels) {
    texel.position = vyr::Vec3();
    texel.normal = vyr::Vec3();
    texel.area = 0;
  }
  for (std::size_t triangle = 0; triangle < m_surface->getNumTriangles(); ++triangle)
    coverTriangle(triangle, false);
  finishTexels();
  return true;
}

double PressureAtlas::getPressure(std::size_t texel) const {
  return texel < m_pressures.size() ? m_pressures[texel] : 0.0;
}

void PressureAtlas::addPressure(std::size_t texel, double pressure) {
  if (texel >= m_pressures.size() || !std::isfinite(pressure) || pressure == 0)
    return;
  if (m_pressures[texel] == 0)
    m_pressed.push_back(texel);
  m_pressures[texel] += pressure;
}

void PressureAtlas::clear() {
  for (std::size_t texel : m_pressed)
    m_pressures[texel] = 0;
  m_pressed.clear();
}

double PressureAtlas::getForce() const {
  double force = 0;
  for (std::size_t texel : m_pressed)
    force += m_pressures[texel] * m_texels[texel].area;
  return force;
}

double PressureAtlas::getArea() const {
  double area = 0;
  for (const Texel& texel : m_texels)
    area += texel.area;
  return area;
}

osg::ref_ptr<osg::Geometry> PressureAtlas::createMesh() const {
  return isValid() ? m_surface->createMesh(m_resolution) : nullptr;
}

void PressureAtlas::buildGrid() {
  vyr::Vec3 low(1e300, 1e300, 1e300);
  vyr::Vec3 high(-1e300, -1e300, -1e300);
  for (const Texel& texel : m_texels) {
    for (std::size_t i = 0; i < 3; ++i) {
      low[i] = std::min(low[i], texel.position[i]);
      high[i] = std::max(high[i], texel.position[i]);
    }
  }
  m_gridLow = low;
  m_gridSize =
      std::max({4 / m_resolution, (high.x() - low.x()) / 64, (high.y() - low.y()) / 64, (high.z() - low.z()) / 64});
  std::size_t cells = 1;
  for (std::size_t i = 0; i < 3; ++i) {
    m_gridCount[i] = m_texels.empty() ? 0 : static_cast<int>((high[i] - low[i]) / m_gridSize) + 1;
    cells *= static_cast<std::size_t>(m_gridCount[i]);
  }
  const auto cellOf = [this](const vyr::Vec3& place) {
    std::size_t cell = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      const int at = std::min(m_gridCount[i] - 1, static_cast<int>((place[i] - m_gridLow[i]) / m_gridSize));
      cell = cell * static_cast<std::size_t>(m_gridCount[i]) + static_cast<std::size_t>(at);
    }
    return cell;
  };
  m_cellBegin.assign(cells + 1, 0);
  for (const Texel& texel : m_texels)
    ++m_cellBegin[cellOf(texel.position) + 1];
  for (std::size_t i = 0; i < cells; ++i)
    m_cellBegin[i + 1] += m_cellBegin[i];
  std::vector<std::size_t> next(m_cellBegin.begin(), m_cellBegin.end() - 1);
  m_cellTexels.resize(m_texels.size());
  for (std::size_t i = 0; i < m_texels.size(); ++i)
    m_cellTexels[next[cellOf(m_texels[i].position)]++] = i;
}

void PressureAtlas::findTexels(const vyr::Vec3& low, const vyr::Vec3& high, std::vector<std::size_t>& outTexels) const {
  outTexels.clear();
  int begin[3];
  int end[3];
  for (std::size_t i = 0; i < 3; ++i) {
    const double from = std::floor((low[i] - m_gridLow[i]) / m_gridSize);
    const double to = std::floor((high[i] - m_gridLow[i]) / m_gridSize);
    if (!(to >= 0 && from < m_gridCount[i] && low[i] <= high[i]))
      return;
    begin[i] = static_cast<int>(std::max(from, 0.0));
    end[i] = static_cast<int>(std::min(to, m_gridCount[i] - 1.0));
  }
  for (int x = begin[0]; x <= end[0]; ++x) {
    for (int y = begin[1]; y <= end[1]; ++y) {
      for (int z = begin[2]; z <= end[2]; ++z) {
        const auto cell = static_cast<std::size_t>((x * m_gridCount[1] + y) * m_gridCount[2] + z);
        for (std::size_t k = m_cellBegin[cell]; k < m_cellBegin[cell + 1]; ++k) {
          const vyr::Vec3& place = m_texels[m_cellTexels[k]].position;
          if (place.x() >= low.x() && place.y() >= low.y() && place.z() >= low.z() && place.x() <= high.x() &&
              place.y() <= high.y() && place.z() <= high.z())
            outTexels.push_back(m_cellTexels[k]);
        }
      }
    }
  }
}

} // namespace vyrOSG
