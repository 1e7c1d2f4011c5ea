/// Applying a bundle of colours, textures, uniforms and a shader state.
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/Node.h>
#include <vyrOSG/RenderStateManager.h>
#include <vyrOSG/SimulationObject.h>

#include <vyr/Notify.h>

#include <osg/Material>
#include <osg/StateSet>

#include "UniformList.h"
#include <algorithm>

namespace vyrOSG {

namespace {

// Above this the scene-graph library would make lists of as many entries as the number says.
constexpr int kTextureUnits = 64;
constexpr float kLargestShininess = 128;

osg::Vec4 narrow(const vyr::Vec4& v) {
  return osg::Vec4(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]),
                   static_cast<float>(v[3]));
}

osg::StateAttribute::OverrideValue flags(RenderStateManager::Values value) {
  return static_cast<osg::StateAttribute::OverrideValue>(value);
}

} // namespace

RenderStateManager::RenderState::~RenderState() = default;

void RenderStateManager::RenderState::addUniform(osg::Uniform* uniform) {
  addToList(m_uniforms, uniform, m_name);
}

osg::Uniform* RenderStateManager::RenderState::findUniform(const std::string& name) const {
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
  if (group)
    apply(group->getOrCreateStateSet(), value);
}

void RenderStateManager::RenderState::apply(vyrOSG::Node* node, Values value) {
  if (node)
    apply(node->getOrCreateStateSet(), value);
}

void RenderStateManager::RenderState::apply(vyrOSG::GeometryNode* node, Values value) {
  if (node)
    apply(node->getOrCreateStateSet(), value);
}

void RenderStateManager::RenderState::apply(vyrOSG::SimulationObject& object, Values value) {
  if (osg::Node* node = object.getNode())
    apply(node->getOrCreateStateSet(), value);
}

void RenderStateManager::RenderState::applyColors(osg::StateSet& stateSet, Values value) const {
  if (m_colors.empty())
    return;
  const auto* before = dynamic_cast<const osg::Material*>(stateSet.getAttribute(osg::StateAttribute::MATERIAL));
  osg::ref_ptr<osg::Material> material = before ? new osg::Material(*before) : new osg::Material;
  const osg::Material::Face faces = osg::Material::FRONT_AND_BACK;
  const vyr::Vec4* alpha = nullptr;
  for (const auto& [type, color] : m_colors) {
    if (!color.isFinite()) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "render state \"" << m_name << "\": colour (" << color << ") is not finite";
      continue;
    }
    switch (type) {
    case AMBIENT:
      material->setAmbient(faces, narrow(color));
      break;
    case DIFFUSE:
      material->setDiffuse(faces, narrow(color));
      break;
    case SPECULAR:
      material->setSpecular(faces, narrow(color));
      break;
    case EMISSIVE:
      material->setEmission(faces, narrow(color));
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
  // The alpha goes into every colour, so it comes after them, whatever the order of the table.
  if (alpha)
    material->setAlpha(faces, std::clamp(static_cast<float>((*alpha)[0]), 0.0f, 1.0f));
  stateSet.setAttributeAndModes(material, flags(value));
  if (material->getDiffuse(osg::Material::FRONT).a() < 1) {
    stateSet.setMode(GL_BLEND, flags(value));
    stateSet.setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  } else if (alpha) {
    stateSet.removeMode(GL_BLEND);
    stateSet.setRenderingHint(osg::StateSet::DEFAULT_BIN);
  }
}

void RenderStateManager::RenderState::applyTextures(osg::StateSet& stateSet, Values value) const {
  for (const auto& [unit, entry] : m_textures) {
    if (unit < 0 || unit >= kTextureUnits) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "render state \"" << m_name << "\": texture unit " << unit
                                    << " is not from 0 to " << kTextureUnits - 1;
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
