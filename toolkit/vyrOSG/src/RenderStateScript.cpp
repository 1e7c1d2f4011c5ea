/// The sections of a render state script.
#include "RenderStateScript.h"

#include "ConfigReader.h"
#include "FileSearch.h"
#include "ReportingProgram.h"
#include "TextureEntry.h"
#include "UniformValue.h"

#include <vyr/Notify.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace vyrOSG {

using vyrCFG::ConfigValue;

namespace {

constexpr int kLastTextureUnit = 64;
constexpr int kLastAttribute = 15;

// The names of the stages in scripts; kStages gives their types in the same order.
const std::vector<std::string> kStageNames{"vertex",      "fragment",       "geometry",
                                           "tessControl", "tessEvaluation", "compute"};
const osg::Shader::Type kStages[] = {osg::Shader::VERTEX,      osg::Shader::FRAGMENT,       osg::Shader::GEOMETRY,
                                     osg::Shader::TESSCONTROL, osg::Shader::TESSEVALUATION, osg::Shader::COMPUTE};

} // namespace

RenderStateScript::RenderStateScript(RenderStateManager& manager, const vyrCFG::ConfigScript& script)
    : m_manager(manager)
    , m_script(script) {}

RenderStateScript::~RenderStateScript() = default;

void RenderStateScript::load() {
  ConfigReader root(m_script, m_script.getRoot(), "render states");
  const auto plain = [this](void (RenderStateScript::*loader)(const std::string&, ConfigReader&)) {
    return [this, loader](const std::string& name, const ConfigValue&, ConfigReader& reader) {
      (this->*loader)(name, reader);
    };
  };
  section(root, "textures", "texture", plain(&RenderStateScript::texture));
  section(root, "shaders", "shader", plain(&RenderStateScript::shader));
  section(root, "programs", "program", plain(&RenderStateScript::program));
  if (const ConfigValue* shared = root.take("uniforms")) {
    ConfigReader reader(m_script, *shared, "uniforms");
    for (const ConfigValue::Member& member : shared->getMembers())
      sharedUniform(member.key, member.value, reader);
  }
  section(root, "shaderStates", "shader state", plain(&RenderStateScript::shaderState));
  section(root, "renderStates", "render state", plain(&RenderStateScript::renderState));
  root.reportUnknown();
}

void RenderStateScript::section(ConfigReader& root, const std::string& key, const std::string& what,
                                const Entry& entry) {
  const ConfigValue* value = root.take(key);
  if (!value)
    return;
  // Tells of a section that is no object; it has no members then.
  const ConfigReader check(m_script, *value, key);
  for (const ConfigValue::Member& member : value->getMembers()) {
    ConfigReader reader(m_script, member.value, what + " \"" + member.key + "\"");
    if (member.key.empty())
      reader.fail(member.line, "a name is needed");
    else if (reader.isGood())
      entry(member.key, member.value, reader);
    reader.reportUnknown();
  }
}

std::string RenderStateScript::findFile(ConfigReader& reader, const std::string& key, const std::string& name,
                                        int line) {
  const FileSearch search(name, m_script.getDirectory());
  if (!search.isFound())
    reader.fail(line, "\"" + key + "\": file \"" + name + "\" is not there, tried: " + search.getTried());
  return search.getPath();
}

void RenderStateScript::texture(const std::string& name, ConfigReader& reader) {
  const int line = m_script.getRoot().find("textures")->find(name)->getLine();
  if (const osg::ref_ptr<osg::Texture> made = TextureEntry(reader, m_script.getDirectory(), line).make()) {
    made->setName(name);
    m_manager.addTexture(name, made);
  }
}

void RenderStateScript::shader(const std::string& name, ConfigReader& reader) {
  std::size_t stage = kStageNames.size();
  std::string file;
  const ConfigValue* source = reader.take("source");
  const ConfigValue* fileValue = reader.take("file");
  const int line = m_script.getRoot().find("shaders")->find(name)->getLine();
  reader.getWord("stage", kStageNames, stage);
  reader.getString("file", file);
  if (!reader.has("stage"))
    reader.fail(line, "a \"stage\" is needed");
  if ((source != nullptr) == (fileValue != nullptr))
    reader.fail(line, "either a \"file\" or a \"source\" is needed");
  if (!reader.isGood())
    return;
  if (fileValue) {
    const std::string path = findFile(reader, "file", file, fileValue->getLine());
    if (!path.empty())
      m_manager.createShader(name, path, kStages[stage], true);
    return;
  }
  // The line of the script for each line of the source, so that a compile error points into the script.
  std::string text;
  std::vector<int> lines;
  if (source->isString()) {
    text = source->asString();
    lines.assign(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1, source->getLine());
  } else {
    std::vector<std::string> list;
    reader.getStrings("source", list);
    if (!reader.isGood())
      return;
    for (const ConfigValue& element : source->getElements()) {
      text += element.asString() + "\n";
      lines.push_back(element.getLine());
    }
  }
  if (osg::Shader* made = m_manager.createShader(name, text, kStages[stage], false))
    made->setUserData(new ShaderOrigin(m_script.getName(), lines));
}

void RenderStateScript::program(const std::string& name, ConfigReader& reader) {
  std::vector<std::string> names;
  std::vector<osg::ref_ptr<osg::Shader>> shaders;
  std::vector<std::pair<std::string, unsigned int>> attributes;
  const ConfigValue* list = reader.take("shaders");
  reader.getStrings("shaders", names);
  if (!list)
    reader.fail(m_script.getRoot().find("programs")->find(name)->getLine(), "a list of \"shaders\" is needed");
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t before = shaders.size();
    for (osg::Shader::Type stage : kStages)
      if (osg::Shader* found = m_manager.findShader(names[i], stage))
        shaders.push_back(found);
    if (shaders.size() == before)
      reader.fail(list->getElements()[i].getLine(), "there is no shader \"" + names[i] + "\"");
  }
  if (const ConfigValue* value = reader.take("attributes")) {
    ConfigReader each(m_script, *value, "program \"" + name + "\": attributes");
    for (const ConfigValue::Member& member : value->getMembers()) {
      int index = 0;
      each.getInteger(member.key, 0, kLastAttribute, index);
      attributes.emplace_back(member.key, static_cast<unsigned int>(index));
    }
    if (!each.isGood())
      return;
  }
  if (!reader.isGood())
    return;
  // A program of this name is filled anew: what uses it goes on using it.
  osg::Program* made = m_manager.createProgram(name);
  while (made->getNumShaders() > 0)
    made->removeShader(made->getShader(0));
  for (const osg::ref_ptr<osg::Shader>& shader : shaders)
    made->addShader(shader.get());
  for (const auto& [attribute, index] : attributes)
    made->addBindAttribLocation(attribute, index);
}

void RenderStateScript::sharedUniform(const std::string& name, const ConfigValue& value, ConfigReader& reader) {
  std::string error;
  if (osg::ref_ptr<osg::Uniform> made = makeUniform(name, value, error))
    m_sharedUniforms[name] = made;
  else
    reader.fail(value.getLine(), "\"" + name + "\": " + error);
}

template <class State>
void RenderStateScript::uniforms(State& state, ConfigReader& reader) {
  if (const ConfigValue* value = reader.take("uniforms")) {
    if (!value->isObject())
      reader.fail(value->getLine(), "\"uniforms\" is an object");
    for (const ConfigValue::Member& member : value->getMembers()) {
      std::string error;
      if (osg::ref_ptr<osg::Uniform> made = makeUniform(member.key, member.value, error))
        state.addUniform(made);
      else
        reader.fail(member.line, "uniform \"" + member.key + "\": " + error);
    }
  }
  std::vector<std::string> names;
  const ConfigValue* list = reader.take("sharedUniforms");
  reader.getStrings("sharedUniforms", names);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto found = m_sharedUniforms.find(names[i]);
    if (found == m_sharedUniforms.end())
      reader.fail(list->getElements()[i].getLine(), "there is no shared uniform \"" + names[i] + "\"");
    else
      state.addUniform(found->second);
  }
}

void RenderStateScript::shaderState(const std::string& name, ConfigReader& reader) {
  std::string program;
  const ConfigValue* value = reader.take("program");
  reader.getString("program", program);
  if (value && reader.isGood() && !m_manager.findProgram(program))
    reader.fail(value->getLine(), "there is no program \"" + program + "\"");
  vyr::ref_ptr<RenderStateManager::ShaderState> state = new RenderStateManager::ShaderState(name, program);
  uniforms(*state, reader);
  if (reader.isGood())
    m_manager.addShaderState(state.get());
}

void RenderStateScript::renderState(const std::string& name, ConfigReader& reader) {
  vyr::ref_ptr<RenderStateManager::RenderState> state = new RenderStateManager::RenderState(name);
  colors(*state, reader);
  textures(*state, name, reader);
  uniforms(*state, reader);
  std::string shaderState;
  const ConfigValue* value = reader.take("shaderState");
  reader.getString("shaderState", shaderState);
  if (value && value->isString()) {
    RenderStateManager::ShaderState* found = m_manager.findShaderState(shaderState);
    if (!found)
      reader.fail(value->getLine(), "there is no shader state \"" + shaderState + "\"");
    state->setShaderState(found);
  }
  if (reader.isGood())
    m_manager.addRenderState(state.get());
}

void RenderStateScript::colors(RenderStateManager::RenderState& state, ConfigReader& reader) {
  using State = RenderStateManager::RenderState;
  const std::pair<const char*, int> kinds[] = {{"ambient", State::AMBIENT},
                                               {"diffuse", State::DIFFUSE},
                                               {"specular", State::SPECULAR},
                                               {"emissive", State::EMISSIVE}};
  for (const auto& [key, kind] : kinds) {
    vyr::Vec4 color;
    reader.getColor(key, color);
    if (reader.has(key))
      state.setColor(kind, color);
  }
  const std::pair<const char*, int> numbers[] = {{"alpha", State::ALPHA}, {"shininess", State::SHININESS}};
  for (const auto& [key, kind] : numbers) {
    double number = 0;
    reader.getNumber(key, number);
    if (reader.has(key))
      state.setColor(kind, vyr::Vec4(number, 0, 0, 0));
  }
}

void RenderStateScript::textures(RenderStateManager::RenderState& state, const std::string& name,
                                 ConfigReader& reader) {
  const ConfigValue* list = reader.take("textures");
  if (!list)
    return;
  if (!list->isArray())
    reader.fail(list->getLine(), "\"textures\" is a list");
  for (std::size_t i = 0; i < list->getElements().size(); ++i) {
    const ConfigValue& element = list->getElements()[i];
    ConfigReader entry(m_script, element, "render state \"" + name + "\": texture " + std::to_string(i + 1));
    std::string texture, sampler;
    int unit = static_cast<int>(i);
    std::vector<double> scale{1, 1}, offset{0, 0};
    double rotation = 0;
    entry.getString("texture", texture);
    entry.getInteger("unit", 0, kLastTextureUnit, unit);
    entry.getNumbers("scale", 2, 2, scale);
    entry.getNumbers("offset", 2, 2, offset);
    entry.getNumber("rotation", rotation);
    entry.getString("sampler", sampler);
    osg::Texture* found = m_manager.findTexture(texture);
    if (entry.isGood() && !found)
      entry.fail(element.getLine(), "there is no texture \"" + texture + "\"");
    entry.reportUnknown();
    if (!entry.isGood()) {
      reader.markBad();
      continue;
    }
    osg::ref_ptr<osg::TexMat> matrix;
    if (entry.has("scale") || entry.has("offset") || entry.has("rotation"))
      matrix = new osg::TexMat(osg::Matrix::scale(scale[0], scale[1], 1) * osg::Matrix::rotate(rotation, 0, 0, 1) *
                               osg::Matrix::translate(offset[0], offset[1], 0));
    osg::ref_ptr<osg::Uniform> uniform;
    if (!sampler.empty()) {
      uniform = new osg::Uniform(TextureEntry::samplerOf(*found), sampler);
      uniform->set(unit);
    }
    state.addTexture(unit, found, matrix, uniform);
  }
}

} // namespace vyrOSG
