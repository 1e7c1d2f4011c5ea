// A script plugin that writes down in which order its parts go.
#include <vyrLua/ScriptManager.h>

#include <tolua++.h>

namespace {

using Events = std::vector<std::string>;

Events* s_events = nullptr;

void record(const char* event) {
  if (s_events != nullptr)
    s_events->push_back(event);
}

int collect(lua_State*) {
  record("collect");
  return 0;
}

class Plugin : public vyrLua::ScriptManager::ScriptPlugin {
public:
  std::string getName() override { return PLUGIN_NAME; }
  void init(lua_State* state) override {
    lua_getglobal(state, "events");
    s_events = static_cast<Events*>(lua_touserdata(state, -1));
    lua_pop(state, 1);
    lua_newuserdata(state, 1);
    lua_newtable(state);
    lua_pushcfunction(state, &collect);
    lua_setfield(state, -2, "__gc");
    lua_setmetatable(state, -2);
    lua_setglobal(state, "collected");
  }
  void close() override { record("close"); }

protected:
  ~Plugin() override { record("destroy"); }
};

__attribute__((destructor)) void unload() {
  record("unload");
}

} // namespace

extern "C" __attribute__((visibility("default"))) void initPlugin(vyrLua::ScriptManager* manager) {
  manager->startScriptPlugin(new Plugin, "1.0");
}
