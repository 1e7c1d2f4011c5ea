// The shaders with which the decorator lights each pixel and darkens what lies in shadow.
#pragma once

#include <osg/Shader>
#include <osg/StateSet>
#include <osg/ref_ptr>

namespace vyrOSG {

/// GLSL 1.20 for the compatibility profile: the lights are the fixed pipeline's, so that whatever sets those is
/// followed.
///
/// Illumination is Blinn and Phong's over an ambient light that is brighter from above than from below.
/// Source: J. Blinn, "Models of light reflection for computer synthesized pictures", SIGGRAPH 1977; W. Reeves, D.
/// Salesin, R. Cook, "Rendering antialiased shadows with depth maps", SIGGRAPH 1987, section 3 (percentage-closer
/// filtering).
class DecoratorShaders {
public:
  /// Texture unit of the shadow map: the last one that has texture coordinates, out of the way of the scene's own. The
  /// maps of slices take the two units behind it as well.
  static constexpr unsigned kShadowUnit = 7;

  /// *Returns new*.
  static osg::ref_ptr<osg::Shader> makeVertexShader();
  /// *Returns new*.
  static osg::ref_ptr<osg::Shader> makeFragmentShader();

  /// Gives @p state every uniform that the shaders read, with values for plain surfaces.
  static void addUniforms(osg::StateSet* state);
  /// The uniform that tells a shader that surface colours come from the material and not from the vertices.
  static osg::ref_ptr<osg::Uniform> makeMaterialUniform();
};

} // namespace vyrOSG
