/// The coordinate axes as constants.
#pragma once

#include <vyr/Vec2.h>
#include <vyr/Vec4.h>

namespace vyr {

/// Directions, hence with the fourth component 0; each file that includes them holds its own copy.
const Vec4 X_AXIS(1, 0, 0, 0);
const Vec4 Y_AXIS(0, 1, 0, 0);
const Vec4 Z_AXIS(0, 0, 1, 0);
const Vec2 X_AXIS_2D(1, 0);
const Vec2 Y_AXIS_2D(0, 1);

} // namespace vyr
