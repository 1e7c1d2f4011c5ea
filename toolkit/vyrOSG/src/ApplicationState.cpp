// What the application writes and reads: state files, settings, journal, remote debugger.
#include "ApplicationParts.h"
#include "SceneFile.h"

#include <vyr/Notify.h>
#include <vyrCFG/ConfigScript.h>
#include <vyrOSG/Group.h>

#include <osgDB/FileUtils>

namespace vyrOSG {

namespace {

const char* const kDefaultCfgFile = "vyr.cfg";

/// Reads members of one kind and remembers the first that is of another.
class Settings {
public:
  explicit Settings(const vyrCFG::ConfigScript& script)
      : m_script(script) {}

  const vyrCFG::ConfigValue* find(const char* key, vyrCFG::ConfigValue::Kind kind) {
    const vyrCFG::ConfigValue* value = m_script.getRoot().find(key);
    if (value && value->getKind() != kind) {
      complain(*value, std::string("\"") + key + "\" is a " + value->getKindName());
      return nullptr;
    }
    return value;
  }

  bool readVec(const char* key, std::size_t size, double* numbers) {
    const vyrCFG::ConfigValue* list = find(key, vyrCFG::ConfigValue::Kind::Array);
    if (!list)
      return false;
    bool good = list->getElements().size() == size;
    for (std::size_t i = 0; good && i < size; ++i) {
      good = list->getElements()[i].isNumber();
      numbers[i] = list->getElements()[i].asNumber();
    }
    if (!good)
      complain(*list, std::string("\"") + key + "\" is not a list of " + std::to_string(size) + " numbers");
    return good;
  }

  void complain(const vyrCFG::ConfigValue& value, const std::string& problem) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << m_script.getName() << ":" << value.getLine() << ": " << problem;
    m_good = false;
  }

  bool isGood() const { return m_good; }

private:
  const vyrCFG::ConfigScript& m_script;
  bool m_good = true;
};

} // namespace

bool ExampleApplication::restoreFromFile(const std::string& file) {
  if (!isEmpty(*m_simulation))
    return m_simulation->restore(file);
  return readScene(file, *m_simulation, dynamic_cast<vyrOSG::Group*>(m_scene.get()));
}

bool ExampleApplication::saveToFile(const std::string& file) const {
  return m_simulation->write(file);
}

void ExampleApplication::setEnableSimulationDump(bool enable) {
  m_parts->dump = enable;
}

bool ExampleApplication::getEnableSimulationDump() const {
  return m_parts->dump;
}

bool ExampleApplication::readCFGFile() {
  using Kind = vyrCFG::ConfigValue::Kind;
  std::string file = m_parts->cfgFile;
  if (file.empty()) {
    if (osgDB::fileType(kDefaultCfgFile) != osgDB::REGULAR_FILE)
      return false;
    file = kDefaultCfgFile;
  }
  const vyr::ref_ptr<vyrCFG::ConfigScript> script = new vyrCFG::ConfigScript(file);
  if (!script->isValid())
    return false;
  Settings settings(*script);
  for (const vyrCFG::ConfigValue::Member& member : script->getRoot().getMembers()) {
    static const char* const kKnown[] = {"timeStep",         "gravity",        "solver",      "grid",       "gridSize",
                                         "coordinateSystem", "debugRendering", "autoPausing", "background", "shadows"};
    bool known = false;
    for (const char* key : kKnown)
      known = known || member.key == key;
    if (!known)
      settings.complain(member.value, "there is no setting \"" + member.key + "\"");
  }
  double numbers[6];
  if (const vyrCFG::ConfigValue* value = settings.find("timeStep", Kind::Number)) {
    if (value->asNumber() > 0.0)
      setTimeStep(value->asNumber());
    else
      settings.complain(*value, "the time step is not positive");
  }
  if (settings.readVec("gravity", 3, numbers)) {
    m_gravity.set(numbers[0], numbers[1], numbers[2]);
    m_simulation->setGravity(m_gravity);
  }
  if (const vyrCFG::ConfigValue* value = settings.find("solver", Kind::String)) {
    const SolverType type = getSolverType(value->asString());
    if (type == NUM_SOLVERS)
      settings.complain(*value, "there is no solver \"" + value->asString() + "\"");
    else
      m_solverType = type;
    applySolver();
  }
  if (settings.readVec("gridSize", 2, numbers))
    setGridSize(vyr::Vec2(numbers[0], numbers[1]));
  if (settings.readVec("background", 6, numbers))
    m_sceneDecorator->setBackgroundColor(vyr::Vec3(numbers[0], numbers[1], numbers[2]),
                                         vyr::Vec3(numbers[3], numbers[4], numbers[5]));
  if (const vyrCFG::ConfigValue* value = settings.find("grid", Kind::Boolean))
    setEnableGrid(value->asBoolean());
  if (const vyrCFG::ConfigValue* value = settings.find("coordinateSystem", Kind::Boolean))
    setEnableCoordinateSystem(value->asBoolean());
  if (const vyrCFG::ConfigValue* value = settings.find("debugRendering", Kind::Boolean))
    setEnableDebugRenderer(value->asBoolean());
  if (const vyrCFG::ConfigValue* value = settings.find("autoPausing", Kind::Boolean))
    setEnableAutoPausing(value->asBoolean());
  if (const vyrCFG::ConfigValue* value = settings.find("shadows", Kind::Boolean))
    m_sceneDecorator->setEnableShadows(value->asBoolean());
  return settings.isGood();
}

// Journal

bool ExampleApplication::journalRecord(const std::string& file, const std::string& session) {
  m_parts->journalFile = file;
  m_parts->journalSession = session;
  return m_parts->journal.open(
      file, session, m_parts->journalFormat == JOURNAL_COMPACT ? Journal::COMPACT : Journal::FULL, getTimeStep());
}

void ExampleApplication::journalPlayback() {
  m_parts->journal.close();
  if (m_parts->journalFile.empty()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "journalPlayback: no journal was named (option --journal)";
    return;
  }
  if (m_parts->player.open(m_parts->journalFile, m_parts->journalSession))
    setAutoStepping(true);
}

std::vector<std::string> ExampleApplication::listSessionNames(const std::string& file) {
  const std::vector<std::string> names = Journal::listSessions(file);
  for (const std::string& name : names)
    VYR_NOTIFY(vyr::NOTIFY_INFO) << file << ": session \"" << name << "\"";
  return names;
}

std::size_t ExampleApplication::getJournalFormat() const {
  return m_parts->journalFormat;
}

void ExampleApplication::setJournalFormat(std::size_t format) {
  if (format > JOURNAL_COMPACT) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setJournalFormat: there is no format " << format;
    return;
  }
  m_parts->journalFormat = static_cast<JournalFormat>(format);
}

// Remote debugger

void ExampleApplication::updateRemoteDebugger() {
  m_parts->debugger.update(*m_simulation);
}

int ExampleApplication::getRemoteDebuggerPort() const {
  return m_parts->debugger.getPort();
}

} // namespace vyrOSG
