// Lights surfaces per pixel with normal, height, specular, shadow, sphere and cube maps.
#include "SurfaceShader.h"

#include "ShadowLookup.h"

#include <osg/Uniform>

#include <string>

namespace vyrOSG::surface {

namespace {

constexpr unsigned int kModeUnits = 7;

// With a scene decorator above, VYR_DECORATED and VYR_SHADOW_TAPS say so: then its lights and its shadow map hold here
// too.
const char* const kVertexShader = R"(
#version 120
#pragma import_defines(VYR_SHADOW_TAPS)
varying vec3 eyePosition;
varying vec3 eyeNormal;
varying vec2 texCoord;
void main() {
  vec4 position = gl_ModelViewMatrix * gl_Vertex;
  eyePosition = position.xyz / position.w;
  eyeNormal = gl_NormalMatrix * gl_Normal;
  texCoord = gl_MultiTexCoord0.xy;
#ifdef VYR_SHADOW_TAPS
  gl_TexCoord[7] = vec4(dot(position, gl_EyePlaneS[7]), dot(position, gl_EyePlaneT[7]), dot(position, gl_EyePlaneR[7]),
                        dot(position, gl_EyePlaneQ[7]));
#endif
  gl_ClipVertex = position;
  gl_FogFragCoord = abs(eyePosition.z);
  gl_Position = ftransform();
}
)";

// Tangent space without tangents from the mesh. Source: C. Schueler, "Normal Mapping without Precomputed Tangents",
// ShaderX5, section 2.6: the tangent frame follows from the screen derivatives of position and texture coordinates.
// Height map: steep parallax mapping. Source: M. McGuire, M. McGuire, "Steep Parallax Mapping", I3D 2005 poster.
const char* const kFragmentHead = R"(
#version 120
#pragma import_defines(VYR_DIFFUSE_TEXTURE, VYR_SHADOW_TEXTURE, VYR_SHADOW_JITTER_TEXTURE, VYR_NORMALMAP_TEXTURE)
#pragma import_defines(VYR_HEIGHTMAP_TEXTURE, VYR_SPECULARMAP_TEXTURE, VYR_SPHEREMAP_TEXTURE, VYR_CUBEMAP_TEXTURE)
#pragma import_defines(VYR_NO_LIGHT0, VYR_NO_LIGHT1, VYR_NO_LIGHT2, VYR_NO_LIGHT3)
#pragma import_defines(VYR_DECORATED, VYR_SHADOW_TAPS, VYR_SHADOW_SPLITS, VYR_SHADOW_OUTLINE)
#pragma import_defines(VYR_NO_LIGHT4, VYR_NO_LIGHT5, VYR_NO_LIGHT6, VYR_NO_LIGHT7)
varying vec3 eyePosition;
varying vec3 eyeNormal;
varying vec2 texCoord;
uniform mat4 osg_ViewMatrixInverse;
uniform float vyr_reflection;
uniform sampler2D vyr_map0;
uniform sampler2D vyr_map1;
uniform sampler2D vyr_map2;
uniform sampler2D vyr_map3;
uniform sampler2D vyr_map4;
uniform sampler2D vyr_map5;
uniform sampler2D vyr_map6;
uniform samplerCube vyr_cubeMap;

#ifdef VYR_DECORATED
uniform vec4 vyr_lightOn;
uniform int vyr_shadowLight;
#endif
)";

const char* const kFragmentMain = R"(
vec2 mapCoord(int unit, vec2 coord) { return (gl_TextureMatrix[unit] * vec4(coord, 0.0, 1.0)).xy; }

// Columns: the directions of u and v on the surface and its normal, in eye space.
mat3 tangentFrame(vec3 normal) {
  vec3 dpx = dFdx(eyePosition);
  vec3 dpy = dFdy(eyePosition);
  vec2 dtx = dFdx(texCoord);
  vec2 dty = dFdy(texCoord);
  vec3 acrossY = cross(dpy, normal);
  vec3 acrossX = cross(normal, dpx);
  vec3 tangent = acrossY * dtx.x + acrossX * dty.x;
  vec3 bitangent = acrossY * dtx.y + acrossX * dty.y;
  float longest = max(dot(tangent, tangent), dot(bitangent, bitangent));
  float scale = longest > 0.0 ? inversesqrt(longest) : 0.0;
  return mat3(tangent * scale, bitangent * scale, normal);
}

void addLight(int i, vec3 normal, vec3 toEye, inout vec3 diffuse, inout vec3 ambient, inout vec3 specular) {
  float strength = 1.0;
#ifdef VYR_DECORATED
  if (i < 3 && vyr_lightOn[i] < 0.5)
    return;
  if (i == vyr_shadowLight)
    strength = litShare(eyePosition);
#endif
  vec4 place = gl_LightSource[i].position;
  vec3 toLight = place.xyz - (place.w == 0.0 ? vec3(0.0) : eyePosition * place.w);
  float distance = length(toLight);
  if (distance == 0.0)
    return;
  toLight /= distance;
  if (place.w != 0.0) {
    strength /= (gl_LightSource[i].constantAttenuation + gl_LightSource[i].linearAttenuation * distance +
                      gl_LightSource[i].quadraticAttenuation * distance * distance);
    if (gl_LightSource[i].spotCutoff <= 90.0) {
      float spot = dot(-toLight, normalize(gl_LightSource[i].spotDirection));
      strength *= spot < gl_LightSource[i].spotCosCutoff ? 0.0 : pow(spot, gl_LightSource[i].spotExponent);
    }
  }
  ambient += strength * gl_LightSource[i].ambient.rgb;
  float facing = dot(normal, toLight);
  if (facing <= 0.0)
    return;
  diffuse += strength * facing * gl_LightSource[i].diffuse.rgb;
  float shine = max(dot(normal, normalize(toLight + toEye)), 0.0);
  if (shine > 0.0)
    specular += strength * pow(shine, max(gl_FrontMaterial.shininess, 1.0)) * gl_LightSource[i].specular.rgb;
}

void main() {
  vec3 normal = normalize(eyeNormal);
  vec3 toEye = normalize(-eyePosition);
  if (dot(normal, toEye) < 0.0 && !gl_FrontFacing)
    normal = -normal;
  mat3 frame = tangentFrame(normal);
  vec2 coord = texCoord;

#ifdef VYR_HEIGHTMAP_TEXTURE
  const float kDepth = 0.04;
  const int kSteps = 16;
  vec3 view = toEye * frame;
  vec2 stride = -view.xy / max(view.z, 0.25) * kDepth / float(kSteps);
  float layer = 1.0;
  for (int i = 0; i < kSteps; ++i) {
    if (texture2D(vyr_map4, mapCoord(4, coord)).r >= layer)
      break;
    coord += stride;
    layer -= 1.0 / float(kSteps);
  }
#endif
#ifdef VYR_NORMALMAP_TEXTURE
  vec3 bump = texture2D(vyr_map3, mapCoord(3, coord)).rgb * 2.0 - 1.0;
  normal = normalize(frame * bump);
#elif defined(VYR_HEIGHTMAP_TEXTURE)
  const float kReach = 1.0 / 256.0;
  const float kBump = kDepth / kReach;
  float here = texture2D(vyr_map4, mapCoord(4, coord)).r;
  float right = texture2D(vyr_map4, mapCoord(4, coord + vec2(kReach, 0.0))).r;
  float up = texture2D(vyr_map4, mapCoord(4, coord + vec2(0.0, kReach))).r;
  normal = normalize(frame * vec3((here - right) * kBump, (here - up) * kBump, 1.0));
#endif

  vec3 diffuse = vec3(0.0);
  vec3 ambient = gl_LightModel.ambient.rgb;
  vec3 specular = vec3(0.0);
#ifdef VYR_DECORATED
  vec3 upward = vec3(osg_ViewMatrixInverse[0].z, osg_ViewMatrixInverse[1].z, osg_ViewMatrixInverse[2].z);
  ambient *= mix(0.70, 1.20, 0.5 + 0.5 * dot(normal, upward));
#endif
#ifndef VYR_NO_LIGHT0
  addLight(0, normal, toEye, diffuse, ambient, specular);
#endif
#ifndef VYR_NO_LIGHT1
  addLight(1, normal, toEye, diffuse, ambient, specular);
#endif
#ifndef VYR_NO_LIGHT2
  addLight(2, normal, toEye, diffuse, ambient, specular);
#endif
#ifndef VYR_NO_LIGHT3
  addLight(3, normal, toEye, diffuse, ambient, specular);
#endif
#ifndef VYR_NO_LIGHT4
  addLight(4, normal, toEye, diffuse, ambient, specular);
#endif
#ifndef VYR_NO_LIGHT5
  addLight(5, normal, toEye, diffuse, ambient, specular);
#endif
#ifndef VYR_NO_LIGHT6
  addLight(6, normal, toEye, diffuse, ambient, specular);
#endif
#ifndef VYR_NO_LIGHT7
  addLight(7, normal, toEye, diffuse, ambient, specular);
#endif

#ifdef VYR_SHADOW_TEXTURE
  vec2 shadowCoord = mapCoord(1, coord);
#ifdef VYR_SHADOW_JITTER_TEXTURE
  const float kSpread = 0.03;
  const int kSamples = 16;
  vec3 light = vec3(0.0);
  for (int i = 0; i < kSamples; ++i) {
    vec2 seed = mapCoord(2, coord) * 8.0 + vec2(0.37, 0.71) * float(i);
    vec2 jitter = texture2D(vyr_map2, seed).rg * 2.0 - 1.0;
    light += texture2D(vyr_map1, shadowCoord + jitter * kSpread).rgb;
  }
  light /= float(kSamples);
#else
  vec3 light = texture2D(vyr_map1, shadowCoord).rgb;
#endif
  diffuse *= light;
  specular *= light;
#endif

  vec4 base = vec4(1.0);
#ifdef VYR_DIFFUSE_TEXTURE
  base = texture2D(vyr_map0, mapCoord(0, coord));
#endif
#ifdef VYR_SPECULARMAP_TEXTURE
  specular *= texture2D(vyr_map5, mapCoord(5, coord)).rgb;
#endif

  vec3 color = base.rgb * (gl_FrontMaterial.diffuse.rgb * diffuse + gl_FrontMaterial.ambient.rgb * ambient);
  vec3 mirrored = reflect(-toEye, normal);
#ifdef VYR_SPHEREMAP_TEXTURE
  float stretch = 2.0 * sqrt(mirrored.x * mirrored.x + mirrored.y * mirrored.y + (mirrored.z + 1.0) * (mirrored.z + 1.0));
  vec3 surroundings = texture2D(vyr_map6, mirrored.xy / max(stretch, 1e-4) + 0.5).rgb;
  color = mix(color, surroundings, vyr_reflection);
#endif
#ifdef VYR_CUBEMAP_TEXTURE
  vec3 world = (osg_ViewMatrixInverse * vec4(mirrored, 0.0)).xyz;
  // The images follow the custom of y up; the world has z up.
  color = mix(color, textureCube(vyr_cubeMap, vec3(world.x, world.z, -world.y)).rgb, vyr_reflection);
#endif
  color += gl_FrontMaterial.specular.rgb * specular + gl_FrontMaterial.emission.rgb;
  gl_FragColor = vec4(color, base.a * gl_FrontMaterial.diffuse.a);
}
)";

/// The program that all surfaces share; the scene-graph library compiles one variant a combination of defines.
osg::Program* surfaceProgram() {
  static osg::ref_ptr<osg::Program> s_program;
  if (!s_program) {
    s_program = new osg::Program;
    s_program->setName("surface");
    s_program->addShader(new osg::Shader(osg::Shader::VERTEX, kVertexShader));
    s_program->addShader(
        new osg::Shader(osg::Shader::FRAGMENT, std::string(kFragmentHead) + shadowLookupSource() + kFragmentMain));
  }
  return s_program.get();
}

} // namespace

std::string unitDefine(unsigned int unit) {
  static const char* const s_names[kModeUnits] = {
      "VYR_DIFFUSE_TEXTURE",   "VYR_SHADOW_TEXTURE",      "VYR_SHADOW_JITTER_TEXTURE", "VYR_NORMALMAP_TEXTURE",
      "VYR_HEIGHTMAP_TEXTURE", "VYR_SPECULARMAP_TEXTURE", "VYR_SPHEREMAP_TEXTURE"};
  return unit == kCubeMapUnit ? "VYR_CUBEMAP_TEXTURE" : s_names[unit];
}

void useSurfaceShader(osg::StateSet& stateSet) {
  if (stateSet.getAttribute(osg::StateAttribute::PROGRAM) == surfaceProgram())
    return;
  stateSet.setAttributeAndModes(surfaceProgram());
  for (unsigned int unit = 0; unit < kModeUnits; ++unit)
    stateSet.addUniform(new osg::Uniform(("vyr_map" + std::to_string(unit)).c_str(), int(unit)));
  stateSet.addUniform(new osg::Uniform("vyr_cubeMap", int(kCubeMapUnit)));
}

} // namespace vyrOSG::surface
