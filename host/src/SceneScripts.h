// Finds the scene functions of script files.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>

struct lua_State;

namespace vyrHost {

/// Runs script files for the scene functions that they define, again whenever a file has changed.
///
/// The script that the program itself runs has defined its functions already; it is run again only after a change.
/// While a file runs for its functions, `vyrOSG.ExampleApplication` is a stand-in for the application that is there:
/// settings reach it, what would start it anew does nothing, and `run` ends the file. So a file can be a program and a
/// scene in one.
///
/// A function sees the functions of its own file even where another file defines the same names.
class SceneScripts {
public:
  /// @param state *borrows*
  /// @param mainScript the file of the running script; "" when there is none.
  SceneScripts(lua_State* state, const std::string& mainScript);

  /// Pushes the function and gives true; otherwise pushes nothing and gives the reason in `error`.
  /// @param application where the application stands on the stack.
  bool pushFunction(const std::string& file, const std::string& function, int application, std::string& error);

  /// Whether a file that a scene came from has changed since.
  bool haveChanged() const;

private:
  using Time = std::filesystem::file_time_type;

  bool runFile(const std::string& file, int application, std::string& error);
  bool isCurrent(const std::string& file, Time time) const;

  lua_State* m_state;
  std::string m_mainScript;
  std::map<std::string, Time> m_times;
  /// Files whose last run ended in an error: they run again with the next request, changed or not.
  std::set<std::string> m_failed;
};

} // namespace vyrHost
