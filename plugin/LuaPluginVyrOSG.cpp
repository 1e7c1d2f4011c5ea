// The plugin object and the entry point that the script manager calls.
#include "LuaPluginVyrOSG.h"

#include <vyrOSG_modules.h>

#include <vyr/Notify.h>

#include <ostream>

#define VYROSG_PLUGIN_EXPORT __attribute__((visibility("default")))

namespace {

constexpr const char* kVersion = "1.0";

/// Writes one message in the form that all messages of this plugin have.
template <class Text>
void notify(vyr::NotifyLevel level, const Text& text) {
  vyr::Notify* channel = vyr::Notify::instance();
  const std::string prefix = channel->setDebugStrings(level, "", -1, "");
  channel->getThreadStringStream() << prefix << text << channel->end();
}

} // namespace

/// Holds the one plugin object; the manager holds another reference. Nullable: null until initPlugin ran.
VYROSG_PLUGIN_EXPORT extern vyr::ref_ptr<vyrLua::ScriptManager::ScriptPlugin> g_luavyr_vyrosg_plugin;
vyr::ref_ptr<vyrLua::ScriptManager::ScriptPlugin> g_luavyr_vyrosg_plugin;

LuaPluginVyrOSG::LuaPluginVyrOSG() {
  vyr::Notify* channel = vyr::Notify::instance();
  const std::string prefix = channel->setDebugStrings(vyr::NOTIFY_DEBUG, "", -1, "");
  channel->getThreadStringStream() << prefix << "LuaPluginVyrOSG::LuaPluginVyrOSG(): " << __DATE__ << ' ' << __TIME__
                                   << std::endl
                                   << channel->end();
  m_requiredPlugins.push_back("vyr");
  m_requiredPlugins.push_back("vyrModel");
}

LuaPluginVyrOSG::~LuaPluginVyrOSG() = default;

std::string LuaPluginVyrOSG::getName() {
  return "vyrOSG";
}

void LuaPluginVyrOSG::init(lua_State* state) {
  for (const vyrOSGModules::Module& module : vyrOSGModules::kModules) {
    module.open(state);
  }
  addGlobals();
}

void LuaPluginVyrOSG::close() {}

void LuaPluginVyrOSG::addGlobals() {}

/// Starts the plugin up. Neither another version nor a missing requirement stops it: scripts that need neither still
/// run. Nullable: manager; nothing happens without one.
extern "C" VYROSG_PLUGIN_EXPORT void initPlugin(vyrLua::ScriptManager* manager) {
  if (manager == nullptr) {
    return;
  }
  LuaPluginVyrOSG* plugin = new LuaPluginVyrOSG;
  g_luavyr_vyrosg_plugin = plugin;
  if (manager->m_version != kVersion) {
    notify(vyr::NOTIFY_ERROR, std::string("Plugin version (") + kVersion + ") does not match required version (" +
                                  manager->m_version + ")");
  }
  for (const std::string& name : plugin->getRequiredPlugins()) {
    if (!manager->requestScriptPlugin(name)) {
      notify(vyr::NOTIFY_ERROR, "Error loading plugin: " + name);
    }
  }
  static_cast<vyrLua::ScriptManager::ScriptPlugin*>(plugin)->init(manager->m_state);
  manager->addScriptPlugin(plugin);
}
