// Reads the program's command line.
#include "CommandLine.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <sstream>

namespace vyrHost {

namespace {

constexpr long long kLargestPlace = 100000; // pixels
constexpr long long kMostScreens = 1000;

bool readDouble(const std::string& text, double& number) {
  char* end = nullptr;
  number = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0' && std::isfinite(number);
}

bool readInteger(const std::string& text, long long& number) {
  char* end = nullptr;
  errno = 0;
  number = std::strtoll(text.c_str(), &end, 10);
  return !text.empty() && *end == '\0' && errno == 0;
}

bool readPositive(const std::string& text, double& number) {
  double value = 0;
  if (!readDouble(text, value) || value <= 0)
    return false;
  number = value;
  return true;
}

/// Reads x, y, width and height of a window.
bool readPlace(const std::vector<std::string>& numbers, vyrOSG::LaunchOptions& launch) {
  long long x = 0;
  long long y = 0;
  if (!readInteger(numbers[0], x) || !readInteger(numbers[1], y) || std::llabs(x) > kLargestPlace ||
      std::llabs(y) > kLargestPlace || !launch.parseSize(numbers[2] + "x" + numbers[3]))
    return false;
  launch.windowX = static_cast<int>(x);
  launch.windowY = static_cast<int>(y);
  return true;
}

/// Reads arguments one after the other and remembers the first thing that is wrong.
class Reader {
public:
  Reader(CommandLine& line, vyrOSG::LaunchOptions& launch)
      : m_line(line)
      , m_launch(launch) {
    addLongOptions();
  }

  bool read(std::string& error) {
    while (m_error.empty() && m_index < m_line.arguments.size() && readOne()) {
    }
    m_line.scriptIndex = m_index;
    if (m_error.empty())
      readCommandWord();
    error = m_error;
    return error.empty();
  }

private:
  using ReadValue = std::function<bool(const std::string&)>;

  void addLongOptions() {
    m_withValue = {
        {"--gl", [this](const std::string& v) { return vyrOSG::LaunchOptions::parseBackend(v, m_launch.backend); }},
        {"--size", [this](const std::string& v) { return m_launch.parseSize(v); }},
        {"--shot", [this](const std::string& v) { return m_launch.addShot(v); }},
        {"--fps", [this](const std::string& v) { return readPositive(v, m_launch.fps); }},
        {"--duration", [this](const std::string& v) { return readPositive(v, m_launch.duration); }},
        {"--steps",
         [this](const std::string& v) {
           long long steps = 0;
           if (!readInteger(v, steps) || steps < 0)
             return false;
           m_launch.steps = steps;
           return true;
         }},
        {"--record",
         [this](const std::string& v) {
           m_launch.record = v;
           return !v.empty();
         }},
        {"--seed",
         [this](const std::string& v) {
           long long seed = 0;
           if (!readInteger(v, seed) || seed < 0 || seed > std::numeric_limits<unsigned>::max())
             return false;
           m_line.seed = static_cast<unsigned>(seed);
           return true;
         }},
        {"--session",
         [this](const std::string& v) {
           m_line.session = v;
           return !v.empty();
         }},
        {"--screen",
         [this](const std::string& v) {
           long long screen = 0;
           if (!readInteger(v, screen) || screen < 0 || screen > kMostScreens)
             return false;
           m_launch.screen = static_cast<int>(screen);
           return true;
         }},
    };
    m_flags = {
        {"--help", [this] { m_line.command = CommandLine::HELP; }},
        {"--version", [this] { m_line.command = CommandLine::VERSION; }},
        {"--verbose", [this] { m_line.verbose = true; }},
        {"--watch", [this] { m_line.watch = true; }},
    };
  }

  /// False where options end: at the script's name, at "--", at "-".
  bool readOne() {
    const std::string argument = m_line.arguments[m_index];
    if (argument.empty() || argument[0] != '-' || argument == "-")
      return false;
    ++m_index;
    if (argument == "--")
      return false;
    if (argument.compare(0, 2, "--") == 0)
      readLong(argument);
    else
      readShort(argument);
    return true;
  }

  void readLong(const std::string& argument) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    if (name == "--window" && equals == std::string::npos) {
      readWindow();
      return;
    }
    if (const auto flag = m_flags.find(argument); flag != m_flags.end()) {
      flag->second();
      return;
    }
    const auto option = m_withValue.find(name);
    if (option == m_withValue.end()) {
      m_error = "unknown option '" + argument + "'";
      return;
    }
    std::string value;
    if (equals != std::string::npos)
      value = argument.substr(equals + 1);
    else if (m_index < m_line.arguments.size())
      value = m_line.arguments[m_index++];
    else
      m_error = "option '" + name + "' needs a value";
    if (m_error.empty() && !option->second(value))
      m_error = "option '" + name + "' cannot take '" + value + "'";
  }

  void readWindow() {
    std::vector<std::string> numbers;
    while (numbers.size() < 4 && m_index < m_line.arguments.size())
      numbers.push_back(m_line.arguments[m_index++]);
    if (numbers.size() < 4 || !readPlace(numbers, m_launch))
      m_error = "option '--window' needs four integers: x y width height";
  }

  void readShort(const std::string& argument) {
    const char letter = argument[1];
    const bool alone = argument.size() == 2;
    if (letter == 'i' && alone) {
      m_line.interactive = true;
      m_line.showLuaVersion = true;
    } else if (letter == 'v' && alone) {
      m_line.showLuaVersion = true;
    } else if (letter == 'e' || letter == 'l') {
      std::string text = argument.substr(2);
      if (alone && m_index < m_line.arguments.size())
        text = m_line.arguments[m_index++];
      else if (alone)
        m_error = "option '" + argument + "' needs an argument";
      m_line.actions.push_back({letter == 'l', text});
    } else {
      m_error = "unknown option '" + argument + "'";
    }
  }

  void readCommandWord() {
    // A script of that name is still reached as "./doctor".
    if (m_line.command != CommandLine::RUN || !m_line.hasScript())
      return;
    const std::string word = m_line.arguments[m_index];
    if (word == "doctor")
      m_line.command = CommandLine::DOCTOR;
    else if (word == "play")
      readPlay();
    else if (word == "help")
      readHelp();
  }

  void readHelp() {
    m_line.command = CommandLine::REFERENCE;
    if (m_index + 1 < m_line.arguments.size())
      m_line.topic = m_line.arguments[m_index + 1];
  }

  void readPlay() {
    m_line.command = CommandLine::PLAY;
    if (m_index + 1 >= m_line.arguments.size()) {
      m_error = "'play' needs the file of a journal";
      return;
    }
    m_line.journal = m_line.arguments[m_index + 1];
    m_line.scriptIndex = m_index + 2;
    if (!m_line.hasScript())
      return;
    std::vector<std::string> handedOn = {"--journal", m_line.journal};
    if (!m_line.session.empty())
      handedOn.insert(handedOn.end(), {"--journal-session", m_line.session});
    const auto behindScript = m_line.arguments.begin() + static_cast<std::ptrdiff_t>(m_line.scriptIndex) + 1;
    m_line.arguments.insert(behindScript, handedOn.begin(), handedOn.end());
  }

  CommandLine& m_line;
  vyrOSG::LaunchOptions& m_launch;
  std::map<std::string, ReadValue> m_withValue;
  std::map<std::string, std::function<void()>> m_flags;
  std::size_t m_index = 1;
  std::string m_error;
};

} // namespace

void CommandLine::readEnvironment(vyrOSG::LaunchOptions& launch) {
  if (const char* place = std::getenv("OSG_WINDOW")) {
    std::istringstream words(place);
    const std::vector<std::string> numbers{std::istream_iterator<std::string>(words), {}};
    if (numbers.size() == 4)
      readPlace(numbers, launch);
  }
  long long screen = 0;
  const char* number = std::getenv("OSG_SCREEN");
  if (number != nullptr && readInteger(number, screen) && screen >= 0 && screen <= kMostScreens)
    launch.screen = static_cast<int>(screen);
}

bool CommandLine::executesText() const {
  for (const Action& action : actions)
    if (!action.isRequire)
      return true;
  return false;
}

std::vector<std::string> CommandLine::getScriptArguments() const {
  if (scriptIndex + 1 >= arguments.size())
    return {};
  return {arguments.begin() + static_cast<std::ptrdiff_t>(scriptIndex) + 1, arguments.end()};
}

bool CommandLine::parse(const std::vector<std::string>& arguments, CommandLine& result, vyrOSG::LaunchOptions& launch,
                        std::string& error) {
  result = CommandLine();
  result.arguments = arguments;
  return Reader(result, launch).read(error);
}

std::string CommandLine::getHelp() {
  return R"(Usage: vyr [options] [script [args]]
       vyr [options] play FILE.journal [script [args]]
       vyr doctor
       vyr help [NAME]

Runs a Lua script with the plugins vyr, vyrModel and vyrOSG loaded. 'play' shows a recorded run in the scene of the
script that it was recorded with, or lists the journal's sessions; 'doctor' tells what works on this machine; 'help' tells
of a class or a function of the scripts' interface.

As lua:
  -e stat           execute the string 'stat'
  -l name           require the library 'name'
  -i                go interactive after the script
  -v                show the interpreter's version
  --                stop handling options
  -                 execute the standard input

Graphics:
  --gl=KIND         auto (a window, else EGL), window, egl or none
  --size WxH        size of the picture in pixels (1280x720)
  --window X Y W H  place and size of the window
  --screen N        screen of the window

Runs and pictures:
  --steps N         stop after N simulation steps
  --duration S      stop after S seconds of simulated time
  --shot t=S:FILE   write a picture when the simulated time is S seconds; may be repeated
  --record FILE     write a film (out.mp4) or numbered pictures (frames/%05d.png)
  --fps N           pictures a second of the film (60)
  --seed N          start the random numbers with N
  --watch           load the scene again when its file changes

  --session NAME    the session of the journal that 'play' shows

  --verbose         show information and debug messages too
  --help            show this text
  --version         show the versions of the program and its parts

Exit codes: 0 all well, 1 error in the script, 2 wrong usage, 3 no graphics.
)";
}

} // namespace vyrHost
