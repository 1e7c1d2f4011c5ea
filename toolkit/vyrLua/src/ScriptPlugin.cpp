// The base of every script plugin.
#include <vyrLua/ScriptManager.h>

namespace vyrLua {

ScriptManager::ScriptPlugin::ScriptPlugin()
    : m_manager(ScriptManager::instance(false)) {}

ScriptManager::ScriptPlugin::~ScriptPlugin() = default;

} // namespace vyrLua
