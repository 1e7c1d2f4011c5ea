/// The script plugin "vyr": the toolkit's core and physics types for Lua.
#pragma once

#include <vyrLua/ScriptManager.h>

#include <string>

/// Opens the modules of the namespaces vyr, vyrIO, vyrRender, vyrCollide, vyrSDK and vyrUtil.
class LuaPluginVyr : public vyrLua::ScriptManager::ScriptPlugin {
public:
  std::string getName() override;
  void init(lua_State* L) override;
  void close() override;

protected:
  ~LuaPluginVyr() override = default;
};
