// A script plugin whose name, version and requirement are given at compile time.
#include <vyrLua/ScriptManager.h>

#include <tolua++.h>

#ifndef PLUGIN_VERSION
#define PLUGIN_VERSION "1.0"
#endif
#ifndef PLUGIN_GIVEN_NAME
#define PLUGIN_GIVEN_NAME PLUGIN_NAME
#endif

namespace {

class Plugin : public vyrLua::ScriptManager::ScriptPlugin {
public:
  Plugin() {
#ifdef PLUGIN_REQUIREMENT
    m_requiredPlugins.push_back(PLUGIN_REQUIREMENT);
#endif
  }
  std::string getName() override {
    return PLUGIN_GIVEN_NAME;
  }
  void init(lua_State* state) override {
    // The order of loading, for the test to read.
    lua_getglobal(state, "loaded");
    lua_pushstring(state, lua_isnil(state, -1) ? "" : lua_tostring(state, -1));
    lua_pushstring(state, PLUGIN_NAME " ");
    lua_concat(state, 2);
    lua_setglobal(state, "loaded");
    lua_pop(state, 1);
  }
  void close() override {}
};

} // namespace

extern "C" __attribute__((visibility("default"))) void initPlugin(vyrLua::ScriptManager* manager) {
  manager->startScriptPlugin(new Plugin, PLUGIN_VERSION);
}
