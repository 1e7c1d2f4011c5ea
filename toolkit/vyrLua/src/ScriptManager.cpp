// Owns the Lua state and the script plugins that fill it.
#include <vyrLua/ScriptManager.h>

#include <vyrLua/ObjectRetirer.h>
#include <vyrLua/ProtectedCall.h>

#include "PluginLibrary.h"
#include "PluginSearchPath.h"

#include <vyr/Notify.h>

#include <tolua++.h>

extern "C" {
#include <lualib.h>
}

#include <algorithm>

namespace vyrLua {

namespace {

constexpr const char* kVersion = "1.0";

ScriptManager* s_instance = nullptr;

template <class List>
std::string joined(const List& list, const char* separator) {
  std::string text;
  for (const std::string& entry : list)
    text += (text.empty() ? "" : separator) + entry;
  return text;
}

} // namespace

ScriptManager* ScriptManager::instance(bool create) {
  if (s_instance == nullptr && create)
    s_instance = new ScriptManager;
  return s_instance;
}

void ScriptManager::shutdown() {
  delete s_instance;
  s_instance = nullptr;
}

ScriptManager::ScriptManager()
    : m_version(kVersion)
    , m_state(luaL_newstate()) {
  if (m_state == nullptr)
    throw std::bad_alloc();
  luaL_openlibs(m_state);
  tolua_open(m_state);
  openProtectedCalls(m_state);
}

ScriptManager::~ScriptManager() {
  for (auto entry = m_plugins.rbegin(); entry != m_plugins.rend(); ++entry)
    entry->plugin->close();
  lua_close(m_state);
  m_state = nullptr;
  if (m_retirer)
    m_retirer->stop();
  while (!m_plugins.empty())
    m_plugins.pop_back();
  while (!m_libraries.empty())
    m_libraries.pop_back();
}

bool ScriptManager::requestScriptPlugin(const std::string& name) {
  if (getScriptPlugin(name) != nullptr)
    return true;
  if (reportCycle(name))
    return false;
  m_loading.push_back(name);
  const bool loaded = loadPlugin(name);
  m_loading.pop_back();
  return loaded;
}

bool ScriptManager::reportCycle(const std::string& name) const {
  const auto first = std::find(m_loading.begin(), m_loading.end(), name);
  if (first == m_loading.end())
    return false;
  const std::vector<std::string> cycle(first, m_loading.end());
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Script plugin '" << name << "': its requirements form a cycle ("
                                << joined(cycle, " -> ") << " -> " << name << ")";
  return true;
}

bool ScriptManager::loadPlugin(const std::string& name) {
  const std::vector<std::string> directories = getSearchPaths();
  const std::string file = findPluginFile(directories, name);
  if (file.empty()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Script plugin '" << name << "': no file " << pluginFileName(name) << " in "
                                  << joined(directories, ", ") << " (set VYR_PLUGIN_PATH to search elsewhere)";
    return false;
  }
  auto library = std::make_unique<PluginLibrary>(file);
  if (!library->isOpen()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Script plugin '" << name << "': cannot load " << file << ": "
                                  << library->getError();
    return false;
  }
  const PluginLibrary::EntryPoint start = library->getEntryPoint();
  if (start == nullptr) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Script plugin '" << name << "': " << file << " has no entry point initPlugin";
    return false;
  }
  // The library stays open from here on, whatever comes: what the plugin registered points into it.
  m_libraries.push_back(std::move(library));
  start(this);
  const auto added =
      std::find_if(m_plugins.begin(), m_plugins.end(), [&](const LoadedPlugin& p) { return p.name == name; });
  if (added == m_plugins.end()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Script plugin '" << name << "': " << file << " added no plugin of that name";
    return false;
  }
  added->file = file;
  reportMissingRequirements(*added->plugin);
  return true;
}

void ScriptManager::reportMissingRequirements(ScriptPlugin& plugin) const {
  for (const std::string& required : plugin.getRequiredPlugins())
    if (getScriptPlugin(required) == nullptr)
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Script plugin '" << plugin.getName() << "' requires script plugin '" << required
                                    << "', which is not loaded";
}

void ScriptManager::addScriptPlugin(ScriptPlugin* plugin) {
  if (plugin == nullptr) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "ScriptManager::addScriptPlugin: the plugin is null";
    return;
  }
  if (m_retirer)
    m_retirer->refresh();
  const std::string name = plugin->getName();
  for (LoadedPlugin& entry : m_plugins) {
    if (entry.name == name) {
      entry.plugin = plugin;
      return;
    }
  }
  m_plugins.push_back(LoadedPlugin{name, {}, plugin});
}

void ScriptManager::startScriptPlugin(ScriptPlugin* plugin, const std::string& version) {
  if (plugin == nullptr) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "ScriptManager::startScriptPlugin: the plugin is null";
    return;
  }
  const vyr::ref_ptr<ScriptPlugin> held = plugin;
  if (m_version != version)
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Plugin version (" << version << ") does not match required version (" << m_version
                                  << ")";
  for (const std::string& required : plugin->getRequiredPlugins())
    if (!requestScriptPlugin(required))
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Error loading plugin: " << required;
  plugin->init(m_state);
  addScriptPlugin(plugin);
}

ScriptManager::ScriptPlugin* ScriptManager::getScriptPlugin(const std::string& name) const {
  for (const LoadedPlugin& entry : m_plugins)
    if (entry.name == name)
      return entry.plugin.get();
  return nullptr;
}

std::vector<std::string> ScriptManager::getScriptPluginNames() const {
  std::vector<std::string> names;
  for (const LoadedPlugin& entry : m_plugins)
    names.push_back(entry.name);
  return names;
}

std::string ScriptManager::getScriptPluginFile(const std::string& name) const {
  for (const LoadedPlugin& entry : m_plugins)
    if (entry.name == name)
      return entry.file;
  return {};
}

std::shared_ptr<ObjectRetirer> ScriptManager::getObjectRetirer() {
  if (!m_retirer)
    m_retirer = std::make_shared<ObjectRetirer>(m_state);
  return m_retirer;
}

void ScriptManager::addSearchPath(const std::string& directory) {
  m_extraPaths.push_back(directory);
}

std::vector<std::string> ScriptManager::getSearchPaths() const {
  return pluginSearchPaths(m_extraPaths);
}

std::vector<std::string> ScriptManager::findAvailablePlugins() const {
  return listPlugins(getSearchPaths());
}

} // namespace vyrLua
