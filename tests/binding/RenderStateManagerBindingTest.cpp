// The module RenderStateManager: every row of the manager, its shader states and its render states.
#include "GivenObjects.h"
#include "LuaState.h"
#include "MessageLines.h"

#include <vyr/Vec4.h>
#include <vyrCFG/ConfigScript.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/Node.h>
#include <vyrOSG/RenderStateManager.h>
#include <vyrOSG/SimulationObject.h>

#include <osg/Material>
#include <osg/StateSet>
#include <osg/TexMat>
#include <osg/Texture2D>

#include <gtest/gtest.h>

int tolua_vyrOSG_RenderStateManager_open(lua_State* state);
int luaopen_vyrOSG_RenderStateManager(lua_State* state);

namespace {

using bindingtest::invalidSelf;
using bindingtest::lastRaised;
using bindingtest::mismatch;
using bindingtest::ownedCount;
using Manager = vyrOSG::RenderStateManager;

class RenderStateManagerBinding : public ::testing::Test {
protected:
  RenderStateManagerBinding() {
    tolua_vyrOSG_RenderStateManager_open(lua.get());
    give("uniform", uniform.get(), "osg::Uniform");
    give("texture", texture.get(), "osg::Texture");
    give("matrix", matrix.get(), "osg::TexMat");
    give("vec4", &vec4, "vyr::Vec4");
    give("stateSet", stateSet.get(), "osg::StateSet");
    give("node", node.get(), "vyrOSG::Node");
    give("group", group.get(), "vyrOSG::Group");
    give("geometryNode", geometryNode.get(), "vyrOSG::GeometryNode");
    give("object", &object, "vyrOSG::SimulationObject");
    // The one way to an object of this type is through the host.
    give("vertex", &vertex, "osg::Shader::Type");
    lua.run("M = vyrOSG.RenderStateManager manager = M:instance()");
  }
  ~RenderStateManagerBinding() override {
    lua.close();
    Manager::instance()->clear();
  }
  void give(const char* name, void* given, const char* type) { bindingtest::give(lua, name, given, type); }

  osg::ref_ptr<osg::Uniform> uniform{new osg::Uniform("u", 1.0f)};
  osg::ref_ptr<osg::Texture2D> texture{new osg::Texture2D};
  osg::ref_ptr<osg::TexMat> matrix{new osg::TexMat};
  vyr::Vec4 vec4{0.25, 0.5, 1, 1};
  osg::ref_ptr<osg::StateSet> stateSet{new osg::StateSet};
  osg::ref_ptr<vyrOSG::Node> node{new vyrOSG::Node};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  osg::ref_ptr<vyrOSG::GeometryNode> geometryNode{new vyrOSG::GeometryNode};
  osg::ref_ptr<osg::Node> visual{new osg::Node};
  vyrOSG::SimulationObject object{nullptr, nullptr, visual.get()};
  osg::Shader::Type vertex = osg::Shader::VERTEX;
  bindingtest::LuaState lua;
};

TEST_F(RenderStateManagerBinding, OpensAloneWithoutTheSharedBlock) {
  bindingtest::LuaState fresh;
  EXPECT_EQ(1, luaopen_vyrOSG_RenderStateManager(fresh.get()));
  EXPECT_EQ(1, tolua_vyrOSG_RenderStateManager_open(fresh.get()));
  EXPECT_EQ("nil nil", fresh.eval("vyr, osg"));
  EXPECT_EQ("table table",
            fresh.eval("type(vyrOSG.RenderStateManager.ShaderState), type(vyrOSG.RenderStateManager.RenderState)"));
}

TEST_F(RenderStateManagerBinding, Constants) {
  EXPECT_EQ("0 1 2 4 8", lua.eval("M.OFF, M.ON, M.OVERRIDE, M.PROTECTED, M.INHERIT"));
  EXPECT_EQ("0 1 2 3 4 5", lua.run("local R = M.RenderState"
                                   " return R.AMBIENT, R.DIFFUSE, R.SPECULAR, R.ALPHA, R.SHININESS, R.EMISSIVE"));
}

TEST_F(RenderStateManagerBinding, ThereIsOneManager) {
  EXPECT_EQ("vyrOSG::RenderStateManager true", lua.eval("manager, rawequal(M:instance(), M:instance())"));
  EXPECT_EQ(Manager::instance(), bindingtest::taken<Manager>(lua, "manager"));
  EXPECT_EQ("0", ownedCount(lua, "M:instance()"));
  EXPECT_EQ("nil nil", lua.eval("rawget(M, 'new'), rawget(M, '.collector')"));
  EXPECT_EQ(mismatch("instance"), lua.raised("M:instance(1)"));
  EXPECT_EQ(mismatch("instance"), lua.raised("M.instance()"));
}

TEST_F(RenderStateManagerBinding, ShaderStateConstructors) {
  const std::string type = "vyrOSG::RenderStateManager::ShaderState";
  EXPECT_EQ(type + " s p", lua.eval("M.ShaderState:new('s', 'p')"));
  EXPECT_EQ(type + " s p", lua.eval("M.ShaderState:new_local('s', 'p')"));
  EXPECT_EQ(type, lua.eval("M.ShaderState('s', 'p')"));
  EXPECT_EQ("s p", lua.run("local s = M.ShaderState('s', 'p') return s:getName(), s:getProgramID()"));
  EXPECT_EQ("0", ownedCount(lua, "M.ShaderState:new('s', 'p')"));
  EXPECT_EQ("1", ownedCount(lua, "M.ShaderState:new_local('s', 'p')"));
  EXPECT_EQ("1", ownedCount(lua, "M.ShaderState('s', 'p')"));
  lua.run("s = M.ShaderState:new_local('s', 'p') t = M.ShaderState:new('t', 'p')");
  EXPECT_EQ(1, bindingtest::taken<Manager::ShaderState>(lua, "s")->getReferenceCount());
  EXPECT_EQ(0, bindingtest::taken<Manager::ShaderState>(lua, "t")->getReferenceCount());
  EXPECT_EQ(mismatch("new"), lua.raised("M.ShaderState:new('s')"));
  EXPECT_EQ(mismatch("new"), lua.raised("M.ShaderState('s', {})"));
}

TEST_F(RenderStateManagerBinding, ShaderStateUniformsAndApply) {
  osg::Program* program = Manager::instance()->createProgram("p");
  lua.run("s = M.ShaderState('s', 'p')");
  EXPECT_EQ("", lua.run("s:addUniform(uniform)"));
  EXPECT_EQ("osg::Uniform u", lua.eval("s:findUniform('u')"));
  EXPECT_EQ("nil v", lua.eval("s:findUniform('v')"));
  EXPECT_EQ("", lua.run("s:apply(stateSet)"));
  EXPECT_EQ(program, stateSet->getAttribute(osg::StateAttribute::PROGRAM));
  EXPECT_EQ(0u, stateSet->getAttributePair(osg::StateAttribute::PROGRAM)->second);
  EXPECT_EQ("", lua.run("s:apply(node, M.ON + M.OVERRIDE)"));
  EXPECT_EQ(2u, node->getStateSet()->getAttributePair(osg::StateAttribute::PROGRAM)->second);
  EXPECT_EQ("", lua.run("s:apply(stateSet, M.PROTECTED)"));
  EXPECT_EQ(4u, stateSet->getAttributePair(osg::StateAttribute::PROGRAM)->second);
  EXPECT_EQ("", lua.run("s:apply(node)"));
  EXPECT_EQ(0u, node->getStateSet()->getAttributePair(osg::StateAttribute::PROGRAM)->second);
  EXPECT_EQ("", lua.run("s:apply(nil)"));
  for (const char* call :
       {"addUniform(1)", "findUniform({})", "apply(uniform)", "apply()", "getName(1)", "getProgramID(1)"}) {
    const std::string text = call;
    EXPECT_EQ(mismatch(text.substr(0, text.find('('))), lua.raised("s:" + text)) << call;
  }
}

TEST_F(RenderStateManagerBinding, RenderStateConstructorsAndNames) {
  const std::string type = "vyrOSG::RenderStateManager::RenderState";
  EXPECT_EQ(type + " r", lua.eval("M.RenderState:new('r')"));
  EXPECT_EQ(type + " r", lua.eval("M.RenderState:new_local('r')"));
  EXPECT_EQ(type, lua.eval("M.RenderState('r')"));
  EXPECT_EQ("0", ownedCount(lua, "M.RenderState:new('r')"));
  EXPECT_EQ("1", ownedCount(lua, "M.RenderState:new_local('r')"));
  EXPECT_EQ("1", ownedCount(lua, "M.RenderState('r')"));
  lua.run("r = M.RenderState('r')");
  EXPECT_EQ(1, bindingtest::taken<Manager::RenderState>(lua, "r")->getReferenceCount());
  EXPECT_EQ("r q q", lua.run("local before, given = r:getName(), r:setName('q') return before, given, r:getName()"));
  EXPECT_EQ(mismatch("new"), lua.raised("M.RenderState:new()"));
  EXPECT_EQ(mismatch("setName"), lua.raised("r:setName()"));
  EXPECT_EQ(mismatch("getName"), lua.raised("r:getName(1)"));
}

TEST_F(RenderStateManagerBinding, RenderStateParts) {
  lua.run("r = M.RenderState('r') s = M.ShaderState('s', '')");
  EXPECT_EQ("", lua.run("r:addTexture(1.9, texture) r:addTexture(2, texture, matrix) r:addTexture(3, texture, nil)"));
  EXPECT_EQ("", lua.run("r:addUniform(uniform) r:setColor(M.RenderState.DIFFUSE + 0.9, vec4) r:setShaderState(s)"));
  EXPECT_EQ("osg::Uniform u", lua.eval("r:findUniform('u')"));
  EXPECT_EQ("nil v", lua.eval("r:findUniform('v')"));
  EXPECT_EQ(2, bindingtest::taken<Manager::ShaderState>(lua, "s")->getReferenceCount());
  EXPECT_EQ("", lua.run("r:apply(stateSet)"));
  EXPECT_EQ(texture.get(), stateSet->getTextureAttribute(1, osg::StateAttribute::TEXTURE));
  EXPECT_EQ(nullptr, stateSet->getTextureAttribute(1, osg::StateAttribute::TEXMAT));
  EXPECT_EQ(matrix.get(), stateSet->getTextureAttribute(2, osg::StateAttribute::TEXMAT));
  EXPECT_EQ(texture.get(), stateSet->getTextureAttribute(3, osg::StateAttribute::TEXTURE));
  auto* material = dynamic_cast<osg::Material*>(stateSet->getAttribute(osg::StateAttribute::MATERIAL));
  ASSERT_NE(nullptr, material);
  EXPECT_EQ(osg::Vec4(0.25f, 0.5f, 1, 1), material->getDiffuse(osg::Material::FRONT));
  EXPECT_EQ(uniform.get(), stateSet->getUniform("u"));
  EXPECT_EQ("", lua.run("r:setShaderState(nil)"));
  EXPECT_EQ(1, bindingtest::taken<Manager::ShaderState>(lua, "s")->getReferenceCount());
  for (const char* call : {"addTexture(1)", "addTexture('x', texture)", "addUniform(vec4)", "findUniform(uniform)",
                           "setColor(1, nil)", "setColor(1)", "setShaderState(uniform)"}) {
    const std::string text = call;
    EXPECT_EQ(mismatch(text.substr(0, text.find('('))), lua.raised("r:" + text)) << call;
  }
}

TEST_F(RenderStateManagerBinding, RenderStatesApplyToEveryTarget) {
  lua.run("r = M.RenderState('r') r:addTexture(0, texture)");
  const auto mode = [](osg::StateSet* set) { return set->getTextureMode(0, GL_TEXTURE_2D); };
  EXPECT_EQ("", lua.run("r:apply(group) r:apply(node) r:apply(geometryNode) r:apply(stateSet) r:apply(object)"));
  EXPECT_EQ(1u, mode(group->getStateSet()));
  EXPECT_EQ(1u, mode(node->getStateSet()));
  EXPECT_EQ(1u, mode(geometryNode->getStateSet()));
  EXPECT_EQ(1u, mode(stateSet.get()));
  EXPECT_EQ(1u, mode(visual->getStateSet()));
  EXPECT_EQ(
      "",
      lua.run("for i, target in ipairs{group, node, geometryNode, stateSet, object} do r:apply(target, i + 1.9) end"));
  EXPECT_EQ(2u, mode(group->getStateSet()));
  EXPECT_EQ(3u, mode(node->getStateSet()));
  EXPECT_EQ(4u, mode(geometryNode->getStateSet()));
  EXPECT_EQ(5u, mode(stateSet.get()));
  EXPECT_EQ(6u, mode(visual->getStateSet()));
  // nil is no simulation object, but stands for a missing state set.
  EXPECT_EQ("", lua.run("r:apply(nil)"));
  EXPECT_EQ(mismatch("apply"), lua.raised("r:apply(texture)"));
  EXPECT_EQ(mismatch("apply"), lua.raised("r:apply(node, 1, 2)"));
  EXPECT_EQ(mismatch("apply"), lua.raised("r:apply(node, 'x')"));
}

TEST_F(RenderStateManagerBinding, RegisteringAndFinding) {
  lua.run("r = M.RenderState('r') s = M.ShaderState('s', 'p')");
  EXPECT_EQ("", lua.run("manager:addRenderState(r)"));
  EXPECT_EQ("", lua.run("manager:addShaderState(s)"));
  EXPECT_EQ("wood", lua.eval("manager:addTexture('wood', texture)"));
  EXPECT_EQ("vyrOSG::RenderStateManager::RenderState r", lua.eval("manager:findRenderState('r')"));
  EXPECT_EQ("vyrOSG::RenderStateManager::ShaderState s", lua.eval("manager:findShaderState('s')"));
  EXPECT_EQ("osg::Texture wood", lua.eval("manager:findTexture('wood')"));
  EXPECT_EQ("nil none", lua.eval("manager:findRenderState('none')"));
  EXPECT_EQ("nil none", lua.eval("manager:findShaderState('none')"));
  EXPECT_EQ("nil none", lua.eval("manager:findTexture('none')"));
  EXPECT_EQ("nil none", lua.eval("manager:findProgram('none')"));
  EXPECT_EQ("osg::Program p", lua.eval("manager:createProgram('p')"));
  EXPECT_EQ("true p",
            lua.run("local a, b = manager:createProgram('p'), manager:findProgram('p') return rawequal(a, b), 'p'"));
  EXPECT_EQ("nil v", lua.eval("manager:findShader('v', vertex)"));
  EXPECT_EQ("osg::Shader v text", lua.eval("manager:createShader('v', 'text', vertex, false)"));
  EXPECT_EQ("osg::Shader v", lua.eval("manager:findShader('v', vertex)"));
  EXPECT_EQ(osg::Shader::VERTEX, Manager::instance()->findShader("v", osg::Shader::VERTEX)->getType());
  EXPECT_EQ("", lua.run("manager:clear()"));
  EXPECT_EQ("nil r", lua.eval("manager:findRenderState('r')"));
  EXPECT_EQ(1, bindingtest::taken<Manager::RenderState>(lua, "r")->getReferenceCount());
}

TEST_F(RenderStateManagerBinding, NilEntriesAreOneLineEach) {
  bindingtest::MessageLines messages;
  EXPECT_EQ("none", lua.raised("manager:addRenderState(nil)"));
  EXPECT_EQ("none", lua.raised("manager:addShaderState(nil)"));
  EXPECT_EQ("none", lua.raised("manager:addTexture('t', nil)"));
  EXPECT_EQ("none", lua.raised("manager:parse(nil)"));
  EXPECT_EQ(4u, messages.lines().size());
}

TEST_F(RenderStateManagerBinding, Parse) {
  vyr::ref_ptr<vyrCFG::ConfigScript> script = new vyrCFG::ConfigScript;
  ASSERT_TRUE(script->parse(R"({"renderStates": {"red": {"diffuse": [1, 0, 0]}}})"));
  give("script", script.get(), "vyrCFG::ConfigScript");
  EXPECT_EQ("", lua.run("manager:parse(script)"));
  EXPECT_EQ("vyrOSG::RenderStateManager::RenderState red", lua.eval("manager:findRenderState('red')"));
}

// A shader's type is an object for scripts; no number stands for it.
TEST_F(RenderStateManagerBinding, ShaderTypesAreNoNumbers) {
  EXPECT_EQ(mismatch("findShader"), lua.raised("manager:findShader('v', 35633)"));
  EXPECT_EQ("osg::Shader::Type", lastRaised().type);
  EXPECT_EQ(3, lastRaised().index);
  EXPECT_EQ(mismatch("findShader"), lua.raised("manager:findShader('v', nil)"));
  EXPECT_EQ(mismatch("createShader"), lua.raised("manager:createShader('v', 'text', 35633, false)"));
  EXPECT_EQ(mismatch("createShader"), lua.raised("manager:createShader('v', 'text', vertex)"));
}

TEST_F(RenderStateManagerBinding, WrongArgumentsOfTheManager) {
  for (const char* call : {"findProgram({})", "findRenderState()", "addRenderState(uniform)", "addTexture('t')",
                           "addTexture('t', uniform)", "findTexture(texture)", "createProgram()", "addShaderState(1)",
                           "findShaderState(1, 2)", "parse('text')", "clear(1)"}) {
    const std::string text = call;
    EXPECT_EQ(mismatch(text.substr(0, text.find('('))), lua.raised("manager:" + text)) << call;
  }
}

TEST_F(RenderStateManagerBinding, NullSelfNamesTheMember) {
  bindingtest::giveNull(lua, "noManager", "vyrOSG::RenderStateManager");
  bindingtest::giveNull(lua, "noShade", "vyrOSG::RenderStateManager::ShaderState");
  bindingtest::giveNull(lua, "noState", "vyrOSG::RenderStateManager::RenderState");
  for (const char* call : {"noManager:findShader('n', vertex)",
                           "noManager:findProgram('n')",
                           "noManager:findRenderState('n')",
                           "noManager:addRenderState(nil)",
                           "noManager:addTexture('n', nil)",
                           "noManager:findTexture('n')",
                           "noManager:createProgram('n')",
                           "noManager:createShader('n', '', vertex, true)",
                           "noManager:addShaderState(nil)",
                           "noManager:findShaderState('n')",
                           "noManager:parse(nil)",
                           "noManager:clear()",
                           "noShade:getName()",
                           "noShade:getProgramID()",
                           "noShade:addUniform(nil)",
                           "noShade:findUniform('n')",
                           "noShade:apply(stateSet)",
                           "noShade:apply(node)",
                           "noState:setName('n')",
                           "noState:getName()",
                           "noState:addTexture(0, nil)",
                           "noState:apply(group)",
                           "noState:apply(node)",
                           "noState:apply(geometryNode)",
                           "noState:apply(stateSet)",
                           "noState:apply(object)",
                           "noState:addUniform(nil)",
                           "noState:findUniform('n')",
                           "noState:setColor(0, vec4)",
                           "noState:setShaderState(nil)"}) {
    const std::string text = call;
    const std::size_t colon = text.find(':');
    EXPECT_EQ(invalidSelf(text.substr(colon + 1, text.find('(') - colon - 1)), lua.raised(text)) << call;
  }
}

} // namespace
