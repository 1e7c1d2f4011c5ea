// Reads the program's command line.
#pragma once

#include <vyrOSG/LaunchOptions.h>

#include <optional>
#include <string>
#include <vector>

namespace vyrHost {

/// What the user asked for. Short options are those of `lua`; long ones are the program's own.
struct CommandLine {
  enum Command { RUN, HELP, VERSION, DOCTOR, PLAY, REFERENCE };

  /// One -e or -l, to be done in order.
  struct Action {
    bool isRequire;
    std::string text;
  };

  Command command = RUN;
  std::vector<Action> actions;
  bool interactive = false;
  bool showLuaVersion = false;
  bool verbose = false;
  bool watch = false;
  std::optional<unsigned> seed;

  /// For REFERENCE: what to tell of; empty for the list of classes.
  std::string topic;

  /// For PLAY: the journal, and its session where one was named.
  std::string journal;
  std::string session;

  /// All arguments, the program's name first. For PLAY, what the application needs to know of the journal stands behind
  /// the script's name.
  std::vector<std::string> arguments;
  /// Where the script's name stands in `arguments`; their number when there is none.
  std::size_t scriptIndex = 0;

  bool hasScript() const { return scriptIndex < arguments.size(); }
  bool executesText() const;
  /// The arguments behind the script's name.
  std::vector<std::string> getScriptArguments() const;

  /// Reads the command line.
  /// @param launch receives what concerns graphics, limits, pictures and films.
  /// @param error says what is wrong with the command line when the result is false.
  static bool parse(const std::vector<std::string>& arguments, CommandLine& result, vyrOSG::LaunchOptions& launch,
                    std::string& error);

  /// Reads the viewer library's own variables OSG_WINDOW and OSG_SCREEN, which the command line overrides; malformed
  /// ones are passed over, as the library does.
  static void readEnvironment(vyrOSG::LaunchOptions& launch);

  /// The text of --help.
  static std::string getHelp();
};

} // namespace vyrHost
