// State sets, uniforms and their callbacks in the mode in which every class that Lua constructs has a collector.
#include "GivenObjects.h"
#include "LuaState.h"

#include <osg/StateSet>
#include <osg/Uniform>
#include <osg/observer_ptr>

#include <gtest/gtest.h>

int tolua_vyrOSG_StateSet_open(lua_State* state);
int tolua_vyrOSG_Uniform_open(lua_State* state);

namespace {

class ExplicitState : public ::testing::Test {
protected:
  ExplicitState() {
    tolua_vyrOSG_StateSet_open(lua.get());
    tolua_vyrOSG_Uniform_open(lua.get());
  }
  bindingtest::LuaState lua;
};

TEST_F(ExplicitState, WhatNobodyHoldsDiesCompletely) {
  lua.run("set, uniform, callback = osg.StateSet(), osg.Uniform('u', 1), osg.Uniform.Callback()");
  osg::observer_ptr<osg::StateSet> set = bindingtest::taken<osg::StateSet>(lua, "set");
  osg::observer_ptr<osg::Uniform> uniform = bindingtest::taken<osg::Uniform>(lua, "uniform");
  osg::observer_ptr<osg::UniformCallback> callback = bindingtest::taken<osg::UniformCallback>(lua, "callback");
  EXPECT_EQ(1, set->referenceCount());
  EXPECT_EQ(1, uniform->referenceCount());
  EXPECT_EQ(1, callback->referenceCount());
  lua.run("set, uniform, callback = nil");
  lua.collect();
  EXPECT_FALSE(set.valid());
  EXPECT_FALSE(uniform.valid());
  EXPECT_FALSE(callback.valid());
}

// With the default collectors the first collection would free the uniform under the state set.
TEST_F(ExplicitState, AUniformOutlivesLuaInItsStateSet) {
  osg::ref_ptr<osg::StateSet> set = new osg::StateSet;
  bindingtest::give(lua, "set", set.get(), "osg::StateSet");
  lua.run(
      "local u = osg.Uniform(osg.Uniform.FLOAT, 'u') u:setUpdateCallback(osg.Uniform.Callback()) set:addUniform(u)");
  lua.close();
  osg::observer_ptr<osg::Uniform> uniform = set->getUniform("u");
  ASSERT_TRUE(uniform.valid());
  EXPECT_EQ(1, uniform->referenceCount());
  EXPECT_EQ(1, uniform->getUpdateCallback()->referenceCount());
  set = nullptr;
  EXPECT_FALSE(uniform.valid());
}

} // namespace
