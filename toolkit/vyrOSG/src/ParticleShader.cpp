// Shades each sprite as the ball that would be seen in its place.
#include "ParticleShader.h"

namespace vyrOSG {

namespace {

const char* const kVertexShader = R"(
#version 120
attribute vec3 corner;
attribute vec4 rotation;
varying vec3 centre;
varying vec2 place;
varying float radius;
varying vec4 turn;
varying vec4 color;
void main() {
  vec4 eye = gl_ModelViewMatrix * gl_Vertex;
  centre = eye.xyz;
  place = corner.xy;
  radius = corner.z;
  turn = rotation;
  color = gl_Color;
  gl_Position = gl_ProjectionMatrix * (eye + vec4(corner.xy * radius, 0.0, 0.0));
}
)";

const char* const kFragmentShader = R"(
#version 120
#pragma import_defines(VYR_BANDS, VYR_PUFF)
varying vec3 centre;
varying vec2 place;
varying float radius;
varying vec4 turn;
varying vec4 color;
uniform mat4 osg_ViewMatrixInverse;

// A vector turned back into the particle's frame. Source: R. Hamilton's product, as v + 2 w (q x v) + 2 q x (q x v).
vec3 turnBack(vec4 q, vec3 v) {
  vec3 axis = -q.xyz;
  return v + 2.0 * cross(axis, cross(axis, v) + q.w * v);
}

void main() {
  float outside = dot(place, place);
  if (outside > 1.0)
    discard;
#ifdef VYR_PUFF
  float dense = 1.0 - outside;
  gl_FragColor = vec4(color.rgb, color.a * 0.6 * dense * dense);
  gl_FragDepth = gl_FragCoord.z;
#else
  vec3 normal = vec3(place, sqrt(1.0 - outside));
  vec3 surface = centre + normal * radius;
  vec3 base = color.rgb;
#ifdef VYR_BANDS
  vec3 local = turnBack(turn, (osg_ViewMatrixInverse * vec4(normal, 0.0)).xyz);
  float band = min(abs(local.z), abs(local.x));
  base *= mix(0.55, 1.0, smoothstep(0.14, 0.22, band));
#endif
  vec3 sum = gl_LightModel.ambient.rgb * base;
  for (int i = 0; i < 8; ++i) {
    vec4 light = gl_LightSource[i].position;
    vec3 toLight = light.w == 0.0 ? light.xyz : light.xyz / light.w - surface;
    float distance = length(toLight);
    if (distance == 0.0)
      continue;
    float strength = light.w == 0.0 ? 1.0 : 1.0 / (gl_LightSource[i].constantAttenuation +
                                                  gl_LightSource[i].linearAttenuation * distance +
                                                  gl_LightSource[i].quadraticAttenuation * distance * distance);
    float facing = max(dot(normal, toLight / distance), 0.0);
    sum += strength * base * (gl_LightSource[i].ambient.rgb + gl_LightSource[i].diffuse.rgb * facing);
  }
  gl_FragColor = vec4(sum, color.a);
  vec4 clip = gl_ProjectionMatrix * vec4(surface, 1.0);
  gl_FragDepth = 0.5 * (gl_DepthRange.diff * clip.z / clip.w + gl_DepthRange.near + gl_DepthRange.far);
#endif
}
)";

} // namespace

osg::Program* spriteProgram() {
  static osg::ref_ptr<osg::Program> s_program;
  if (!s_program) {
    s_program = new osg::Program;
    s_program->setName("sprites");
    s_program->addShader(new osg::Shader(osg::Shader::VERTEX, kVertexShader));
    s_program->addShader(new osg::Shader(osg::Shader::FRAGMENT, kFragmentShader));
    s_program->addBindAttribLocation("corner", kSpriteCornerAttribute);
    s_program->addBindAttribLocation("rotation", kSpriteRotationAttribute);
  }
  return s_program.get();
}

} // namespace vyrOSG
