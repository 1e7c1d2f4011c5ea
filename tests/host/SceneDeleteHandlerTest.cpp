// Objects of the scene graph that die while a script points at them.
#include "SceneDeleteHandler.h"

#include <vyrLua/ObjectRetirer.h>
#include <vyrLua/ScriptManager.h>

#include <tolua++.h>

#include <osg/DeleteHandler>
#include <osg/Group>
#include <osg/Referenced>
#include <osg/observer_ptr>

#include <gtest/gtest.h>

#include <thread>

namespace {

using vyrLua::ScriptManager;

class SceneDeleteHandler : public testing::Test {
protected:
  SceneDeleteHandler()
      : m_state(ScriptManager::instance(true)->getLuaState()) {
    tolua_usertype(m_state, "osg::Node");
    tolua_module(m_state, nullptr, 0);
    tolua_beginmodule(m_state, nullptr);
    tolua_cclass(m_state, "Node", "osg::Node", "", nullptr);
    tolua_endmodule(m_state);
    vyrHost::installSceneDeleteHandler(ScriptManager::instance(true)->getObjectRetirer());
  }
  ~SceneDeleteHandler() override {
    ScriptManager::shutdown();
    vyrHost::removeSceneDeleteHandler();
    EXPECT_EQ(nullptr, osg::Referenced::getDeleteHandler());
  }

  void setGlobal(osg::Node* node) {
    tolua_pushusertype(m_state, node, "osg::Node");
    lua_setglobal(m_state, "n");
  }

  std::string describe() {
    EXPECT_EQ(0, luaL_dostring(m_state, "return tostring(n)"));
    const std::string text = lua_tostring(m_state, -1);
    lua_settop(m_state, 0);
    return text;
  }

  lua_State* m_state;
};

TEST_F(SceneDeleteHandler, NodeRetiresWithItsParent) {
  osg::ref_ptr<osg::Group> root = new osg::Group;
  osg::observer_ptr<osg::Node> child = new osg::Node;
  root->addChild(child.get());
  setGlobal(child.get());
  EXPECT_NE("deleted osg::Node", describe());
  root = nullptr;
  EXPECT_FALSE(child.valid());
  EXPECT_EQ("deleted osg::Node", describe());
}

TEST_F(SceneDeleteHandler, NodeOfAnotherThreadWaitsForTheLuaThread) {
  osg::ref_ptr<osg::Node> node = new osg::Node;
  setGlobal(node.get());
  std::thread([&node] { node = nullptr; }).join();
  EXPECT_NE("deleted osg::Node", describe());
  osg::Referenced::getDeleteHandler()->flush();
  EXPECT_EQ("deleted osg::Node", describe());
}

} // namespace
