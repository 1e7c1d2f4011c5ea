// The module StateSet: every row of osg.StateAttribute and osg.StateSet.
#include "GivenObjects.h"
#include "LuaState.h"
#include "MessageLines.h"

#include <osg/Material>
#include <osg/State>
#include <osg/StateSet>
#include <osg/Texture2D>
#include <osg/Uniform>
#include <osg/observer_ptr>

#include <gtest/gtest.h>

int tolua_vyrOSG_StateSet_open(lua_State* state);
int luaopen_vyrOSG_StateSet(lua_State* state);
int tolua_vyrOSG_Uniform_open(lua_State* state);

namespace {

using bindingtest::invalidSelf;
using bindingtest::lastRaised;
using bindingtest::MessageLines;
using bindingtest::mismatch;
using bindingtest::ownedCount;

class StateSetBinding : public ::testing::Test {
protected:
  StateSetBinding() {
    tolua_vyrOSG_StateSet_open(lua.get());
    // No binding makes attributes: they come from elsewhere in the host.
    give("material", material.get(), "osg::StateAttribute");
    give("texture", texture.get(), "osg::StateAttribute");
    give("constMaterial", readOnlyMaterial.get(), "const osg::StateAttribute");
    give("constTexture", readOnlyTexture.get(), "const osg::StateAttribute");
    give("uniform", uniform.get(), "osg::Uniform");
    give("set", set.get(), "osg::StateSet");
    give("other", other.get(), "osg::StateSet");
    give("state", state.get(), "osg::State");
  }
  void give(const char* name, void* object, const char* type) { bindingtest::give(lua, name, object, type); }

  osg::ref_ptr<osg::Material> material{new osg::Material};
  osg::ref_ptr<osg::Texture2D> texture{new osg::Texture2D};
  // Objects of their own: the runtime knows one type for an address.
  osg::ref_ptr<osg::Material> readOnlyMaterial{new osg::Material};
  osg::ref_ptr<osg::Texture2D> readOnlyTexture{new osg::Texture2D};
  osg::ref_ptr<osg::Uniform> uniform{new osg::Uniform("u", 1.5f)};
  osg::ref_ptr<osg::StateSet> set{new osg::StateSet};
  osg::ref_ptr<osg::StateSet> other{new osg::StateSet};
  osg::ref_ptr<osg::State> state{new osg::State};
  bindingtest::LuaState lua;
};

TEST_F(StateSetBinding, OpensAloneAndTwice) {
  bindingtest::LuaState fresh;
  EXPECT_EQ(1, luaopen_vyrOSG_StateSet(fresh.get()));
  EXPECT_EQ(1, tolua_vyrOSG_StateSet_open(fresh.get()));
  // Neither the shared block nor another namespace comes with it.
  EXPECT_EQ("nil nil", fresh.eval("vyr, vyrOSG"));
  EXPECT_EQ("table table nil", fresh.eval("type(osg.StateSet), type(osg.StateAttribute), osg.Uniform"));
  EXPECT_EQ("osg::StateSet", fresh.eval("osg.StateSet:new()"));
}

TEST_F(StateSetBinding, OverrideValues) {
  EXPECT_EQ("0 1 2 4 8",
            lua.run("local a = osg.StateAttribute return a.OFF, a.ON, a.OVERRIDE, a.PROTECTED, a.INHERIT"));
}

TEST_F(StateSetBinding, AttributeTypes) {
  const std::pair<const char*, int> types[] = {{"TEXTURE", 0},
                                               {"POLYGONMODE", 1},
                                               {"POLYGONOFFSET", 2},
                                               {"MATERIAL", 3},
                                               {"ALPHAFUNC", 4},
                                               {"ANTIALIAS", 5},
                                               {"COLORTABLE", 6},
                                               {"CULLFACE", 7},
                                               {"FOG", 8},
                                               {"FRONTFACE", 9},
                                               {"LIGHT", 10},
                                               {"POINT", 11},
                                               {"LINEWIDTH", 12},
                                               {"LINESTIPPLE", 13},
                                               {"POLYGONSTIPPLE", 14},
                                               {"SHADEMODEL", 15},
                                               {"TEXENV", 16},
                                               {"TEXENVFILTER", 17},
                                               {"TEXGEN", 18},
                                               {"TEXMAT", 19},
                                               {"LIGHTMODEL", 20},
                                               {"BLENDFUNC", 21},
                                               {"BLENDEQUATION", 22},
                                               {"LOGICOP", 23},
                                               {"STENCIL", 24},
                                               {"COLORMASK", 25},
                                               {"DEPTH", 26},
                                               {"VIEWPORT", 27},
                                               {"BLENDCOLOR", 29},
                                               {"MULTISAMPLE", 30},
                                               {"CLIPPLANE", 31},
                                               {"COLORMATRIX", 32},
                                               {"VERTEXPROGRAM", 33},
                                               {"FRAGMENTPROGRAM", 34},
                                               {"POINTSPRITE", 35},
                                               {"PROGRAM", 36},
                                               {"VALIDATOR", 42},
                                               {"VIEWMATRIXEXTRACTOR", 43},
                                               {"OSGNV_PARAMETER_BLOCK", 44},
                                               {"OSGNVEXT_TEXTURE_SHADER", 45},
                                               {"OSGNVEXT_VERTEX_PROGRAM", 46},
                                               {"OSGNVEXT_REGISTER_COMBINERS", 47},
                                               {"OSGNVCG_PROGRAM", 48},
                                               {"OSGNVSLANG_PROGRAM", 49},
                                               {"OSGNVPARSE_PROGRAM_PARSER", 50}};
  for (const auto& [name, value] : types)
    EXPECT_EQ(std::to_string(value), lua.eval(std::string("osg.StateAttribute.") + name)) << name;
  // Five override values and 45 type names; the gaps of the list have no name.
  EXPECT_EQ("50", lua.run("local n = 0 for k, v in pairs(osg.StateAttribute) do"
                          " if type(v) == 'number' then n = n + 1 end end return n"));
  EXPECT_EQ("nil nil", lua.eval("osg.StateAttribute.SCISSOR, osg.StateAttribute.HINT"));
}

TEST_F(StateSetBinding, BinConstants) {
  EXPECT_EQ("0 1 2", lua.eval("osg.StateSet.DEFAULT_BIN, osg.StateSet.OPAQUE_BIN, osg.StateSet.TRANSPARENT_BIN"));
  EXPECT_EQ("0 1 2", lua.eval("osg.StateSet.INHERIT_RENDERBIN_DETAILS, osg.StateSet.USE_RENDERBIN_DETAILS,"
                              "osg.StateSet.OVERRIDE_RENDERBIN_DETAILS"));
}

TEST_F(StateSetBinding, NewIsNotOwnedAndTheClassCallIs) {
  EXPECT_EQ("osg::StateSet", lua.run("made = osg.StateSet:new() return made"));
  auto* made = bindingtest::taken<osg::StateSet>(lua, "made");
  osg::ref_ptr<osg::StateSet> keeper = made;
  osg::observer_ptr<osg::StateSet> seen = made;
  lua.run("made = nil");
  lua.collect();
  ASSERT_TRUE(seen.valid());
  EXPECT_EQ(1, made->referenceCount());
  keeper = nullptr;
  EXPECT_FALSE(seen.valid());

  EXPECT_EQ("0", ownedCount(lua, "osg.StateSet:new()"));
  EXPECT_EQ("1", ownedCount(lua, "osg.StateSet:new_local()"));
  EXPECT_EQ("1", ownedCount(lua, "osg.StateSet()"));
  EXPECT_EQ(mismatch("new"), lua.raised("osg.StateSet:new(1)"));
  EXPECT_EQ(mismatch("new"), lua.raised("osg.StateSet(1)"));
}

TEST_F(StateSetBinding, Compare) {
  EXPECT_EQ("0", lua.eval("set:compare(set)"));
  other->setMode(GL_BLEND, osg::StateAttribute::ON);
  const std::string without = std::to_string(set->compare(*other, false));
  EXPECT_NE("0", without);
  EXPECT_EQ(without, lua.eval("set:compare(other)"));
  EXPECT_EQ(without, lua.eval("set:compare(other, false)"));
  // Equal attribute lists whose contents differ: only the comparison of contents sees it.
  other->clear();
  osg::ref_ptr<osg::Material> red = new osg::Material;
  red->setDiffuse(osg::Material::FRONT_AND_BACK, osg::Vec4(1, 0, 0, 1));
  set->setAttribute(material);
  other->setAttribute(red);
  EXPECT_EQ(std::to_string(set->compare(*other, true)), lua.eval("set:compare(other, true)"));
  EXPECT_NE(0, set->compare(*other, true));
  EXPECT_EQ(mismatch("compare"), lua.raised("set:compare(nil)"));
  EXPECT_EQ(mismatch("compare"), lua.raised("set:compare()"));
}

TEST_F(StateSetBinding, LessThanIsANegativeCompare) {
  other->setMode(GL_BLEND, osg::StateAttribute::ON);
  const bool less = set->compare(*other, false) < 0;
  EXPECT_EQ(less ? "true false" : "false true", lua.eval("set < other, other < set"));
  EXPECT_EQ("false", lua.eval("set < set"));
  EXPECT_EQ(mismatch(".lt"), lua.raised("return getmetatable(set)['.lt'](set, nil)"));
}

TEST_F(StateSetBinding, GlobalDefaultsClearAndMerge) {
  EXPECT_EQ("", lua.run("set:setGlobalDefaults()"));
  EXPECT_EQ(static_cast<unsigned int>(osg::StateAttribute::ON), set->getMode(GL_DEPTH_TEST));
  EXPECT_EQ("", lua.run("set:clear()"));
  EXPECT_TRUE(set->getModeList().empty());
  other->setMode(GL_FOG, osg::StateAttribute::ON);
  EXPECT_EQ("", lua.run("set:merge(other)"));
  EXPECT_EQ(static_cast<unsigned int>(osg::StateAttribute::ON), set->getMode(GL_FOG));
  EXPECT_EQ(mismatch("merge"), lua.raised("set:merge(nil)"));
}

TEST_F(StateSetBinding, Modes) {
  // 3042 is GL_BLEND.
  EXPECT_EQ("3", lua.run("set:setMode(3042, 3) return set:getMode(3042)"));
  EXPECT_EQ(3u, set->getMode(GL_BLEND));
  EXPECT_EQ("8", lua.run("set:removeMode(3042) return set:getMode(3042)"));
  EXPECT_EQ(mismatch("setMode"), lua.raised("set:setMode(3042)"));
  EXPECT_EQ(mismatch("removeMode"), lua.raised("set:removeMode('x')"));
  EXPECT_EQ(mismatch("getMode"), lua.raised("set:getMode()"));
}

TEST_F(StateSetBinding, AttributesNeedTheirValue) {
  EXPECT_EQ("osg::StateAttribute", lua.run("set:setAttribute(material, 1) return set:getAttribute(3)"));
  EXPECT_EQ(material.get(), set->getAttribute(osg::StateAttribute::MATERIAL));
  EXPECT_EQ("nil", lua.run("set:removeAttribute(osg.StateAttribute.MATERIAL) return set:getAttribute(3, 0)"));
  lua.run("set:setAttributeAndModes(material, osg.StateAttribute.ON + osg.StateAttribute.OVERRIDE)");
  // Of the value the library keeps OVERRIDE and PROTECTED with an attribute.
  EXPECT_EQ(2u, set->getAttributePair(osg::StateAttribute::MATERIAL)->second);
  EXPECT_EQ("nil nil", lua.run("set:removeAttribute(3, 1) set:removeAttribute(material)"
                               "return set:getAttribute(3), set:getAttribute(3, 1)"));
  // A nil attribute is let through by the test and ignored by the library.
  EXPECT_EQ("", lua.run("set:setAttribute(nil, 1) set:setAttributeAndModes(nil, 1) set:removeAttribute(nil)"));
  EXPECT_TRUE(set->getAttributeList().empty());
  EXPECT_EQ(mismatch("setAttribute"), lua.raised("set:setAttribute(material)"));
  EXPECT_EQ(mismatch("setAttributeAndModes"), lua.raised("set:setAttributeAndModes(material)"));
  EXPECT_EQ(mismatch("removeAttribute"), lua.raised("set:removeAttribute('x')"));
  EXPECT_EQ(mismatch("getAttribute"), lua.raised("set:getAttribute()"));
}

TEST_F(StateSetBinding, TextureModes) {
  // 3553 is GL_TEXTURE_2D.
  EXPECT_EQ("5", lua.run("set:setTextureMode(2, 3553, 5) return set:getTextureMode(2, 3553)"));
  EXPECT_EQ(5u, set->getTextureMode(2, GL_TEXTURE_2D));
  EXPECT_EQ("8", lua.run("set:removeTextureMode(2, 3553) return set:getTextureMode(2, 3553)"));
  EXPECT_EQ(mismatch("setTextureMode"), lua.raised("set:setTextureMode(2, 3553)"));
  EXPECT_EQ(mismatch("removeTextureMode"), lua.raised("set:removeTextureMode(2)"));
  EXPECT_EQ(mismatch("getTextureMode"), lua.raised("set:getTextureMode(2)"));
}

TEST_F(StateSetBinding, TextureAttributesHaveDefaults) {
  EXPECT_EQ("osg::StateAttribute", lua.run("set:setTextureAttribute(1, texture) return set:getTextureAttribute(1, 0)"));
  EXPECT_EQ(texture.get(), set->getTextureAttribute(1, osg::StateAttribute::TEXTURE));
  EXPECT_EQ(0u, set->getTextureAttributePair(1, osg::StateAttribute::TEXTURE)->second);
  EXPECT_EQ("nil",
            lua.run("set:removeTextureAttribute(1, osg.StateAttribute.TEXTURE) return set:getTextureAttribute(1, 0)"));
  lua.run("set:setTextureAttributeAndModes(0, texture)");
  EXPECT_EQ(static_cast<unsigned int>(osg::StateAttribute::ON), set->getTextureMode(0, GL_TEXTURE_2D));
  EXPECT_EQ("nil", lua.run("set:removeTextureAttribute(0, texture) return set:getTextureAttribute(0, 0)"));
  lua.run("set:setTextureAttribute(1, texture, 4) set:setTextureAttributeAndModes(2, texture, 2)");
  EXPECT_EQ(4u, set->getTextureAttributePair(1, osg::StateAttribute::TEXTURE)->second);
  EXPECT_EQ(2u, set->getTextureAttributePair(2, osg::StateAttribute::TEXTURE)->second);
  EXPECT_EQ("", lua.run("set:setTextureAttribute(3, nil) set:setTextureAttributeAndModes(3, nil)"
                        "set:removeTextureAttribute(3, nil)"));
  EXPECT_EQ(mismatch("setTextureAttribute"), lua.raised("set:setTextureAttribute(1)"));
  EXPECT_EQ(mismatch("setTextureAttributeAndModes"), lua.raised("set:setTextureAttributeAndModes(texture)"));
  EXPECT_EQ(mismatch("removeTextureAttribute"), lua.raised("set:removeTextureAttribute(1)"));
  EXPECT_EQ(mismatch("getTextureAttribute"), lua.raised("set:getTextureAttribute(1, texture)"));
}

// The library would make lists of four thousand million entries for unit -1.
TEST_F(StateSetBinding, AbsurdTextureUnitsDoNothing) {
  MessageLines messages;
  const char* calls[] = {"set:setTextureMode(%, 3553, 1)",
                         "set:removeTextureMode(%, 3553)",
                         "set:getTextureMode(%, 3553)",
                         "set:setTextureAttribute(%, texture)",
                         "set:setTextureAttributeAndModes(%, texture)",
                         "set:removeTextureAttribute(%, 0)",
                         "set:removeTextureAttribute(%, texture)",
                         "set:getTextureAttribute(%, 0)",
                         "set:setAssociatedTextureModes(%, constTexture, 1)"};
  for (const char* unit : {"-1", "65", "4000000000"}) {
    for (std::string call : calls) {
      call.replace(call.find('%'), 1, unit);
      EXPECT_EQ("none", lua.raised(call)) << call;
      ASSERT_EQ(1u, messages.lines().size()) << call;
      EXPECT_NE(std::string::npos, messages.lines()[0].find("is not from 0 to 64")) << messages.lines()[0];
      messages.clear();
    }
  }
  EXPECT_TRUE(set->getTextureModeList().empty());
  EXPECT_TRUE(set->getTextureAttributeList().empty());
  EXPECT_EQ("nil 0", lua.eval("set:getTextureAttribute(-1, 0), set:getTextureMode(-1, 3553)"));
  messages.clear();
  EXPECT_EQ("1", lua.run("set:setTextureMode(64, 3553, 1) return set:getTextureMode(64, 3553)"));
  EXPECT_TRUE(messages.lines().empty());
}

TEST_F(StateSetBinding, AssociatedModes) {
  lua.run("set:setAssociatedModes(constMaterial, 1)");
  // The associated mode of a material is lighting's colour material being off; of a texture, its target.
  EXPECT_EQ(set->getModeList().size(), [this] {
    osg::ref_ptr<osg::StateSet> direct = new osg::StateSet;
    direct->setAssociatedModes(material, 1);
    return direct->getModeList().size();
  }());
  lua.run("set:setAssociatedTextureModes(1, constTexture, 5)");
  EXPECT_EQ(5u, set->getTextureMode(1, GL_TEXTURE_2D));
  // A plain attribute passes where a read-only one is asked for.
  lua.run("set:setAssociatedTextureModes(2, texture, 1)");
  EXPECT_EQ(1u, set->getTextureMode(2, GL_TEXTURE_2D));
  EXPECT_EQ(mismatch("setAssociatedModes"), lua.raised("set:setAssociatedModes(constMaterial)"));
  EXPECT_EQ(mismatch("setAssociatedTextureModes"), lua.raised("set:setAssociatedTextureModes(1, constTexture)"));
}

// Without the guard the library reads through the null attribute.
TEST_F(StateSetBinding, AssociatedModesOfNilDoNothing) {
  EXPECT_EQ("none", lua.raised("set:setAssociatedModes(nil, 1)"));
  EXPECT_EQ("none", lua.raised("set:setAssociatedTextureModes(1, nil, 1)"));
  EXPECT_TRUE(set->getModeList().empty());
  EXPECT_TRUE(set->getTextureModeList().empty());
}

TEST_F(StateSetBinding, UniformsAndTheirNames) {
  EXPECT_EQ("osg::Uniform u", lua.run("set:addUniform(uniform) return set:getUniform('u')"));
  EXPECT_EQ(0u, set->getUniformPair("u")->second);
  EXPECT_EQ("nil missing", lua.eval("set:getUniform('missing')"));
  EXPECT_EQ("u", lua.eval("set:removeUniform('u')"));
  EXPECT_EQ(nullptr, set->getUniform("u"));
  lua.run("set:addUniform(uniform, 2)");
  EXPECT_EQ(2u, set->getUniformPair("u")->second);
  EXPECT_EQ("", lua.run("return set:removeUniform(uniform)"));
  EXPECT_EQ(nullptr, set->getUniform("u"));
  EXPECT_EQ("", lua.run("set:addUniform(nil)"));
  EXPECT_EQ(mismatch("addUniform"), lua.raised("set:addUniform('u')"));
  EXPECT_EQ(mismatch("removeUniform"), lua.raised("set:removeUniform({})"));
  EXPECT_EQ(mismatch("getUniform"), lua.raised("set:getUniform(uniform)"));
}

TEST_F(StateSetBinding, RenderBins) {
  EXPECT_EQ("2", lua.run("set:setRenderingHint(osg.StateSet.TRANSPARENT_BIN) return set:getRenderingHint()"));
  EXPECT_EQ(2, set->getRenderingHint());
  EXPECT_EQ("bin", lua.run("return set:setRenderBinDetails(7, 'bin')"));
  EXPECT_EQ("true 1 7 bin",
            lua.eval("set:useRenderBinDetails(), set:getRenderBinMode(), set:getBinNumber(), set:getBinName()"));
  EXPECT_EQ("other", lua.run("return set:setRenderBinDetails(-3, 'other', 2)"));
  EXPECT_EQ("2 -3 other", lua.eval("set:getRenderBinMode(), set:getBinNumber(), set:getBinName()"));
  EXPECT_EQ("false 0", lua.run("set:setRenderBinToInherit() return set:useRenderBinDetails(), set:getRenderBinMode()"));
  EXPECT_EQ("1 true", lua.run("set:setRenderBinMode(1) return set:getRenderBinMode(), set:useRenderBinDetails()"));
  EXPECT_EQ("12", lua.run("set:setBinNumber(12.9) return set:getBinNumber()"));
  EXPECT_EQ("name name", lua.run("local s = set:setBinName('name') return s, set:getBinName()"));
  EXPECT_EQ(osg::StateSet::USE_RENDERBIN_DETAILS, set->getRenderBinMode());
  for (const char* call : {"setRenderingHint", "setRenderBinDetails", "setRenderBinMode", "setBinNumber", "setBinName"})
    EXPECT_EQ(mismatch(call), lua.raised(std::string("set:") + call + "()"));
  for (const char* call : {"getRenderingHint", "setRenderBinToInherit", "useRenderBinDetails", "getRenderBinMode",
                           "getBinNumber", "getBinName", "clear", "setGlobalDefaults"})
    EXPECT_EQ(mismatch(call), lua.raised(std::string("set:") + call + "(1)"));
}

TEST_F(StateSetBinding, GLObjects) {
  // An empty state set has nothing to compile, so no context is needed.
  EXPECT_EQ("none", lua.raised("set:compileGLObjects(state)"));
  EXPECT_EQ(mismatch("compileGLObjects"), lua.raised("set:compileGLObjects(nil)"));
  EXPECT_EQ("none", lua.raised("set:releaseGLObjects()"));
  EXPECT_EQ("none", lua.raised("set:releaseGLObjects(nil)"));
  EXPECT_EQ("none", lua.raised("set:releaseGLObjects(state)"));
  EXPECT_EQ(mismatch("releaseGLObjects"), lua.raised("set:releaseGLObjects(1)"));
}

TEST_F(StateSetBinding, NullSelfNamesTheMember) {
  bindingtest::giveNull(lua, "null", "osg::StateSet");
  EXPECT_EQ(invalidSelf("operator<"), lua.raised("return getmetatable(null)['.lt'](null, set)"));
  EXPECT_FALSE(lastRaised().hasRecord);
  const std::pair<const char*, const char*> calls[] = {{"compare", "set"},
                                                       {"setGlobalDefaults", ""},
                                                       {"clear", ""},
                                                       {"merge", "set"},
                                                       {"setMode", "1, 1"},
                                                       {"removeMode", "1"},
                                                       {"getMode", "1"},
                                                       {"setAttribute", "material, 1"},
                                                       {"setAttributeAndModes", "material, 1"},
                                                       {"removeAttribute", "1"},
                                                       {"removeAttribute", "material"},
                                                       {"getAttribute", "1"},
                                                       {"setTextureMode", "1, 1, 1"},
                                                       {"removeTextureMode", "1, 1"},
                                                       {"getTextureMode", "1, 1"},
                                                       {"setTextureAttribute", "1, texture"},
                                                       {"setTextureAttributeAndModes", "1, texture"},
                                                       {"removeTextureAttribute", "1, 1"},
                                                       {"removeTextureAttribute", "1, texture"},
                                                       {"getTextureAttribute", "1, 1"},
                                                       {"setAssociatedModes", "constMaterial, 1"},
                                                       {"setAssociatedTextureModes", "1, constTexture, 1"},
                                                       {"addUniform", "uniform"},
                                                       {"removeUniform", "'u'"},
                                                       {"removeUniform", "uniform"},
                                                       {"getUniform", "'u'"},
                                                       {"setRenderingHint", "1"},
                                                       {"getRenderingHint", ""},
                                                       {"setRenderBinDetails", "1, 'b'"},
                                                       {"setRenderBinToInherit", ""},
                                                       {"useRenderBinDetails", ""},
                                                       {"setRenderBinMode", "1"},
                                                       {"getRenderBinMode", ""},
                                                       {"setBinNumber", "1"},
                                                       {"getBinNumber", ""},
                                                       {"setBinName", "'b'"},
                                                       {"getBinName", ""},
                                                       {"compileGLObjects", "state"},
                                                       {"releaseGLObjects", ""}};
  for (const auto& [name, arguments] : calls)
    EXPECT_EQ(invalidSelf(name), lua.raised(std::string("null:") + name + "(" + arguments + ")"));
}

TEST_F(StateSetBinding, SelfOfAnotherTypeIsAMismatch) {
  EXPECT_EQ(mismatch("clear"), lua.raised("osg.StateSet.clear(uniform)"));
  EXPECT_EQ("osg::StateSet", lastRaised().type);
  EXPECT_EQ(1, lastRaised().index);
  EXPECT_EQ(mismatch("getMode"), lua.raised("osg.StateSet.getMode(uniform, 1)"));
  EXPECT_EQ("const osg::StateSet", lastRaised().type);
}

} // namespace
