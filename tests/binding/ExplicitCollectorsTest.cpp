// The modules Node and Shape in the mode in which every class that Lua constructs has a collector and a reference.
#include "LuaState.h"

#include <osg/Geode>
#include <osg/Group>
#include <osg/MatrixTransform>

#include <gtest/gtest.h>

int tolua_vyrOSG_Node_open(lua_State* state);
int tolua_vyrOSG_Shape_open(lua_State* state);

namespace {

/// Tells of the death of the node that it is attached to.
class Witness : public osg::Referenced {
public:
  explicit Witness(bool& dead)
      : m_dead(dead) {}

protected:
  ~Witness() override { m_dead = true; }

private:
  bool& m_dead;
};

class ExplicitCollectors : public ::testing::TestWithParam<const char*> {
protected:
  ExplicitCollectors() {
    tolua_vyrOSG_Node_open(lua.get());
    tolua_vyrOSG_Shape_open(lua.get());
  }

  osg::Node* make() {
    lua.run(std::string("n = ") + GetParam() + "()");
    lua_getglobal(lua.get(), "n");
    osg::Node* node = static_cast<osg::Node*>(tolua_tousertype(lua.get(), -1, nullptr));
    lua_pop(lua.get(), 1);
    return node;
  }

  bindingtest::LuaState lua;
};

TEST_P(ExplicitCollectors, ANodeThatNobodyHoldsDiesCompletely) {
  osg::Node* node = make();
  ASSERT_NE(nullptr, node);
  EXPECT_EQ(1, node->referenceCount());
  bool dead = false;
  node->setUserData(new Witness(dead));
  lua.run("n = nil");
  lua.collect();
  EXPECT_TRUE(dead);
}

TEST_P(ExplicitCollectors, ANodeInASceneOutlivesLua) {
  osg::ref_ptr<osg::Group> scene = new osg::Group;
  osg::Node* node = make();
  bool dead = false;
  node->setUserData(new Witness(dead));
  scene->addChild(node);
  lua.close();
  EXPECT_FALSE(dead);
  EXPECT_EQ(1, node->referenceCount());
  scene = nullptr;
  EXPECT_TRUE(dead);
}

INSTANTIATE_TEST_SUITE_P(Classes, ExplicitCollectors,
                         ::testing::Values("osg.Node", "osg.Group", "osg.MatrixTransform", "osg.Transform", "osg.Geode",
                                           "vyrOSG.Node", "vyrOSG.Group", "vyrOSG.Transform"));

TEST(ExplicitCollectorsShape, HeightFieldsCarryLuasReference) {
  bindingtest::LuaState lua;
  tolua_vyrOSG_Shape_open(lua.get());
  EXPECT_EQ("function", lua.eval("type(rawget(osg.HeightField, '.collector'))"));
  lua.run("h = osg.HeightField()");
  lua_getglobal(lua.get(), "h");
  EXPECT_EQ(1, static_cast<osg::Referenced*>(static_cast<osg::Shape*>(tolua_tousertype(lua.get(), -1, nullptr)))
                   ->referenceCount());
  lua_pop(lua.get(), 1);
}

} // namespace
