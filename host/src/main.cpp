// The program `vyr`: runs Lua scripts with the toolkit's script plugins loaded.
#include "CommandLine.h"
#include "Doctor.h"
#include "ErrorHints.h"
#include "ExitCode.h"
#include "Interpreter.h"
#include "LuaSceneLoader.h"
#include "MessageSink.h"
#include "Plugins.h"
#include "Prompt.h"
#include "Reference.h"
#include "SceneDeleteHandler.h"

#include <vyrLua/ObjectRetirer.h>
#include <vyrLua/ScriptManager.h>
#include <vyrOSG/ExampleApplication.h>

extern "C" {
#include <lua.h>
}

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {

using namespace vyrHost;

void printLuaVersion() {
  std::fprintf(stderr, "%s  %s\n", LUA_RELEASE, LUA_COPYRIGHT);
}

bool runActions(Interpreter& interpreter, const CommandLine& line) {
  for (const CommandLine::Action& action : line.actions) {
    const int status =
        action.isRequire ? interpreter.runLibrary(action.text) : interpreter.runText(action.text, "=(command line)");
    if (status != 0)
      return false;
  }
  return true;
}

bool runScript(Interpreter& interpreter, const CommandLine& line) {
  const std::string& script = line.arguments[line.scriptIndex];
  // Behind "--" a script may be called "-": that is the standard input only where it stands as an option.
  const bool isFile = script == "-" && line.arguments[line.scriptIndex - 1] == "--";
  return interpreter.runFile(isFile ? "./-" : script, line.getScriptArguments()) == 0;
}

bool runWithoutScript(Interpreter& interpreter, const CommandLine& line) {
  if (line.interactive || line.executesText() || line.showLuaVersion)
    return true;
  if (isatty(STDIN_FILENO) == 0)
    return interpreter.runFile("-", {}) == 0;
  printLuaVersion();
  Prompt(interpreter).run();
  return true;
}

int runLua(const CommandLine& line) {
  vyrLua::ScriptManager& manager = *vyrLua::ScriptManager::instance(true);
  for (const char* plugin : kPlugins)
    manager.requestScriptPlugin(plugin);
  installSceneDeleteHandler(manager.getObjectRetirer());
  installErrorHints();
  const std::string script = line.hasScript() ? line.arguments[line.scriptIndex] : "";
  const vyr::ref_ptr<LuaSceneLoader> loader = new LuaSceneLoader(manager.getLuaState(), script);
  loader->setWatching(line.watch);
  loader->setPlayingJournal(line.command == CommandLine::PLAY);
  vyrOSG::ExampleApplication::setDefaultSceneLoader(loader.get());

  Interpreter interpreter(manager.getLuaState());
  interpreter.setArguments(line.arguments, line.scriptIndex);
  if (line.seed)
    std::srand(*line.seed); // Behind math.random as well as the toolkit's random numbers.
  if (line.showLuaVersion)
    printLuaVersion();
  bool ok = interpreter.runInitialization() == 0 && runActions(interpreter, line);
  if (ok)
    ok = line.hasScript() ? runScript(interpreter, line) : runWithoutScript(interpreter, line);
  if (line.interactive)
    Prompt(interpreter).run();
  vyrOSG::ExampleApplication::setDefaultSceneLoader(nullptr);
  const int failure = vyrOSG::LaunchOptions::process().getFailure();
  if (failure == EXIT_CODE_NO_GRAPHICS)
    return failure;
  return ok && !loader->hasFailedInBatch() ? failure : EXIT_CODE_SCRIPT_ERROR;
}

int listSessions(const std::string& journal) {
  const vyr::ref_ptr<vyrOSG::ExampleApplication> application = new vyrOSG::ExampleApplication;
  const std::vector<std::string> sessions = application->listSessionNames(journal);
  for (const std::string& session : sessions)
    std::printf("%s\n", session.c_str());
  return sessions.empty() ? EXIT_CODE_SCRIPT_ERROR : EXIT_CODE_OK;
}

void explainMissingGraphics() {
  std::fputs("vyr: no graphics: an OpenGL window needs a display server (DISPLAY) and the Debian packages libgl1 and "
             "libgl1-mesa-dri;\n"
             "vyr: without a display server, libegl1, libegl-mesa0 and libgl1-mesa-dri are needed. "
             "'vyr doctor' tells what is missing; --gl=none runs without pictures.\n",
             stderr);
}

int run(const CommandLine& line) {
  switch (line.command) {
  case CommandLine::HELP:
    std::fputs(CommandLine::getHelp().c_str(), stdout);
    return EXIT_CODE_OK;
  case CommandLine::VERSION:
    printVersion();
    return EXIT_CODE_OK;
  case CommandLine::DOCTOR:
    return runDoctor();
  case CommandLine::REFERENCE:
    return runHelp(line.topic);
  case CommandLine::PLAY:
    if (!line.hasScript())
      return listSessions(line.journal);
    break;
  case CommandLine::RUN:
    break;
  }
  const int code = runLua(line);
  vyrLua::ScriptManager::shutdown();
  removeSceneDeleteHandler();
  if (code == EXIT_CODE_NO_GRAPHICS)
    explainMissingGraphics();
  return code;
}

} // namespace

int main(int argc, char** argv) {
  try {
    CommandLine line;
    std::string error;
    CommandLine::readEnvironment(vyrOSG::LaunchOptions::process());
    if (!CommandLine::parse({argv, argv + argc}, line, vyrOSG::LaunchOptions::process(), error)) {
      std::fprintf(stderr, "vyr: %s\nTry 'vyr --help'.\n", error.c_str());
      return EXIT_CODE_USAGE;
    }
    if (line.command != CommandLine::DOCTOR) // It puts each message where it belongs in its findings.
      MessageSink::install(line.verbose);
    return run(line);
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "vyr: %s\n", exception.what());
    return EXIT_CODE_SCRIPT_ERROR;
  }
}
