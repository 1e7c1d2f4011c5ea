// Holds the sources of the decorator's shaders.
#include "DecoratorShaders.h"

#include "ShadowLookup.h"

#include <osg/Uniform>

#include <string>

namespace vyrOSG {

namespace {

const char* const kVertexSource = R"(#version 120
uniform bool vyr_useMaterial;
varying vec3 vyr_normal;
varying vec3 vyr_position;

void main()
{
  vec4 position = gl_ModelViewMatrix * gl_Vertex;
  vyr_position = position.xyz / position.w;
  vyr_normal = gl_NormalMatrix * gl_Normal;
  gl_FrontColor = vyr_useMaterial ? gl_FrontMaterial.diffuse : gl_Color;
  gl_BackColor = gl_FrontColor;
  gl_TexCoord[0] = gl_TextureMatrix[0] * gl_MultiTexCoord0;
  gl_TexCoord[7] = vec4(dot(position, gl_EyePlaneS[7]), dot(position, gl_EyePlaneT[7]), dot(position, gl_EyePlaneR[7]),
                        dot(position, gl_EyePlaneQ[7]));
  gl_ClipVertex = position;
  gl_Position = ftransform();
}
)";

const char* const kFragmentHead = R"(#version 120
#pragma import_defines(VYR_NO_LIGHT0, VYR_NO_LIGHT1, VYR_NO_LIGHT2)
#pragma import_defines(VYR_SHADOW_TAPS, VYR_SHADOW_SPLITS, VYR_SHADOW_OUTLINE)
uniform sampler2D vyr_baseTexture;
uniform vec4 vyr_lightOn;
uniform int vyr_shadowLight;
uniform mat4 osg_ViewMatrix;
varying vec3 vyr_normal;
varying vec3 vyr_position;
)";

// Lights that a node switched off for itself, which a uniform of the whole scene cannot say.
const char* const kLightSwitches = R"(
bool isSwitchedOff(int light)
{
#ifdef VYR_NO_LIGHT0
  if (light == 0)
    return true;
#endif
#ifdef VYR_NO_LIGHT1
  if (light == 1)
    return true;
#endif
#ifdef VYR_NO_LIGHT2
  if (light == 2)
    return true;
#endif
  return false;
}
)";

const char* const kFragmentMain = R"(
void main()
{
  vec3 normal = normalize(gl_FrontFacing ? vyr_normal : -vyr_normal);
  vec3 eye = normalize(-vyr_position);
  vec4 surface = gl_Color * texture2D(vyr_baseTexture, gl_TexCoord[0].xy);
  float lit = litShare(vyr_position);

  vec3 up = normalize((osg_ViewMatrix * vec4(0.0, 0.0, 1.0, 0.0)).xyz);
  vec3 light = gl_LightModel.ambient.rgb * mix(0.70, 1.20, 0.5 + 0.5 * dot(normal, up));
  vec3 gloss = vec3(0.0);
  for (int i = 0; i < 3; ++i) {
    if (vyr_lightOn[i] < 0.5 || isSwitchedOff(i))
      continue;
    vec3 way = gl_LightSource[i].position.xyz - vyr_position * gl_LightSource[i].position.w;
    float distance = length(way);
    way /= max(distance, 1.0e-6);
    float strength = 1.0;
    if (gl_LightSource[i].position.w != 0.0)
      strength = 1.0 / (gl_LightSource[i].constantAttenuation + gl_LightSource[i].linearAttenuation * distance +
                        gl_LightSource[i].quadraticAttenuation * distance * distance);
    if (gl_LightSource[i].spotCutoff < 90.5) {
      float cone = dot(-way, normalize(gl_LightSource[i].spotDirection));
      strength *= cone < gl_LightSource[i].spotCosCutoff ? 0.0 : pow(max(cone, 0.0), gl_LightSource[i].spotExponent);
    }
    if (i == vyr_shadowLight)
      strength *= lit;
    float facing = max(dot(normal, way), 0.0);
    light += strength * facing * gl_LightSource[i].diffuse.rgb + gl_LightSource[i].ambient.rgb;
    if (facing > 0.0)
      gloss += strength * gl_LightSource[i].specular.rgb * gl_FrontMaterial.specular.rgb *
               pow(max(dot(normal, normalize(way + eye)), 0.0), max(gl_FrontMaterial.shininess, 1.0));
  }
  gl_FragColor = vec4(surface.rgb * light + gl_FrontMaterial.emission.rgb + gloss, surface.a);
}
)";

} // namespace

osg::ref_ptr<osg::Shader> DecoratorShaders::makeVertexShader() {
  return new osg::Shader(osg::Shader::VERTEX, kVertexSource);
}

osg::ref_ptr<osg::Shader> DecoratorShaders::makeFragmentShader() {
  return new osg::Shader(osg::Shader::FRAGMENT,
                         std::string(kFragmentHead) + kLightSwitches + shadowLookupSource() + kFragmentMain);
}

void DecoratorShaders::addUniforms(osg::StateSet* state) {
  state->addUniform(new osg::Uniform("vyr_useMaterial", false));
  state->addUniform(new osg::Uniform("vyr_baseTexture", 0));
  state->addUniform(new osg::Uniform("vyr_lightOn", osg::Vec4(1.0f, 1.0f, 1.0f, 0.0f)));
  state->addUniform(new osg::Uniform("vyr_shadowLight", 0));
  state->addUniform(new osg::Uniform("vyr_shadowTexel", 1.0f / 2048.0f));
  state->addUniform(new osg::Uniform("vyr_isGround", 0.0f));
}

osg::ref_ptr<osg::Uniform> DecoratorShaders::makeMaterialUniform() {
  return new osg::Uniform("vyr_useMaterial", true);
}

} // namespace vyrOSG
