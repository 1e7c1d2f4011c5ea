/// The registries of the render state manager.
#include <vyrOSG/RenderStateManager.h>

#include "FileSearch.h"
#include "RenderStateScript.h"
#include "ReportingProgram.h"

#include <vyr/Notify.h>
#include <vyrCFG/ConfigScript.h>

#include <fstream>
#include <iterator>

namespace vyrOSG {

namespace {

bool isNamed(const char* what, const std::string& name, const void* object) {
  if (!name.empty() && object)
    return true;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "render states: a " << what << " to register "
                                << (object ? "has no name" : "is null");
  return false;
}

bool isNamed(const char* what, const std::string& name) {
  return isNamed(what, name, &name);
}

template <class Map>
auto find(const Map& map, const typename Map::key_type& key) -> decltype(map.begin()->second.get()) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : found->second.get();
}

} // namespace

RenderStateManager::RenderStateManager() = default;
RenderStateManager::~RenderStateManager() = default;

RenderStateManager* RenderStateManager::instance() {
  // Never destroyed: at the end of the process the scene-graph library's own registries may already be gone.
  static RenderStateManager* const manager = new RenderStateManager;
  return manager;
}

osg::Shader* RenderStateManager::findShader(const std::string& name, osg::Shader::Type type) {
  return find(m_shaders, {name, type});
}

osg::Program* RenderStateManager::findProgram(const std::string& name) {
  return find(m_programs, name);
}

RenderStateManager::RenderState* RenderStateManager::findRenderState(const std::string& name) {
  return find(m_renderStates, name);
}

void RenderStateManager::addRenderState(RenderState* state) {
  if (isNamed("render state", state ? state->getName() : std::string(), state))
    m_renderStates[state->getName()] = state;
}

void RenderStateManager::addTexture(const std::string& name, osg::Texture* texture) {
  if (isNamed("texture", name, texture))
    m_textures[name] = texture;
}

osg::Texture* RenderStateManager::findTexture(const std::string& name) {
  return find(m_textures, name);
}

osg::Program* RenderStateManager::createProgram(const std::string& name) {
  if (!isNamed("program", name))
    return nullptr;
  osg::ref_ptr<osg::Program>& program = m_programs[name];
  if (!program) {
    program = new ReportingProgram;
    program->setName(name);
  }
  return program.get();
}

osg::Shader* RenderStateManager::createShader(const std::string& name, const std::string& source,
                                              osg::Shader::Type type, bool isFile) {
  if (!isNamed("shader", name))
    return nullptr;
  std::string text = source, file;
  if (isFile) {
    const FileSearch search(source);
    std::ifstream stream(search.getPath(), std::ios::binary);
    if (!stream) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "shader \"" << name << "\": file \"" << source
                                    << "\" cannot be read, tried: " << search.getTried();
      return nullptr;
    }
    text.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    file = search.getPath();
  }
  osg::ref_ptr<osg::Shader>& shader = m_shaders[{name, type}];
  if (!shader) {
    shader = new osg::Shader(type);
    shader->setName(name);
  }
  shader->setFileName(file);
  shader->setUserData(isFile ? new ShaderOrigin(file) : nullptr);
  shader->setShaderSource(text);
  return shader.get();
}

void RenderStateManager::addShaderState(ShaderState* state) {
  if (isNamed("shader state", state ? state->getName() : std::string(), state))
    m_shaderStates[state->getName()] = state;
}

RenderStateManager::ShaderState* RenderStateManager::findShaderState(const std::string& name) {
  return find(m_shaderStates, name);
}

void RenderStateManager::parse(vyrCFG::ConfigScript* script) {
  if (!script)
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "render states: the configuration script is null";
  else if (script->isValid())
    RenderStateScript(*this, *script).load();
}

void RenderStateManager::clear() {
  m_renderStates.clear();
  m_shaderStates.clear();
  m_programs.clear();
  m_shaders.clear();
  m_textures.clear();
}

} // namespace vyrOSG
