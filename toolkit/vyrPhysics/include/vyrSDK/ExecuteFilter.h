/// Decides which pairs of geometries something applies to.
#pragma once

#include <vyr/Referenced.h>
#include <vyrPhysics/export.h>

namespace vyrCollide {
class Geometry;
}

namespace vyrSDK {

/// A test over a pair of touching geometries.
class VYRPHYSICS_EXPORT ExecuteFilter : public vyr::Referenced {
public:
  ExecuteFilter() = default;

  /// True when the pair passes, in either order. Both are *borrows*, never null.
  virtual bool match(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second) const = 0;

protected:
  ~ExecuteFilter() override;
};

} // namespace vyrSDK
