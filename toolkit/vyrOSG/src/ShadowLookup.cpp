// Holds the GLSL text of the shadow lookup.
#include "ShadowLookup.h"

namespace vyrOSG {

const char* shadowLookupSource() {
  // One map. Taps lie on a grid that is turned by atan(1 / TAPS): seen along a straight edge no two of them coincide,
  // so that the edge fades in TAPS * TAPS steps. An edge is at least a texel wide, and kSoftness of the distance to the
  // eye.
  // Slices and outlines: nine looks a texel apart, each filtered by the hardware, fade an edge over three texels.
  return R"(
#ifdef VYR_SHADOW_TAPS
uniform sampler2DShadow osgShadow_shadowTexture;
uniform float vyr_shadowTexel;

float litShare(vec3 position)
{
  const int kTaps = VYR_SHADOW_TAPS;
  float kSpacing = kTaps > 1 ? 1.0 : 0.0;
  float kSoftness = kTaps > 2 ? 0.0016 : 0.0;
  vec4 place = gl_TexCoord[7];
  if (place.w <= 0.0)
    return 1.0;
  // The map's share of a metre: a lamp's map shrinks with the distance to the lamp, a sun's does not.
  float scale = length(gl_EyePlaneS[7].xyz) / place.w;
  place /= place.w;
  if (any(lessThan(place.xyz, vec3(0.0))) || any(greaterThan(place.xy, vec2(1.0))))
    return 1.0;
  // The map reaches as far as the casters do; what lies behind all of them is compared with its far end.
  place.z = min(place.z, 1.0);
  float spacing = max(kSpacing * vyr_shadowTexel, kSoftness * length(position) * scale);
  vec2 right = normalize(vec2(float(kTaps), 1.0)) * spacing;
  vec2 up = vec2(-right.y, right.x);
  float sum = 0.0;
  for (int row = 0; row < kTaps; ++row) {
    for (int column = 0; column < kTaps; ++column) {
      vec2 tap = vec2(float(column), float(row)) - 0.5 * float(kTaps - 1);
      vec2 offset = right * tap.x + up * tap.y;
      sum += shadow2D(osgShadow_shadowTexture, vec3(place.xy + offset, place.z)).r;
    }
  }
  return sum / float(kTaps * kTaps);
}

#elif defined(VYR_SHADOW_SPLITS)
uniform sampler2DShadow vyr_splitMap0;
uniform sampler2DShadow vyr_splitMap1;
uniform sampler2DShadow vyr_splitMap2;
uniform mat4 vyr_splitMatrix[3];
uniform vec3 vyr_splitFar;
uniform float vyr_shadowTexel;

float litInSlice(sampler2DShadow map, mat4 toMap, vec3 position)
{
  vec3 place = (toMap * vec4(position, 1.0)).xyz;
  if (any(lessThan(place, vec3(0.0))) || any(greaterThan(place.xy, vec2(1.0))))
    return 1.0;
  place.z = min(place.z, 1.0);
  float sum = 0.0;
  for (int row = -1; row <= 1; ++row)
    for (int column = -1; column <= 1; ++column)
      sum += shadow2D(map, place + vec3(float(column), float(row), 0.0) * vyr_shadowTexel).r;
  return sum / 9.0;
}

float litShare(vec3 position)
{
  float depth = -position.z;
  if (depth <= vyr_splitFar.x)
    return litInSlice(vyr_splitMap0, vyr_splitMatrix[0], position);
  if (depth <= vyr_splitFar.y)
    return litInSlice(vyr_splitMap1, vyr_splitMatrix[1], position);
  if (depth <= vyr_splitFar.z)
    return litInSlice(vyr_splitMap2, vyr_splitMatrix[2], position);
  return 1.0;
}

#elif defined(VYR_SHADOW_OUTLINE)
uniform sampler2D vyr_outlineMap;
uniform mat4 vyr_outlineMatrix;
uniform float vyr_shadowTexel;
uniform float vyr_isGround;

float litShare(vec3 position)
{
  vec3 place = (vyr_outlineMatrix * vec4(position, 1.0)).xyz;
  if (vyr_isGround < 0.5 || any(lessThan(place, vec3(0.0))) || any(greaterThan(place.xy, vec2(1.0))))
    return 1.0;
  float sum = 0.0;
  for (int row = -1; row <= 1; ++row)
    for (int column = -1; column <= 1; ++column)
      sum += texture2D(vyr_outlineMap, place.xy + vec2(float(column), float(row)) * vyr_shadowTexel).r;
  return sum / 9.0;
}

#else
float litShare(vec3 position) { return 1.0; }
#endif
)";
}

} // namespace vyrOSG
