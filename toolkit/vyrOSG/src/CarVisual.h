// The wheels of cars as they are drawn.
#pragma once

#include <vyrCollide/Cylinder.h>

#include <osg/Group>

namespace vyrOSG {

/// The name by which a wheel is known again.
constexpr const char* kWheelName = "wheel of a car";

/// A tyre with three bars across both of its sides, which show how it turns.
osg::ref_ptr<osg::Group> makeWheel(const vyrCollide::Cylinder& cylinder, float detailRatio);

} // namespace vyrOSG
