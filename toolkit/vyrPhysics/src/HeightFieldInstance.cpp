/// The collision engine's object for a height field.
#include "HeightFieldInstance.h"

#include <BulletCollision/CollisionShapes/btHeightfieldTerrainShape.h>

#include <algorithm>
#include <cmath>

namespace vyrCollide {

namespace {

/// Contacts are kept this far (m) off the surface; wider margins let things float visibly.
const double kMargin = 0.001;

/// A height field whose range may be widened. It is centred on z = 0, so that the range never moves its frame.
class AdjustableField : public btHeightfieldTerrainShape {
public:
  AdjustableField(int columns, int rows, const double* heights, double range)
      : btHeightfieldTerrainShape(columns, rows, heights, -range, range, 2, false) {}

  void setRange(double range) {
    m_minHeight = -range;
    m_maxHeight = range;
    m_localAabbMin.setZ(-range);
    m_localAabbMax.setZ(range);
  }
};

} // namespace

HeightFieldInstance::HeightFieldInstance(const HeightField* field)
    : ShapeInstance(std::make_unique<AdjustableField>(
          static_cast<int>(field->m_columns), static_cast<int>(field->m_rows), field->m_heights.data(), field->m_range))
    , m_field(field) {
  m_shape->setLocalScaling(btVector3(field->m_sizeX / static_cast<double>(field->m_columns - 1),
                                     field->m_sizeY / static_cast<double>(field->m_rows - 1), 1.0));
  m_shape->setMargin(kMargin);
  field->m_instances.push_back(this);
}

HeightFieldInstance::~HeightFieldInstance() {
  auto& instances = m_field->m_instances;
  instances.erase(std::remove(instances.begin(), instances.end(), this), instances.end());
}

void HeightFieldInstance::setRange(double range) {
  static_cast<AdjustableField*>(m_shape.get())->setRange(range);
}

bool HeightFieldInstance::isOnSurface(const vyr::Vec3& point) const {
  // Off by the margin across the surface, which on a slope is more along z.
  const double tolerance = 5.0 * kMargin;
  return std::fabs(m_field->getSurfaceHeight(point.x(), point.y()) - point.z()) <= tolerance;
}

} // namespace vyrCollide
