// The shader of surfaces that carry more than a diffuse texture.
#pragma once

#include <osg/Program>
#include <osg/StateSet>

#include <string>

namespace vyrOSG::surface {

/// The preprocessor name that switches a texture unit of the shader on: the names of the texture modes in order, with
/// the cube map behind them.
std::string unitDefine(unsigned int unit);

/// The unit of the cube map, behind those of the texture modes and that of the scene decorator's shadow map.
constexpr unsigned int kCubeMapUnit = 8;

/// The uniform that mixes mirrored surroundings in.
constexpr const char* kReflectionUniform = "vyr_reflection";

/// Makes a state set shade its surfaces with the shader. What the shader samples is chosen by the defines of the units,
/// which state sets below and above add to.
void useSurfaceShader(osg::StateSet& stateSet);

} // namespace vyrOSG::surface
