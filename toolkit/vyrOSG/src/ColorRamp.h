// Colours for numbers.
#pragma once

#include <osg/Vec4>

namespace vyrOSG {

/// Blue at share 0 over cyan, green and yellow to red at 1; shares beyond are taken as the end. NaN is blue.
osg::Vec4 rampColor(double share);

} // namespace vyrOSG
