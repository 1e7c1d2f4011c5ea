/// The light handle: every call goes straight to the held light, if there is one.
#include <vyrOSG/LightSource.h>

#include <osg/LightSource>

namespace vyrOSG {

namespace {

osg::Vec4 narrow(const vyr::Vec4& v) {
  return osg::Vec4(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]),
                   static_cast<float>(v[3]));
}

vyr::Vec4 widen(const osg::Vec4& v) {
  return vyr::Vec4(v[0], v[1], v[2], v[3]);
}

} // namespace

LightSource::LightSource(osg::LightSource* node)
    : m_light(node ? node->getLight() : nullptr) {}

int LightSource::getLightNum() const {
  return m_light ? m_light->getLightNum() : -1;
}

void LightSource::setAmbient(const vyr::Vec4& color) {
  if (m_light)
    m_light->setAmbient(narrow(color));
}

vyr::Vec4 LightSource::getAmbient() const {
  return m_light ? widen(m_light->getAmbient()) : vyr::Vec4(0, 0, 0, 0);
}

void LightSource::setDiffuse(const vyr::Vec4& color) {
  if (m_light)
    m_light->setDiffuse(narrow(color));
}

vyr::Vec4 LightSource::getDiffuse() const {
  return m_light ? widen(m_light->getDiffuse()) : vyr::Vec4(0, 0, 0, 0);
}

void LightSource::setSpecular(const vyr::Vec4& color) {
  if (m_light)
    m_light->setSpecular(narrow(color));
}

vyr::Vec4 LightSource::getSpecular() const {
  return m_light ? widen(m_light->getSpecular()) : vyr::Vec4(0, 0, 0, 0);
}

void LightSource::setPosition(const vyr::Vec4& position) {
  if (m_light)
    m_light->setPosition(narrow(position));
}

vyr::Vec4 LightSource::getPosition() const {
  return m_light ? widen(m_light->getPosition()) : vyr::Vec4(0, 0, 0, 0);
}

void LightSource::setDirection(const vyr::Vec3& direction) {
  if (m_light)
    m_light->setDirection(osg::Vec3(static_cast<float>(direction[0]), static_cast<float>(direction[1]),
                                    static_cast<float>(direction[2])));
}

vyr::Vec3 LightSource::getDirection() const {
  if (!m_light)
    return vyr::Vec3(0, 0, 0);
  const osg::Vec3& direction = m_light->getDirection();
  return vyr::Vec3(direction[0], direction[1], direction[2]);
}

void LightSource::setConstantAttenuation(float attenuation) {
  if (m_light)
    m_light->setConstantAttenuation(attenuation);
}

float LightSource::getConstantAttenuation() const {
  return m_light ? m_light->getConstantAttenuation() : 0;
}

void LightSource::setLinearAttenuation(float attenuation) {
  if (m_light)
    m_light->setLinearAttenuation(attenuation);
}

float LightSource::getLinearAttenuation() const {
  return m_light ? m_light->getLinearAttenuation() : 0;
}

void LightSource::setQuadraticAttenuation(float attenuation) {
  if (m_light)
    m_light->setQuadraticAttenuation(attenuation);
}

float LightSource::getQuadraticAttenuation() const {
  return m_light ? m_light->getQuadraticAttenuation() : 0;
}

void LightSource::setSpotExponent(float exponent) {
  if (m_light)
    m_light->setSpotExponent(exponent);
}

float LightSource::getSpotExponent() const {
  return m_light ? m_light->getSpotExponent() : 0;
}

void LightSource::setSpotCutoff(float angle) {
  if (m_light)
    m_light->setSpotCutoff(angle);
}

float LightSource::getSpotCutoff() const {
  return m_light ? m_light->getSpotCutoff() : 0;
}

} // namespace vyrOSG
