// Colours, highlights, opacity, lights and wires of nodes and of what is drawn for bodies and geometries.
#include <vyrOSG/utils.h>

#include "Surface.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Notify.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>

#include <osg/PolygonMode>
#include <osg/Uniform>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

constexpr osg::Material::Face kBothFaces = osg::Material::FRONT_AND_BACK;

bool checkColor(const char* function, const vyr::Vec4& color) {
  for (int i = 0; i < 4; ++i) {
    if (!std::isfinite(color[i])) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::" << function << ": the colour (" << color[0] << ", " << color[1]
                                    << ", " << color[2] << ", " << color[3] << ") is not finite";
      return false;
    }
  }
  return true;
}

bool checkNumber(const char* function, float number) {
  if (std::isfinite(number))
    return true;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::" << function << ": " << number << " is not finite";
  return false;
}

/// Whether ambient light still meets the diffuse colour, as it does until setAmbientColor separates the two.
bool ambientFollows(const osg::Material& material) {
  const osg::Vec4 ambient = material.getAmbient(kBothFaces);
  const osg::Vec4 diffuse = material.getDiffuse(kBothFaces);
  return ambient.r() == diffuse.r() && ambient.g() == diffuse.g() && ambient.b() == diffuse.b();
}

} // namespace

void setDiffuseColor(osg::Node* node, const vyr::Vec4& color) {
  if (!node || !checkColor("setDiffuseColor", color))
    return;
  surface::changeMaterials(node, [&](osg::Material& material, osg::StateSet& stateSet) {
    if (ambientFollows(material))
      material.setAmbient(kBothFaces, toOsg(color));
    material.setDiffuse(kBothFaces, toOsg(color));
    material.setName("");
    surface::setTransparency(stateSet, float(color[3]));
  });
}

void setDiffuseColor(vyr::RigidBody* body, const vyr::Vec4& color, vyrOSG::Group* group) {
  if (!body)
    return;
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body->getGeometries())
    setDiffuseColor(geometry.get(), color, group);
}

void setDiffuseColor(vyrCollide::Geometry* geometry, const vyr::Vec4& color, vyrOSG::Group* group) {
  setDiffuseColor(findGeometryNode(geometry, group), color);
}

void setSpecularColor(osg::Node* node, const vyr::Vec4& color) {
  if (!node || !checkColor("setSpecularColor", color))
    return;
  surface::changeMaterials(
      node, [&](osg::Material& material, osg::StateSet&) { material.setSpecular(kBothFaces, toOsg(color)); });
}

void setShininess(osg::Node* node, float shininess) {
  if (!node || !checkNumber("setShininess", shininess))
    return;
  const float inRange = std::clamp(shininess, 0.0f, 128.0f);
  surface::changeMaterials(
      node, [&](osg::Material& material, osg::StateSet&) { material.setShininess(kBothFaces, inRange); });
}

void setAmbientColor(osg::Node* node, const vyr::Vec4& color) {
  if (!node || !checkColor("setAmbientColor", color))
    return;
  surface::changeMaterials(
      node, [&](osg::Material& material, osg::StateSet&) { material.setAmbient(kBothFaces, toOsg(color)); });
}

void setAlpha(osg::Node* node, float alpha) {
  if (!node || !checkNumber("setAlpha", alpha))
    return;
  const float inRange = std::clamp(alpha, 0.0f, 1.0f);
  surface::changeMaterials(node, [&](osg::Material& material, osg::StateSet& stateSet) {
    material.setAlpha(kBothFaces, inRange);
    surface::setTransparency(stateSet, inRange);
  });
}

void setEnableLight(bool enable, int lightNumber, osg::Node* node) {
  if (!node)
    return;
  if (lightNumber < 0 || lightNumber > 7) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::setEnableLight: there is no light number " << lightNumber
                                  << "; lights are numbered from 0 to 7";
    return;
  }
  // Reaches past what nodes below say, as the caller would expect of a switch; a later call on such a node is protected
  // against this one.
  const unsigned int value = enable ? osg::StateAttribute::ON : osg::StateAttribute::OFF;
  osg::StateSet* stateSet = node->getOrCreateStateSet();
  stateSet->setMode(GL_LIGHT0 + static_cast<unsigned int>(lightNumber),
                    value | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED);
  stateSet->setDefine("VYR_NO_LIGHT" + std::to_string(lightNumber),
                      (enable ? osg::StateAttribute::OFF : osg::StateAttribute::ON) | osg::StateAttribute::OVERRIDE |
                          osg::StateAttribute::PROTECTED);
}

void setUniformInt(osg::Node* node, const std::string& name, int value) {
  if (node)
    node->getOrCreateStateSet()->addUniform(new osg::Uniform(name.c_str(), value), osg::StateAttribute::ON);
}

void setUniformFloat(osg::Node* node, const std::string& name, float value) {
  if (node)
    node->getOrCreateStateSet()->addUniform(new osg::Uniform(name.c_str(), value), osg::StateAttribute::ON);
}

bool forceWireFrameModeOn(osg::Node* node) {
  if (!node)
    return false;
  osg::ref_ptr<osg::PolygonMode> wires = new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::LINE);
  node->getOrCreateStateSet()->setAttributeAndModes(wires, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE |
                                                               osg::StateAttribute::PROTECTED);
  return true;
}

} // namespace vyrOSG
