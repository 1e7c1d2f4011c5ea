/// Service that finds what lies under a point of the screen.
#pragma once

#include <vyr/Referenced.h>
#include <vyrPhysics/export.h>
#include <vyrSDK/PickResult.h>

namespace vyrSDK {

/// Base of picking services; the application supplies one that knows its camera.
class VYRPHYSICS_EXPORT PickHandler : public vyr::Referenced {
public:
  PickHandler() = default;

  /// Finds what lies under the window position (x, y), in pixels from the lower left. `hit` is false when nothing does.
  virtual PickResult pick(float x, float y) = 0;

protected:
  ~PickHandler() override;
};

} // namespace vyrSDK
