// The module LightSource: every row of vyrOSG.LightSource.
#include "GivenObjects.h"
#include "LuaState.h"

#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <osg/LightSource>
#include <osg/observer_ptr>

#include <gtest/gtest.h>

int tolua_vyrOSG_LightSource_open(lua_State* state);
int luaopen_vyrOSG_LightSource(lua_State* state);

namespace {

using bindingtest::invalidSelf;
using bindingtest::lastRaised;
using bindingtest::mismatch;
using bindingtest::ownedCount;

class LightSourceBinding : public ::testing::Test {
protected:
  LightSourceBinding() {
    tolua_vyrOSG_LightSource_open(lua.get());
    node->getLight()->setLightNum(5);
    bindingtest::give(lua, "node", node.get(), "osg::LightSource");
    bindingtest::give(lua, "vec3", &vec3, "vyr::Vec3");
    bindingtest::give(lua, "vec4", &vec4, "vyr::Vec4");
  }
  /// The vector that an expression gives.
  template <class Vector>
  Vector vector(const std::string& expression) {
    lua.run("made = " + expression);
    return *bindingtest::taken<Vector>(lua, "made");
  }

  vyr::Vec3 vec3{0.25, 0.5, -1};
  vyr::Vec4 vec4{0.1, 0.25, 0.5, 1};
  osg::ref_ptr<osg::LightSource> node{new osg::LightSource};
  bindingtest::LuaState lua;
};

TEST_F(LightSourceBinding, OpensAloneWithTheSharedBlock) {
  bindingtest::LuaState fresh;
  EXPECT_EQ(1, luaopen_vyrOSG_LightSource(fresh.get()));
  EXPECT_EQ(1, tolua_vyrOSG_LightSource_open(fresh.get()));
  EXPECT_EQ("1 4 nil", fresh.eval("vyr.FrictionModel.DIRECT, vyr.Constraint.ITERATIVE, osg"));
  EXPECT_EQ("vyrOSG::LightSource", fresh.eval("vyrOSG.LightSource(nil)"));
}

TEST_F(LightSourceBinding, ConstructorsTakeANodeOrNil) {
  for (const char* maker : {"vyrOSG.LightSource:new", "vyrOSG.LightSource:new_local", "vyrOSG.LightSource"}) {
    const std::string call = maker;
    EXPECT_EQ("5 -1", lua.eval(call + "(node):getLightNum(), " + call + "(nil):getLightNum()")) << call;
    EXPECT_EQ(mismatch("new"), lua.raised(call + "()")) << call;
    EXPECT_EQ(mismatch("new"), lua.raised(call + "(vec3)")) << call;
    EXPECT_EQ(mismatch("new"), lua.raised(call + "(node, node)")) << call;
  }
  EXPECT_EQ("0", ownedCount(lua, "vyrOSG.LightSource:new(nil)"));
  EXPECT_EQ("1", ownedCount(lua, "vyrOSG.LightSource:new_local(nil)"));
  EXPECT_EQ("1", ownedCount(lua, "vyrOSG.LightSource(nil)"));
}

TEST_F(LightSourceBinding, TheHandleKeepsTheLightUntilCollected) {
  osg::observer_ptr<osg::Light> light = node->getLight();
  EXPECT_EQ("", lua.run("handle = vyrOSG.LightSource(node) node = nil"));
  EXPECT_EQ(2, light->referenceCount());
  node = nullptr;
  ASSERT_TRUE(light.valid());
  EXPECT_EQ("5", lua.eval("handle:getLightNum()"));
  lua.run("handle = nil");
  lua.collect();
  EXPECT_FALSE(light.valid());
}

TEST_F(LightSourceBinding, VectorsReachTheLightInSinglePrecision) {
  lua.run("light = vyrOSG.LightSource(node)");
  const osg::Light* light = node->getLight();
  const osg::Vec4 expected(0.1f, 0.25f, 0.5f, 1);
  const vyr::Vec4 widened(0.1f, 0.25f, 0.5f, 1);
  for (const char* name : {"Ambient", "Diffuse", "Specular", "Position"}) {
    EXPECT_EQ("", lua.run(std::string("light:set") + name + "(vec4)")) << name;
    EXPECT_EQ("vyr::Vec4", lua.eval(std::string("light:get") + name + "()")) << name;
    EXPECT_EQ(widened, vector<vyr::Vec4>(std::string("light:get") + name + "()")) << name;
    EXPECT_NE(0.1, widened[0]);
    // Each call gives a copy of its own that Lua owns.
    EXPECT_EQ("false", lua.eval(std::string("rawequal(light:get") + name + "(), light:get" + name + "())")) << name;
  }
  EXPECT_EQ(expected, light->getAmbient());
  EXPECT_EQ(expected, light->getDiffuse());
  EXPECT_EQ(expected, light->getSpecular());
  EXPECT_EQ(expected, light->getPosition());
  EXPECT_EQ("", lua.run("light:setDirection(vec3)"));
  EXPECT_EQ(osg::Vec3(0.25f, 0.5f, -1), light->getDirection());
  EXPECT_EQ("vyr::Vec3", lua.eval("light:getDirection()"));
  EXPECT_EQ(vec3, vector<vyr::Vec3>("light:getDirection()"));
  lua.run("made = nil");
  EXPECT_EQ("1", ownedCount(lua, "light:getAmbient()"));
  EXPECT_EQ("1", ownedCount(lua, "light:getDirection()"));
}

TEST_F(LightSourceBinding, NumbersReachTheLight) {
  lua.run("light = vyrOSG.LightSource(node)");
  int value = 2;
  for (const char* name :
       {"ConstantAttenuation", "LinearAttenuation", "QuadraticAttenuation", "SpotExponent", "SpotCutoff"}) {
    const std::string number = std::to_string(value++);
    EXPECT_EQ(number, lua.run(std::string("light:set") + name + "(" + number + ") return light:get" + name + "()"))
        << name;
  }
  const osg::Light* light = node->getLight();
  EXPECT_EQ(2, light->getConstantAttenuation());
  EXPECT_EQ(3, light->getLinearAttenuation());
  EXPECT_EQ(4, light->getQuadraticAttenuation());
  EXPECT_EQ(5, light->getSpotExponent());
  EXPECT_EQ(6, light->getSpotCutoff());
}

TEST_F(LightSourceBinding, AHandleWithoutALightIsInert) {
  lua.run("light = vyrOSG.LightSource(nil)");
  for (const char* name : {"Ambient", "Diffuse", "Specular", "Position"}) {
    EXPECT_EQ("none", lua.raised(std::string("light:set") + name + "(vec4)")) << name;
    EXPECT_EQ(vyr::Vec4(0, 0, 0, 0), vector<vyr::Vec4>(std::string("light:get") + name + "()")) << name;
  }
  EXPECT_EQ("none", lua.raised("light:setDirection(vec3)"));
  EXPECT_EQ(vyr::Vec3(0, 0, 0), vector<vyr::Vec3>("light:getDirection()"));
  for (const char* name :
       {"ConstantAttenuation", "LinearAttenuation", "QuadraticAttenuation", "SpotExponent", "SpotCutoff"})
    EXPECT_EQ("0", lua.run(std::string("light:set") + name + "(7) return light:get" + name + "()")) << name;
  EXPECT_EQ("-1", lua.eval("light:getLightNum()"));
}

TEST_F(LightSourceBinding, WrongArgumentsAreNamed) {
  lua.run("light = vyrOSG.LightSource(node)");
  for (const char* name : {"setAmbient", "setDiffuse", "setSpecular", "setPosition"}) {
    EXPECT_EQ(mismatch(name), lua.raised(std::string("light:") + name + "(nil)"));
    EXPECT_EQ(mismatch(name), lua.raised(std::string("light:") + name + "(vec3)"));
    EXPECT_EQ("const vyr::Vec4", lastRaised().type);
  }
  EXPECT_EQ(mismatch("setDirection"), lua.raised("light:setDirection(nil)"));
  EXPECT_EQ(mismatch("setDirection"), lua.raised("light:setDirection(vec4)"));
  for (const char* name : {"setConstantAttenuation", "setLinearAttenuation", "setQuadraticAttenuation",
                           "setSpotExponent", "setSpotCutoff"})
    EXPECT_EQ(mismatch(name), lua.raised(std::string("light:") + name + "({})"));
  for (const char* name : {"getLightNum", "getAmbient", "getDiffuse", "getSpecular", "getPosition", "getDirection",
                           "getConstantAttenuation", "getLinearAttenuation", "getQuadraticAttenuation",
                           "getSpotExponent", "getSpotCutoff"})
    EXPECT_EQ(mismatch(name), lua.raised(std::string("light:") + name + "(1)"));
}

TEST_F(LightSourceBinding, NullSelfNamesTheMember) {
  bindingtest::giveNull(lua, "null", "vyrOSG::LightSource");
  for (const char* name : {"Ambient", "Diffuse", "Specular", "Position", "Direction", "ConstantAttenuation",
                           "LinearAttenuation", "QuadraticAttenuation", "SpotExponent", "SpotCutoff"}) {
    const std::string property = name;
    const bool isNumber = property.find("Atten") != std::string::npos || property.find("Spot") != std::string::npos;
    const char* argument = isNumber ? "(1)" : property == "Direction" ? "(vec3)" : "(vec4)";
    EXPECT_EQ(invalidSelf("set" + property), lua.raised("null:set" + property + argument));
    EXPECT_EQ(invalidSelf("get" + property), lua.raised("null:get" + property + "()"));
  }
  EXPECT_EQ(invalidSelf("getLightNum"), lua.raised("null:getLightNum()"));
}

// The base is registered although the handle is a plain value.
TEST_F(LightSourceBinding, PassesAsAReferencedObject) {
  tolua_Error error;
  lua.run("light = vyrOSG.LightSource(node)");
  lua_getglobal(lua.get(), "light");
  EXPECT_TRUE(tolua_isusertype(lua.get(), lua_gettop(lua.get()), "vyr::Referenced", 0, &error));
  EXPECT_EQ("function", lua.eval("type(vyrOSG.LightSource['.collector'])"));
}

} // namespace
