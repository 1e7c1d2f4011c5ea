/// The script plugin that opens the modules of the visualization library.
#pragma once

#include <vyrLua/ScriptManager.h>

#include <string>

/// Registers every module of the plugin in a Lua state.
///
/// It holds nothing besides what its base holds: what the modules hand to Lua belongs to Lua's collector.
class LuaPluginVyrOSG : public vyrLua::ScriptManager::ScriptPlugin {
public:
  LuaPluginVyrOSG();

  std::string getName() override;
  /// Opens the modules in their fixed order: a Lua name that two of them register ends as the later one's.
  void init(lua_State* state) override;
  void close() override;

  /// The globals that no module registers: none.
  void addGlobals();

protected:
  ~LuaPluginVyrOSG() override;
};
