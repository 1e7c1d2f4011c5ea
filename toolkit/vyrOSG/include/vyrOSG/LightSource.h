/// A handle on a light of the scene, in the toolkit's double-precision vectors.
#pragma once

#include <vyrOSG/export.h>

#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <osg/Light>
#include <osg/ref_ptr>

namespace osg {
class LightSource;
}

namespace vyrOSG {

/// Reads and writes the light of an `osg::LightSource` node and keeps that light alive, also when the node is gone.
/// A handle without a light is legal and inert: setters do nothing, getters give zero. Colours are (r, g, b, a) in
/// 0..1. The light stores single precision, so a value reads back as the nearest `float`.
class VYROSG_EXPORT LightSource {
public:
  /// A handle on the node's light; *retains* the light, not the node. Nullable: `node`, and the light of a node.
  explicit LightSource(osg::LightSource* node);

  /// The OpenGL number of the light, -1 without a light.
  int getLightNum() const;

  void setAmbient(const vyr::Vec4& color);
  vyr::Vec4 getAmbient() const;
  void setDiffuse(const vyr::Vec4& color);
  vyr::Vec4 getDiffuse() const;
  void setSpecular(const vyr::Vec4& color);
  vyr::Vec4 getSpecular() const;

  /// Position in the frame of the light-source node, in m: (x, y, z, 1) a lamp at a point, (x, y, z, 0) light that
  /// comes from that direction.
  void setPosition(const vyr::Vec4& position);
  vyr::Vec4 getPosition() const;
  /// The axis of the spot's cone, in the frame of the light-source node.
  void setDirection(const vyr::Vec3& direction);
  vyr::Vec3 getDirection() const;

  /// The light falls off with the distance d in m as 1 / (constant + linear * d + quadratic * d * d).
  void setConstantAttenuation(float attenuation);
  float getConstantAttenuation() const;
  void setLinearAttenuation(float attenuation);
  float getLinearAttenuation() const;
  void setQuadraticAttenuation(float attenuation);
  float getQuadraticAttenuation() const;

  /// How much the spot is focused, 0 (even) to 128.
  void setSpotExponent(float exponent);
  float getSpotExponent() const;
  /// Half the opening angle of the spot's cone in degrees, as OpenGL takes it: 0 to 90, or 180 for light all round.
  void setSpotCutoff(float angle);
  float getSpotCutoff() const;

private:
  osg::ref_ptr<osg::Light> m_light;
};

} // namespace vyrOSG
