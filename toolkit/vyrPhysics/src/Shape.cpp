/// What all forms share.
#include <vyrCollide/Shape.h>

namespace vyrCollide {

Shape::~Shape() = default;

vyr::SPDMatrix3x3 Shape::getInertia(double mass) const {
  const MassProperties properties = getMassProperties();
  const double density = properties.volume > 0.0 ? mass / properties.volume : 0.0;
  const auto& i = properties.inertia;
  return vyr::SPDMatrix3x3(i[0][0], i[0][1], i[0][2], i[1][1], i[1][2], i[2][2]) * density;
}

} // namespace vyrCollide
