-- The registry of named shaders, textures, shader states and render states.
types {
  "vyrCFG::ConfigScript", "osg::Uniform", "vyr::Referenced", "osg::TexMat", "osg::StateSet",
  "vyrOSG::RenderStateManager", "vyrOSG::Group", "vyrOSG::RenderStateManager::RenderState", "vyrOSG::Node",
  "osg::Shader::Type", "vyrOSG::SimulationObject", "vyr::Singleton", "vyrOSG::GeometryNode", "osg::Program",
  "vyrOSG::RenderStateManager::ShaderState", "osg::Texture", "osg::Shader", "vyr::Vec4",
}
samples({
  manager = function() return vyrOSG.RenderStateManager:instance() end,
  shaderState = function() return (vyrOSG.RenderStateManager.ShaderState("state", "program")) end,
  renderState = function() return (vyrOSG.RenderStateManager.RenderState("state")) end,
  geometryNode = function(env) return vyrOSG.GeometryNode(env.geometry) end,
  object = function(env) return vyrOSG.SimulationObject(env.geometry, env.body) end,
  script = function() return vyrCFG.ConfigScript() end,
}, {
  ["vyrOSG::RenderStateManager"] = "manager", ["vyrOSG::RenderStateManager::ShaderState"] = "shaderState",
  ["vyrOSG::RenderStateManager::RenderState"] = "renderState", ["vyrOSG::GeometryNode"] = "geometryNode",
  ["vyrOSG::SimulationObject"] = "object", ["vyrCFG::ConfigScript"] = "script",
})

namespace "vyrOSG"
class("RenderStateManager", { base = "vyr::Singleton" })
constants { "OFF", 0, "ON", 1, "OVERRIDE", 2, "PROTECTED", 4, "INHERIT", 8 }

local values = ", enum vyrOSG::RenderStateManager::Values value = 1)"
class("RenderStateManager.ShaderState", { base = "vyr::Referenced", collector = "drops" })
constructor "ShaderState(const std::string& name, const std::string& program)"
row { "const std::string& getName() const", gives = "'state'" }
row { "const std::string& getProgramID() const", gives = "'program'" }
row "void addUniform(osg::Uniform* uniform)"
row { "osg::Uniform* findUniform(const std::string& name)", gives = "nil, 'text1'" }
row("void apply(osg::StateSet* set" .. values)
row("void apply(vyrOSG::Node* node" .. values)

class("RenderStateManager.RenderState", { base = "vyr::Referenced", collector = "drops" })
constants { "AMBIENT", 0, "DIFFUSE", 1, "SPECULAR", 2, "ALPHA", 3, "SHININESS", 4, "EMISSIVE", 5 }
constructor "RenderState(const std::string& name)"
row "void setName(const std::string& name)"
row { "const std::string& getName() const", gives = "'state'" }
row "void addTexture(int unit, osg::Texture* texture, osg::TexMat* matrix = nullptr)"
row("void apply(vyrOSG::Group* group" .. values)
row("void apply(vyrOSG::Node* node" .. values)
row("void apply(vyrOSG::GeometryNode* node" .. values)
row("void apply(osg::StateSet* set" .. values)
row("void apply(vyrOSG::SimulationObject& object" .. values)
row "void addUniform(osg::Uniform* uniform)"
row { "osg::Uniform* findUniform(const std::string& name)", gives = "nil, 'text1'" }
row "void setColor(int kind, const vyr::Vec4& color)"
row "void setShaderState(vyrOSG::RenderStateManager::ShaderState* state)"

back "RenderStateManager"
row "static vyrOSG::RenderStateManager* instance()"
-- The shader's type is a type of its own here, and nothing in the interface makes such a value.
row { "osg::Shader* findShader(const std::string& name, osg::Shader::Type type)", reaches = "osg::Shader* vyrOSG::RenderStateManager::findShader(const std::string&, enum osg::Shader::Type = 35632)" }
row { "osg::Program* findProgram(const std::string& name)", gives = "nil, 'text1'" }
row { "vyrOSG::RenderStateManager::RenderState* findRenderState(const std::string& name)", gives = "nil, 'text1'" }
row "void addRenderState(vyrOSG::RenderStateManager::RenderState* state)"
row "void addTexture(const std::string& name, osg::Texture* texture)"
row { "osg::Texture* findTexture(const std::string& name)", with = "'none'", gives = "nil, 'none'" }
row "osg::Program* createProgram(const std::string& name)"
row { "osg::Shader* createShader(const std::string& name, const std::string& source, osg::Shader::Type type, bool fromFile)",
  reaches = "osg::Shader* vyrOSG::RenderStateManager::createShader(const std::string&, const std::string&, enum osg::Shader::Type = 35632, bool)" }
row "void addShaderState(vyrOSG::RenderStateManager::ShaderState* state)"
row { "vyrOSG::RenderStateManager::ShaderState* findShaderState(const std::string& name)", with = "'none'", gives = "nil, 'none'" }
row "void parse(vyrCFG::ConfigScript* script)"
row "void clear()"
