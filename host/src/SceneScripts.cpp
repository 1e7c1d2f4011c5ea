// Finds the scene functions of script files.
#include "SceneScripts.h"

#include <vyrLua/ProtectedCall.h>

extern "C" {
#include <lauxlib.h>
#include <lua.h>
}

namespace vyrHost {

namespace {

namespace fs = std::filesystem;

constexpr const char* kFilesKey = "vyr.sceneFiles";
constexpr const char* kRunnerKey = "vyr.sceneRunner";

/// Gives a function (chunk, application) -> table of the functions that the chunk defines.
constexpr const char* kRunner = R"(
local stopped = {}
local skipped = {init = true, addScene = true, setupViewer = true, initSimulation = true, setScene = true,
  createScene = true, createSceneByKey = true, createNextScene = true, createPreviousScene = true,
  clearScene = true, reloadScene = true, restoreFromFile = true, journalPlayback = true, step = true}
local xpcall, error, type, setmetatable, traceback = xpcall, error, type, setmetatable, debug.traceback
local globals = _G

local function makeStandIn(application)
  local function index(_, name)
    if name == "run" then return function() error(stopped, 0) end end
    if skipped[name] then return function() return true end end
    local value = application[name]
    if type(value) ~= "function" then return value end
    return function(_, ...) return value(application, ...) end
  end
  return setmetatable({}, {__index = index})
end

local function makeClass(standIn, class)
  local function make() return standIn end
  local function index(_, name)
    if name == "new" or name == "new_local" then return make end
    return class[name]
  end
  return setmetatable({}, {__call = make, __index = index})
end

return function(chunk, application)
  local own = setmetatable({}, {__index = globals})
  local namespace = globals.vyrOSG
  if namespace then
    local class = makeClass(makeStandIn(application), namespace.ExampleApplication)
    own.vyrOSG = setmetatable({ExampleApplication = class}, {__index = namespace, __newindex = namespace})
  end
  local function define(_, name, value)
    own[name] = type(value) == "function" and value or nil
    globals[name] = value
  end
  setfenv(chunk, setmetatable({}, {__index = own, __newindex = define}))
  local ok, failure = xpcall(chunk, function(text)
    if text == stopped then return text end
    return type(text) == "string" and traceback(text, 2) or text
  end)
  if not ok and failure ~= stopped then error(failure, 0) end
  return own
end
)";

std::string canonicalPath(const std::string& file) {
  std::error_code failure;
  const fs::path path = fs::canonical(file, failure);
  return failure ? file : path.string();
}

bool readTime(const std::string& file, fs::file_time_type& time) {
  std::error_code failure;
  time = fs::last_write_time(file, failure);
  return !failure;
}

std::string popText(lua_State* state) {
  const char* text = lua_tostring(state, -1);
  std::string result = text != nullptr ? text : "(error object is not a string)";
  lua_pop(state, 1);
  return result;
}

} // namespace

SceneScripts::SceneScripts(lua_State* state, const std::string& mainScript)
    : m_state(state) {
  lua_newtable(m_state);
  lua_setfield(m_state, LUA_REGISTRYINDEX, kFilesKey);
  if (luaL_loadbuffer(m_state, kRunner, std::char_traits<char>::length(kRunner), "=(scene loader)") != 0 ||
      lua_pcall(m_state, 0, 1, 0) != 0)
    lua_pop(m_state, 1); // Out of memory only; running a file then fails and says so.
  else
    lua_setfield(m_state, LUA_REGISTRYINDEX, kRunnerKey);
  Time time;
  if (!mainScript.empty() && readTime(mainScript, time)) {
    m_mainScript = canonicalPath(mainScript);
    m_times[m_mainScript] = time;
  }
}

bool SceneScripts::isCurrent(const std::string& file, Time time) const {
  const auto known = m_times.find(file);
  return known != m_times.end() && known->second == time && m_failed.count(file) == 0;
}

bool SceneScripts::haveChanged() const {
  for (const auto& [file, known] : m_times) {
    // A file that cannot be read is being written: it has changed only once it is there again.
    Time time;
    if (readTime(file, time) && time != known)
      return true;
  }
  return false;
}

bool SceneScripts::runFile(const std::string& file, int application, std::string& error) {
  lua_getfield(m_state, LUA_REGISTRYINDEX, kRunnerKey);
  if (luaL_loadfile(m_state, file.c_str()) != 0) {
    error = popText(m_state);
    lua_pop(m_state, 1);
    return false;
  }
  lua_pushvalue(m_state, application);
  if (vyrLua::protectedCall(m_state, 2, 1, 0) != 0) {
    error = popText(m_state);
    return false;
  }
  lua_getfield(m_state, LUA_REGISTRYINDEX, kFilesKey);
  lua_insert(m_state, -2);
  lua_setfield(m_state, -2, file.c_str());
  lua_pop(m_state, 1);
  return true;
}

bool SceneScripts::pushFunction(const std::string& file, const std::string& function, int application,
                                std::string& error) {
  const std::string path = canonicalPath(file);
  Time time;
  if (!readTime(path, time)) {
    error = "cannot read scene file '" + file + "'";
    return false;
  }
  if (!isCurrent(path, time)) {
    m_times[path] = time;
    if (!runFile(path, application, error)) {
      m_failed.insert(path);
      error = "scene file '" + file + "': " + error;
      return false;
    }
    m_failed.erase(path);
  }
  lua_getfield(m_state, LUA_REGISTRYINDEX, kFilesKey);
  lua_getfield(m_state, -1, path.c_str());
  if (lua_isnil(m_state, -1)) { // The running script, unchanged: its functions are the globals.
    lua_pop(m_state, 1);
    lua_pushvalue(m_state, LUA_GLOBALSINDEX);
  }
  lua_getfield(m_state, -1, function.c_str());
  lua_replace(m_state, -3);
  lua_pop(m_state, 1);
  if (lua_isfunction(m_state, -1))
    return true;
  lua_pop(m_state, 1);
  error = "scene file '" + file + "' defines no global function '" + function + "'";
  return false;
}

} // namespace vyrHost
