// Explains failed calls: the overloads that there are, closest first, and the known traps.
#include "ErrorHints.h"

#include "ApiManifest.h"

#include <vyrLua/ScriptManager.h>

#include <tolua++.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace vyrHost {

namespace {

constexpr std::size_t kMostCandidates = 6;
constexpr const char* kIndent = "     ";

/// Traps of single functions.
struct Trap {
  const char* type;
  const char* function;
  const char* text;
};

constexpr Trap kTraps[] = {
    {"osg::Uniform", "new",
     "osg.Uniform:new(name, number) makes an integer uniform; for a float write osg.Uniform:new(osg.Uniform.FLOAT, "
     "name) and "
     "setFloat"},
    {"vyrOSG::ExampleApplication", "addScene", "with a duration, the last boolean (paused) must be given too"},
};

/// What is known of the failed call.
struct Call {
  lua_State* state;
  std::string name;
  std::string type;
  std::string expected;
  std::string provided;
  int index;
  int count;
};

std::string typeNameAt(lua_State* state, int index) {
  const int top = lua_gettop(state);
  const char* name = tolua_typename(state, index);
  std::string result = name != nullptr ? name : "";
  lua_settop(state, top);
  return result;
}

std::string withoutPrefix(const std::string& text, const char* prefix) {
  const std::size_t length = std::strlen(prefix);
  return text.compare(0, length, prefix) == 0 ? text.substr(length) : text;
}

std::string functionName(const char* text) {
  const char* begin = std::strchr(text, '\'');
  const char* end = std::strrchr(text, '\'');
  return begin != nullptr && end > begin ? std::string(begin + 1, end) : std::string();
}

Call readCall(const vyrLua::ErrorReport& report) {
  Call call;
  call.state = report.state;
  call.name = functionName(report.text);
  call.index = report.record->index;
  call.count = report.argumentCount;
  call.expected = report.record->type != nullptr ? report.record->type : "";
  call.provided = call.index <= call.count ? typeNameAt(report.state, call.index) : "[no object]";
  // Where the first argument failed, the class is the one that was expected there, else the one that is there.
  std::string type = call.index == 1 ? call.expected : (call.count > 0 ? typeNameAt(report.state, 1) : "");
  type = withoutPrefix(withoutPrefix(type, "class "), "const ");
  call.type = type;
  return call;
}

bool accepts(lua_State* state, const ApiParameter& parameter, int index) {
  tolua_Error record;
  if (!parameter.defaultValue.empty() && lua_isnone(state, index))
    return true;
  switch (parameter.kind) {
  case ApiParameter::NUMBER:
    return lua_isnumber(state, index) != 0;
  case ApiParameter::BOOLEAN:
    return lua_isboolean(state, index);
  case ApiParameter::STRING:
    return lua_isstring(state, index) != 0;
  case ApiParameter::OBJECT:
    if (lua_isnoneornil(state, index))
      return parameter.nullable && !lua_isnone(state, index);
    return tolua_isusertype(state, index, parameter.type.c_str(), 0, &record) != 0;
  case ApiParameter::OTHER:
    break;
  }
  return !lua_isnone(state, index);
}

/// How many arguments would have to change.
int distance(const Call& call, const ApiFunction& function) {
  const int first = function.self == ApiFunction::NONE ? 1 : 2;
  const int top = lua_gettop(call.state);
  // Arguments alone: what an error message has pushed since must not count.
  int wrong = 0;
  const int expected = static_cast<int>(function.parameters.size());
  for (int number = 0; number < expected; ++number) {
    const int index = first + number;
    const ApiParameter& parameter = function.parameters[static_cast<std::size_t>(number)];
    if (index > call.count)
      wrong += parameter.defaultValue.empty() ? 1 : 0;
    else
      wrong += accepts(call.state, parameter, index) ? 0 : 1;
  }
  lua_settop(call.state, top);
  return wrong + std::max(0, call.count - (first + expected - 1));
}

std::vector<ApiFunction> findCandidates(const ApiManifest& manifest, const Call& call) {
  std::vector<ApiFunction> candidates;
  if (!call.type.empty())
    candidates = manifest.findMethods(call.type, call.name);
  if (candidates.empty())
    candidates = manifest.findFreeFunctions(call.name);
  std::vector<std::pair<int, ApiFunction>> ranked;
  ranked.reserve(candidates.size());
  for (ApiFunction& candidate : candidates)
    ranked.emplace_back(distance(call, candidate), std::move(candidate));
  std::stable_sort(ranked.begin(), ranked.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  candidates.clear();
  for (auto& entry : ranked)
    candidates.push_back(std::move(entry.second));
  return candidates;
}

std::string findHint(const Call& call, const std::vector<ApiFunction>& candidates) {
  const bool isMethod = !candidates.empty() && candidates.front().self != ApiFunction::NONE;
  if (call.provided.compare(0, 8, "deleted ") == 0)
    return "the object is gone: whoever held it has let it go; keep a holder, or make it with Class(...)";
  if (call.index == 1 && isMethod)
    return "write ':' instead of '.': " + candidates.front().describe();
  if (call.index == 1 && call.provided == "table" && !candidates.empty())
    return "write '.' instead of ':': " + candidates.front().describe();
  if (call.expected == "[no object]" && call.index > 1 && lua_isstring(call.state, call.index) != 0)
    return "a surplus value is often the second result of a call that gives its arguments back: put that call into "
           "parentheses, f((g(x)))";
  if (call.provided == "const " + call.expected)
    return "the object is read-only; a non-const one is needed here";
  if (call.expected == "number" && call.provided == "string")
    return "the string is no number; tonumber() gives nil for it";
  if (call.provided == "nil")
    return "nil is not accepted here: a misspelt variable, or a call that found nothing?";
  for (const Trap& trap : kTraps)
    if (call.type == trap.type && call.name == trap.function)
      return trap.text;
  return {};
}

std::string explainForProvider(const vyrLua::ErrorReport& report) {
  return explainFailedCall(getLoadedManifest(), report);
}

} // namespace

const ApiManifest& getLoadedManifest() {
  static const ApiManifest manifest = [] {
    ApiManifest read;
    if (const vyrLua::ScriptManager* manager = vyrLua::ScriptManager::instance(false))
      for (const std::string& name : manager->getScriptPluginNames()) {
        const std::filesystem::path file = manager->getScriptPluginFile(name);
        read.readFolder((file.parent_path() / "manifests" / name).string());
      }
    return read;
  }();
  return manifest;
}

std::string explainMissingName(const ApiManifest& manifest, const std::string& message) {
  const std::string ending = " (a nil value)";
  const bool isNil =
      message.size() > ending.size() && message.compare(message.size() - ending.size(), ending.size(), ending) == 0;
  if (!isNil || message.find("attempt to ") == std::string::npos)
    return {};
  std::string list;
  const std::size_t attempt = message.find("attempt to ");
  for (const std::string& name : manifest.findNamesLike(functionName(message.c_str() + attempt)))
    list += (list.empty() ? "'" : ", '") + name + "'";
  return list.empty() ? "" : std::string(kIndent) + "hint: was " + list + " meant?";
}

std::string explainFailedCall(const ApiManifest& manifest, const vyrLua::ErrorReport& report) {
  if (report.record == nullptr || std::strncmp(report.text, "#f", 2) != 0)
    return {};
  const Call call = readCall(report);
  const std::vector<ApiFunction> candidates = findCandidates(manifest, call);
  std::string text;
  for (std::size_t index = 0; index < candidates.size() && index < kMostCandidates; ++index)
    text += std::string(index > 0 ? "\n" : "") + kIndent + "candidate: " + candidates[index].describe();
  if (candidates.size() > kMostCandidates)
    text += "\n" + std::string(kIndent) + "and " + std::to_string(candidates.size() - kMostCandidates) + " more";
  if (const std::string hint = findHint(call, candidates); !hint.empty())
    text += (text.empty() ? "" : "\n") + std::string(kIndent) + "hint: " + hint;
  return text;
}

void installErrorHints() {
  vyrLua::setErrorHintProvider(&explainForProvider);
}

} // namespace vyrHost
