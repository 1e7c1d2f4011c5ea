/// Loads the entries of a configuration script into the render state manager.
#pragma once

#include <vyrOSG/RenderStateManager.h>

#include <vyrCFG/ConfigScript.h>
#include <vyrCFG/ConfigValue.h>

#include <functional>
#include <map>
#include <string>

namespace vyrOSG {

class ConfigReader;

/// Works through the sections in the order in which they build on each other, whatever their order in the script. Each
/// entry is made in full before it is registered.
class RenderStateScript {
public:
  /// *borrows* both.
  RenderStateScript(RenderStateManager& manager, const vyrCFG::ConfigScript& script);
  ~RenderStateScript();

  void load();

private:
  using Entry = std::function<void(const std::string& name, const vyrCFG::ConfigValue& value, ConfigReader& reader)>;

  void section(ConfigReader& root, const std::string& key, const std::string& what, const Entry& entry);
  std::string findFile(ConfigReader& reader, const std::string& key, const std::string& name, int line);

  void texture(const std::string& name, ConfigReader& reader);
  void shader(const std::string& name, ConfigReader& reader);
  void program(const std::string& name, ConfigReader& reader);
  void sharedUniform(const std::string& name, const vyrCFG::ConfigValue& value, ConfigReader& reader);
  void shaderState(const std::string& name, ConfigReader& reader);
  void renderState(const std::string& name, ConfigReader& reader);

  void colors(RenderStateManager::RenderState& state, ConfigReader& reader);
  void textures(RenderStateManager::RenderState& state, const std::string& name, ConfigReader& reader);
  template <class State>
  void uniforms(State& state, ConfigReader& reader);

  RenderStateManager& m_manager;
  const vyrCFG::ConfigScript& m_script;
  std::map<std::string, osg::ref_ptr<osg::Uniform>> m_sharedUniforms;
};

} // namespace vyrOSG
