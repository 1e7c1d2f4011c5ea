/// The script plugin "vyr": opens its modules and completes what declarations cannot say.
#include "LuaPluginVyr.h"

#include "ValueTypes.h"

#include <vyr/ref_ptr.h>

#include <vyr_modules.h>

namespace {

vyr::ref_ptr<LuaPluginVyr> g_plugin;

} // namespace

std::string LuaPluginVyr::getName() {
  return "vyr";
}

void LuaPluginVyr::init(lua_State* L) {
  for (const auto& module : vyrModules::kModules) {
    module.open(L);
  }
  vyrScript::completeValueTypes(L);
}

void LuaPluginVyr::close() {}

/// The entry point that the script manager looks for.
extern "C" __attribute__((visibility("default"))) void initPlugin(vyrLua::ScriptManager* manager) {
  if (manager == nullptr) {
    return;
  }
  g_plugin = new LuaPluginVyr;
  manager->startScriptPlugin(g_plugin.get(), "1.0");
}
