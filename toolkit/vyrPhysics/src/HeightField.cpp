/// A piece of ground given by heights over a regular grid.
#include <vyrCollide/HeightField.h>

#include <vyr/Notify.h>

#include "HeightFieldInstance.h"
#include "Validate.h"

#include <algorithm>
#include <cmath>

namespace vyrCollide {

namespace {

bool allFinite(const vyr::RealVector& heights) {
  return std::all_of(heights.begin(), heights.end(), [](double h) { return std::isfinite(h); });
}

} // namespace

HeightField::HeightField(size_t columns, size_t rows, double sizeX, double sizeY, const vyr::RealVector& heights)
    : m_columns(columns)
    , m_rows(rows)
    , m_sizeX(sizeX)
    , m_sizeY(sizeY)
    , m_range(0.0) {
  m_valid =
      vyrPhysics::isPositive(sizeX, "height field size x") && vyrPhysics::isPositive(sizeY, "height field size y");
  if (m_valid && (columns < 2 || rows < 2 || columns > 1000000 || rows > 1000000 || heights.size() != columns * rows)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a height field of " << columns << " x " << rows << " samples cannot be made from "
                                  << heights.size() << " heights";
    m_valid = false;
  }
  if (m_valid && !allFinite(heights)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a height field of " << columns << " x " << rows
                                  << " has a height that is not finite";
    m_valid = false;
  }
  if (m_valid) {
    m_heights.assign(heights.begin(), heights.end());
    for (double height : m_heights) {
      m_range = std::max(m_range, std::fabs(height));
    }
    // Room for ground that gives way, and a box that is never flat.
    m_range = 1.25 * m_range + 0.01;
  }
}

HeightField::~HeightField() = default;

double HeightField::getHeight(size_t column, size_t row) const {
  return m_valid && column < m_columns && row < m_rows ? m_heights[row * m_columns + column] : 0.0;
}

void HeightField::growRange(double height) {
  if (std::fabs(height) > m_range) {
    m_range = 1.25 * std::fabs(height);
    for (HeightFieldInstance* instance : m_instances) {
      instance->setRange(m_range);
    }
  }
}

bool HeightField::setHeight(size_t column, size_t row, double height) {
  if (!m_valid || column >= m_columns || row >= m_rows || !std::isfinite(height)) {
    return false;
  }
  m_heights[row * m_columns + column] = height;
  growRange(height);
  ++m_revision;
  return true;
}

bool HeightField::setHeights(const vyr::RealVector& heights) {
  if (!m_valid || heights.size() != m_heights.size() || !allFinite(heights)) {
    return false;
  }
  // In place: the engine reads the samples where they are.
  std::copy(heights.begin(), heights.end(), m_heights.begin());
  for (double height : m_heights) {
    growRange(height);
  }
  ++m_revision;
  return true;
}

vyr::Vec3 HeightField::getVertex(size_t column, size_t row) const {
  return vyr::Vec3((static_cast<double>(column) / static_cast<double>(m_columns - 1) - 0.5) * m_sizeX,
                   (static_cast<double>(row) / static_cast<double>(m_rows - 1) - 0.5) * m_sizeY,
                   getHeight(column, row));
}

double HeightField::getSurfaceHeight(double x, double y) const {
  if (!m_valid) {
    return 0.0;
  }
  const double u = (std::clamp(x / m_sizeX, -0.5, 0.5) + 0.5) * static_cast<double>(m_columns - 1);
  const double v = (std::clamp(y / m_sizeY, -0.5, 0.5) + 0.5) * static_cast<double>(m_rows - 1);
  const size_t column = std::min(static_cast<size_t>(u), m_columns - 2);
  const size_t row = std::min(static_cast<size_t>(v), m_rows - 2);
  const double s = u - static_cast<double>(column);
  const double t = v - static_cast<double>(row);
  const double h10 = getHeight(column + 1, row);
  const double h01 = getHeight(column, row + 1);
  if (s + t <= 1.0) {
    const double h00 = getHeight(column, row);
    return h00 + s * (h10 - h00) + t * (h01 - h00);
  }
  const double h11 = getHeight(column + 1, row + 1);
  return h11 + (1.0 - s) * (h01 - h11) + (1.0 - t) * (h10 - h11);
}

Bounds HeightField::getBounds() const {
  if (!m_valid) {
    return Bounds();
  }
  const auto extremes = std::minmax_element(m_heights.begin(), m_heights.end());
  return Bounds{vyr::Vec3(-0.5 * m_sizeX, -0.5 * m_sizeY, *extremes.first),
                vyr::Vec3(0.5 * m_sizeX, 0.5 * m_sizeY, *extremes.second)};
}

std::unique_ptr<ShapeInstance> HeightField::createInstance(bool) const {
  if (!m_valid) {
    return nullptr;
  }
  return std::make_unique<HeightFieldInstance>(this);
}

} // namespace vyrCollide
