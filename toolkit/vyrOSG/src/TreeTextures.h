// Pictures of bark and leaves, painted in memory.
#pragma once

#include <osg/Texture2D>

namespace vyrOSG {

/// Furrowed bark that tiles both ways; grey, to be coloured by the material.
osg::ref_ptr<osg::Texture2D> barkTexture();

/// A spray of leaves on a stalk that starts in the middle of the lower edge: shades of grey, clear between the leaves.
osg::ref_ptr<osg::Texture2D> leafTexture();

} // namespace vyrOSG
