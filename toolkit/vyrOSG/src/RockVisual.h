// The look of rocks.
#pragma once

#include "RockShape.h"

#include <osg/Geode>

namespace vyrOSG {

/// A block in its rock's frame, finer than the form that collides, with grain and speckles. @param color of the stone.
/// @param level of fineness, as `ballMesh`. *Returns new*.
osg::ref_ptr<osg::Geode> makeRockVisual(const RockBlock& block, const osg::Vec4& color, unsigned int seed,
                                        unsigned int level);

} // namespace vyrOSG
