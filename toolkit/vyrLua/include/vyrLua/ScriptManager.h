// Owns the Lua state and the script plugins that fill it.
#pragma once

#include <vyrLua/export.h>

#include <vyr/Referenced.h>
#include <vyr/Vector.h>
#include <vyr/ref_ptr.h>

#include <memory>
#include <string>
#include <vector>

struct lua_State;

namespace vyrLua {

class ObjectRetirer;
class PluginLibrary;

/// Loads script plugins into one Lua state and unloads them in the right order.
///
/// A script plugin NAME is the shared library "libNAME_luaplugin.so" with an exported, undecorated function
/// `void initPlugin(vyrLua::ScriptManager*)`. It is looked for in the directories of the environment variable
/// VYR_PLUGIN_PATH (separated by colons), in those given to addSearchPath, in "vyr/plugins" beside this library and in
/// "../lib/vyr/plugins" and "plugins" beside the program.
///
/// All of it belongs to the thread that runs the Lua state.
class VYRLUA_EXPORT ScriptManager {
public:
  /// What a plugin hands to the manager: a name, and what to do at the start and at the end.
  class VYRLUA_EXPORT ScriptPlugin : public vyr::Referenced {
  public:
    /// The manager is the present one, ScriptManager::instance(false).
    ScriptPlugin();

    virtual std::string getName() = 0;
    /// Registers everything that the plugin offers in the state.
    virtual void init(lua_State* state) = 0;
    /// Called once before the Lua state closes.
    virtual void close() = 0;

    /// The names of the plugins to load before this one, in that order.
    const vyr::Vector<std::string>& getRequiredPlugins() const { return m_requiredPlugins; }

  protected:
    ~ScriptPlugin() override;

    ScriptManager* m_manager;
    vyr::Vector<std::string> m_requiredPlugins;
  };

  /// The process's manager.
  /// @param create make one, with a fresh Lua state, if there is none.
  /// @return *borrows*. Nullable: null when there is none and none was asked for.
  static ScriptManager* instance(bool create);

  /// Ends the process's manager: plugins close in reverse order, then the Lua state closes (its collectors still need
  /// the plugins' code), then the plugins are released and their libraries unloaded. Nothing happens without a manager.
  static void shutdown();

  ScriptManager(const ScriptManager&) = delete;
  ScriptManager& operator=(const ScriptManager&) = delete;

  /// Loads a plugin unless it is there already.
  /// @return false, with an error message that names the plugin and the reason, when it cannot be loaded.
  bool requestScriptPlugin(const std::string& name);

  /// Keeps a plugin that has been initialised; a plugin of the same name is replaced. *retains*
  void addScriptPlugin(ScriptPlugin* plugin);

  /// The start-up of a plugin: compares versions, requests what it requires, initialises it and adds it.
  ///
  /// A version that differs from the manager's and a requirement that fails are reported, and the start-up goes on.
  /// @param plugin *retains*
  /// @param version the version that the plugin was built for.
  void startScriptPlugin(ScriptPlugin* plugin, const std::string& version);

  /// @return *borrows*. Nullable: null when no plugin of that name is loaded.
  ScriptPlugin* getScriptPlugin(const std::string& name) const;

  /// The names of the loaded plugins, in load order.
  std::vector<std::string> getScriptPluginNames() const;

  /// The file that a loaded plugin came from; "" for one that the program added itself.
  std::string getScriptPluginFile(const std::string& name) const;

  /// Adds a directory, searched after those of VYR_PLUGIN_PATH.
  void addSearchPath(const std::string& directory);

  /// Every directory in which plugins are looked for, in order.
  std::vector<std::string> getSearchPaths() const;

  /// The names of the plugins that the search directories offer, sorted.
  std::vector<std::string> findAvailablePlugins() const;

  /// From the first call on, objects that are destroyed while Lua points at them become errors instead of stray
  /// pointers. Others may keep the retirer longer than the manager lives: it then retires nothing.
  std::shared_ptr<ObjectRetirer> getObjectRetirer();

  const std::string& getVersion() const { return m_version; }
  lua_State* getLuaState() const { return m_state; }

  /// The version that plugins compare theirs with: "1.0".
  std::string m_version;
  /// The interpreter, open as long as the manager lives. *borrows*
  lua_State* m_state;

private:
  struct LoadedPlugin {
    std::string name;
    std::string file;
    vyr::ref_ptr<ScriptPlugin> plugin;
  };

  ScriptManager();
  ~ScriptManager();

  bool loadPlugin(const std::string& name);
  bool reportCycle(const std::string& name) const;
  void reportMissingRequirements(ScriptPlugin& plugin) const;

  std::vector<LoadedPlugin> m_plugins;
  std::vector<std::unique_ptr<PluginLibrary>> m_libraries;
  std::vector<std::string> m_loading;
  std::vector<std::string> m_extraPaths;
  std::shared_ptr<ObjectRetirer> m_retirer;
};

} // namespace vyrLua
