/// Applying a bundle of colours, textures, uniforms and a shader state.
#include "Surface.h"
#include "UniformList.h"

#include <vyrOSG/Conversions.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/Node.h>
#include <vyrOSG/RenderStateManager.h>
#include <vyrOSG/SimulationObject.h>

#include <vyr/Notify.h>

#include <osg/Material>
#include <osg/StateSet>

#include <algorithm>

namespace vyrOSG {

namespace {

// Above this the scene-graph library would make lists of as many entries as the number says.
constexpr int kLastTextureUnit = 64;
constexpr float kLargestShininess = 128;

osg::StateAttribute::OverrideValue flags(RenderStateManager::Values value) {
  return static_cast<osg::StateAttribute::OverrideValue>(value);
}

/// The look that visuals are made with is nobody's wish: below a node that was coloured it gives way.
void dropDefaultLooks(osg::Node* node) {
  surface::visitStateSets(node, [](osg::StateSet& stateSet) {
    auto* material = static_cast<osg::Material*>(stateSet.getAttribute(osg::StateAttribute::MATERIAL));
    if (!surface::isDefaultMaterial(material))
      return;
    stateSet.removeAttribute(material);
    surface::setTransparency(stateSet, 1);
  });
}

} // namespace

RenderStateManager::RenderState::~RenderState() = default;

void RenderStateManager::RenderState::addUniform(osg::Uniform* uniform) {
  addToList(m_uniforms, uniform, m_name);
}

osg::Uniform* RenderStateManager::RenderState::findUniform(const std::string& name) {
  return findInList(m_uniforms, name);
}

void RenderStateManager::RenderState::apply(osg::StateSet* stateSet, Values value) {
  if (!stateSet)
    return;
  applyColors(*stateSet, value);
  applyTextures(*stateSet, value);
  for (const osg::ref_ptr<osg::Uniform>& uniform : m_uniforms)
    stateSet->addUniform(uniform, flags(value));
  if (m_shaderState)
    m_shaderState->apply(stateSet, value);
}

void RenderStateManager::RenderState::apply(vyrOSG::Group* group, Values value) {
  applyToNode(group, value);
}

void RenderStateManager::RenderState::apply(vyrOSG::Node* node, Values value) {
  applyToNode(node, value);
}

void RenderStateManager::RenderState::apply(vyrOSG::GeometryNode* node, Values value) {
  applyToNode(node, value);
}

void RenderStateManager::RenderState::apply(vyrOSG::SimulationObject& object, Values value) {
  applyToNode(object.getNode(), value);
}

void RenderStateManager::RenderState::applyToNode(osg::Node* node, Values value) {
  if (!node)
    return;
  apply(node->getOrCreateStateSet(), value);
  if (m_colors.count(DIFFUSE) > 0)
    dropDefaultLooks(node);
}

void RenderStateManager::RenderState::applyColors(osg::StateSet& stateSet, Values value) const {
  if (m_colors.empty())
    return;
  const auto* before = dynamic_cast<const osg::Material*>(stateSet.getAttribute(osg::StateAttribute::MATERIAL));
  osg::ref_ptr<osg::Material> material = before ? new osg::Material(*before) : new osg::Material;
  material->setName(m_name);
  const osg::Material::Face faces = osg::Material::FRONT_AND_BACK;
  const vyr::Vec4* alpha = nullptr;
  for (const auto& [type, color] : m_colors) {
    if (!color.isFinite()) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "render state \"" << m_name << "\": colour (" << color << ") is not finite";
      continue;
    }
    switch (type) {
    case AMBIENT:
      material->setAmbient(faces, toOsg(color));
      break;
    case DIFFUSE:
      material->setDiffuse(faces, toOsg(color));
      break;
    case SPECULAR:
      material->setSpecular(faces, toOsg(color));
      break;
    case EMISSIVE:
      material->setEmission(faces, toOsg(color));
      break;
    case SHININESS:
      material->setShininess(faces, std::clamp(static_cast<float>(color[0]), 0.0f, kLargestShininess));
      break;
    case ALPHA:
      alpha = &color;
      break;
    default:
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "render state \"" << m_name << "\": there is no colour kind " << type;
    }
  }
  // Until someone separates the two, surfaces answer ambient light in their diffuse colour.
  const bool diffuseSet = m_colors.count(DIFFUSE) > 0;
  if (diffuseSet && m_colors.count(AMBIENT) == 0)
    material->setAmbient(faces, material->getDiffuse(osg::Material::FRONT));
  // The alpha goes into every colour, so it comes after them, whatever the order of the table.
  if (alpha)
    material->setAlpha(faces, std::clamp(static_cast<float>((*alpha)[0]), 0.0f, 1.0f));
  stateSet.setAttributeAndModes(material, flags(value));
  if (!diffuseSet && !alpha)
    return;
  const float opacity = material->getDiffuse(osg::Material::FRONT).a();
  surface::setTransparency(stateSet, opacity);
  if (opacity < 1)
    stateSet.setMode(GL_BLEND, flags(value));
}

void RenderStateManager::RenderState::applyTextures(osg::StateSet& stateSet, Values value) const {
  for (const auto& [unit, entry] : m_textures) {
    if (unit < 0 || unit > kLastTextureUnit) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "render state \"" << m_name << "\": texture unit " << unit
                                    << " is not from 0 to " << kLastTextureUnit;
      continue;
    }
    if (!entry.texture)
      continue;
    const auto index = static_cast<unsigned int>(unit);
    stateSet.setTextureAttributeAndModes(index, entry.texture, flags(value));
    if (entry.matrix)
      stateSet.setTextureAttributeAndModes(index, entry.matrix, flags(value));
    if (entry.sampler)
      stateSet.addUniform(entry.sampler, flags(value));
  }
}

} // namespace vyrOSG
