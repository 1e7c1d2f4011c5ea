/// An axis-aligned box that encloses something, in the frame of the thing that it encloses.
#pragma once

#include <vyr/Vec3.h>

namespace vyrCollide {

/// Two opposite corners of an axis-aligned box, in m. An empty one has min above max in every component.
struct Bounds {
  vyr::Vec3 min{1.0, 1.0, 1.0};
  vyr::Vec3 max{-1.0, -1.0, -1.0};

  /// True when the box encloses at least a point.
  bool isValid() const { return min.x() <= max.x() && min.y() <= max.y() && min.z() <= max.z(); }

  /// Middle of the box, in m.
  vyr::Vec3 getCenter() const { return (min + max) * 0.5; }

  /// Edge lengths of the box, in m.
  vyr::Vec3 getSize() const { return max - min; }
};

} // namespace vyrCollide
