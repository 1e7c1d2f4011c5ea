/// The interface by which models show pressure without knowing how it is drawn.
#pragma once

#include <vyr/Referenced.h>
#include <vyrModel/PressureField.h>
#include <vyrModel/export.h>

namespace vyrModel {

/// Draws a field of pressure samples.
class VYRMODEL_EXPORT PressureFieldRenderer : public vyr::Referenced {
public:
  /// Shows `field` from now on, in place of what was shown before; an empty field shows nothing.
  virtual void update(const PressureField& field) = 0;

protected:
  ~PressureFieldRenderer() override;
};

} // namespace vyrModel
