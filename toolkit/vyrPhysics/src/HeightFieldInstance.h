/// The collision engine's object for a height field: it reads the samples of the field in place.
#pragma once

#include "ShapeInstance.h"

#include <vyr/ref_ptr.h>
#include <vyrCollide/HeightField.h>

namespace vyrCollide {

/// One geometry's view of a height field. Registers itself with the field, so that the field can widen its range.
class HeightFieldInstance : public ShapeInstance {
public:
  explicit HeightFieldInstance(const HeightField* field);
  ~HeightFieldInstance() override;

  /// The samples lie within +-`range` m from now on.
  void setRange(double range);

  /// True when a point of the field's frame lies on the surface as it is now, within the margin of the contacts.
  bool isOnSurface(const vyr::Vec3& point) const;

private:
  vyr::ref_ptr<const HeightField> m_field;
};

} // namespace vyrCollide
