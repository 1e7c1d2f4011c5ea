/// The script plugin "vyrModel": opens the modules of the models built on the physics.
#include <vyrLua/ScriptManager.h>

#include <vyr/ref_ptr.h>

#include <vyrModel_modules.h>

#include <string>

namespace {

/// Opens every module that binding/vyrModel/modules.txt lists.
class LuaPluginVyrModel : public vyrLua::ScriptManager::ScriptPlugin {
public:
  LuaPluginVyrModel() { m_requiredPlugins.push_back("vyr"); }

  std::string getName() override { return "vyrModel"; }

  void init(lua_State* L) override {
    for (const auto& module : vyrModelModules::kModules) {
      module.open(L);
    }
  }

  void close() override {}

protected:
  ~LuaPluginVyrModel() override = default;
};

vyr::ref_ptr<LuaPluginVyrModel> g_plugin;

} // namespace

/// The entry point that the script manager looks for.
extern "C" __attribute__((visibility("default"))) void initPlugin(vyrLua::ScriptManager* manager) {
  if (manager == nullptr) {
    return;
  }
  g_plugin = new LuaPluginVyrModel;
  manager->startScriptPlugin(g_plugin.get(), "1.0");
}
