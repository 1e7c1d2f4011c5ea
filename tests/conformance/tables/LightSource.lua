-- Handles of lights.
types {
  "vyr::Vec3", "vyr::Referenced", "osg::LightSource", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2",
  "vyr::Quat", "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyr::AffineMatrix4x4",
  "vyrOSG::LightSource", "vyr::Vec4d", "vyr::Vec3f", "vyr::Vec3d",
}
shared()

namespace "vyrOSG"
class("LightSource", { base = "vyr::Referenced", collector = "deletes" })
constructor { "LightSource(osg::LightSource* light)", with = "nil" }
row "int getLightNum() const"
row { "void setAmbient(const vyr::Vec4& color)", with = "vec4", seen = "self:getAmbient().x == native.narrow(vec4.x), vec4.x ~= 0" }
row "vyr::Vec4 getAmbient() const"
row "void setDiffuse(const vyr::Vec4& color)"
row "vyr::Vec4 getDiffuse() const"
row "void setSpecular(const vyr::Vec4& color)"
row "vyr::Vec4 getSpecular() const"
row "void setPosition(const vyr::Vec4& position)"
row "vyr::Vec4 getPosition() const"
row "void setDirection(const vyr::Vec3& direction)"
row "vyr::Vec3 getDirection() const"
row "void setConstantAttenuation(float value)"
row "float getConstantAttenuation() const"
row "void setLinearAttenuation(float value)"
row "float getLinearAttenuation() const"
row "void setQuadraticAttenuation(float value)"
row "float getQuadraticAttenuation() const"
row "void setSpotExponent(float value)"
row "float getSpotExponent() const"
row "void setSpotCutoff(float value)"
row "float getSpotCutoff() const"
