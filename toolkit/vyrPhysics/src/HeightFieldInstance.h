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

private:
  vyr::ref_ptr<const HeightField> m_field;
};

} // namespace vyrCollide
