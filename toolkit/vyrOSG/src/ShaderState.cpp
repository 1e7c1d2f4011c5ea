/// Applying a program and its uniforms.
#include "UniformList.h"
#include <vyrOSG/Node.h>
#include <vyrOSG/RenderStateManager.h>

#include <vyr/Notify.h>

#include <osg/StateSet>

namespace vyrOSG {

RenderStateManager::ShaderState::~ShaderState() = default;

void RenderStateManager::ShaderState::addUniform(osg::Uniform* uniform) {
  addToList(m_uniforms, uniform, m_name);
}

osg::Uniform* RenderStateManager::ShaderState::findUniform(const std::string& name) {
  return findInList(m_uniforms, name);
}

void RenderStateManager::ShaderState::apply(osg::StateSet* stateSet, Values value) {
  if (!stateSet)
    return;
  const auto flags = static_cast<osg::StateAttribute::OverrideValue>(value);
  if (!m_programId.empty()) {
    osg::Program* program = RenderStateManager::instance()->findProgram(m_programId);
    if (!program) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "shader state \"" << m_name << "\": there is no program \"" << m_programId
                                    << "\"";
      return;
    }
    stateSet->setAttributeAndModes(program, flags);
  }
  for (const osg::ref_ptr<osg::Uniform>& uniform : m_uniforms)
    stateSet->addUniform(uniform, flags);
}

void RenderStateManager::ShaderState::apply(vyrOSG::Node* node, Values value) {
  if (node)
    apply(node->getOrCreateStateSet(), value);
}

} // namespace vyrOSG
