/// The script plugin "vyr" in a Lua state: loading, opening its modules one by one, and the lifetime of callbacks.
#include <vyr/Notify.h>
#include <vyr/ref_ptr.h>
#include <vyrLua/ScriptManager.h>
#include <vyrSDK/Simulation.h>

#include <gtest/gtest.h>

#include <lua.hpp>
#include <tolua++.h>

#include <dlfcn.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace {

const char* const kPlugin = VYR_BINARY_DIR "/lib/vyr/plugins/libvyr_luaplugin.so";

std::vector<std::string> moduleNames() {
  std::ifstream list(VYR_SOURCE_DIR "/binding/vyr/modules.txt");
  std::vector<std::string> names;
  for (std::string line; std::getline(list, line);) {
    if (!line.empty() && line[0] != '#') {
      names.push_back(line);
    }
  }
  return names;
}

using OpenFunction = int (*)(lua_State*);

OpenFunction openFunction(const std::string& module) {
  const std::string name = "luaopen_vyr_" + module;
  void* const library = dlopen(kPlugin, RTLD_NOW);
  const std::string symbol = "_Z" + std::to_string(name.size()) + name + "P9lua_State";
  return library ? reinterpret_cast<OpenFunction>(dlsym(library, symbol.c_str())) : nullptr;
}

// Runs a piece of Lua; returns "" or the error's text.
std::string run(lua_State* L, const std::string& code) {
  if (luaL_dostring(L, code.c_str()) == 0) {
    return "";
  }
  const std::string text = lua_tostring(L, -1) ? lua_tostring(L, -1) : "?";
  lua_pop(L, 1);
  return text;
}

class Messages : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel, const std::string& text) override { texts.push_back(text); }
  std::vector<std::string> texts;
};

/// A manager with the plugin loaded, and the messages that appear meanwhile.
class VyrPlugin : public testing::Test {
protected:
  void SetUp() override {
    vyr::Notify::instance()->addSink(m_messages.get());
    m_manager = vyrLua::ScriptManager::instance(true);
    m_manager->addSearchPath(VYR_BINARY_DIR "/lib/vyr/plugins");
    ASSERT_TRUE(m_manager->requestScriptPlugin("vyr"));
    m_state = m_manager->getLuaState();
    luaL_openlibs(m_state);
  }
  void TearDown() override {
    vyrLua::ScriptManager::shutdown();
    vyr::Notify::instance()->removeSink(m_messages.get());
  }

  vyr::ref_ptr<Messages> m_messages = new Messages;
  vyrLua::ScriptManager* m_manager = nullptr;
  lua_State* m_state = nullptr;
};

TEST_F(VyrPlugin, LoadsUnderItsName) {
  ASSERT_NE(m_manager->getScriptPlugin("vyr"), nullptr);
  EXPECT_EQ(m_manager->getScriptPlugin("vyr")->getName(), "vyr");
  EXPECT_TRUE(m_messages->texts.empty()) << m_messages->texts.front();
}

TEST_F(VyrPlugin, RegistersItsTables) {
  for (const char* const table : {"vyr", "vyrIO", "vyrRender", "vyrCollide", "vyrSDK", "osg"}) {
    EXPECT_EQ(run(m_state, std::string("assert(type(") + table + ") == 'table')"), "") << table;
  }
}

TEST_F(VyrPlugin, ValuesOfBothNamesOfAVectorPassForEachOther) {
  ASSERT_EQ(run(m_state, "short, long = vyr.Vec3(1, 2, 3), vyr.Vec3d(1, 2, 3)"), "");
  tolua_Error error;
  for (const char* const name : {"short", "long"}) {
    lua_getglobal(m_state, name);
    for (const char* const type : {"vyr::Vec3", "vyr::Vec3d", "const vyr::Vec3", "const vyr::Vec3d"}) {
      EXPECT_TRUE(tolua_isusertype(m_state, lua_gettop(m_state), type, 0, &error)) << name << " as " << type;
    }
    EXPECT_FALSE(tolua_isusertype(m_state, lua_gettop(m_state), "vyr::Vec3f", 0, &error)) << name;
    lua_pop(m_state, 1);
  }
}

TEST_F(VyrPlugin, ReadOnlyValuesPrintCompareAndMultiply) {
  vyr::Vec3 inner(1, 2, 3);
  tolua_pushusertype(m_state, &inner, "const vyr::Vec3");
  lua_setglobal(m_state, "inner");
  EXPECT_EQ(run(m_state, "assert(tostring(inner) == '(1, 2, 3)', tostring(inner))"), "");
  EXPECT_EQ(run(m_state, "assert(inner == vyr.Vec3(1, 2, 3))"), "");
  EXPECT_EQ(run(m_state, "assert(2 * inner == vyr.Vec3(2, 4, 6))"), "");
  EXPECT_EQ(run(m_state, "assert(-inner == vyr.Vec3(-1, -2, -3))"), "");
}

TEST_F(VyrPlugin, AnErrorInAListenerIsReportedOnceWithItsTraceback) {
  EXPECT_EQ(run(m_state, "sim = vyrSDK.Simulation()\n"
                         "local function inner() error('on purpose') end\n"
                         "sim:add(vyrSDK.StepEventListener{ post = function() inner() end })\n"
                         "for i = 1, 3 do assert(sim:step()) end"),
            "");
  ASSERT_EQ(m_messages->texts.size(), 1u);
  EXPECT_NE(m_messages->texts[0].find("error in post"), std::string::npos) << m_messages->texts[0];
  EXPECT_NE(m_messages->texts[0].find("on purpose"), std::string::npos) << m_messages->texts[0];
  EXPECT_NE(m_messages->texts[0].find("stack traceback"), std::string::npos) << m_messages->texts[0];
  EXPECT_NE(m_messages->texts[0].find("inner"), std::string::npos) << m_messages->texts[0];
}

TEST_F(VyrPlugin, AnErrorInAGeometryFactoryIsReportedOnceWithItsTraceback) {
  run(m_state, "local function inner() error('on purpose') end\n"
               "sim, emitter = vyrSDK.Simulation(), vyr.RigidBodyEmitter()\n"
               "emitter:setRate(600)\n"
               "sim:add(emitter)\n"
               "emitter:setGeometryFactory(function() inner() return nil end)\n"
               "sim:step() sim:step()\n");
  ASSERT_EQ(m_messages->texts.size(), 1u);
  for (const char* part : {"error in geometry factory", "on purpose", "stack traceback", "inner"})
    EXPECT_NE(m_messages->texts[0].find(part), std::string::npos) << m_messages->texts[0];
  run(m_state, "emitter:setName('gravel') emitter:setGeometryFactory(function() return 7 end) sim:step() sim:step()");
  ASSERT_EQ(m_messages->texts.size(), 2u);
  EXPECT_NE(m_messages->texts[1].find("'gravel' returned a number instead of a geometry"), std::string::npos);
  run(m_state, "emitter:setGeometryFactory(7)");
  ASSERT_EQ(m_messages->texts.size(), 3u);
  EXPECT_NE(m_messages->texts[2].find("is a number, not a function"), std::string::npos);
}

TEST_F(VyrPlugin, AGeometryFactoryOutlivesItsLuaState) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  tolua_pushusertype(m_state, simulation.get(), "vyrSDK::Simulation");
  lua_setglobal(m_state, "sim");
  EXPECT_EQ(run(m_state, "local emitter = vyr.RigidBodyEmitter()\n"
                         "emitter:setRate(60)\n"
                         "emitter:setGeometryFactory(function(index, random)\n"
                         "  return vyrCollide.Geometry(vyrCollide.Sphere(0.1 + random()))\n"
                         "end)\n"
                         "sim:add(emitter)"),
            "");
  simulation->step();
  EXPECT_EQ(simulation->getRigidBodies().size(), 1u);
  vyrLua::ScriptManager::shutdown();
  // Nobody is left who could make a geometry.
  simulation->step();
  EXPECT_EQ(simulation->getRigidBodies().size(), 1u);
  EXPECT_TRUE(m_messages->texts.empty());
}

TEST_F(VyrPlugin, AnErrorThatIsNoStringIsReported) {
  EXPECT_EQ(run(m_state, "sim = vyrSDK.Simulation()\n"
                         "sim:add(vyrSDK.StepEventListener{ pre = function() error({}) end })\n"
                         "sim:step()"),
            "");
  ASSERT_EQ(m_messages->texts.size(), 1u);
  EXPECT_NE(m_messages->texts[0].find("error value of type table"), std::string::npos) << m_messages->texts[0];
}

// The simulation may be held by C++ when the script is long gone; the plugin's code stays in the process for that.
TEST_F(VyrPlugin, AListenerOutlivesItsLuaState) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  tolua_pushusertype(m_state, simulation.get(), "vyrSDK::Simulation");
  lua_setglobal(m_state, "sim");
  EXPECT_EQ(run(m_state, "calls = 0; sim:add(vyrSDK.StepEventListener{ post = function() calls = calls + 1 end })"),
            "");
  EXPECT_TRUE(simulation->step());
  EXPECT_EQ(run(m_state, "assert(calls == 1)"), "");
  vyr::ref_ptr<vyrSDK::StepEventListener> listener = simulation->getStepEventListeners().front();

  vyrLua::ScriptManager::shutdown();
  EXPECT_TRUE(simulation->step());
  EXPECT_TRUE(simulation->remove(listener.get()));
  EXPECT_EQ(listener->getReferenceCount(), 1);
}

TEST_F(VyrPlugin, GuiListenersGetEventsAndSayWhetherTheyUsedThem) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  tolua_pushusertype(m_state, simulation.get(), "vyrSDK::Simulation");
  lua_setglobal(m_state, "sim");
  EXPECT_EQ(run(m_state, "sim:add(vyrSDK.GuiEventListener{\n"
                         "  keyboard = function(key, modifiers, x, y, down)\n"
                         "    seen = string.format('%d %d %g %g %s', key, modifiers, x, y, tostring(down))\n"
                         "    return key == 65\n"
                         "  end,\n"
                         "  update = function(x, y) updated = x + y end })"),
            "");
  EXPECT_TRUE(simulation->keyboard(65, 1, 2.5f, 3, true));
  EXPECT_EQ(run(m_state, "assert(seen == '65 1 2.5 3 true', seen)"), "");
  EXPECT_FALSE(simulation->keyboard(66, 0, 0, 0, false));
  EXPECT_FALSE(simulation->mouse(1, 0, 0, true));
  simulation->updateGui(1, 2);
  EXPECT_EQ(run(m_state, "assert(updated == 3)"), "");
}

TEST_F(VyrPlugin, AFieldThatIsNoFunctionIsReported) {
  EXPECT_EQ(run(m_state, "vyrSDK.StepEventListener{ post = 7 }"), "");
  ASSERT_EQ(m_messages->texts.size(), 1u);
  EXPECT_NE(m_messages->texts[0].find("post is a number"), std::string::npos) << m_messages->texts[0];
}

class VyrPluginModules : public testing::TestWithParam<std::string> {};

TEST_P(VyrPluginModules, OpensAloneAndTwiceInAFreshState) {
  const OpenFunction open = openFunction(GetParam());
  ASSERT_NE(open, nullptr);
  lua_State* const L = luaL_newstate();
  luaL_openlibs(L);
  EXPECT_EQ(open(L), 1);
  EXPECT_EQ(open(L), 1);
  lua_close(L);
}

INSTANTIATE_TEST_SUITE_P(All, VyrPluginModules, testing::ValuesIn(moduleNames()),
                         [](const auto& module) { return module.param; });

TEST(VyrPluginModuleOrder, AnyOrderOpens) {
  std::vector<std::string> names = moduleNames();
  std::reverse(names.begin(), names.end());
  lua_State* const L = luaL_newstate();
  luaL_openlibs(L);
  for (const std::string& name : names) {
    const OpenFunction open = openFunction(name);
    ASSERT_NE(open, nullptr) << name;
    open(L);
  }
  EXPECT_EQ(run(L, "assert(vyrSDK.Simulation():step())"), "");
  lua_close(L);
}

} // namespace
