// Builds scenes by functions of Lua scripts.
#include "LuaSceneLoader.h"

#include "Interpreter.h"
#include "ReloadOnChange.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/GraphicsBackend.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/LaunchOptions.h>

#include <tolua++.h>

namespace vyrHost {

namespace {

/// Pushes an object under its type's name, or nil where no plugin has declared the type: the runtime would fail on it.
void pushObject(lua_State* state, void* object, const char* type) {
  luaL_getmetatable(state, type);
  const bool declared = !lua_isnil(state, -1);
  lua_pop(state, 1);
  if (declared)
    tolua_pushusertype(state, object, type);
  else
    lua_pushnil(state);
}

/// Whether nobody is there to mend a scene while the program runs.
bool isBatch(vyrOSG::ExampleApplication* application, bool watching) {
  const vyrOSG::LaunchOptions& launch = vyrOSG::LaunchOptions::process();
  const vyrOSG::GraphicsBackend* backend = application->getGraphicsBackend();
  if (backend == nullptr || backend->getKind() != vyrOSG::LaunchOptions::WINDOW)
    return true;
  const bool limited = launch.steps >= 0 || launch.duration >= 0 || !launch.shots.empty() || !launch.record.empty();
  return limited && !watching;
}

} // namespace

LuaSceneLoader::LuaSceneLoader(lua_State* state, const std::string& mainScript)
    : m_state(state)
    , m_scripts(state, mainScript)
    , m_watching(false)
    , m_playingJournal(false)
    , m_failedInBatch(false) {}

LuaSceneLoader::~LuaSceneLoader() = default;

bool LuaSceneLoader::loadScene(const std::string& file, const std::string& function, vyrSDK::Simulation* simulation,
                               vyrOSG::ExampleApplication* application, vyrOSG::Group* root, std::string& error) {
  if (m_watching)
    watch(application);
  const int top = lua_gettop(m_state);
  const bool built = buildScene(file, function, simulation, application, root, error);
  lua_settop(m_state, top);
  if (!built && isBatch(application, m_watching))
    m_failedInBatch = true;
  if (built && m_playingJournal)
    application->journalPlayback();
  return built;
}

bool LuaSceneLoader::buildScene(const std::string& file, const std::string& function, vyrSDK::Simulation* simulation,
                                vyrOSG::ExampleApplication* application, vyrOSG::Group* root, std::string& error) {
  luaL_checkstack(m_state, LUA_MINSTACK, "too many values to build a scene");
  pushObject(m_state, application, "vyrOSG::ExampleApplication");
  const int applicationIndex = lua_gettop(m_state);
  if (!m_scripts.pushFunction(file, function, applicationIndex, error))
    return false;
  pushObject(m_state, simulation, "vyrSDK::Simulation");
  lua_pushvalue(m_state, applicationIndex);
  pushObject(m_state, root, "vyrOSG::Group");
  if (Interpreter::callWithTraceback(m_state, 3, 0) == 0)
    return true;
  const char* text = lua_tostring(m_state, -1);
  error = text != nullptr ? text : "(error object is not a string)";
  return false;
}

void LuaSceneLoader::watch(vyrOSG::ExampleApplication* application) {
  osgViewer::Viewer* viewer = application->getViewer();
  if (viewer == nullptr || viewer == m_watchedViewer.get())
    return;
  m_watchedViewer = viewer;
  viewer->addEventHandler(new ReloadOnChange(application, this));
}

} // namespace vyrHost
