// What a script meets when an object dies that it still points at.
#include <vyrLua/ObjectRetirer.h>
#include <vyrLua/ProtectedCall.h>
#include <vyrLua/ScriptManager.h>

#include <vyr/ref_ptr.h>

#include <tolua++.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace {

using testing::HasSubstr;
using vyrLua::ScriptManager;

int s_alive = 0;

class Wheel : public vyr::Referenced {
public:
  Wheel() { ++s_alive; }

protected:
  ~Wheel() override { --s_alive; }
};

struct Named {
  virtual ~Named() = default;
  int name = 0;
};

/// Its count does not stand at its beginning.
class Axle : public Named, public vyr::Referenced {
public:
  Axle() { ++s_alive; }

protected:
  ~Axle() override { --s_alive; }
};

int spokes(lua_State* state) {
  tolua_Error record;
  if (!tolua_isusertype(state, 1, "Wheel", 0, &record))
    tolua_error(state, "#ferror in function 'spokes'.", &record);
  lua_pushnumber(state, 12);
  return 1;
}

int collectWheel(lua_State* state) {
  const Wheel* wheel = static_cast<const Wheel*>(tolua_tousertype(state, 1, nullptr));
  if (wheel != nullptr && wheel->getReferenceCount() > 0)
    wheel->unref();
  return 0;
}

class ObjectRetirer : public testing::Test {
protected:
  ObjectRetirer()
      : m_state(ScriptManager::instance(true)->getLuaState()) {
    s_alive = 0;
    tolua_usertype(m_state, "Wheel");
    tolua_usertype(m_state, "Axle");
    tolua_module(m_state, nullptr, 0);
    tolua_beginmodule(m_state, nullptr);
    tolua_cclass(m_state, "Wheel", "Wheel", "", &collectWheel);
    tolua_beginmodule(m_state, "Wheel");
    tolua_function(m_state, "spokes", &spokes);
    tolua_endmodule(m_state);
    tolua_cclass(m_state, "Axle", "Axle", "", nullptr);
    tolua_endmodule(m_state);
    ScriptManager::instance(true)->getObjectRetirer();
  }
  ~ObjectRetirer() override {
    ScriptManager::shutdown();
    EXPECT_EQ(nullptr, vyr::Referenced::getDeleteHandler());
    EXPECT_EQ(0, s_alive);
  }

  void setGlobal(const char* name, void* object, const char* type) {
    tolua_pushusertype(m_state, object, type);
    lua_setglobal(m_state, name);
  }

  std::string run(const std::string& chunk) {
    if (luaL_loadstring(m_state, chunk.c_str()) == 0)
      vyrLua::protectedCall(m_state, 0, 1, 0);
    lua_getglobal(m_state, "tostring");
    lua_insert(m_state, -2);
    lua_call(m_state, 1, 1);
    const std::string result = lua_tostring(m_state, -1);
    lua_settop(m_state, 0);
    return result;
  }

  lua_State* m_state;
};

TEST_F(ObjectRetirer, UseOfADeletedObjectIsAnError) {
  vyr::ref_ptr<Wheel> wheel = new Wheel;
  setGlobal("w", wheel.get(), "Wheel");
  EXPECT_EQ("12", run("return w:spokes()"));
  wheel = nullptr;
  EXPECT_EQ(0, s_alive);
  for (const char* use : {"return w:spokes()", "w.x = 1", "return w + 1", "return w()", "return #w", "return w < w"})
    EXPECT_THAT(run(use), HasSubstr("attempt to use a deleted Wheel")) << use;
  EXPECT_EQ("[string \"return w:spokes()\"]:1: attempt to use a deleted Wheel", run("return w:spokes()"));
  EXPECT_EQ("deleted Wheel", run("return w"));
  EXPECT_EQ("deleted Wheel", run("return tolua.type(w)"));
}

TEST_F(ObjectRetirer, DeletedObjectIsNoArgument) {
  vyr::ref_ptr<Wheel> wheel = new Wheel;
  setGlobal("w", wheel.get(), "Wheel");
  wheel = nullptr;
  EXPECT_THAT(run("return Wheel.spokes(w)"), HasSubstr("argument #1 is 'deleted Wheel'; 'Wheel' expected."));
}

TEST_F(ObjectRetirer, CollectionDoesNotReleaseADeletedObject) {
  Wheel* wheel = new Wheel;
  setGlobal("w", wheel, "Wheel");
  lua_getglobal(m_state, "w");
  tolua_register_gc(m_state, 1);
  lua_settop(m_state, 0);
  wheel->ref();
  wheel->unref();
  EXPECT_EQ(0, s_alive);
  EXPECT_EQ("nil", run("w = nil collectgarbage() collectgarbage()"));
}

TEST_F(ObjectRetirer, CollectedObjectDiesOnce) {
  Wheel* wheel = new Wheel;
  wheel->ref();
  setGlobal("w", wheel, "Wheel");
  lua_getglobal(m_state, "w");
  tolua_register_gc(m_state, 1);
  lua_settop(m_state, 0);
  EXPECT_EQ("nil", run("w = nil collectgarbage() collectgarbage()"));
  EXPECT_EQ(0, s_alive);
}

TEST_F(ObjectRetirer, OtherObjectsStayAsTheyAre) {
  vyr::ref_ptr<Wheel> first = new Wheel;
  vyr::ref_ptr<Wheel> second = new Wheel;
  setGlobal("w", first.get(), "Wheel");
  setGlobal("v", second.get(), "Wheel");
  first = nullptr;
  EXPECT_EQ("12", run("return v:spokes()"));
  // A new object at the old address is a new value.
  setGlobal("u", second.get(), "Wheel");
  EXPECT_EQ("true", run("return u == v"));
}

TEST_F(ObjectRetirer, FindsObjectsWhoseCountStandsElsewhere) {
  vyr::ref_ptr<Axle> axle = new Axle;
  ASSERT_NE(static_cast<void*>(axle.get()), static_cast<void*>(static_cast<vyr::Referenced*>(axle.get())));
  setGlobal("a", axle.get(), "Axle");
  axle = nullptr;
  EXPECT_EQ("deleted Axle", run("return a"));
}

TEST_F(ObjectRetirer, TypesOfLaterPluginsCountToo) {
  tolua_usertype(m_state, "Hub");
  tolua_module(m_state, nullptr, 0);
  tolua_beginmodule(m_state, nullptr);
  tolua_cclass(m_state, "Hub", "Hub", "", nullptr);
  tolua_endmodule(m_state);
  ScriptManager::instance(true)->getObjectRetirer()->refresh();
  vyr::ref_ptr<Wheel> wheel = new Wheel;
  setGlobal("h", wheel.get(), "Hub");
  wheel = nullptr;
  EXPECT_EQ("deleted Hub", run("return h"));
}

TEST_F(ObjectRetirer, OtherThreadsLeaveTheirObjectsToTheLuaThread) {
  vyr::ref_ptr<Wheel> wheel = new Wheel;
  setGlobal("w", wheel.get(), "Wheel");
  std::thread([&wheel] { wheel = nullptr; }).join();
  EXPECT_EQ(1, s_alive);
  EXPECT_EQ("12", run("return w:spokes()"));
  ScriptManager::instance(true)->getObjectRetirer()->flush();
  EXPECT_EQ(0, s_alive);
  EXPECT_EQ("deleted Wheel", run("return w"));
}

TEST_F(ObjectRetirer, ObjectsThatDieWithTheStateDieOnce) {
  Wheel* wheel = new Wheel;
  wheel->ref();
  setGlobal("w", wheel, "Wheel");
  lua_getglobal(m_state, "w");
  tolua_register_gc(m_state, 1);
  ScriptManager::shutdown();
  EXPECT_EQ(0, s_alive);
}

TEST_F(ObjectRetirer, OutlivesTheStateAndRetiresNothing) {
  const std::shared_ptr<vyrLua::ObjectRetirer> retirer = ScriptManager::instance(true)->getObjectRetirer();
  ScriptManager::shutdown();
  vyr::ref_ptr<Wheel> wheel = new Wheel;
  retirer->retire(wheel.get());
  EXPECT_EQ(nullptr, vyr::Referenced::getDeleteHandler());
}

} // namespace
