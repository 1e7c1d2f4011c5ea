/// The interface by which models show pressure.
#include <vyrModel/PressureFieldRenderer.h>

namespace vyrModel {

PressureFieldRenderer::~PressureFieldRenderer() = default;

} // namespace vyrModel
