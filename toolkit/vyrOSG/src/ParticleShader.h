// The shaders that turn squares into balls.
#pragma once

#include <osg/Program>

namespace vyrOSG {

/// Vertex attributes of the sprite shaders, beside the colour.
constexpr unsigned int kSpriteCornerAttribute = 6;   ///< corner of the square, -1 to 1; radius (m) behind
constexpr unsigned int kSpriteRotationAttribute = 7; ///< rotation of the particle, x y z w

/// The program that all sprites share. The defines VYR_BANDS (bands that show rotation) and VYR_PUFF (soft,
/// see-through) choose the shading.
osg::Program* spriteProgram();

} // namespace vyrOSG
